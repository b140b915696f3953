#include "server/SampleWriter.h"
#include "server/subjects/Registrations.h"

namespace sysadmin::server {

namespace {

constexpr int TypeCodeLength = 10;
constexpr int TextLength = 40;

void FillSample(SampleWriter& sample) {
    // Type of record and bibliographic level of the MARC leader.
    struct MaterialType {
        QString code;
        QString name;
        int titles = 0;
    };
    const QList<MaterialType> types{
        {"aa", "Book Chapter", 812},
        {"ab", "Journal Article", 4107},
        {"ac", "Book Collection", 655},
        {"ai", "Updating Resource", 1893},
        {"am", "Book", 2418036},
        {"as", "Journal or Serial", 187420},
        {"cm", "Music Score", 61277},
        {"cs", "Music Score Series"},
        {"dm", "Music Manuscript", 148},
        {"em", "Map", 40931},
        {"es", "Map Series", 377},
        {"fm", "Manuscript Map", 52},
        {"gm", "Film or Video", 58604},
        {"gs", "Film or Video Series"},
        {"im", "Spoken Recording", 7218},
        {"is", "Spoken Recording Series"},
        {"jm", "Music Recording", 74390},
        {"js", "Music Recording Series"},
        {"km", "Picture", 16045},
        {"mi", "Database", 931},
        {"mm", "Computer File", 12586},
        {"ms", "Online Serial", 33},
        {"om", "Kit", 1102},
        {"pc", "Archival Collection", 5264},
        {"rm", "Three-Dimensional Object", 486},
        {"tm", "Manuscript or Thesis", 39817},
    };
    for (const auto& [code, name, titles] : types) {
        const qint64 id = sample.Add("material_types", {{"code", code}, {"name", name}});
        if (titles > 0)
            sample.Use("material_types", "bibliographic records", id, titles);
    }
}

} // namespace

void RegisterMaterialTypes(Registry& registry) {
    registry.AddSubject({
        .table = "material_types",
        .area = Area::System,
        .requests = {.list = "LstBF", .get = "GetBF", .add = "AddBF", .update = "UpdBF", .remove = "DelBF"},
        .fields =
            {
                Field::Text("Cd", "code", TypeCodeLength).Required().Unique(status::DuplicateCode).InList(),
                Field::Text("Nm", "name", TextLength).Required().Unique(status::DuplicateName).InList(),
            },
        .key = "Cd",
        .originalKey = "OC",
        .usages = {{"bibliographic records"}},
    });
    registry.AddSample("material types", FillSample);
}

} // namespace sysadmin::server
