#include "server/subjects/Registrations.h"

namespace sysadmin::server {

namespace {

constexpr qint16 UsedByFines = 87;
constexpr qint16 UsedByPayments = 90;

} // namespace

void RegisterFineFeeReasons(Registry& registry) {
    registry.AddSubject({
        .table = "fine_fee_reasons",
        .area = Area::System,
        .requests = {.add = "AddFee", .update = "UpdFee", .remove = "DelFee"},
        .fields =
            {
                SubjectField::Text("Cd", "code", CodeLength).Required().Unique(status::DuplicateCode),
                SubjectField::Text("Nm", "name", NameLength).Required().Unique(status::DuplicateName),
            },
        .usages = {{"fines and fees", UsedByFines}},
        .addReply = {"ID", "Cd"},
    });
    registry.AddSubject({
        .table = "payment_types",
        .area = Area::System,
        .requests = {.add = "AddPmt", .update = "UpdPmt", .remove = "DelPmt"},
        .fields = {SubjectField::Text("PNm", "name", NameLength).Required().Unique(status::DuplicateName)},
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
                SubjectField::Text("PstNm", "name", NameLength).Required().Unique(status::DuplicateName),
                SubjectField::Flag("TF", "for_fines"),
                SubjectField::Flag("TD", "for_demerits"),
            },
        .key = "PstId",
        .usages = {{"fine and fee transactions", status::InUse}},
        .addReply = {"PstId", "PstNm"},
    });
    // Circulation policies choose a posting type from it.
    registry.AddList("LstFee", Area::AnyOperator,
                     {{"fine_fee_reasons", {{"ID", "id"}, {"Cd", "code"}, {"Nm", "name"}}},
                      {"payment_types", {{"PId", "id"}, {"PNm", "name"}}},
                      {"posting_types",
                       {{"PstId", "id"}, {"PstNm", "name"}, {"TF", "for_fines"}, {"TD", "for_demerits"}}}});
    registry.About("LstFee", {"fine_fee_reasons", "payment_types", "posting_types"});
}

} // namespace sysadmin::server
