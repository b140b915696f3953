#include "server/SampleWriter.h"
#include "server/subjects/Registrations.h"

namespace sysadmin::server {

namespace {

struct Group {
    QString code;
    QString name;
    QString suppressed;
    QStringList libraries; // owning libraries, by code
    bool used;
};

void FillSample(SampleWriter& sample) {
    const QList<Group> groups{
        {"ARTS", "Arts and Music", "N", {"ART", "MUSIC", "ARS"}, true},
        {"SCIENCE", "Science and Engineering", "N", {"SCIENCE", "ENG", "EARTH-SCI", "MARINE-BIO"}, true},
        {"LAW", "Law", "N", {"LAW"}, true},
        {"MEDICINE", "Medicine", "N", {"MEDICAL"}, true},
        {"SPECIAL", "Special Collections", "N", {"SPEC-COLL"}, false},
        {"STORAGE", "Off-Campus Storage", "Y", {"SAL", "SAL3", "SAL-NEWARK"}, false},
    };
    QHash<QString, QList<qint64>> locations;
    const QList<CsvRow> rows = sample.ReadCsv("locations.csv");
    for (const CsvRow& row : rows)
        if (const auto id = sample.Find("locations", "code", row["code"]))
            locations[row["owning_library_code"]] << *id;
    for (const Group& group : groups) {
        const qint64 id =
            sample.Add("location_limit_groups",
                       {{"code", group.code}, {"name", group.name}, {"suppressed", group.suppressed}});
        for (const QString& library : group.libraries)
            for (const qint64 location : locations.value(library))
                sample.Add("location_limit_group_members", {{"group_id", id}, {"location_id", location}});
        if (group.used)
            sample.Use("location_limit_groups", "saved searches", id, int(id) * 37 % 200 + 1);
    }
}

} // namespace

void RegisterLocationLimitGroups(Registry& registry) {
    registry.AddSubject({
        .table = "location_limit_groups",
        .area = Area::System,
        .requests = {.list = "LstLmt",
                     .get = "GetLmt",
                     .add = "AddLmt",
                     .update = "UpdLmt",
                     .remove = "DelLmt",
                     .available = "AvlLmt"},
        .fields =
            {
                Field::Text("C", "code", CodeLength).Required().Unique(status::DuplicateCode).InList(),
                Field::Text("N", "name", NameLength).Required().Unique(status::DuplicateName).InList(),
                Field::Flag("O", "suppressed"),
            },
        .usages = {{"saved searches", status::InUse}},
        .memberships = {{.table = "location_limit_group_members",
                         .ownerColumn = "group_id",
                         .memberTable = "locations",
                         .memberColumn = "location_id"}},
        .addReply = {"ID", "C"},
    });
    registry.AddSample("location limit groups", FillSample);
}

} // namespace sysadmin::server
