#include "server/SampleWriter.h"
#include "server/SecurityHolders.h"
#include "server/store/Database.h"
#include "server/subjects/ProfileMembers.h"
#include "server/subjects/Registrations.h"

namespace sysadmin::server {

namespace {

void AddProfile(SampleWriter& sample, const QString& name, const QString& operatorId,
                const QStringList& rights, const QString& locationPrefix) {
    Row row{{"name", name}};
    for (const MasterRight& right : MasterRights())
        row.insert(right.column, rights.contains(right.tag) ? "Y" : "N");
    const qint64 profile = sample.Add("master_profiles", row);
    if (const auto account = sample.Find("operators", "operator_id", operatorId))
        sample.Add("master_profile_operators", {{"profile_id", profile}, {"operator_row", *account}});
    const auto locations = sample.GetDatabase().FirstColumn(
        "SELECT id FROM locations WHERE code LIKE ? ORDER BY id", {QString(locationPrefix + '%')});
    for (const QVariant& location : locations)
        sample.Add("master_profile_locations", {{"profile_id", profile}, {"location_id", location}});
}

void FillSample(SampleWriter& sample) {
    QStringList all;
    for (const MasterRight& right : MasterRights())
        if (right.tag != "CluViewOnly" && right.tag != "CrCnv" && right.tag != "CrCnvV")
            all << right.tag;
    AddProfile(sample, "System Administrators", "SYSADMIN", all, "");
    AddProfile(sample, "View Everything", "VIEWER",
               {"SecV", "SysDfV", "ASPGV", "CatPGV", "CrcPGV", "PatGrpV", "CluViewOnly"}, "");
    AddProfile(sample, "Circulation Settings", "CIRC", {"CrcPG", "CrcPGV", "CluEdit"}, "MAIN");
}

} // namespace

void RegisterMasterProfiles(Registry& registry) {
    QList<Field> fields{
        Field::Text("Nm", "name", NameLength).Required().Unique(status::DuplicateName).InList(),
    };
    for (const MasterRight& right : MasterRights())
        fields << Field::Flag(right.tag, right.column);
    registry.AddSubject({
        .table = "master_profiles",
        .area = Area::Security,
        .requests = {.list = "LstMPrf",
                     .get = "GetMPrf",
                     .add = "AddMPrf",
                     .update = "UpdMPrf",
                     .remove = "DelMPrf",
                     .available = "AvlMPrf"},
        .fields = fields,
        .memberships = {ProfileLocations("master_profile_locations"),
                        ProfileOperators("master_profile_operators")},
        .addReply = {"ID", "Nm"},
        .afterPut =
            [](Context& context, const wire::Fields&, qint64, bool) {
                return SecurityHolderRemains(context.database) ? status::Ok : status::LastSecurityRight;
            },
        .checkRemove =
            [](Context& context, qint64 id, const Row&) {
                return SecurityHolderRemains(context.database, id) ? status::Ok : status::LastSecurityRight;
            },
    });
    registry.AddSample("master profiles", FillSample);
}

} // namespace sysadmin::server
