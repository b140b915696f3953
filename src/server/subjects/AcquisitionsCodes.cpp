#include "server/SampleWriter.h"
#include "server/subjects/Registrations.h"

namespace sysadmin::server {

namespace {

constexpr int TextLength = 40;
constexpr int EdiCodeLength = 10;
constexpr qint16 UsedByMarkReasons = 74;
constexpr qint16 UsedBySerialClaims = 101;

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
    const QList<QPair<QString, QString>> reasons{
        {"Binding Damaged", "Damaged on Arrival"},
        {"Disc Missing", "Pages Missing"},
        {"Duplicate Copy", "Duplicate Sent"},
        {"Imperfect Copy", "Pages Missing"},
        {"Invoice Missing", ""},
        {"Not as Ordered", "Wrong Title"},
        {"Price Query", ""},
        {"Water Damage", "Damaged on Arrival"},
        {"Wrong Edition", "Wrong Edition"},
    };
    for (const auto& [name, claimType] : reasons) {
        Row row{{"name", name}};
        if (const auto type = sample.Find("claim_types", "name", claimType))
            row.insert("claim_type_id", *type);
        sample.Add("mark_reasons", row);
    }
}

void FillAdjustReasons(SampleWriter& sample) {
    struct Reason {
        QString name;
        QString ediCode;
        QString kind;
        QString vendor; // a code; empty: all of them
    };
    const QList<Reason> reasons{
        {"Bank Charge", "BC", "C", ""},
        {"Binding", "BIN", "C", ""},
        {"Credit for Return", "CR", "A", ""},
        {"Currency Difference", "", "C", ""},
        {"Customs Duty", "CD", "C", ""},
        {"Discount", "DI", "A", ""},
        {"Discount, Early Payment", "EP", "A", "NORTHWAY"},
        {"Freight", "FC", "C", ""},
        {"Freight, Air", "AIR", "C", "FJORD"},
        {"Handling", "HD", "C", ""},
        {"Prepayment Credit", "PC", "A", "CLEARWELL"},
        {"Rush Service", "RU", "C", ""},
        {"Shelf-Ready Processing", "SRP", "C", "HARBOUR"},
        {"Tax", "TX", "C", ""},
    };
    for (const Reason& reason : reasons) {
        Row row{{"name", reason.name}, {"edi_code", reason.ediCode}, {"kind", reason.kind}};
        if (const auto vendor = sample.Find("vendors", "code", reason.vendor))
            row.insert("vendor_id", *vendor);
        sample.Add("adjust_reasons", row);
    }
}

void FillOrderTypes(SampleWriter& sample) {
    struct OrderType {
        QString name;
        QString blanket = "N";
        QString recurring = "N";
    };
    const QList<OrderType> types{
        {"Firm Order"},
        {"Approval", "Y"},
        {"Blanket Order", "Y"},
        {"Continuation", "N", "Y"},
        {"Deposit Account", "Y"},
        {"Depository", "Y", "Y"},
        {"Exchange"},
        {"Gift"},
        {"Membership", "N", "Y"},
        {"Patron-Driven Purchase"},
        {"Standing Order", "N", "Y"},
        {"Subscription", "N", "Y"},
    };
    for (const auto& [name, blanket, recurring] : types)
        sample.Add("po_types", {{"name", name}, {"blanket", blanket}, {"recurring", recurring}});
}

void FillVendorReports(SampleWriter& sample) {
    const QList<Code> reports{
        {"Accepted", "AC"},
        {"Backordered", "BO"},
        {"Binding in Progress", ""},
        {"Cancelled", "CN"},
        {"Ceased Publication", "CP"},
        {"Claimed from Publisher", "CF"},
        {"Delayed", "DL"},
        {"Issue Combined", "IC"},
        {"Not Our Publication", "NP"},
        {"Not Yet Published", "NYP"},
        {"Out of Print", "OP"},
        {"Out of Stock", "OS"},
        {"Payment Not Received", ""},
        {"Price Increased", "PI"},
        {"Replacement Sent", "RS"},
        {"Shipped", "SH"},
        {"Title Changed", "TC"},
        {"Title Unknown", "TU"},
    };
    for (const auto& [name, code] : reports)
        sample.Add("vendor_reports", {{"name", name}, {"edi_code", code}});
}

} // namespace

void RegisterAcquisitionsCodes(Registry& registry) {
    registry.AddSubject({
        .table = "claim_types",
        .area = Area::Acquisitions,
        .requests =
            {.list = "LstClm", .get = "GetClm", .add = "AddClm", .update = "UpdClm", .remove = "DelClm"},
        .fields = {UniqueName("D"), EdiCode("E")},
        .usedBy = {{"mark_reasons", "claim_type_id", UsedByMarkReasons}},
        .usages = {{"serial claims", UsedBySerialClaims}},
        .addReply = {"ID", "D"},
    });
    registry.AddSubject({
        .table = "mark_reasons",
        .area = Area::Acquisitions,
        .requests = {.list = "LstMark", .get = "GetMark", .add = "AddMark", .update = "UpdMark"},
        .fields = {UniqueName("Nm"), Field::Reference("C", "claim_type_id", "claim_types")},
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
        .requests = {.list = "LstAdj", .get = "GetAdj", .add = "AddAdj", .update = "UpdAdj"},
        .fields = {UniqueName("T"), EdiCode("EC"), Field::Text("CC", "kind", 1).Checked(IsAdjustmentKind),
                   Field::Reference("V", "vendor_id", "vendors")},
        .addReply = {"ID", "T"},
    });
    registry.AddSubject({
        .table = "po_types",
        .area = Area::Acquisitions,
        .requests = {.list = "LstPOTp", .get = "GetPOTp", .add = "AddPOTp", .update = "UpdPOTp"},
        .fields = {UniqueName("D"),
                   // How the acquisitions client treats orders of the type: delivered at the vendor's choice,
                   // and renewed each term.
                   Field::Flag("B", "blanket").OnlyInList(), Field::Flag("RT", "recurring").OnlyInList()},
        .key = "T",
        .addReply = {"T", "D"},
    });
    registry.AddSubject({
        .table = "vendor_reports",
        .area = Area::Acquisitions,
        .requests = {.list = "LstVRpt", .get = "GetVRpt", .add = "AddVRpt", .update = "UpdVRpt"},
        .fields = {UniqueName("Nm"), EdiCode("E")},
        .addReply = {"ID", "Nm"},
    });
    registry.AddSample("claim types", FillClaimTypes);
    registry.AddSample("mark reasons", FillMarkReasons);
    registry.AddSample("adjust reasons", FillAdjustReasons);
    registry.AddSample("PO types", FillOrderTypes);
    registry.AddSample("vendor reports", FillVendorReports);
}

} // namespace sysadmin::server
