#include "server/subjects/circulation/OneEach.h"

#include "server/Context.h"
#include "server/SubjectRequests.h"
#include "server/store/Database.h"
#include "server/subjects/circulation/KeyedRows.h"

namespace sysadmin::server {

Table OneEach::StoredAs() const {
    Table stored{.name = table,
                 .columns = {{.name = owner,
                              .type = ColumnType::Reference,
                              .target = ownerTable,
                              .onRemoval = onRemoval}},
                 .uniqueSets = {{owner}}};
    for (const SubjectField& field : fields)
        stored.columns << field.StoredAs();
    return stored;
}

std::optional<qint64> OwnerIn(Context& context, const OneEach& one, const wire::Fields& request) {
    return KeyRecord(context, one.ownerTable, wire::FirstValue(request, one.keyTag));
}

std::optional<qint64> StoredFor(Context& context, const OneEach& one, qint64 owner) {
    return context.records.IdWhere(one.table, one.owner, owner);
}

void PutOne(Context& context, const OneEach& one, qint64 owner, ReplyFields& reply) {
    const auto id = StoredFor(context, one, owner);
    const Row row = id ? *context.records.Find(one.table, *id) : Row();
    for (const SubjectField& field : one.fields)
        Put(reply, field.tag, id ? row[field.column].toString() : field.fallback);
}

qint16 ReadOne(Context& context, const OneEach& one, qint64 owner, const wire::Fields& request, Row& row) {
    const auto id = StoredFor(context, one, owner);
    row = id ? *context.records.Find(one.table, *id) : Row();
    return ReadFields(context, one.fields, request, !id, row);
}

void StoreOne(Context& context, const OneEach& one, qint64 owner, Row row) {
    if (const auto id = StoredFor(context, one, owner)) {
        context.records.Update(one.table, *id, row);
        return;
    }
    row.insert(one.owner, owner);
    context.records.Insert(one.table, row);
}

} // namespace sysadmin::server
