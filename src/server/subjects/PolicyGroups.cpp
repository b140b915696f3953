#include "server/SampleWriter.h"
#include "server/store/Database.h"
#include "server/subjects/Registrations.h"

// The policy groups to which locations belong: what locations and clusters need to know of them.

namespace sysadmin::server {

namespace {

const QString DeskEnding = "-ATCIRCDESK";

Table GroupTable(const QString& kind) {
    return {
        .name = kind + "_policy_groups", .columns = {{.name = "name"}}, .uniqueTexts = {{.column = "name"}}};
}

/// A location belongs to one group of each kind at the most.
Table GroupLocations(const QString& kind) {
    return {.name = kind + "_policy_locations",
            .columns = {{.name = "group_id",
                         .type = ColumnType::Reference,
                         .target = kind + "_policy_groups",
                         .onRemoval = OnRemoval::RemoveToo},
                        {.name = "location_id", .type = ColumnType::Reference, .target = "locations"}},
            .uniqueSets = {{"location_id"}}};
}

struct SampleGroup {
    QString name;
    QStringList libraries; // owning libraries, by code; empty: all that no other group has
};

class SampleGroups {
public:
    explicit SampleGroups(SampleWriter& sample)
        : m_sample(sample) {
        const QList<CsvRow> rows = sample.ReadCsv("locations.csv");
        for (const CsvRow& row : rows) {
            const auto id = sample.Find("locations", "code", row["code"]);
            // Locations without items are in no group, desks excepted: they can be deleted, and show what
            // such a one looks like.
            if (!id)
                continue;
            const bool isUsed =
                sample.GetDatabase()
                    .FirstRow("SELECT 1 FROM usage WHERE table_name='locations' AND record_id=?", {*id})
                    .has_value();
            if (isUsed || row["code"].endsWith(DeskEnding))
                m_locations[row["owning_library_code"]].append({*id, row["code"]});
        }
    }

    void AddGroups(const QString& kind, const QList<SampleGroup>& groups) {
        QStringList left = m_locations.keys();
        for (const SampleGroup& group : groups)
            for (const QString& library : group.libraries)
                left.removeAll(library);
        left.sort();
        for (const SampleGroup& group : groups) {
            const qint64 id = m_sample.Add(kind + "_policy_groups", {{"name", group.name}});
            for (const QString& library : group.libraries.isEmpty() ? left : group.libraries)
                for (const auto& [location, code] : m_locations.value(library))
                    m_sample.Add(kind + "_policy_locations", {{"group_id", id}, {"location_id", location}});
        }
    }

    /// Each owning library is a group of circulation policies; its first desk, else its first location, is
    /// where its items are charged.
    void AddCirculationGroups() {
        const QStringList professional{"BUSINESS", "LAW", "MEDICAL"};
        const QStringList withoutPickup{"ARS", "INST", "SAL", "SAL3", "SAL-NEWARK", "SUL"};
        const QList<CsvRow> libraries = m_sample.ReadCsv("owning_libraries.csv");
        for (const CsvRow& library : libraries) {
            const QString code = library["code"];
            const auto cluster =
                m_sample.Find("clusters", "code", professional.contains(code) ? "PROF" : "MAIN");
            if (!cluster)
                continue;
            const qint64 group = m_sample.Add("circulation_policy_groups",
                                              {{"cluster_id", *cluster}, {"name", library["name"]}});
            const QList<Location> locations = m_locations.value(code);
            qsizetype desk = 0;
            for (qsizetype i = 0; i < locations.size(); ++i)
                if (locations[i].code.endsWith(DeskEnding))
                    desk = i;
            for (qsizetype i = 0; i < locations.size(); ++i) {
                const bool isDesk = i == desk;
                const bool isOpacDesk = isDesk && (code == "MAIN" || code == "LAW");
                m_sample.Add("circulation_policy_locations",
                             {{"group_id", group},
                              {"location_id", locations[i].id},
                              {"is_desk", isDesk ? "Y" : "N"},
                              {"is_opac_desk", isOpacDesk ? "Y" : "N"},
                              {"is_pickup", isDesk && !withoutPickup.contains(code) ? "Y" : "N"}});
                if (isOpacDesk)
                    m_sample.GetRecords().Update("clusters", *cluster,
                                                 {{"pickup_location_id", locations[i].id}});
            }
        }
    }

private:
    struct Location {
        qint64 id = 0;
        QString code;
    };
    SampleWriter& m_sample;
    QHash<QString, QList<Location>> m_locations; // by owning library
};

void FillSample(SampleWriter& sample) {
    SampleGroups groups(sample);
    groups.AddGroups(
        "acquisitions",
        {{"Central Acquisitions", {}}, {"Law Acquisitions", {"LAW"}}, {"Medical Acquisitions", {"MEDICAL"}}});
    groups.AddGroups("cataloging", {{"University Cataloging", {}},
                                    {"East Asia Cataloging", {"EAST-ASIA"}},
                                    {"Law Cataloging", {"LAW"}},
                                    {"Medical Cataloging", {"MEDICAL"}}});
    groups.AddCirculationGroups();
}

} // namespace

void RegisterPolicyGroups(Registry& registry) {
    for (const char* kind : {"acquisitions", "cataloging"}) {
        registry.AddTable(GroupTable(kind));
        registry.AddTable(GroupLocations(kind));
    }
    registry.AddTable(
        {.name = "circulation_policy_groups",
         .columns = {{.name = "cluster_id", .type = ColumnType::Reference, .target = "clusters"},
                     {.name = "name"}},
         .uniqueTexts = {{.column = "name", .within = "cluster_id"}}});
    Table locations = GroupLocations("circulation");
    locations.columns << Column{.name = "is_desk", .type = ColumnType::Flag}
                      << Column{.name = "is_opac_desk", .type = ColumnType::Flag}
                      << Column{.name = "is_pickup", .type = ColumnType::Flag};
    registry.AddTable(locations);
    registry.AddSample("policy groups", FillSample);
}

} // namespace sysadmin::server
