#include "server/SampleWriter.h"
#include "server/subjects/Registrations.h"

namespace sysadmin::server {

namespace {

constexpr int TextLength = 40;
constexpr int EdiCodeLength = 10;
constexpr qint16 VendorReportInOtherClaims = 63;
constexpr qint16 VendorReportInSerialsClaims = 64;
constexpr qint16 MarkReasonOnLineItems = 65;
constexpr qint16 MarkReasonOnIssues = 66;
constexpr qint16 ClaimTypeInMarkReasons = 74;
constexpr qint16 AdjustReasonInPrices = 86;
constexpr qint16 OrderTypeInOrders = 91;
constexpr qint16 ClaimTypeInSerialClaims = 101;

Field UniqueName(const QString& tag) {
    return Field::Text(tag, "name", TextLength).Required().Unique(status::DuplicateName).InList();
}

Field EdiCode(const QString& tag) {
    return Field::Text(tag, "edi_code", EdiCodeLength);
}

bool IsAdjustmentKind(const QString& value) {
    return value.isEmpty() || value == "C" || value == "A";
}

struct Code {
    QString name;
    QString ediCode;
};

void UseWhenAny(SampleWriter& sample, const QString& table, const QString& kind, qint64 id, int count) {
    if (count > 0)
        sample.Use(table, kind, id, count);
}

void FillClaimTypes(SampleWriter& sample) {
    const QList<Code> types{
        {"Not Received", "NR"},      {"Issue Skipped", "IS"},    {"Damaged on Arrival", "DA"},
        {"Pages Missing", "PM"},     {"Wrong Title", "WT"},      {"Wrong Edition", "WE"},
        {"Duplicate Sent", "DS"},    {"Index Not Received", ""}, {"Supplement Not Received", ""},
        {"No Online Access", "NOA"},
    };
    int number = 0;
    for (const auto& [name, code] : types) {
        const qint64 id = sample.Add("claim_types", {{"name", name}, {"edi_code", code}});
        if (++number <= 4)
            sample.Use("claim_types", "serial claims", id, 640 / number);
    }
}

void FillMarkReasons(SampleWriter& sample) {
    struct Reason {
        QString name;
        QString claimType;
        int lineItems = 0;
        int issues = 0;
    };
    const QList<Reason> reasons{
        {"Binding Damaged", "Damaged on Arrival", 31},
        {"Disc Missing", "Pages Missing", 6},
        {"Duplicate Copy", "Duplicate Sent", 0, 57},
        {"Imperfect Copy", "Pages Missing", 12, 23},
        {"Invoice Missing", "", 18},
        {"Not as Ordered", "Wrong Title", 44},
        {"Price Query", ""},
        {"Water Damage", "Damaged on Arrival", 0, 3},
        {"Wrong Edition", "Wrong Edition"},
    };
    for (const Reason& reason : reasons) {
        Row row{{"name", reason.name}};
        if (const auto type = sample.Find("claim_types", "name", reason.claimType))
            row.insert("claim_type_id", *type);
        const qint64 id = sample.Add("mark_reasons", row);
        UseWhenAny(sample, "mark_reasons", "marked line items", id, reason.lineItems);
        UseWhenAny(sample, "mark_reasons", "marked issues", id, reason.issues);
    }
}

void FillAdjustReasons(SampleWriter& sample) {
    struct Reason {
        QString name;
        QString ediCode;
        QString kind;
        QString vendor; // a code; empty: all of them
        int adjustments = 0;
    };
    const QList<Reason> reasons{
        {"Bank Charge", "BC", "C", ""},
        {"Binding", "BIN", "C", "", 118},
        {"Credit for Return", "CR", "A", "", 41},
        {"Currency Difference", "", "C", ""},
        {"Customs Duty", "CD", "C", "", 236},
        {"Discount", "DI", "A", "", 3120},
        {"Discount, Early Payment", "EP", "A", "NORTHWAY"},
        {"Freight", "FC", "C", "", 2874},
        {"Freight, Air", "AIR", "C", "FJORD"},
        {"Handling", "HD", "C", "", 960},
        {"Prepayment Credit", "PC", "A", "CLEARWELL"},
        {"Rush Service", "RU", "C", ""},
        {"Shelf-Ready Processing", "SRP", "C", "HARBOUR"},
        {"Tax", "TX", "C", "", 4015},
    };
    for (const Reason& reason : reasons) {
        Row row{{"name", reason.name}, {"edi_code", reason.ediCode}, {"kind", reason.kind}};
        if (const auto vendor = sample.Find("vendors", "code", reason.vendor))
            row.insert("vendor_id", *vendor);
        UseWhenAny(sample, "adjust_reasons", "price adjustments", sample.Add("adjust_reasons", row),
                   reason.adjustments);
    }
}

void FillOrderTypes(SampleWriter& sample) {
    struct OrderType {
        QString name;
        int orders = 0;
        QString blanket = "N";
        QString recurring = "N";
    };
    const QList<OrderType> types{
        {"Firm Order", 18240},
        {"Approval", 9315, "Y"},
        {"Blanket Order", 14, "Y"},
        {"Continuation", 1207, "N", "Y"},
        {"Deposit Account", 3, "Y"},
        {"Depository", 1, "Y", "Y"},
        {"Exchange", 86},
        {"Gift", 412},
        {"Membership", 27, "N", "Y"},
        {"Patron-Driven Purchase"},
        {"Standing Order", 640, "N", "Y"},
        {"Subscription", 5873, "N", "Y"},
    };
    for (const OrderType& type : types) {
        const qint64 id = sample.Add(
            "po_types", {{"name", type.name}, {"blanket", type.blanket}, {"recurring", type.recurring}});
        UseWhenAny(sample, "po_types", "purchase orders", id, type.orders);
    }
}

void FillVendorReports(SampleWriter& sample) {
    struct Report {
        QString name;
        QString ediCode;
        int otherClaims = 0;
        int serialsClaims = 0;
    };
    const QList<Report> reports{
        {"Accepted", "AC"},
        {"Backordered", "BO", 203},
        {"Binding in Progress", ""},
        {"Cancelled", "CN", 64},
        {"Ceased Publication", "CP", 0, 38},
        {"Claimed from Publisher", "CF", 0, 512},
        {"Delayed", "DL", 91, 347},
        {"Issue Combined", "IC", 0, 75},
        {"Not Our Publication", "NP", 22},
        {"Not Yet Published", "NYP", 160, 18},
        {"Out of Print", "OP", 88},
        {"Out of Stock", "OS", 57},
        {"Payment Not Received", ""},
        {"Price Increased", "PI"},
        {"Replacement Sent", "RS", 12, 290},
        {"Shipped", "SH", 330},
        {"Title Changed", "TC", 0, 44},
        {"Title Unknown", "TU"},
    };
    for (const Report& report : reports) {
        const qint64 id = sample.Add("vendor_reports", {{"name", report.name}, {"edi_code", report.ediCode}});
        UseWhenAny(sample, "vendor_reports", "non-serials claims", id, report.otherClaims);
        UseWhenAny(sample, "vendor_reports", "serials claims", id, report.serialsClaims);
    }
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
        .fields = {UniqueName("Nm"), Field::Reference("C", "claim_type_id", "claim_types")},
        .usages = {{"marked line items", MarkReasonOnLineItems}, {"marked issues", MarkReasonOnIssues}},
        .addReply = {"ID", "Nm"},
    });
    // The vendors themselves are kept by the acquisitions client.
    registry.AddSubject({
        .table = "vendors",
        .area = Area::Acquisitions,
        .requests = {.list = "LstVen"},
        .fields = {Field::Text("Cd", "code", CodeLength).InList(),
                   Field::Text("Nm", "name", NameLength).InList()},
        .order = {"name"},
    });
    registry.AddSubject({
        .table = "adjust_reasons",
        .area = Area::Acquisitions,
        .requests =
            {.list = "LstAdj", .get = "GetAdj", .add = "AddAdj", .update = "UpdAdj", .remove = "DelAdj"},
        .fields = {UniqueName("T"), EdiCode("EC"), Field::Text("CC", "kind", 1).Checked(IsAdjustmentKind),
                   Field::Reference("V", "vendor_id", "vendors")},
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
                   Field::Flag("B", "blanket").OnlyInList(), Field::Flag("RT", "recurring").OnlyInList()},
        .key = "T",
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
    registry.AddSample("claim types", FillClaimTypes);
    registry.AddSample("mark reasons", FillMarkReasons);
    registry.AddSample("adjust reasons", FillAdjustReasons);
    registry.AddSample("PO types", FillOrderTypes);
    registry.AddSample("vendor reports", FillVendorReports);
}

} // namespace sysadmin::server
