#include "server/subjects/StoredRules.h"

#include "server/store/Database.h"

namespace sysadmin::server {

StoredRule FindsNone(const QString& sql, const QString& otherwise, const QStringList& others) {
    const auto broken = [sql](Database& database) {
        QList<qint64> ids;
        database.Each(sql, {}, [&](const ResultRow& row) { ids << row.value(0).toLongLong(); });
        return ids;
    };
    return {.others = others, .broken = broken, .otherwise = otherwise};
}

StoredRule MustStay(const QString& sql, const QString& otherwise) {
    const auto staying = [sql](Database& database) {
        QList<qint64> ids;
        database.Each(sql, {}, [&](const ResultRow& row) { ids << -row.value(0).toLongLong(); });
        return ids;
    };
    return {.others = {}, .broken = staying, .otherwise = otherwise};
}

StoredRule PlacesInOrder(const QString& table, const QString& column) {
    return FindsNone("SELECT t.id FROM " + table + " t WHERE t." + column + " IS NULL OR t." + column +
                         "<1 OR t." + column + ">(SELECT COUNT(*) FROM " + table +
                         ") OR EXISTS (SELECT 1 FROM " + table + " o WHERE o.id<t.id AND o." + column +
                         "=t." + column + ")",
                     "The numbers under " + column + " are not 1, 2, 3 and so on.");
}

} // namespace sysadmin::server
