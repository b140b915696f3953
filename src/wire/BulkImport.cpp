#include "wire/BulkImport.h"

#include <QRegularExpression>
#include <QSet>

namespace sysadmin::wire::bulkimport {

namespace {

using Part = Setting::Part;
using Kind = Setting::Kind;

/// The tags of a place, in the order field, subfield, indicators.
struct PlaceTags {
    QString field;
    QString subfield;
    QString indicator1;
    QString indicator2;
};

void AddPlace(QList<Setting>& settings, Part part, const Place& place, const PlaceTags& tags) {
    settings.append({part, place.field, tags.field, Kind::Field});
    if (!place.subfield.isEmpty())
        settings.append({part, place.subfield, tags.subfield, Kind::Subfield});
    settings.append({part, place.indicator1, tags.indicator1, Kind::Indicator});
    settings.append({part, place.indicator2, tags.indicator2, Kind::Indicator});
}

/// An element of an order line with its tags.
struct ElementRow {
    OrderElement element;
    PlaceTags tags;
    QString fallbackTag{};
    Kind fallbackKind = Kind::Text;
};

const QList<ElementRow>& ElementRows() {
    using Element = OrderElement::Kind;
    static const QList<ElementRow> rows{
        {{Element::PieceIdentifier, {"FieldPieceId", "SubfieldPieceId", "Ind1PieceId", "Ind2PieceId"}},
         {"OPCF", "OPCSF", "OPCIND1", "OPCIND2"}},
        {{Element::LineItemType,
          {"FieldLineItemType", "SubFieldLineItemType", "Ind1LineItemType", "Ind2LineItemType"},
          "DefaultLineItemType"},
         {"OLIF", "OLISF", "OLIIND1", "OLIIND2"},
         "OLIDEFID",
         Kind::LineItemType},
        {{Element::Fund, {"FieldFund", "SubFieldFund", "Ind1Fund", "Ind2Fund"}, "DefaultCodeFund"},
         {"OFUNDF", "OFUNDSF", "OFUNDIND1", "OFUNDIND2"},
         "OFUNDDEF",
         Kind::FundCode},
        {{Element::Price, {"FieldLinePrice", "SubFieldLinePrice", "Ind1Price", "Ind2Price"}, "DefaultPrice"},
         {"OPRF", "OPRSF", "OPRIND1", "OPRIND2"},
         "OPRDEF",
         Kind::Amount},
        {{Element::Copies, {"FieldCopy", "SubFieldCopy", "Ind1Copy", "Ind2Copy"}, "DefaultCopy"},
         {"OCPYF", "OCPYSF", "OCPYIND1", "OCPYIND2"},
         "OCPYDEF",
         Kind::Count},
        {{Element::Notes, {"FieldNotes", "SubFieldNotes", "Ind1Notes", "Ind2Notes"}},
         {"ONTF", "ONTSF", "ONTIND1", "ONTIND2"}},
        {{Element::Instruction,
          {"FieldInstruction", "SubFieldInstruction", "Ind1Instruction", "Ind2Instruction"}},
         {"OINSF", "OINSSF", "OINSIND1", "OINSIND2"}},
        {{Element::TitleNumber,
          {"FieldTitleNumber", "SubFieldTitleNumber", "Ind1TitleNumber", "Ind2TitleNumber"}},
         {"OTTLF", "OTTLSF", "OTTLIND1", "OTTLIND2"}},
        {{Element::PoNumber, {"FieldPoNumber", "SubFieldPoNumber", "Ind1PoNumber", "Ind2PoNumber"}},
         {"IRP_NUM_FLD", "IRP_NUM_SUB", "IRP_NUM_IND1", "IRP_NUM_IND2"}},
        {{Element::VendorReference,
          {"FieldVendorRefNum", "SubFieldVendorRefNum", "Ind1VendorRefNum", "Ind2VendorRefNum"}},
         {"IRP_VEN_FIELD", "IRP_VEN_SUB", "IRP_VEN_IND1", "IRP_VEN_IND2"}},
        {{Element::Requester, {"FieldRequester", "SubFieldRequester", "Ind1Requester", "Ind2Requester"}},
         {"IRP_REQ_FLD", "IRP_REQ_SUB", "IRP_REQ_IND1", "IRP_REQ_IND2"}},
        {{Element::LedgerName,
          {"FieldLedgerName", "SubFieldLedgerName", "Ind1LedgerName", "Ind2LedgerName"},
          "DefaultLedgerName"},
         {"IRP_LED_FLD", "IRP_LED_SUB", "IRP_LED_IND1", "IRP_LED_IND2"},
         "IRP_LED_DFT",
         Kind::Ledger},
        {{Element::FiscalPeriodName,
          {"FieldFiscalPeriodName", "SubFieldFiscalPeriodName", "Ind1FiscalPeriodName",
           "Ind2FiscalPeriodName"},
          "DefaultFiscalPeriodName"},
         {"IRP_FP_FLD", "IRP_FP_SUB", "IRP_FP_IND1", "IRP_FP_IND2"},
         "IRP_FP_DFT",
         Kind::FiscalPeriod},
    };
    return rows;
}

QList<Setting> MakeSettings() {
    QList<Setting> settings;
    AddPlace(settings, Part::Location, LocationPlace(), {"DLF", "DLS", "LI1", "LI2"});
    AddPlace(settings, Part::Multiple, MainPlace(), {"CCMI_M_FIELD", {}, "CCMI_M_IND1", "CCMI_M_IND2"});
    const auto subfield = [&](const QString& name, const QString& tag) {
        settings.append({Part::Multiple, name, tag, Kind::Subfield});
    };
    subfield("SubLocCode", "CCMI_L_SUB");
    subfield("SubBarCode", "CCMI_B_SUB");
    subfield("SubItemType", "CCMI_IT_SUB");
    subfield("SubEnum", "CCMI_E_SUB");
    subfield("SubChron", "CCMI_C_SUB");
    subfield("SubYear", "CCMI_Y_SUB");
    subfield("SubNote", "CCMI_N_SUB");
    subfield("SubChgNote", "CCMI_CN_SUB");
    subfield("SubCaption", "CCMI_CAP_SUB");
    subfield("SubFreetext", "CCMI_F_SUB");
    subfield("SubPrice", "CCMI_PR_SUB");
    subfield("SubPieces", "CCMI_PI_SUB");
    subfield("SubCopyNumber", "CCMI_CPN_SUB");
    settings.append({Part::Multiple, "CopyNumMethod", "CCMI_CPN_MTD", Kind::CopyMethod});
    settings.append({Part::Multiple, "CopyNumStart", "CCMI_CPN_STRT", Kind::Count});
    subfield("SubControlNumber", "CCMI_CTN_SUB");
    subfield("SubFormTitle", "CCMI_FT_SUB");
    subfield("SubCNPrefix", "CCMI_CNP_SUB");
    subfield("SubCNSuffix", "CCMI_CNS_SUB");
    subfield("SubNonPublicNote", "CCMI_NPN_SUB");
    subfield("SubPublicNote", "CCMI_PN_SUB");
    subfield("SubMfhdCopyNumber", "CCMI_MFHD_CPN_SUB");
    subfield("SubPieceDes", "CCMI_PD_SUB");
    settings.append({Part::Multiple, "CollapseMFHDS", "CCMI_C_MUF", Kind::Flag, "N"});
    settings.append({Part::CopyNumbers, "CopyNumId", "ICNID", Kind::Kept, "0"});
    AddPlace(settings, Part::CopyNumbers, CopyNumberPlace(), {"ICNF", "ICSF", "ICI1", "ICI2"});
    settings[settings.size() - 2].initial = settings.last().initial = BlankIndicator;
    settings.append({Part::CopyNumbers, "CopyNumMethod", "ICMD", Kind::CopyMethod});
    settings.append({Part::CopyNumbers, "CopyNumStart", "ICST", Kind::Count, "1"});
    settings.append({Part::Orders, "msPOId", "OPOID", Kind::Kept});
    settings.append({Part::Orders, "OrderLocation", "OLOCID", Kind::Location});
    settings.append({Part::Orders, "OrderType", "OTYPEID", Kind::OrderType});
    settings.append({Part::Orders, "IdVendor", "OVACCT", Kind::Vendor});
    settings.append({Part::Orders, "CodeVendor", "OVCODE", Kind::VendorCode});
    settings.append({Part::Orders, "AcctVendor", "OACCTID", Kind::VendorAccount});
    settings.append({Part::Orders, "cCurrency", "OCS", Kind::Currency, UsualCurrency});
    for (const ElementRow& row : ElementRows()) {
        AddPlace(settings, Part::Orders, row.element.place, row.tags);
        if (!row.fallbackTag.isEmpty())
            settings.append({Part::Orders, row.element.fallback, row.fallbackTag, row.fallbackKind});
    }
    return settings;
}

bool IsCount(const QString& value, int most) {
    bool isNumber = false;
    const int number = value.toInt(&isNumber);
    return isNumber && number >= 0 && number <= most;
}

} // namespace

const QList<LoadMode>& LoadModes() {
    using Kind = LoadMode::Kind;
    static const QList<LoadMode> modes{
        {Kind::BibsOnly, {}},
        {Kind::Single, {"DMO"}},
        {.kind = Kind::Single, .flags = {"DMO", "DOC"}, .createsOrders = true},
        {.kind = Kind::Single, .flags = {"DM"}, .createsItems = true},
        {.kind = Kind::Single, .flags = {"DMO", "DOC", "DM"}, .createsItems = true, .createsOrders = true},
        {.kind = Kind::Multiple, .flags = {"IR_CRT_MULTI_MFHD", "DOC"}, .createsOrders = true},
        {.kind = Kind::Multiple, .flags = {"IR_CRT_MULTI_ITEM"}, .createsItems = true},
        {.kind = Kind::Multiple,
         .flags = {"IR_CRT_MULTI_MFHD", "IR_CRT_MULTI_ITEM", "DOC"},
         .createsItems = true,
         .createsOrders = true},
        {.kind = Kind::Multiple, .flags = {"IR_UPD_MFHD"}, .updates = true},
    };
    return modes;
}

const QStringList& LoadFlags() {
    static const QStringList flags{"DM",         "DOC", "DMO", "IR_CRT_MULTI_MFHD", "IR_CRT_MULTI_ITEM",
                                   "IR_UPD_MFHD"};
    return flags;
}

int ModeOf(const QStringList& flags) {
    const QSet<QString> wanted(flags.begin(), flags.end());
    for (int i = 0; i < LoadModes().size(); ++i)
        if (const QStringList& set = LoadModes()[i].flags; QSet<QString>(set.begin(), set.end()) == wanted)
            return i;
    return -1;
}

const QList<Setting>& Settings() {
    static const QList<Setting> settings = MakeSettings();
    return settings;
}

QList<Setting> SettingsOf(Setting::Part part) {
    QList<Setting> settings = Settings();
    settings.removeIf([part](const Setting& setting) { return setting.part != part; });
    return settings;
}

const QList<OrderElement>& OrderElements() {
    static const QList<OrderElement> elements = [] {
        QList<OrderElement> all;
        for (const ElementRow& row : ElementRows())
            all.append(row.element);
        return all;
    }();
    return elements;
}

QString PartName(Setting::Part part) {
    switch (part) {
    case Setting::Part::Location:
        return "location";
    case Setting::Part::Multiple:
        return "multiple";
    case Setting::Part::CopyNumbers:
        return "copy numbers";
    default:
        return "orders";
    }
}

Place LocationPlace() {
    return {"LocField", "LocSubField", "LocIndicator1", "LocIndicator2"};
}

Place MainPlace() {
    return {"MainField", {}, "MainIndicator1", "MainIndicator2"};
}

Place CopyNumberPlace() {
    return {"CopyNumFld", "CopyNumSubf", "CopyNumInd1", "CopyNumInd2"};
}

bool IsField(const QString& value) {
    static const QRegularExpression form("^[0-9]{3}\\z");
    return value.isEmpty() || form.match(value).hasMatch();
}

bool IsSubfield(const QString& value) {
    static const QRegularExpression form("^[0-9A-Za-z]\\z");
    return value.isEmpty() || form.match(value).hasMatch();
}

bool IsIndicator(const QString& value) {
    return value == BlankIndicator || IsSubfield(value);
}

bool IsValue(Setting::Kind kind, const QString& value) {
    if (value.isEmpty())
        return true;
    static const QRegularExpression amount("^(\\d{1,9}(\\.\\d{0,4})?|\\.\\d{1,4})\\z");
    switch (kind) {
    case Kind::Field:
        return IsField(value);
    case Kind::Subfield:
        return IsSubfield(value);
    case Kind::Indicator:
        return IsIndicator(value);
    case Kind::Flag:
        return value == u"Y" || value == u"N";
    case Kind::Count:
        return IsCount(value, MostCopyNumber);
    case Kind::Amount:
        return amount.match(value).hasMatch();
    case Kind::CopyMethod:
        return value == copynumbers::Same || value == copynumbers::PerRecord ||
               value == copynumbers::PerHoldings;
    default:
        return value.size() <= ValueLength;
    }
}

} // namespace sysadmin::wire::bulkimport
