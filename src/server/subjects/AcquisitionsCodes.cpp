#include "server/subjects/Registrations.h"

namespace sysadmin::server {

namespace {

constexpr qint16 VendorReportInOtherClaims = 63;
constexpr qint16 VendorReportInSerialsClaims = 64;
constexpr qint16 MarkReasonOnLineItems = 65;
constexpr qint16 MarkReasonOnIssues = 66;
constexpr qint16 ClaimTypeInMarkReasons = 74;
constexpr qint16 AdjustReasonInPrices = 86;
constexpr qint16 OrderTypeInOrders = 91;
constexpr qint16 ClaimTypeInSerialClaims = 101;

SubjectField UniqueName(const QString& tag) {
    return SubjectField::Text(tag, "name", TextLength).Required().Unique(status::DuplicateName).InList();
}

SubjectField EdiCode(const QString& tag) {
    return SubjectField::Text(tag, "edi_code", EdiCodeLength);
}

bool IsAdjustmentKind(const QString& value) {
    return value.isEmpty() || value == "C" || value == "A";
}

} // namespace

void RegisterAcquisitionsCodes(Registry& registry) {
    registry.AddSubject({
        .table = "claim_types",
        .area = Area::Acquisitions,
        .requests =
            {.list = "LstClm", .get = "GetClm", .add = "AddClm", .update = "UpdClm", .remove = "DelClm"},
        .fields = {UniqueName("D"), EdiCode("E")},
        .usedBy = {{"mark_reasons", "claim_type_id", ClaimTypeInMarkReasons}},
        .usages = {{"serial claims", ClaimTypeInSerialClaims}},
        .addReply = {"ID", "D"},
    });
    registry.AddSubject({
        .table = "mark_reasons",
        .area = Area::Acquisitions,
        .requests =
            {.list = "LstMark", .get = "GetMark", .add = "AddMark", .update = "UpdMark", .remove = "DelMark"},
        .fields = {UniqueName("Nm"), SubjectField::Reference("C", "claim_type_id", "claim_types")},
        .usages = {{"marked line items", MarkReasonOnLineItems}, {"marked issues", MarkReasonOnIssues}},
        .addReply = {"ID", "Nm"},
    });
    // The vendors themselves are kept by the acquisitions client.
    registry.AddSubject({
        .table = "vendors",
        .area = Area::Acquisitions,
        .requests = {.list = "LstVen"},
        .fields = {SubjectField::Text("Cd", "code", CodeLength).InList(),
                   SubjectField::Text("Nm", "name", NameLength).InList()},
        .listArea = Area::AnyOperator,
        .order = {"name"},
    });
    registry.AddSubject({
        .table = "adjust_reasons",
        .area = Area::Acquisitions,
        .requests =
            {.list = "LstAdj", .get = "GetAdj", .add = "AddAdj", .update = "UpdAdj", .remove = "DelAdj"},
        .fields = {UniqueName("T"), EdiCode("EC"),
                   SubjectField::Text("CC", "kind", 1).Checked(IsAdjustmentKind),
                   SubjectField::Reference("V", "vendor_id", "vendors")},
        .usages = {{"price adjustments", AdjustReasonInPrices}},
        .addReply = {"ID", "T"},
    });
    registry.AddSubject({
        .table = "po_types",
        .area = Area::Acquisitions,
        .requests =
            {.list = "LstPOTp", .get = "GetPOTp", .add = "AddPOTp", .update = "UpdPOTp", .remove = "DelPOTp"},
        .fields = {UniqueName("D"),
                   // How the acquisitions client treats orders of the type: delivered at the vendor's choice,
                   // and renewed each term.
                   SubjectField::Flag("B", "blanket").OnlyInList(),
                   SubjectField::Flag("RT", "recurring").OnlyInList()},
        .key = "T",
        .usedBy = {{"acquisitions_vendor_policies", "order_type_id"}, {"import_rule_settings", "po_type_id"}},
        .usages = {{"purchase orders", OrderTypeInOrders}},
        .addReply = {"T", "D"},
    });
    registry.AddSubject({
        .table = "vendor_reports",
        .area = Area::Acquisitions,
        .requests =
            {.list = "LstVRpt", .get = "GetVRpt", .add = "AddVRpt", .update = "UpdVRpt", .remove = "DelVRpt"},
        .fields = {UniqueName("Nm"), EdiCode("E")},
        .usages = {{"non-serials claims", VendorReportInOtherClaims},
                   {"serials claims", VendorReportInSerialsClaims}},
        .addReply = {"ID", "Nm"},
    });
}

} // namespace sysadmin::server
