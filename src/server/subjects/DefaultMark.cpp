#include "server/subjects/DefaultMark.h"

#include "server/store/Database.h"

namespace sysadmin::server {

namespace {

const QString Mark = "is_default";

bool HasMark(const Row& record) {
    return record.value(Mark) == "Y";
}

} // namespace

qint16 KeepDefaultMark(Context& context, const QString& table, const Row& before, Row& after) {
    if (HasMark(after))
        return status::Ok;
    if (HasMark(before))
        return status::InUse;
    if (!context.records.IdWhere(table, Mark, "Y"))
        after.insert(Mark, "Y");
    return status::Ok;
}

void MoveDefaultMark(Context& context, const QString& table, qint64 id) {
    if (!HasMark(*context.records.Find(table, id)))
        return;
    for (const QVariant& other :
         context.database.FirstColumn("SELECT id FROM " + table + " WHERE is_default='Y' AND id<>?", {id}))
        context.records.Update(table, other.toLongLong(), {{Mark, "N"}});
}

qint16 CheckDefaultRemoval(Context& context, const QString& table, const Row& record) {
    const bool isLast = context.database.FirstValue("SELECT COUNT(*) FROM " + table).toInt() == 1;
    return HasMark(record) && !isLast ? status::DefaultRecord : status::Ok;
}

} // namespace sysadmin::server
