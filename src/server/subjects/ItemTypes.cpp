#include "server/SampleWriter.h"
#include "server/subjects/Registrations.h"

namespace sysadmin::server {

namespace {

constexpr qint16 UsedByItems = 84;
constexpr qint16 UsedByAcquisitionsPolicy = 120;

void FillSample(SampleWriter& sample) {
    int number = 0;
    const QList<CsvRow> rows = sample.ReadCsv("item_types.csv");
    for (const CsvRow& row : rows) {
        const qint64 id = sample.Add(
            "item_types", {{"code", row["code"]}, {"name", row["name"]}, {"display_name", row["name"]}});
        // Every tenth type has no items yet; half of those can be deleted.
        if (++number % 10 != 0)
            sample.Use("item_types", "items", id, number * 173 % 9000 + 1);
        else if (number % 20 == 0)
            sample.Use("item_types", "acquisitions policies", id, 1);
    }
}

} // namespace

void RegisterItemTypes(Registry& registry) {
    registry.AddSubject({
        .table = "item_types",
        .area = Area::System,
        .requests = {.list = "LstItmTp",
                     .get = "GetItmTp",
                     .add = "AddItmTp",
                     .update = "UpdItmTp",
                     .remove = "DelItmTp"},
        .fields =
            {
                Field::Text("Cd", "code", CodeLength).Required().Unique(status::DuplicateCode).InList(),
                Field::Text("Nm", "name", NameLength).Required().Unique(status::DuplicateName).InList(),
                Field::Text("Dsp", "display_name", NameLength),
            },
        .listArea = Area::AnyOperator,
        .usages = {{"items", UsedByItems}, {"acquisitions policies", UsedByAcquisitionsPolicy}},
        .addReply = {"ID", "Cd"},
    });
    registry.AddSample("item types", FillSample);
}

} // namespace sysadmin::server
