#include "server/SampleWriter.h"
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

void FillSample(SampleWriter& sample) {
    const QList<QPair<QString, QString>> reasons{
        {"OVERDUE", "Overdue"},
        {"RECALL", "Overdue Recall"},
        {"LOST-REPL", "Lost Item Replacement"},
        {"LOST-PROC", "Lost Item Processing"},
        {"DAMAGED", "Damaged Item"},
        {"EQUIPMENT", "Late Equipment Return"},
        {"CARD", "Replacement Library Card"},
        {"PHOTOCOPY", "Photocopies"},
        {"ILL", "Interlibrary Loan Fee"},
        {"COLLECTION", "Collection Agency Referral"},
    };
    int number = 0;
    for (const auto& [code, name] : reasons) {
        const qint64 id = sample.Add("fine_fee_reasons", {{"code", code}, {"name", name}});
        // The last ones have never been charged and can be deleted.
        if (++number <= 7)
            sample.Use("fine_fee_reasons", "fines and fees", id, number * 731 % 2000 + 1);
    }

    number = 0;
    for (const char* name : {"Cash", "Credit Card", "Cheque", "Bank Transfer", "Campus Account", "Voucher"}) {
        const qint64 id = sample.Add("payment_types", {{"name", name}});
        if (++number <= 4)
            sample.Use("payment_types", "fine and fee transactions", id, number * 977 % 3000 + 1);
    }

    struct PostingType {
        const char* name;
        const char* forFines;
        const char* forDemerits;
    };
    const PostingType postings[] = {
        {"Payment", "Y", "N"},
        {"Forgive", "Y", "Y"},
        {"Error", "Y", "Y"},
        {"Refund", "Y", "N"},
        {"Lost Item Credit", "Y", "N"},
        {"Batch Forgive", "Y", "N"},
        {"Served Suspension", "N", "Y"},
    };
    number = 0;
    for (const PostingType& posting : postings) {
        const qint64 id = sample.Add(
            "posting_types",
            {{"name", posting.name}, {"for_fines", posting.forFines}, {"for_demerits", posting.forDemerits}});
        if (++number <= 5)
            sample.Use("posting_types", "fine and fee transactions", id, number * 463 % 2500 + 1);
    }
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
    registry.AddSample("fine and fee reasons", FillSample);
}

} // namespace sysadmin::server
