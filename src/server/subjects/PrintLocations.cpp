#include "server/store/Database.h"
#include "server/subjects/Registrations.h"

namespace sysadmin::server {

namespace {

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

/// Without the default, whoever has not chosen a location would print nowhere: the mark is only moved.
qint16 KeepMark(Context&, const wire::Fields&, const Row& before, Row& after) {
    const bool takesIt =
        before.value("is_default").toString() == "Y" && after.value("is_default").toString() != "Y";
    return takesIt ? status::InUse : status::Ok;
}

qint16 KeepDefault(Context&, qint64, const Row& record) {
    return record.value("is_default").toString() == "Y" ? status::InUse : status::Ok;
}

} // namespace

void RegisterPrintLocations(Registry& registry) {
    registry.AddSubject({
        .table = "print_locations",
        .area = Area::System,
        .requests = {.list = "LstPL", .get = "GetPL", .add = "AddPL", .update = "UpdPL", .remove = "DelPL"},
        .fields =
            {
                SubjectField::Text("Cd", "code", PrintLocationCodeLength)
                    .Required()
                    .Unique(status::DuplicateCode)
                    .InList(),
                SubjectField::Text("Nm", "name", TextLength)
                    .Required()
                    .Unique(status::DuplicateName)
                    .InList(),
                SubjectField::Flag("DP", "is_default").InList(),
                SubjectField::Flag("CG", "for_circulation"),
                SubjectField::Flag("AG", "for_acquisitions"),
                SubjectField::Flag("MSG", "for_media"),
                SubjectField::Flag("CtG", "for_cataloging"),
            },
        .listArea = Area::AnyOperator,
        .usedBy = {{"acquisitions_policy_locations", "print_location_id"},
                   {"circulation_policy_locations", "print_location_id"}},
        .usages = {{"workstations"}},
        .addReply = {"ID", "Cd"},
        .onlyOne = {"is_default"},
        .checkPut = KeepMark,
        .afterPut = TakeDefault,
        .checkRemove = KeepDefault,
    });
}

} // namespace sysadmin::server
