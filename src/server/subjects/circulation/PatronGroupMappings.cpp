#include "server/Context.h"
#include "server/store/Database.h"
#include "server/subjects/Registrations.h"
#include "server/subjects/circulation/KeyedRows.h"
#include "wire/SearchDatabases.h"

#include <QSet>

// Which patron group of another library a patron group counts as there. The other library's groups are those
// of its cache; in the local database they are those of this library's other clusters.

namespace sysadmin::server {

namespace {

const QString GroupMappings = "patron_group_mappings";
const QString NotMapped = "-1";

/// A search database by its id.
struct SearchDatabase {
    qint64 id = 0;
    bool isLocal = false;

    /// The column of a mapping that refers to the group there.
    QString GroupColumn() const { return isLocal ? "other_group_id" : "remote_group_id"; }
};

std::optional<SearchDatabase> FindSearchDatabase(Context& context, const QString& id) {
    const auto found = KeyRecord(context, "search_databases", id);
    if (!found)
        return std::nullopt;
    const QVariant code =
        context.database.FirstValue("SELECT code FROM search_databases WHERE id=?", {*found});
    return SearchDatabase{*found, code.toString() == wire::databases::LocalCode};
}

/// "LstDBMap": the local database and those that take part in universal borrowing.
Answer ListDatabases(Context& context, const wire::Fields&) {
    Answer answer;
    context.database.Each("SELECT id, code, name, type, universal_borrowing FROM search_databases WHERE "
                          "universal_borrowing='Y' OR code=? ORDER BY id",
                          {wire::databases::LocalCode}, [&](const ResultRow& row) {
                              const char* tags[]{"DBI", "C", "Nm", "Pr", "DBU"};
                              for (int i = 0; i < 5; ++i)
                                  Put(answer.fields, tags[i], row.value(i).toString());
                          });
    return answer;
}

/// "LstRPatGp": what the cluster's groups are mapped to in the database, then the groups that it has.
Answer ListRemoteGroups(Context& context, const wire::Fields& request) {
    const auto cluster = KeyRecord(context, "clusters", wire::FirstValue(request, "CID"));
    const auto database = FindSearchDatabase(context, wire::FirstValue(request, "SI"));
    if (!cluster || !database)
        return {status::NotFound};
    Answer answer;
    context.database.Each(
        "SELECT m.patron_group_id, m." + database->GroupColumn() + ", m.is_manual, " +
            (database->isLocal ? "g.cluster_id" : "c.remote_id") +
            " FROM patron_group_mappings m JOIN patron_groups l ON l.id=m.patron_group_id LEFT JOIN " +
            (database->isLocal
                 ? "patron_groups g ON g.id=m.other_group_id"
                 : "remote_patron_groups g ON g.id=m.remote_group_id LEFT JOIN remote_clusters c "
                   "ON c.id=g.cluster_id") +
            " WHERE m.database_id=? AND l.cluster_id=? ORDER BY m.patron_group_id",
        {database->id, *cluster}, [&](const ResultRow& row) {
            const QString target = row.value(1).toString();
            Put(answer.fields, "UBLPGI", row.value(0).toString());
            Put(answer.fields, "UBMGI", target.isEmpty() ? NotMapped : target);
            Put(answer.fields, "UbMm", row.value(2).toString());
            Put(answer.fields, "CID", row.value(3).toString());
        });
    const auto putGroup = [&](const ResultRow& row) {
        const char* tags[]{"UBRPGI", "UBRPGN", "CID", "CNM"};
        for (int i = 0; i < 4; ++i)
            Put(answer.fields, tags[i], row.value(i).toString());
    };
    if (database->isLocal)
        context.database.Each("SELECT g.id, g.name, c.id, c.name FROM patron_groups g JOIN clusters c ON "
                              "c.id=g.cluster_id WHERE c.id<>? ORDER BY g.id",
                              {*cluster}, putGroup);
    else
        context.database.Each("SELECT g.id, g.name, c.remote_id, c.name FROM remote_patron_groups g JOIN "
                              "remote_clusters c ON c.id=g.cluster_id WHERE g.database_id=? ORDER BY g.id",
                              {database->id}, putGroup);
    return answer;
}

/// Whether a group may be mapped to: it is one of the database, in the cluster that the request names.
bool IsThere(Context& context, const SearchDatabase& database, qint64 cluster, const QString& group,
             const QString& remoteCluster) {
    bool isNumber = false;
    const qint64 id = group.toLongLong(&isNumber);
    if (!isNumber)
        return false;
    const QVariant found =
        database.isLocal
            ? context.database.FirstValue("SELECT cluster_id FROM patron_groups WHERE id=? AND cluster_id<>?",
                                          {id, cluster})
            : context.database.FirstValue("SELECT c.remote_id FROM remote_patron_groups g JOIN "
                                          "remote_clusters c ON c.id=g.cluster_id "
                                          "WHERE g.id=? AND g.database_id=?",
                                          {id, database.id});
    return found.isValid() && (remoteCluster.isEmpty() || found.toString() == remoteCluster);
}

/// "UpdMap": per group that it names what it is mapped to from now on.
Answer UpdateMappings(Context& context, const wire::Fields& request) {
    const auto cluster = KeyRecord(context, "clusters", wire::FirstValue(request, "CID"));
    const auto database = FindSearchDatabase(context, wire::FirstValue(request, "DBI"));
    if (!cluster || !database)
        return {status::NotFound};
    const QString remoteCluster = wire::FirstValue(request, "RCID");
    QList<wire::Fields> rows;
    for (const wire::Field& field : request) {
        if (field.tag == u"UBLPGI")
            rows.append(wire::Fields());
        if (!rows.isEmpty())
            rows.last().append(field);
    }
    QSet<qint64> named;
    for (const wire::Fields& row : rows) {
        const auto group = KeyRecord(context, "patron_groups", wire::FirstValue(row, "UBLPGI"),
                                     "m.cluster_id=?", {*cluster});
        if (!group)
            return {status::NotFound};
        const QString target = wire::FirstValue(row, "UBMGI");
        const QString manual = wire::FirstValue(row, "UbMm");
        const bool isMapped = target != NotMapped;
        if (named.contains(*group) || (manual != u"Y" && manual != u"N") || (isMapped && manual == u"Y"))
            return {status::ColumnError};
        if (isMapped && !IsThere(context, *database, *cluster, target, remoteCluster))
            return {status::NotFound};
        named.insert(*group);
        const QVariant stored = context.database.FirstValue(
            "SELECT id FROM patron_group_mappings WHERE database_id=? AND patron_group_id=?",
            {database->id, *group});
        if (!isMapped && manual == u"N") {
            if (stored.isValid())
                context.records.Remove(GroupMappings, stored.toLongLong());
            continue;
        }
        Row mapping{{"database_id", database->id},
                    {"patron_group_id", *group},
                    {"is_manual", manual},
                    {database->GroupColumn(), isMapped ? QVariant(target.toLongLong()) : QVariant()}};
        if (stored.isValid())
            context.records.Update(GroupMappings, stored.toLongLong(), mapping);
        else
            context.records.Insert(GroupMappings, mapping);
    }
    return {};
}

} // namespace

void RegisterPatronGroupMappings(Registry& registry) {
    const auto refersTo = [](const QString& column, const QString& table, OnRemoval onRemoval) {
        return Column{.name = column, .type = ColumnType::Reference, .target = table, .onRemoval = onRemoval};
    };
    registry.AddTable({.name = GroupMappings,
                       .columns = {refersTo("database_id", "search_databases", OnRemoval::RemoveToo),
                                   refersTo("patron_group_id", "patron_groups", OnRemoval::Refuse),
                                   // What the other library no longer has takes its mappings along.
                                   refersTo("remote_group_id", "remote_patron_groups", OnRemoval::RemoveToo),
                                   refersTo("other_group_id", "patron_groups", OnRemoval::Refuse),
                                   {.name = "is_manual", .type = ColumnType::Flag}},
                       .uniqueSets = {{"database_id", "patron_group_id"}},
                       .owner = "patron_group_id"});
    registry.AddRead("LstDBMap", Area::Circulation, ListDatabases);
    registry.AddRead("LstRPatGp", Area::Circulation, ListRemoteGroups);
    registry.AddChange("UpdMap", Area::Circulation, UpdateMappings);
    registry.About("LstRPatGp", {"patron_groups"}, {}, {}, "mappings");
    registry.AboutSeveral("UpdMap", "patron_groups", "UBLPGI", "mappings");
}

} // namespace sysadmin::server
