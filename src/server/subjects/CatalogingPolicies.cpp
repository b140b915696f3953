#include "callslips/CallNumberOrder.h"
#include "server/store/Database.h"
#include "server/subjects/Registrations.h"
#include "wire/CatalogingPolicy.h"
#include "wire/DuplicateDetection.h"

// Cataloging policy groups: what holds for the records that are cataloged for their locations.

namespace sysadmin::server {

namespace duplicates = wire::duplicates;
namespace policy = wire::catalogingpolicy;

namespace {

bool IsTypeOrNone(const QString& value) {
    return value.isEmpty() || callslips::IsCallNumberType(value);
}

/// Bibliographic records are compared by profiles for them, and so are authority records.
qint16 CheckProfiles(Context& context, const wire::Fields&, const Row&, Row& after) {
    const QList<QPair<QString, QString>> profiles{{"bib_profile_id", duplicates::Bibliographic},
                                                  {"authority_profile_id", duplicates::Authority}};
    for (const auto& [column, type] : profiles)
        if (!after[column].isNull() &&
            context.records.Find("duplicate_profiles", after[column].toLongLong())->value("record_type") !=
                type)
            return status::ColumnError;
    return status::Ok;
}

/// "LstCatGpLoc": for each location in a group what the group says of call numbers.
Answer ListLocations(Context& context, const wire::Fields&) {
    Answer answer;
    context.database.Each("SELECT l.location_id, g.name, g.hierarchy_id FROM cataloging_policy_locations l "
                          "JOIN cataloging_policy_groups g ON g.id=l.group_id ORDER BY l.location_id",
                          {}, [&](const ResultRow& row) {
                              Put(answer.fields, "LI", row.value(0).toString());
                              Put(answer.fields, "GN", row.value(1).toString());
                              Put(answer.fields, "CH", row.value(2).toString());
                          });
    return answer;
}

} // namespace

void RegisterCatalogingPolicies(Registry& registry) {
    registry.AddSubject({
        .table = "cataloging_policy_groups",
        .area = Area::Cataloging,
        .requests = {.list = "LstCatGp",
                     .get = "GetCatGp",
                     .add = "AddCatGp",
                     .update = "UpdCatGp",
                     .remove = "DelCatGp",
                     .available = "AvlCatGp"},
        .fields =
            {SubjectField::Text("Nm", "name", NameLength).Required().Unique(status::DuplicateName).InList(),
             SubjectField::Reference("IT", "item_type_id", "item_types"),
             SubjectField::Text("CT", "call_number_type", 1).Checked(IsTypeOrNone),
             SubjectField::Reference("CH", "hierarchy_id", "call_number_hierarchies"),
             SubjectField::Reference("BD", "bib_profile_id", "duplicate_profiles"),
             SubjectField::Reference("AD", "authority_profile_id", "duplicate_profiles"),
             SubjectField::Flag("VT", "checks_tags"), SubjectField::Flag("VF", "checks_fixed_fields"),
             SubjectField::Flag("VH", "checks_headings"), SubjectField::Flag("VN", "checks_standard_numbers"),
             SubjectField::Text("VE", "consequence", 1).Default(policy::Warn).Checked(policy::IsConsequence),
             SubjectField::Flag("SB", "suppresses_bibs"), SubjectField::Flag("SH", "suppresses_holdings")},
        .usages = {{"workstations"}},
        .memberships = {{.table = "cataloging_policy_locations",
                         .ownerColumn = "group_id",
                         .memberTable = "locations",
                         .memberColumn = "location_id",
                         .elsewhere = status::LocationInOtherGroup}},
        .addReply = {"ID", "Nm"},
        .checkPut = CheckProfiles,
    });
    registry.AddRead("LstCatGpLoc", Area::Cataloging, ListLocations);
}

} // namespace sysadmin::server
