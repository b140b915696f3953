#include "server/SubjectRequests.h"
#include "server/store/Database.h"
#include "server/subjects/Registrations.h"
#include "server/subjects/circulation/CirculationPolicies.h"

// The locations of circulation policy groups: their settings as desks and pickup locations, and the alerts
// that their staff see.

namespace sysadmin::server {

namespace {

const QString GroupLocations = "circulation_policy_locations";

bool IsDueDateSlip(const QString& value) {
    return value.size() == 1 && QString("AYN").contains(value);
}

bool IsDisplay(const QString& value) {
    return value == u"1" || value == u"2";
}

/// An alert of a location. A row begins with the location.
const QList<SubjectField>& AlertFields() {
    static const QList<SubjectField> fields{
        SubjectField::Reference("ALRTID", "alert_id", "patron_alerts", OnRemoval::RemoveToo).Required(),
        SubjectField::Text("ALRTDISP", "display", 1).Checked(IsDisplay).Default("1"),
        SubjectField::Flag("ALRTUSENAME", "shows_name"),
        SubjectField::Flag("ALRTUSEBARCODE", "shows_barcode"),
        SubjectField::Flag("ALRTUSEPHONE", "shows_phone"),
    };
    return fields;
}

/// Which alerts a location shows by itself; kept with the location.
const QList<SubjectField>& AlertFlags() {
    static const QList<SubjectField> fields{SubjectField::Flag("ALRTAVL", "alerts_available_items"),
                                            SubjectField::Flag("ALRTFF", "alerts_fines")};
    return fields;
}

/// The policy group's row of a location, in the cluster of the request if it names one.
std::optional<qint64> PlaceOf(Context& context, const QString& location, const QString& cluster) {
    bool isNumber = false;
    const qint64 id = location.toLongLong(&isNumber);
    const auto row = context.database.FirstRow("SELECT p.id, g.cluster_id FROM " + GroupLocations +
                                                   " p JOIN circulation_policy_groups g ON g.id=p.group_id "
                                                   "WHERE p.location_id=?",
                                               {isNumber ? id : 0});
    if (!row || (!cluster.isEmpty() && (*row)[1].toString() != cluster))
        return std::nullopt;
    return (*row)[0].toLongLong();
}

/// Takes the mark of the public catalogue's desk from the cluster's other locations.
void MoveMark(Context& context, const NamedGroup& group, qint64 marked) {
    const auto others = context.database.FirstColumn(
        "SELECT p.id FROM " + GroupLocations +
            " p JOIN circulation_policy_groups g ON g.id=p.group_id WHERE g.cluster_id=? AND "
            "p.is_opac_desk='Y' AND p.id<>?",
        {group.cluster, marked});
    for (const QVariant& other : others)
        context.records.Update(GroupLocations, other.toLongLong(), {{"is_opac_desk", "N"}});
    context.records.Touch("clusters", group.cluster);
}

/// Takes one location into the group or changes its settings.
qint16 PutLocation(Context& context, const NamedGroup& group, const KeyedRow& sent) {
    const auto location = KeyRecord(context, "locations", sent.key);
    if (!location)
        return status::NotFound;
    const auto place = context.records.IdWhere(GroupLocations, "location_id", *location);
    const Row before = place ? *context.records.Find(GroupLocations, *place) : Row();
    if (place && before["group_id"].toLongLong() != group.id)
        return status::LocationInOtherGroup;
    Row after = before;
    if (const qint16 refused = ReadFields(context, PolicyLocations().fields, sent.fields, !place, after))
        return refused;
    const bool isMarked = after["is_opac_desk"].toString() == u"Y";
    if (isMarked && after["is_desk"].toString() != u"Y")
        return status::ColumnError;
    after.insert("group_id", group.id);
    after.insert("location_id", *location);
    const qint64 id = place ? *place : context.records.Insert(GroupLocations, after);
    if (place)
        context.records.Update(GroupLocations, id, after);
    if (isMarked != (before["is_opac_desk"].toString() == u"Y"))
        MoveMark(context, group, isMarked ? id : 0);
    return status::Ok;
}

/// "UpdCrcGpLoc": takes locations into a group, changes their settings, gives them away.
Answer UpdateGroupLocations(Context& context, const wire::Fields& request) {
    const auto group = FindPolicyGroup(context, request);
    if (!group)
        return {status::NotFound};
    const auto sent = ReadKeyedRows(PolicyLocations(), request);
    if (!sent)
        return {status::ColumnError};
    int marked = 0;
    for (const KeyedRow& row : *sent) {
        if (row.state != rowstate::Added && row.state != rowstate::Changed)
            continue;
        marked += wire::FirstValue(row.fields, "OD") == u"Y" ? 1 : 0;
        if (marked > 1)
            return {status::ColumnError};
        if (const qint16 refused = PutLocation(context, *group, row))
            return {refused};
    }
    // Last, since the mark may have gone to another location.
    for (const KeyedRow& row : *sent) {
        if (row.state != rowstate::Removed)
            continue;
        const auto place = context.records.IdWhere(GroupLocations, "location_id", row.key.toLongLong());
        const Row stored = place ? *context.records.Find(GroupLocations, *place) : Row();
        if (!place || stored["group_id"].toLongLong() != group->id)
            continue;
        if (stored["is_opac_desk"].toString() == u"Y")
            return {status::IsOpacDesk};
        context.records.Remove(GroupLocations, *place);
    }
    return {};
}

/// Everything that a location shows: what a block of "UpdCrcLocAlrts" says.
qint16 ReplaceAlerts(Context& context, qint64 place, const wire::Fields& block) {
    Row flags;
    if (const qint16 refused = ReadFields(context, AlertFlags(), block, true, flags))
        return refused;
    context.records.Update(GroupLocations, place, flags);
    QList<Row> wanted;
    QList<wire::Fields> sent;
    for (const wire::Field& field : block) {
        if (field.tag == u"ALRTLOCID")
            sent.append(wire::Fields());
        if (!sent.isEmpty())
            sent.last().append(field);
    }
    const QString location = wire::FirstValue(block, "CLEANLOCID");
    QSet<qint64> alerts;
    for (const wire::Fields& one : sent) {
        Row row;
        if (const qint16 refused = ReadFields(context, AlertFields(), one, true, row))
            return refused;
        const qint64 alert = row["alert_id"].toLongLong();
        if (wire::FirstValue(one, "ALRTLOCID") != location || alerts.contains(alert))
            return status::ColumnError;
        alerts.insert(alert);
        row.insert("place_id", place);
        wanted << row;
    }
    QHash<qint64, qint64> stored;
    context.database.Each(
        "SELECT alert_id, id FROM circulation_location_alerts WHERE place_id=?", {place},
        [&](const ResultRow& row) { stored.insert(row.value(0).toLongLong(), row.value(1).toLongLong()); });
    for (const Row& row : wanted) {
        const qint64 id = stored.take(row["alert_id"].toLongLong());
        if (id != 0)
            context.records.Update("circulation_location_alerts", id, row);
        else
            context.records.Insert("circulation_location_alerts", row);
    }
    for (const qint64 id : stored)
        context.records.Remove("circulation_location_alerts", id);
    return status::Ok;
}

/// "UpdCrcLocAlrts": for each "CLEANLOCID" the alerts that follow are all that the location has.
Answer UpdateAlerts(Context& context, const wire::Fields& request) {
    QList<wire::Fields> blocks;
    for (const wire::Field& field : request) {
        if (field.tag == u"CLEANLOCID")
            blocks.append(wire::Fields());
        if (!blocks.isEmpty())
            blocks.last().append(field);
        else if (field.tag == u"ALRTLOCID")
            return {status::ColumnError};
    }
    const QString cluster = wire::FirstValue(request, "CID");
    for (const wire::Fields& block : blocks) {
        const auto place = PlaceOf(context, wire::FirstValue(block, "CLEANLOCID"), cluster);
        if (!place)
            return {status::NotFound};
        if (const qint16 refused = ReplaceAlerts(context, *place, block))
            return {refused};
    }
    return {};
}

/// "GetCrcLocAlrts": what a location shows; nothing yet for one that is in no policy group.
Answer ReadAlerts(Context& context, const wire::Fields& request) {
    if (!KeyRecord(context, "locations", wire::FirstValue(request, "ALRTLOCID")))
        return {status::NotFound};
    const auto place =
        PlaceOf(context, wire::FirstValue(request, "ALRTLOCID"), wire::FirstValue(request, "CID"));
    const Row row = place ? *context.records.Find(GroupLocations, *place) : Row();
    Answer answer;
    for (const SubjectField& flag : AlertFlags())
        Put(answer.fields, flag.tag, place ? row[flag.column].toString() : flag.fallback);
    QStringList columns;
    for (const SubjectField& field : AlertFields())
        columns << field.column;
    context.database.Each("SELECT " + columns.join(", ") +
                              " FROM circulation_location_alerts WHERE place_id=? ORDER BY id",
                          {place.value_or(0)}, [&](const ResultRow& alert) {
                              for (qsizetype i = 0; i < columns.size(); ++i)
                                  Put(answer.fields, AlertFields()[i].tag, alert.value(int(i)).toString());
                          });
    return answer;
}

} // namespace

const KeyedRows& PolicyLocations() {
    using Field = SubjectField;
    static const KeyedRows rows{
        .table = GroupLocations,
        .owner = "group_id",
        .state = "LS",
        .keyTag = "SI",
        .keyColumn = "location_id",
        .keyTable = "locations",
        .fields =
            {
                Field::Flag("CL", "is_desk"),
                Field::Flag("OD", "is_opac_desk"),
                Field::Flag("CF", "collects_fines"),
                Field::Flag("CD", "courtesy_discharge"),
                Field::Text("ST", "shelving_unit", 1).Checked(IsShortUnit).Default("D"),
                Count("S", "shelving_interval"),
                Count("IT", "in_transit_days"),
                Field::Flag("OS", "suppresses_items_on_the_fly"),
                Field::Reference("DI", "default_item_type_id", "item_types"),
                Field::Reference("DL", "default_location_id", "locations", OnRemoval::Clear),
                Field::Text("DP", "due_date_slip", 1).Checked(IsDueDateSlip).Default("N"),
                Field::Flag("HP", "prints_hold_slip"),
                Field::Flag("RP", "prints_routing_slip"),
                Field::Flag("DRP", "prints_discharge_receipt"),
                Field::Flag("PP", "prints_payment_receipt"),
                Field::Reference("SP", "print_location_id", "print_locations"),
                Field::Flag("PL", "is_pickup"),
                Field::Flag("AS", "automated_storage"),
                Count("H", "hold_days"),
                Count("R", "recall_days"),
            },
        .onKeyRemoval = OnRemoval::Refuse,
        .exclusive = true,
    };
    return rows;
}

void PutPolicyLocations(Context& context, std::optional<qint64> group, ReplyFields& reply) {
    context.database.Each("SELECT l.id, l.name FROM locations l WHERE NOT EXISTS (SELECT 1 FROM " +
                              GroupLocations + " p WHERE p.location_id=l.id) ORDER BY l.id",
                          {}, [&](const ResultRow& row) {
                              Put(reply, "AI", row.value(0).toString());
                              Put(reply, "AN", row.value(1).toString());
                          });
    if (group)
        PutKeyedRows(context, PolicyLocations(), *group, {{"SI", "m.id"}, {"SN", "m.name"}},
                     "r.id IS NOT NULL", {}, reply);
}

void RegisterCirculationLocations(Registry& registry) {
    Table places = PolicyLocations().StoredAs("circulation_policy_groups");
    for (const SubjectField& flag : AlertFlags())
        places.columns << flag.StoredAs();
    registry.AddTable(places);
    Table alerts{.name = "circulation_location_alerts",
                 .columns = {{.name = "place_id",
                              .type = ColumnType::Reference,
                              .target = GroupLocations,
                              .onRemoval = OnRemoval::RemoveToo}},
                 .uniqueSets = {{"place_id", "alert_id"}},
                 .owner = "place_id"};
    for (const SubjectField& field : AlertFields())
        alerts.columns << field.StoredAs();
    registry.AddTable(alerts);
    registry.AddTable({.name = "patron_alerts",
                       .columns = {{.name = "type"}, {.name = "name"}},
                       .uniqueTexts = {{.column = "name"}},
                       .ordered = true});
    registry.AddChange("UpdCrcGpLoc", Area::Circulation, UpdateGroupLocations);
    registry.About("UpdCrcGpLoc", {"circulation_policy_groups"}, {"ID"});
    registry.AddChange("UpdCrcLocAlrts", Area::Circulation, UpdateAlerts);
    registry.AddRead("GetCrcLocAlrts", Area::Circulation, ReadAlerts);
    // Alerts are a part of the group in which their location is, read and written apart from its other
    // settings.
    const QString groupOf = "SELECT group_id FROM " + GroupLocations + " WHERE location_id=?";
    registry.AboutOwner("UpdCrcLocAlrts", "circulation_policy_groups", "CLEANLOCID", groupOf, "alerts");
    registry.AboutOwner("GetCrcLocAlrts", "circulation_policy_groups", "ALRTLOCID", groupOf, "alerts");
    registry.AddList("GetCrcAlrt", Area::Circulation,
                     {{"patron_alerts", {{"ALRTTP", "type"}, {"ALRTID", "id"}, {"ALRTNM", "name"}}}});
}

} // namespace sysadmin::server
