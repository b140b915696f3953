#include "server/subjects/Registrations.h"

namespace sysadmin::server {

namespace {

constexpr qint16 UsedByBibliographicRecords = 61;
constexpr qint16 OwnsLocations = 62;

} // namespace

void RegisterOwningLibraries(Registry& registry) {
    registry.AddSubject({
        .table = "owning_libraries",
        .area = Area::System,
        .requests = {.list = "LstLib",
                     .get = "GetLib",
                     .add = "AddLib",
                     .update = "UpdLib",
                     .remove = "DelLib",
                     .available = "AvlLib"},
        .fields =
            {
                SubjectField::Text("LN", "name", NameLength)
                    .Required()
                    .Unique(status::DuplicateName)
                    .InList(),
                SubjectField::Text("DN", "display_name", NameLength),
                SubjectField::Text("NC", "nuc_code", CodeLength),
            },
        .listArea = Area::AnyOperator,
        .usedBy = {{"locations", "owning_library_id", OwnsLocations},
                   {"import_rules", "owning_library_id", status::InUse}},
        .usages = {{"bibliographic records", UsedByBibliographicRecords}},
        .memberships = {{.ownerColumn = "owning_library_id", .memberTable = "locations"}},
        .addReply = {"ID", "LN"},
    });
}

} // namespace sysadmin::server
