#include "server/ColumnList.h"

#include "server/Context.h"
#include "server/store/Database.h"

namespace sysadmin::server {

void PutList(Context& context, const ColumnList& list, ReplyFields& reply) {
    QStringList columns;
    QList<wire::EncodedTag> tags;
    for (const auto& [tag, column] : list.columns) {
        columns << column;
        tags.emplaceBack(tag);
    }
    context.database.Each("SELECT " + columns.join(", ") + " FROM " + list.table + " ORDER BY " +
                              (list.order + QStringList{"id"}).join(", "),
                          {}, [&](const ResultRow& row) {
                              for (qsizetype i = 0; i < columns.size(); ++i)
                                  reply.Put(tags[i], row.Utf8(int(i)));
                          });
}

} // namespace sysadmin::server
