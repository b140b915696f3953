#include "server/SampleWriter.h"
#include "server/store/Database.h"
#include "server/subjects/Registrations.h"

#include <QSqlQuery>

namespace sysadmin::server {

namespace {

constexpr int LocationCodeLength = 20;
constexpr int TextLength = 40;

/// There is one default at the most: a location that becomes it takes the mark from the one that had it.
qint16 TakeDefault(Context& context, const wire::Fields& request, qint64 id, bool) {
    if (wire::FirstValue(request, "DP") != "Y")
        return status::Ok;
    QList<qint64> former;
    context.database.Each("SELECT id FROM print_locations WHERE is_default='Y' AND id<>?", {id},
                          [&](const ResultRow& row) { former << row.value(0).toLongLong(); });
    for (const qint64 other : former)
        context.records.Update("print_locations", other, {{"is_default", "N"}});
    return status::Ok;
}

/// Without the default, whoever has not chosen a location would print nowhere.
qint16 KeepDefault(Context&, qint64, const Row& record) {
    return record.value("is_default").toString() == "Y" ? status::InUse : status::Ok;
}

void FillSample(SampleWriter& sample) {
    const QList<CsvRow> desks = sample.ReadCsv("desks.csv");
    for (const CsvRow& desk : desks) {
        const QString code = desk["code"];
        if (code == "Online") // nobody can stand at its printer
            continue;
        const bool staffOnly = code.startsWith("SUL") || code.endsWith("TS");
        const bool serves = desk["is_pickup_location"] == "Y";
        const qint64 id = sample.Add("print_locations",
                                     {{"code", code},
                                      {"name", desk["name"]},
                                      {"is_default", code == "MAIN-LOAN" ? "Y" : "N"},
                                      {"for_circulation", staffOnly ? "N" : "Y"},
                                      {"for_acquisitions", staffOnly ? "Y" : "N"},
                                      {"for_media", code.startsWith("MEDIA") || code == "MUSIC" ? "Y" : "N"},
                                      {"for_cataloging", staffOnly || !serves ? "Y" : "N"}});
        if (serves)
            sample.Use("print_locations", "workstations", id, code.startsWith("MAIN") ? 9 : 3);
    }
}

} // namespace

void RegisterPrintLocations(Registry& registry) {
    registry.AddSubject({
        .table = "print_locations",
        .area = Area::System,
        .requests = {.list = "LstPL", .get = "GetPL", .add = "AddPL", .update = "UpdPL", .remove = "DelPL"},
        .fields =
            {
                Field::Text("Cd", "code", LocationCodeLength)
                    .Required()
                    .Unique(status::DuplicateCode)
                    .InList(),
                Field::Text("Nm", "name", TextLength).Required().Unique(status::DuplicateName).InList(),
                Field::Flag("DP", "is_default").InList(),
                Field::Flag("CG", "for_circulation"),
                Field::Flag("AG", "for_acquisitions"),
                Field::Flag("MSG", "for_media"),
                Field::Flag("CtG", "for_cataloging"),
            },
        .listArea = Area::AnyOperator,
        .usages = {{"workstations"}},
        .addReply = {"ID", "Cd"},
        .afterPut = TakeDefault,
        .checkRemove = KeepDefault,
    });
    registry.AddSample("print locations", FillSample);
}

} // namespace sysadmin::server
