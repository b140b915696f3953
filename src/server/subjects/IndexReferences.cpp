#include "server/store/Database.h"
#include "server/subjects/Registrations.h"
#include "server/subjects/SearchIndexes.h"

#include <QSet>

namespace sysadmin::server {

namespace {

/// The rows that name an index by the code of none.
QList<qint64> NamesOfNothing(Database& database, const IndexReference& reference) {
    QSet<QString> codes;
    for (const IndexFamily& family : IndexFamilies())
        for (const QVariant& code : database.FirstColumn("SELECT code FROM " + family.table))
            codes.insert(Fold(code.toString()));
    QList<qint64> ids;
    database.Each("SELECT id, " + reference.column + " FROM " + reference.table, {},
                  [&](const ResultRow& row) {
                      const QString code = Fold(row.value(1).toString());
                      if (!code.isEmpty() && !codes.contains(code))
                          ids << row.value(0).toLongLong();
                  });
    return ids;
}

} // namespace

void RegisterIndexReferences(Registry& registry) {
    QStringList indexes;
    for (const IndexFamily& family : IndexFamilies())
        indexes << family.table;
    for (const IndexReference& reference : IndexReferences())
        registry.AddTable(
            {.name = reference.table,
             .storedRules = {
                 {indexes, [&reference](Database& database) { return NamesOfNothing(database, reference); },
                  "There is no search index of this code."}}});
}

} // namespace sysadmin::server
