#include "server/SampleWriter.h"
#include "server/subjects/Registrations.h"

namespace sysadmin::server {

namespace {

constexpr int TypeCodeLength = 10;
constexpr int TextLength = 40;

void FillSample(SampleWriter& sample) {
    // Type of record and bibliographic level of the MARC leader.
    const QList<QPair<QString, QString>> types{
        {"aa", "Book Chapter"},
        {"ab", "Journal Article"},
        {"ac", "Book Collection"},
        {"ai", "Updating Resource"},
        {"am", "Book"},
        {"as", "Journal or Serial"},
        {"cm", "Music Score"},
        {"cs", "Music Score Series"},
        {"dm", "Music Manuscript"},
        {"em", "Map"},
        {"es", "Map Series"},
        {"fm", "Manuscript Map"},
        {"gm", "Film or Video"},
        {"gs", "Film or Video Series"},
        {"im", "Spoken Recording"},
        {"is", "Spoken Recording Series"},
        {"jm", "Music Recording"},
        {"js", "Music Recording Series"},
        {"km", "Picture"},
        {"mi", "Database"},
        {"mm", "Computer File"},
        {"ms", "Online Serial"},
        {"om", "Kit"},
        {"pc", "Archival Collection"},
        {"rm", "Three-Dimensional Object"},
        {"tm", "Manuscript or Thesis"},
    };
    for (const auto& [code, name] : types)
        sample.Add("material_types", {{"code", code}, {"name", name}});
}

} // namespace

void RegisterMaterialTypes(Registry& registry) {
    registry.AddSubject({
        .table = "material_types",
        .area = Area::System,
        .requests = {.list = "LstBF", .get = "GetBF", .add = "AddBF", .update = "UpdBF"},
        .fields =
            {
                Field::Text("Cd", "code", TypeCodeLength).Required().Unique(status::DuplicateCode).InList(),
                Field::Text("Nm", "name", TextLength).Required().Unique(status::DuplicateName).InList(),
            },
        .key = "Cd",
        .originalKey = "OC",
    });
    registry.AddSample("material types", FillSample);
}

} // namespace sysadmin::server
