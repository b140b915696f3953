#include "server/ColumnList.h"

#include "server/Context.h"
#include "server/store/Database.h"

namespace sysadmin::server {

void PutList(Context& context, const ColumnList& list, ReplyFields& reply) {
    QStringList columns;
    for (const auto& [tag, column] : list.columns)
        columns << column;
    context.database.Each("SELECT " + columns.join(", ") + " FROM " + list.table + " ORDER BY " +
                              (list.order + QStringList{"id"}).join(", "),
                          {}, [&](const ResultRow& row) {
                              for (qsizetype i = 0; i < columns.size(); ++i)
                                  Put(reply, list.columns[i].first, row.value(int(i)).toString());
                          });
}

} // namespace sysadmin::server
