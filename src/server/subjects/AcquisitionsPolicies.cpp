#include "server/SubjectRequests.h"
#include "server/store/Changes.h"
#include "server/store/Database.h"
#include "server/subjects/Registrations.h"
#include "server/subjects/StoredRules.h"
#include "server/subjects/circulation/KeyedRows.h"

#include <QSet>

// Acquisitions policy groups: their locations with what each of them does, and what holds for each vendor
// type.

namespace sysadmin::server {

namespace {

constexpr qint64 MostDiscount = 100;
constexpr int RecordsInReply = 250; ///< of the lists in one reply to "GetAcqGp"
const QString PolicyGroupsTable = "acquisitions_policy_groups";
const QString PolicyPlacesTable = "acquisitions_policy_locations";
/// SQL over a location `m`.
const QString HasLedger =
    "CASE WHEN EXISTS (SELECT 1 FROM ledger_locations k WHERE k.location_id=m.id) THEN 'Y' ELSE 'N' END";

const KeyedRows& PolicyPlaces() {
    using Field = SubjectField;
    static const KeyedRows rows{
        .table = PolicyPlacesTable,
        .owner = "group_id",
        .state = "3d",
        .keyTag = "3",
        .keyColumn = "location_id",
        .keyTable = "locations",
        .fields =
            {
                Field::Flag("3e", "orders_claims_pays"),
                Field::Flag("3f", "receives"),
                Field::Flag("3g", "is_destination"),
                Field::Flag("3h", "displays_temporary_records"),
                Field::Reference("3c", "print_location_id", "print_locations"),
                Field::Reference("3i", "order_item_type_id", "item_types"),
                Field::Reference("3j", "receive_item_type_id", "item_types"),
            },
        .onKeyRemoval = OnRemoval::Refuse,
        .exclusive = true,
        .marker = "3",
    };
    return rows;
}

const KeyedRows& VendorPolicies() {
    using Field = SubjectField;
    static const KeyedRows rows{
        .table = "acquisitions_vendor_policies",
        .owner = "group_id",
        .state = "5a",
        .keyTag = "5",
        .keyColumn = "vendor_type_id",
        .keyTable = "vendor_types",
        .fields =
            {
                Field::Whole("5b", "discount_percent", 0, MostDiscount),
                Field::Whole("5g", "claim_count", 0, MostCount),
                Field::Whole("5f", "claim_interval_days", 0, MostCount),
                Field::Whole("5h", "cancel_interval_days", 0, MostCount),
                Field::Text("5i", "ship_via", TextLength),
                Field::Reference("5c", "order_type_id", "po_types"),
            },
        .marker = "5",
    };
    return rows;
}

void PutFree(Context& context, ReplyFields& reply) {
    context.database.Each("SELECT l.id, l.name FROM locations l WHERE NOT EXISTS (SELECT 1 FROM " +
                              PolicyPlacesTable + " p WHERE p.location_id=l.id) ORDER BY l.id",
                          {}, [&](const ResultRow& row) {
                              Put(reply, "1", row.value(0).toString());
                              Put(reply, "2", row.value(1).toString());
                              for (const SubjectField& field : PolicyPlaces().fields)
                                  Put(reply, field.tag, field.fallback);
                          });
}

/// What can be chosen, and the policies for the vendor types; of a group that is not stored yet the blank
/// ones.
void PutChoices(Context& context, qint64 group, ReplyFields& reply) {
    for (const auto& [idTag, nameTag] : {std::pair("3a", "3b"), std::pair("3k", "3l")})
        PutList(context, {"item_types", {{idTag, "id"}, {nameTag, "name"}}}, reply);
    PutKeyedRows(context, VendorPolicies(), group,
                 {{"5", "m.id"},
                  {"6", "m.name"},
                  {"5e", "COALESCE((SELECT t.name FROM po_types t WHERE t.id=r.order_type_id), '')"}},
                 {}, {}, reply);
}

/// "ASAvail": what a new group may have.
Answer ListPolicyChoices(Context& context, const wire::Fields&) {
    Answer answer;
    PutFree(context, answer.fields);
    PutChoices(context, 0, answer.fields);
    return answer;
}

std::optional<qint64> FindGroup(Context& context, const wire::Fields& request) {
    return KeyRecord(context, PolicyGroupsTable, wire::FirstValue(request, "ID"));
}

/// Keeps so many records of the lists from this one on. Answers whether there are more behind them.
bool CutBatch(ReplyFields& reply, qint64 first) {
    static const QSet<QString> markers{"1", "3", "3a", "3k", "5"};
    qint64 record = -1;
    const wire::Fields all = reply.Decoded();
    qsizetype begin = first > 0 ? all.size() : 0; // what stands before the lists belongs to the first
    qsizetype end = all.size();
    for (qsizetype i = 0; i < all.size(); ++i) {
        if (!markers.contains(all[i].tag))
            continue;
        ++record;
        if (record == first && first > 0)
            begin = i;
        if (record == first + RecordsInReply) {
            end = i;
            break;
        }
    }
    reply.Clear();
    for (const wire::Field& field : all.sliced(begin, end - begin))
        Put(reply, field.tag, field.value);
    return end < all.size();
}

/// "GetAcqGp": goes out in batches. A group that others change between two of them is refused: the operator
/// would see parts of two states.
Answer ReadGroup(Context& context, const wire::Fields& request) {
    const auto id = FindGroup(context, request);
    if (!id)
        return {status::NotFound};
    const auto changed = Changes(context.database).ByOthers(PolicyGroupsTable, *id, 0);
    const QString group = QString("GetAcqGp/%1/").arg(*id);
    const QString cursor = group + QString::number(changed ? changed->number : 0);
    if (wire::FirstValue(request, "55") != u"Y" || !context.cursor.request.startsWith(group))
        context.cursor = {cursor, 0};
    if (context.cursor.request != cursor)
        return {status::RecordChanged};
    Answer answer;
    const Row stored = *context.records.Find(PolicyGroupsTable, *id);
    Put(answer.fields, "Nm", stored["name"].toString());
    Put(answer.fields, "SDI", stored["duplicate_profile_id"].toString());
    PutFree(context, answer.fields);
    PutKeyedRows(context, PolicyPlaces(), *id, {{"3", "m.id"}, {"4", "m.name"}, {"IU", HasLedger}},
                 "r.id IS NOT NULL", {}, answer.fields);
    PutChoices(context, *id, answer.fields);
    const bool more = CutBatch(answer.fields, context.cursor.after);
    context.cursor.after += RecordsInReply;
    answer.status = more ? status::Continues : status::Ok;
    return answer;
}

/// Takes one location into the group or changes what it does.
qint16 PutLocation(Context& context, qint64 group, const KeyedRow& sent) {
    const auto location = KeyRecord(context, "locations", sent.key);
    if (!location)
        return status::NotFound;
    const auto place = context.records.IdWhere(PolicyPlacesTable, "location_id", *location);
    Row row = place ? *context.records.Find(PolicyPlacesTable, *place) : Row();
    if (place && row["group_id"].toLongLong() != group)
        return status::LocationInOtherGroup;
    if (const qint16 refused = ReadFields(context, PolicyPlaces().fields, sent.fields, !place, row))
        return refused;
    row.insert("group_id", group);
    row.insert("location_id", *location);
    if (place)
        context.records.Update(PolicyPlacesTable, *place, row);
    else
        context.records.Insert(PolicyPlacesTable, row);
    return status::Ok;
}

/// A location whose money stands in a ledger stays in its group.
qint16 RemoveLocation(Context& context, qint64 group, const QString& key) {
    const auto place = context.records.IdWhere(PolicyPlacesTable, "location_id", key.toLongLong());
    if (!place || context.records.Find(PolicyPlacesTable, *place)->value("group_id").toLongLong() != group)
        return status::Ok;
    if (context.records.IdWhere("ledger_locations", "location_id", key.toLongLong()))
        return status::InUse;
    context.records.Remove(PolicyPlacesTable, *place);
    return status::Ok;
}

/// "UpdAcqGpLoc": gives locations away, takes others in, changes what they do.
Answer UpdatePolicyLocations(Context& context, const wire::Fields& request) {
    const auto group = FindGroup(context, request);
    if (!group)
        return {status::NotFound};
    const auto sent = ReadKeyedRows(PolicyPlaces(), request);
    if (!sent)
        return {status::ColumnError};
    QSet<QString> named;
    for (const KeyedRow& row : *sent) {
        if (named.contains(row.key))
            return {status::ColumnError};
        named.insert(row.key);
        if (row.state == rowstate::Unchanged)
            continue;
        if (const qint16 refused = row.state == rowstate::Removed ? RemoveLocation(context, *group, row.key)
                                                                  : PutLocation(context, *group, row))
            return {refused};
    }
    return {};
}

/// Orders are compared with bibliographic records.
qint16 CheckPolicyProfile(Context& context, const wire::Fields&, const Row&, Row& after) {
    const QVariant profile = after.value("duplicate_profile_id");
    if (profile.isNull())
        return status::Ok;
    const QVariant type =
        context.database.FirstValue("SELECT record_type FROM duplicate_profiles WHERE id=?", {profile});
    return type.toString() == u"B" ? status::Ok : status::ColumnError;
}

qint16 ApplyVendorPolicies(Context& context, const wire::Fields& request, qint64 id, bool) {
    return ApplyKeyedRows(context, VendorPolicies(), id, {}, {}, request);
}

/// The rows of ledgers for the group's locations.
QList<QVariant> SpentBy(Context& context, qint64 group) {
    return context.database.FirstColumn(
        "SELECT k.id FROM ledger_locations k JOIN " + PolicyPlacesTable +
            " p ON p.location_id=k.location_id WHERE p.group_id=? ORDER BY k.id",
        {group});
}

qint16 CheckPolicyRemoval(Context& context, qint64 id, const Row&) {
    return SpentBy(context, id).isEmpty() ? status::Ok : status::InUse;
}

void FindPolicyUses(Context& context, qint64 id, const Row&,
                    const std::function<void(const RecordName& user, const QString& column)>& tell) {
    for (const QVariant& row : SpentBy(context, id))
        tell({"ledger_locations", row.toLongLong()}, "location_id");
}

} // namespace

void RegisterAcquisitionsPolicies(Registry& registry) {
    registry.AddSubject({
        .table = PolicyGroupsTable,
        .area = Area::Acquisitions,
        .requests = {.list = "LstAcqGp", .add = "AddAcqGp", .update = "UpdAcqGp", .remove = "DelAcqGp"},
        .fields =
            {SubjectField::Reference("SDI", "duplicate_profile_id", "duplicate_profiles"),
             SubjectField::Text("Nm", "name", NameLength).Required().Unique(status::DuplicateName).InList()},
        .usedBy = {{"ledgers", "policy_group_id"}},
        .addReply = {"ID", "Nm"},
        .checkPut = CheckPolicyProfile,
        .afterPut = ApplyVendorPolicies,
        .checkRemove = CheckPolicyRemoval,
        .findUses = FindPolicyUses,
    });
    for (const KeyedRows* rows : {&PolicyPlaces(), &VendorPolicies()})
        registry.AddTable(rows->StoredAs(PolicyGroupsTable));
    registry.AddTable(
        {.name = PolicyGroupsTable,
         .storedRules = {FindsNone(
             "SELECT g.id FROM acquisitions_policy_groups g JOIN duplicate_profiles d ON "
             "d.id=g.duplicate_profile_id WHERE d.record_type<>'B'",
             "The duplicate profile is not one for bibliographic records.", {"duplicate_profiles"})}});
    // How far the batches went is kept with the session.
    registry.AddRequest(
        {.name = "GetAcqGp", .area = Area::Acquisitions, .changes = true, .handler = ReadGroup});
    registry.About("GetAcqGp", {PolicyGroupsTable}, {"ID"});
    registry.AddRead("ASAvail", Area::Acquisitions, ListPolicyChoices);
    registry.AddChange("UpdAcqGpLoc", Area::Acquisitions, UpdatePolicyLocations);
    registry.About("UpdAcqGpLoc", {PolicyGroupsTable}, {"ID"});
}

} // namespace sysadmin::server
