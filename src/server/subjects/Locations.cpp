#include "server/store/Database.h"
#include "server/subjects/LocationAddresses.h"
#include "server/subjects/Registrations.h"

namespace sysadmin::server {

namespace {

constexpr qint16 InAcquisitionsGroup = 23;
constexpr qint16 InCatalogingGroup = 24;
constexpr qint16 InCirculationGroup = 25;
constexpr qint16 InLedger = 29;
constexpr qint16 InCallSlipRule = 52;
constexpr qint16 InDataChangeProfile = 111;

/// Records of the library's other clients in which a location may stand.
const QList<UsageKind>& LocationUsages() {
    static const QList<UsageKind> usages{
        {"holdings records", 20},
        {"items", 21},
        {"line items", 22},
        {"line item copies", 26},
        {"account locations", 27},
        {"purchase orders", 28},
        {"invoices", 30},
        {"holds and recalls", 31},
        {"fine and fee transactions", 32},
        {"fines and fees", 33},
        {"exceptions", 34},
        {"serial claims", 35},
        {"marked issues", 36},
        {"marked line items", 37},
        {"issues received", 38},
        {"reserve lists", 39},
        {"renewals", 40},
        {"archived renewals", 41},
        {"circulation transactions", 42},
        {"archived circulation transactions", 43},
        {"circulation transaction exceptions", 44},
        {"media rooms", 45},
        {"scheduled media rooms", 46},
        {"archived scheduled media rooms", 47},
        {"media policy locations", 48},
        {"media security locations", 49},
        {"routing list members", 50},
    };
    return usages;
}

/// The public catalogue's desk stays until another location is it; that is said before anything else.
qint16 CheckLocationRemoval(Context& context, qint64 id, const Row&) {
    const bool isDesk =
        context.database
            .FirstRow("SELECT 1 FROM circulation_policy_locations WHERE location_id=? AND is_opac_desk='Y'",
                      {id})
            .has_value();
    return isDesk ? status::IsOpacDesk : status::Ok;
}

/// The names of the policy groups.
void AddGroupNames(Context& context, qint64 id, ReplyFields& reply) {
    const QList<QPair<QString, QString>> groups{
        {"CtGrp", "cataloging"}, {"ASGrp", "acquisitions"}, {"CrGrp", "circulation"}};
    for (const auto& [tag, kind] : groups)
        Put(reply, tag,
            context.database
                .FirstValue("SELECT g.name FROM " + kind + "_policy_groups g JOIN " + kind +
                                "_policy_locations l ON l.group_id=g.id WHERE l.location_id=?",
                            {id})
                .toString());
}

} // namespace

void RegisterLocations(Registry& registry) {
    registry.AddSubject({
        .table = "locations",
        .area = Area::System,
        .requests =
            {.list = "LstLoc", .get = "GetLoc", .add = "AddLoc", .update = "UpdLoc", .remove = "DelLoc"},
        .fields =
            {
                SubjectField::Text("Cd", "code", CodeLength)
                    .Required()
                    .Unique(status::DuplicateCode)
                    .InList(),
                // Real libraries give several locations the same name.
                SubjectField::Text("Nm", "name", NameLength).Required().InList(),
                SubjectField::Text("Spn", "spine_label", NameLength),
                SubjectField::Text("Dsp", "display_name", NameLength),
                SubjectField::Flag("OPAC", "suppressed"),
                SubjectField::Reference("Lb", "owning_library_id", "owning_libraries"),
                SubjectField::Joined("LN", "owning_library_id", "owning_libraries", "name").OnlyInList(),
            },
        .listArea = Area::AnyOperator,
        .usedBy = {{"acquisitions_policy_locations", "location_id", InAcquisitionsGroup},
                   {"cataloging_policy_locations", "location_id", InCatalogingGroup},
                   {"circulation_policy_locations", "location_id", InCirculationGroup},
                   {"data_change_profiles_locations", "location_id", InDataChangeProfile},
                   {"ledger_locations", "location_id", InLedger},
                   {"call_slip_rules", "item_location_id", InCallSlipRule},
                   {"call_slip_rules", "temporary_location_id", InCallSlipRule},
                   {"call_slip_rules", "holdings_location_id", InCallSlipRule},
                   {"call_slip_queues", "location_id", status::InUse},
                   {"import_mappings", "location_id", status::InUse},
                   {"import_rule_settings", "location_id", status::InUse}},
        .usages = LocationUsages(),
        .children = {LocationAddresses()},
        .alsoListed = {{"phone_types", {{"PTps", "id"}, {"PDsc", "name"}}}},
        .addReply = {"ID", "Cd"},
        .checkRemove = CheckLocationRemoval,
        .addToGet = AddGroupNames,
    });
    registry.AddTable({.name = "phone_types",
                       .columns = {{.name = "name"}},
                       .uniqueTexts = {{.column = "name"}},
                       .ordered = true});
}

} // namespace sysadmin::server
