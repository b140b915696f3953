#include "cataloging/frmCataloging_BulkImportOrderSettings.h"

#include "cataloging/ImportSettings.h"
#include "core/Application.h"
#include "core/Prompter.h"
#include "framework/FormDialog.h"
#include "framework/forms/ReadList.h"
#include "framework/forms/Rules.h"
#include "wire/BulkImport.h"
#include "wire/Status.h"

namespace sysadmin {

namespace bulkimport = wire::bulkimport;
namespace fundcheck = bulkimport::fundcheck;

namespace {

constexpr int DialogWidth = 820; // names of vendors and funds are long
const QString ScreenName = "Bulk Import Rule";
const QString FundTag = "OFUNDDEF";
const QString LedgerTag = "IRP_LED_DFT";
const QString PeriodTag = "IRP_FP_DFT";

QString CaptionOf(bulkimport::OrderElement::Kind kind) {
    using Kind = bulkimport::OrderElement::Kind;
    switch (kind) {
    case Kind::PieceIdentifier:
        return Form::tr("Piece Identifier");
    case Kind::LineItemType:
        return Form::tr("Line Item Type");
    case Kind::Fund:
        return Form::tr("Fund");
    case Kind::Price:
        return Form::tr("Price");
    case Kind::Copies:
        return Form::tr("Copies");
    case Kind::Notes:
        return Form::tr("Notes");
    case Kind::Instruction:
        return Form::tr("Instruction");
    case Kind::TitleNumber:
        return Form::tr("Title Number");
    case Kind::PoNumber:
        return Form::tr("PO Number");
    case Kind::VendorReference:
        return Form::tr("Vendor Reference Number");
    case Kind::Requester:
        return Form::tr("Requester");
    case Kind::LedgerName:
        return Form::tr("Ledger Name");
    default:
        return Form::tr("Fiscal Period Name");
    }
}

QString MismatchText(const QString& answer) {
    if (answer == fundcheck::FundNotInPeriod)
        return Form::tr("Selected fund is not associated with selected fiscal period -- Please Change");
    if (answer == fundcheck::FundNotInLedger)
        return Form::tr("Selected fund is not associated with selected ledger -- Please Change");
    if (answer == fundcheck::LedgerNotInPeriod)
        return Form::tr("Selected ledger is not associated with selected fiscal period -- Please Change");
    if (answer == fundcheck::SeveralLedgers)
        return Form::tr("Selected fiscal period & fund is associated with multiple ledgers and ledger is not "
                        "defined  -- Please Change");
    return {};
}

const bulkimport::Setting& SettingOf(const QString& name) {
    static const QList<bulkimport::Setting> settings =
        bulkimport::SettingsOf(bulkimport::Setting::Part::Orders);
    for (const bulkimport::Setting& setting : settings)
        if (setting.name == name)
            return setting;
    qFatal("There is no setting of orders called %s", qUtf8Printable(name));
}

} // namespace

/// Where a part of an order line is found, and what stands for it otherwise.
struct OrderSettingsForm::Element {
    Element(Form& form, const bulkimport::OrderElement& element)
        : caption(CaptionOf(element.kind))
        , field(form, SpecOf(element.place.field, Form::tr("Field")), MarcPartField::Part::Field)
        , subfield(form, SpecOf(element.place.subfield, Form::tr("Subfield")), MarcPartField::Part::Subfield,
                   &field)
        , indicator1(form, SpecOf(element.place.indicator1, Form::tr("Ind 1")),
                     MarcPartField::Part::Indicator, &field)
        , indicator2(form, SpecOf(element.place.indicator2, Form::tr("Ind 2")),
                     MarcPartField::Part::Indicator, &field) {
        using Kind = bulkimport::Setting::Kind;
        if (element.fallback.isEmpty())
            return;
        const bulkimport::Setting& setting = SettingOf(element.fallback);
        FieldSpec spec = SpecOf(element.fallback, Form::tr("Default"));
        if (setting.kind == Kind::Amount) {
            fallback = std::make_unique<MoneyField>(form, spec);
        } else if (setting.kind == Kind::Count) {
            spec.most = bulkimport::MostCopies;
            fallback = std::make_unique<NumberField>(form, spec);
        } else {
            spec.name.replace("txt", "cbo");
            fallback = std::make_unique<ChoiceField>(form, spec);
        }
    }

    FieldSpec SpecOf(const QString& name, const QString& column) const {
        return {.name = "txt" + name, .tag = SettingOf(name).tag, .accessible = caption + ", " + column};
    }
    Layout Row() {
        QList<Layout> cells{field, subfield, indicator1, indicator2};
        if (fallback)
            cells.append(*fallback);
        return BlockRow(caption + ":", cells);
    }

    QString caption;
    MarcPartField field;
    MarcPartField subfield;
    MarcPartField indicator1;
    MarcPartField indicator2;
    std::unique_ptr<ValueField> fallback;
};

/// Closes once fund, ledger and fiscal period go together.
class OrderSettingsDialog : public FormDialog {
public:
    OrderSettingsDialog(OrderSettingsForm& form, QWidget* parent)
        : FormDialog(form.m_application->prompter, form, form.Draw(),
                     {.name = "frmCataloging_BulkImportOrderSettings",
                      .title = tr("Bulk Import Order Settings"),
                      .helpContext = 50437},
                     parent)
        , m_order(form) {
        resize(DialogWidth, sizeHint().height());
    }

    void done(int result) override {
        if (result != Accepted || m_order.CheckFunds(this))
            FormDialog::done(result);
    }

private:
    OrderSettingsForm& m_order;
};

OrderSettingsForm::OrderSettingsForm()
    : cboOrderLocation(*this, {.name = "cboOrderLocation", .tag = "OLOCID", .caption = tr("Order Location:")})
    , cboOrderType(*this, {.name = "cboOrderType", .tag = "OTYPEID", .caption = tr("Order Type:")})
    , cboVendor(*this, {.name = "cboVendor", .tag = "OVACCT", .caption = tr("Vendor:")})
    , txtCodeVendor(*this, {.name = "txtCodeVendor",
                            .tag = "OVCODE",
                            .caption = tr("Vendor Code:"),
                            .maxLength = CodeLength,
                            .displayOnly = true})
    , cboAcctVendor(*this, {.name = "cboAcctVendor", .tag = "OACCTID", .caption = tr("Vendor Account:")})
    , cboCurrency(*this, {.name = "cboCurrency", .tag = "OCS", .caption = tr("Currency:")}) {
    for (const bulkimport::OrderElement& element : bulkimport::OrderElements())
        m_elements.push_back(std::make_unique<Element>(*this, element));
    connect(this, &Form::Edited, this, [this](const Field* field) {
        if (field == &cboVendor)
            FollowVendor();
    });
}

OrderSettingsForm::~OrderSettingsForm() = default;

bool OrderSettingsForm::LoadChoices(Application& application, const QList<PickItem>& locations) {
    m_application = &application;
    bool isComplete = true;
    const auto read = [&](const QString& request, const QString& caption, const QList<ListStep>& steps) {
        const auto report = [&](qint16 status) {
            application.ReportRequestFailure(status, caption, ScreenName);
        };
        isComplete = isComplete && ReadList(application.channel, {.request = request, .report = report},
                                            steps) == wire::status::Ok;
    };
    QList<PickItem> types, lineTypes, currencies, funds, ledgers, periods, vendors;
    m_vendorCodes.clear();
    QString base;
    read("AvlCatOrd", "Load Cataloging Available Import Order",
         {CollectItems(types, "OTYPEID", "OTYPEDESC"),
          CollectItems(lineTypes, "OLIDEFID", "OLIDEF"),
          {"OCURR",
           [&](RequestChannel& reply) {
               currencies.append({reply.GetField("OCURR"), reply.GetField("OCURR")});
           }},
          {"OCURRBASE", [&](RequestChannel& reply) { base = reply.GetField("OCURRBASE"); }}});
    read("AvlCatOrdFund", "Load Cataloging Funds",
         {{"FCODE", [&](RequestChannel& reply) {
               const QString code = reply.GetField("FCODE");
               funds.append({code, code + " - " + reply.GetField("FNAME")});
           }}});
    read("LstLedger", "Load Ledger List",
         {{"ID", [&](RequestChannel& reply) {
               ledgers.append({reply.GetField("ID"), reply.GetField("Nm") + ", " + reply.GetField("FPN")});
           }}});
    read("LstCurrFscPr", "Load Acquisitions Fiscal Types", {CollectItems(periods, "ID", "Nm")});
    read("LstVen", "Get Vendors", {{"ID", [&](RequestChannel& reply) {
                                        const QString id = reply.GetField("ID");
                                        vendors.append({id, reply.GetField("Nm")});
                                        m_vendorCodes.append({id, reply.GetField("Cd")});
                                    }}});
    // The library's own currency stands there even where the acquisitions client has none.
    if (!base.isEmpty() && !currencies.contains(PickItem{base, base}))
        currencies.append({base, base});
    cboOrderLocation.SetItems(WithNone(locations, NoImportChoice()));
    cboOrderType.SetItems(WithNone(types, NoImportChoice()));
    cboVendor.SetItems(WithNone(vendors, NoImportChoice()));
    cboCurrency.SetItems(currencies);
    const auto offer = [this](const QString& tag, const QList<PickItem>& items) {
        static_cast<ChoiceField&>(DefaultOf(tag)).SetItems(WithNone(items, NoImportChoice()));
    };
    offer("OLIDEFID", lineTypes);
    offer(FundTag, funds);
    offer(LedgerTag, ledgers);
    offer(PeriodTag, periods);
    return isComplete;
}

ValueField& OrderSettingsForm::DefaultOf(const QString& tag) const {
    return static_cast<ValueField&>(*FindByTag(tag));
}

/// The vendor's code, and its accounts.
void OrderSettingsForm::FollowVendor() {
    QString code;
    for (const PickItem& vendor : m_vendorCodes)
        if (vendor.id == cboVendor.Draft())
            code = vendor.text;
    if (txtCodeVendor.Draft() != code)
        txtCodeVendor.SetDraft(code);
    QList<PickItem> accounts;
    if (!cboVendor.IsBlank())
        ReadList(m_application->channel,
                 {.request = "AvlVendorAccnt",
                  .putKey = [this](RequestChannel& channel) { channel.PutField("ID", cboVendor.Draft()); },
                  .report =
                      [this](qint16 status) {
                          m_application->ReportRequestFailure(status, "Load Cataloging Vendor Accounts",
                                                              ScreenName);
                      }},
                 {{"OACCTID", [&](RequestChannel& reply) {
                       accounts.append({reply.GetField("OACCTID"), reply.GetField("OACCTNM")});
                   }}});
    const bool keeps = std::any_of(accounts.begin(), accounts.end(), [this](const PickItem& account) {
        return account.id == cboAcctVendor.Draft();
    });
    cboAcctVendor.SetItems(WithNone(accounts, NoImportChoice()));
    if (!keeps && !cboAcctVendor.IsBlank())
        cboAcctVendor.SetDraft({});
}

Layout OrderSettingsForm::Draw() {
    QList<Layout> rows;
    for (const auto& element : m_elements)
        rows.append(element->Row());
    return Below(
        {Beside({cboOrderLocation, cboVendor}), Beside({cboOrderType, txtCodeVendor}),
         Beside({cboCurrency, cboAcctVendor}),
         Frame("fraOrderElements", tr("Order lines"),
               {Block({tr("Field"), tr("Subfield"), tr("Ind 1"), tr("Ind 2"), tr("Default")}, rows)})});
}

std::optional<QString> OrderSettingsForm::AskFunds(const QStringList& values,
                                                   const std::function<void(qint16)>& report) const {
    const QStringList tags{"FCODE", "LEDGERID", "FISCALID"};
    RequestChannel& channel = m_application->channel;
    for (qsizetype i = 0; i < tags.size(); ++i)
        channel.PutField(tags[i], values.value(i));
    if (const qint16 status = channel.SendRequest("ChkFundLedgFisc"); status != wire::status::Ok) {
        report(status);
        return std::nullopt;
    }
    return MismatchText(channel.GetField("RES"));
}

bool OrderSettingsForm::CheckFunds(QWidget* parent) {
    const QStringList values{DefaultOf(FundTag).Draft(), DefaultOf(LedgerTag).Draft(),
                             DefaultOf(PeriodTag).Draft()};
    if (values.join(QString()).isEmpty())
        return true;
    const std::optional<QString> mismatch = AskFunds(values, [this](qint16 status) {
        m_application->ReportRequestFailure(status, "Check Fund Ledger Fiscal", ScreenName);
    });
    if (mismatch && !mismatch->isEmpty())
        m_application->prompter.ShowBox(
            parent, {.text = *mismatch, .title = tr("Fund, Ledger, Fiscal Period Check")});
    return mismatch && mismatch->isEmpty();
}

// Whatever account the rule has stays, also one that the vendor no longer has.
void OrderSettingsForm::Begin(const ImportSettings& orders) {
    ImportSettings::Fill(*this, {&orders});
    const QString account = cboAcctVendor.Draft();
    FollowVendor();
    cboAcctVendor.SetStored(account);
}

bool OrderSettingsForm::Edit(QWidget* parent) {
    static_cast<MoneyField&>(DefaultOf("OPRDEF")).SetDecimals(m_application->profile.MoneyDecimals());
    OrderSettingsDialog dialog(*this, parent);
    return m_application->prompter.RunDialog(dialog);
}

QHash<QString, QString> OrderSettingsForm::ChosenNames() const {
    using Kind = bulkimport::Setting::Kind;
    QHash<QString, QString> names;
    for (const bulkimport::Setting& setting : bulkimport::SettingsOf(bulkimport::Setting::Part::Orders)) {
        const auto* choice = dynamic_cast<const ChoiceField*>(FindByTag(setting.tag));
        if (choice && !choice->IsBlank() && setting.kind != Kind::FundCode && setting.kind != Kind::Currency)
            names.insert(setting.name, choice->DisplayText());
    }
    return names;
}

QList<PickItem> OrderSettingsForm::EntriesOf(const QString& name) const {
    QList<PickItem> entries = static_cast<const ChoiceField&>(DefaultOf(SettingOf(name).tag)).Items();
    entries.removeIf([](const PickItem& entry) { return entry.id.isEmpty(); });
    return entries;
}

} // namespace sysadmin
