#include "server/store/Database.h"
#include "server/subjects/MatchRows.h"
#include "server/subjects/Registrations.h"
#include "wire/MatchKeys.h"

namespace sysadmin::server {

namespace {

const QString Keys = "simultaneous_search_keys";

/// The databases whose records stay, the best one first.
Children BestDatabases() {
    return {.table = "simultaneous_search_databases",
            .owner = "simultaneous_search_id",
            .fields = {SubjectField::Reference("SDB", "database_id", "search_databases", OnRemoval::RemoveToo)
                           .Required()
                           .WriteOnly()},
            .ordered = true,
            .check = [](const QList<Row>& rows) {
                QSet<qint64> databases;
                for (const Row& row : rows)
                    databases.insert(row["database_id"].toLongLong());
                return databases.size() == rows.size();
            }};
}

/// Both lists; those that have no rank come in the order that their weights give them.
void PutDatabases(Context& context, qint64 id, ReplyFields& reply) {
    const auto put = [&](const QString& rest, const QString& idTag, const QString& nameTag) {
        context.database.Each("SELECT d.id, d.name FROM search_databases d " + rest, {id},
                              [&](const ResultRow& row) {
                                  Put(reply, idTag, row.value(0).toString());
                                  Put(reply, nameTag, row.value(1).toString());
                              });
    };
    put("WHERE NOT EXISTS (SELECT 1 FROM simultaneous_search_databases s WHERE s.database_id=d.id AND "
        "s.simultaneous_search_id=?) ORDER BY COALESCE(d.weight, 0) DESC, d.name",
        "ADB", "ADN");
    put("JOIN simultaneous_search_databases s ON s.database_id=d.id WHERE s.simultaneous_search_id=? ORDER "
        "BY s.id",
        "SDB", "SDN");
}

/// Without a key nothing could be found to be the same.
qint16 CheckKeys(Context& context, const wire::Fields&, qint64 id, bool) {
    const bool isOn = context.records.Find("simultaneous_search", id)->value("removes_duplicates") == "Y";
    return isOn && context.records.Count(Keys, "simultaneous_search_id", id) == 0 ? status::ColumnError
                                                                                  : status::Ok;
}

} // namespace

void RegisterSimultaneousSearch(Registry& registry) {
    registry.AddSubject({
        .table = "simultaneous_search",
        .requests = {.get = "GetSimSrch", .update = "UpdSimSrch"},
        .fields = {SubjectField::Flag("DD", "removes_duplicates"),
                   SubjectField::Whole("MC", "most_compared", 1, wire::matching::MostCompared)
                       .Required()
                       .Default(QString::number(wire::matching::UsuallyCompared))},
        .children = {MatchRows(Keys, "simultaneous_search_id", {"XF", "XS", "XN"}), BestDatabases()},
        .single = true,
        .afterPut = CheckKeys,
        .addToGet = PutDatabases,
    });
}

} // namespace sysadmin::server
