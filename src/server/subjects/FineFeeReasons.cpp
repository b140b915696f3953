#include "server/store/Database.h"
#include "server/subjects/Registrations.h"

namespace sysadmin::server {

namespace {

constexpr qint16 UsedByFines = 87;
constexpr qint16 UsedByPayments = 90;

/// Reasons, payment types and posting types, one after the other: a screen shows all three at once.
Answer ListAll(Context& context, const wire::Fields&) {
    struct List {
        QString table;
        QStringList columns;
        QStringList tags;
    };
    static const QList<List> lists{
        {"fine_fee_reasons", {"id", "code", "name"}, {"ID", "Cd", "Nm"}},
        {"payment_types", {"id", "name"}, {"PId", "PNm"}},
        {"posting_types", {"id", "name", "for_fines", "for_demerits"}, {"PstId", "PstNm", "TF", "TD"}},
    };
    Answer answer;
    for (const List& list : lists)
        context.database.Each("SELECT " + list.columns.join(", ") + " FROM " + list.table + " ORDER BY id",
                              {}, [&](const ResultRow& row) {
                                  for (qsizetype i = 0; i < list.tags.size(); ++i)
                                      Put(answer.fields, list.tags[i], row.value(int(i)).toString());
                              });
    return answer;
}

} // namespace

void RegisterFineFeeReasons(Registry& registry) {
    registry.AddSubject({
        .table = "fine_fee_reasons",
        .area = Area::System,
        .requests = {.add = "AddFee", .update = "UpdFee", .remove = "DelFee"},
        .fields =
            {
                Field::Text("Cd", "code", CodeLength).Required().Unique(status::DuplicateCode),
                Field::Text("Nm", "name", NameLength).Required().Unique(status::DuplicateName),
            },
        .usages = {{"fines and fees", UsedByFines}},
        .addReply = {"ID", "Cd"},
    });
    registry.AddSubject({
        .table = "payment_types",
        .area = Area::System,
        .requests = {.add = "AddPmt", .update = "UpdPmt", .remove = "DelPmt"},
        .fields = {Field::Text("PNm", "name", NameLength).Required().Unique(status::DuplicateName)},
        .key = "PId",
        .usages = {{"fine and fee transactions", UsedByPayments}},
        .addReply = {"PId", "PNm"},
    });
    registry.AddSubject({
        .table = "posting_types",
        .area = Area::System,
        .requests = {.add = "AddPstTp", .update = "UpdPstTp", .remove = "DelPstTp"},
        .fields =
            {
                Field::Text("PstNm", "name", NameLength).Required().Unique(status::DuplicateName),
                Field::Flag("TF", "for_fines"),
                Field::Flag("TD", "for_demerits"),
            },
        .key = "PstId",
        .usages = {{"fine and fee transactions", status::InUse}},
        .addReply = {"PstId", "PstNm"},
    });
    // Circulation policies choose a posting type from it.
    registry.AddRead("LstFee", Area::AnyOperator, ListAll);
}

} // namespace sysadmin::server
