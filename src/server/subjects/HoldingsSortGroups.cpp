#include "server/store/Database.h"
#include "server/subjects/Ranks.h"
#include "server/subjects/Registrations.h"
#include "server/subjects/StoredRules.h"

#include <algorithm>

namespace sysadmin::server {

namespace {

/// In which order the public catalogue shows a title's holdings: the locations of a group, first to last.
Children SortedLocations() {
    return {.table = "sort_group_locations",
            .owner = "sort_group_id",
            .fields = {SubjectField::Reference("SGSI", "location_id", "locations", OnRemoval::RemoveToo)
                           .Required()},
            .ordered = true,
            .check = [](const QList<Row>& rows) {
                QSet<qint64> locations;
                for (const Row& row : rows)
                    locations.insert(row["location_id"].toLongLong());
                return locations.size() == rows.size();
            }};
}

/// Whose catalogue follows a group.
Membership UsingGroups() {
    return {.table = "sort_group_access_groups",
            .ownerColumn = "sort_group_id",
            .memberTable = "access_groups",
            .memberColumn = "access_group_id",
            .selectedId = "SAGID",
            .whole = true};
}

void PutRows(Context& context, const QString& sql, qint64 owner, const QStringList& tags,
             ReplyFields& reply) {
    context.database.Each(sql, {owner}, [&](const ResultRow& row) {
        for (qsizetype i = 0; i < tags.size(); ++i)
            Put(reply, tags[i], row.value(int(i)).toString());
    });
}

/// The four lists of a group; owner 0 has nothing selected.
void PutLists(Context& context, qint64 owner, ReplyFields& reply) {
    PutRows(context,
            "SELECT l.id, l.name FROM locations l WHERE NOT EXISTS (SELECT 1 FROM sort_group_locations s "
            "WHERE s.location_id=l.id AND s.sort_group_id=?) ORDER BY l.id",
            owner, {"SGAI", "SGAN"}, reply);
    PutRows(context,
            "SELECT l.id, l.name FROM sort_group_locations s JOIN locations l ON l.id=s.location_id "
            "WHERE s.sort_group_id=? ORDER BY s.id",
            owner, {"SGSI", "SGSN"}, reply);
    const QString used = "EXISTS (SELECT 1 FROM sort_group_access_groups s WHERE s.access_group_id=g.id AND "
                         "s.sort_group_id=?) ORDER BY g.id";
    const QString groups = "SELECT g.id, g.name, g.type FROM access_groups g WHERE ";
    PutRows(context, groups + "NOT " + used, owner, {"AAGID", "AGN", "STID"}, reply);
    PutRows(context, groups + used, owner, {"SAGID", "SGN", "STID"}, reply);
}

/// Groups are tried in this order.
Ranks GroupRanks() {
    return {.table = "sort_groups", .column = "place", .idTag = "SGID", .rankTag = "SGSEQ"};
}

/// A new group is the last one. The mark of the default group is only moved: without one, whoever is in no
/// group would see holdings in any order.
qint16 CheckGroup(Context& context, const wire::Fields&, const Row& before, Row& after) {
    if (before.isEmpty())
        after["place"] = NextRank(context, GroupRanks());
    else if (before["is_default"] == "Y" && after["is_default"] != "Y")
        return status::InUse;
    return status::Ok;
}

/// Positions count from 1 in the order in which the locations are sent.
bool ArePositionsInOrder(const wire::Fields& request) {
    int position = 0;
    return std::all_of(request.begin(), request.end(), [&](const wire::Field& field) {
        return field.tag != "SGSEQ" || field.value == QString::number(++position);
    });
}

qint16 StoreSortLists(Context& context, const wire::Fields& request, qint64 id, bool) {
    const Row record = *context.records.Find("sort_groups", id);
    if (record["is_default"] == "Y")
        for (const QVariant& other :
             context.database.FirstColumn("SELECT id FROM sort_groups WHERE is_default='Y' AND id<>?", {id}))
            context.records.Update("sort_groups", other.toLongLong(), {{"is_default", "N"}});
    const bool carriesLists = std::any_of(request.begin(), request.end(),
                                          [](const wire::Field& field) { return field.tag == "Selected"; });
    if (!carriesLists)
        return status::Ok;
    if (!ArePositionsInOrder(request))
        return status::ColumnError;
    if (const qint16 refused = ApplyChildren(context, {SortedLocations()}, record, id, request))
        return refused;
    return ApplyMembers(context, UsingGroups(), id, request);
}

qint16 RemoveGroup(Context& context, qint64, const Row& record) {
    if (record["is_default"] == "Y")
        return status::InUse;
    CloseGap(context, GroupRanks(), record["place"]);
    return status::Ok;
}

} // namespace

void RegisterHoldingsSortGroups(Registry& registry) {
    registry.AddSubject({
        .table = "sort_groups",
        .area = Area::System,
        .requests =
            {.list = "LstSort", .get = "GetSort", .add = "AddSort", .update = "UpdSort", .remove = "DelSort"},
        .fields =
            {
                SubjectField::Flag("SGDEF", "is_default").InList(),
                SubjectField::Text("SGCD", "code", TextLength)
                    .Required()
                    .Unique(status::DuplicateCode)
                    .InList(),
                SubjectField::Text("SGNM", "name", NameLength)
                    .Required()
                    .Unique(status::DuplicateName)
                    .InList(),
            },
        .key = "SGID",
        .columns = {{.name = "place", .type = ColumnType::Whole}},
        .addReply = {"SGID"},
        .order = {"place"},
        .checkPut = CheckGroup,
        .afterPut = StoreSortLists,
        .checkRemove = RemoveGroup,
        .addToGet = [](Context& context, qint64 id, ReplyFields& reply) { PutLists(context, id, reply); },
    });
    for (const Table& table : SortedLocations().StoredAs("sort_groups"))
        registry.AddTable(table);
    registry.AddTable(*UsingGroups().StoredAs("sort_groups"));
    registry.AddTable({.name = "sort_groups",
                       .storedRules = {PlacesInOrder("sort_groups", "place")},
                       .onlyOne = {"is_default"}});
    registry.AddRead("AvlSort", Area::System, [](Context& context, const wire::Fields&) {
        Answer answer;
        PutLists(context, 0, answer.fields);
        return answer;
    });
    registry.AddChange("SeqSort", Area::System, [](Context& context, const wire::Fields& request) {
        return StoreOrder(context, GroupRanks(), request);
    });
    registry.AboutSeveral("SeqSort", "sort_groups", "SGID");
}

} // namespace sysadmin::server
