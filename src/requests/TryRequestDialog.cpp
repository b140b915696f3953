#include "requests/TryRequestDialog.h"

#include "core/Prompter.h"
#include "framework/Captions.h"
#include "framework/FormView.h"
#include "framework/ListGrid.h"
#include "framework/forms/ValueFields.h"
#include "requests/frmCallSlip_Rules.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

namespace sysadmin {

namespace {

constexpr int HelpTopic = 50403;
constexpr qsizetype MostParts = 3;

QList<PickItem> WithFirst(const QList<PickItem>& items, const QString& first) {
    QList<PickItem> entries{{QString(), first}};
    for (const PickItem& item : items)
        if (!item.id.isEmpty())
            entries.append(item);
    return entries;
}

QString TextOf(const ChoiceField& choice, const QString& id) {
    for (const PickItem& item : choice.Items())
        if (item.id == id)
            return item.text;
    return id;
}

} // namespace

/// A request as the public catalogue would send it.
struct TriedRequestForm : Form {
    explicit TriedRequestForm(const CallSlipRuleForm& choices) {
        const QString none = tr("(none)");
        cboTryLocation.SetItems(WithFirst(choices.cboItemLocation.Items(), none));
        cboTryTempLocation.SetItems(WithFirst(choices.cboItemLocation.Items(), none));
        cboTryHoldings.SetItems(WithFirst(choices.cboItemLocation.Items(), tr("(the item location)")));
        cboTryItemType.SetItems(WithFirst(choices.cboItemType.Items(), none));
        cboTryTempItemType.SetItems(WithFirst(choices.cboItemType.Items(), none));
        cboTryCallNumberType.SetItems(WithFirst(choices.cboCallNumberType.Items(), none));
    }
    /// Becomes a request that the rule's criteria describe.
    void Begin(const callslips::Rule& rule) {
        using callslips::Attribute;
        const Loading loading(*this);
        const auto set = [&](ChoiceField& field, Attribute attribute) {
            field.SetStored(rule.attributes[size_t(attribute)]);
        };
        set(cboTryLocation, Attribute::ItemLocation);
        set(cboTryTempLocation, Attribute::TemporaryLocation);
        set(cboTryItemType, Attribute::ItemType);
        set(cboTryTempItemType, Attribute::TemporaryItemType);
        set(cboTryHoldings, Attribute::HoldingsLocation);
        cboTryCallNumberType.SetStored(rule.HasCallNumbers() ? rule.callNumberType : QString());
        txtTryCallNumber.SetStored(rule.leastCallNumber);
        if (rule.HasYears())
            txtTryYear.SetStored(QString::number(rule.firstYear ? *rule.firstYear : *rule.endYear - 1));
    }
    callslips::Request Request() const {
        const QString location = cboTryLocation.Draft();
        callslips::Request request{
            .attributes = {location, cboTryTempLocation.Draft(), cboTryItemType.Draft(),
                           cboTryTempItemType.Draft(),
                           cboTryHoldings.IsBlank() ? location : cboTryHoldings.Draft()},
            .callNumberType = cboTryCallNumberType.Draft(),
            .callNumber = txtTryCallNumber.Draft()};
        if (!txtTryYear.IsBlank())
            request.year = txtTryYear.Value();
        return request;
    }
    const ChoiceField& ChoiceOf(callslips::Attribute attribute) const {
        switch (attribute) {
        case callslips::Attribute::ItemLocation:
            break;
        case callslips::Attribute::TemporaryLocation:
            return cboTryTempLocation;
        case callslips::Attribute::ItemType:
            return cboTryItemType;
        case callslips::Attribute::TemporaryItemType:
            return cboTryTempItemType;
        case callslips::Attribute::HoldingsLocation:
            return cboTryHoldings;
        }
        return cboTryLocation;
    }

    ChoiceField cboTryLocation{*this, {.name = "cboTryLocation", .caption = tr("Item Location:")}};
    ChoiceField cboTryTempLocation{*this,
                                   {.name = "cboTryTempLocation", .caption = tr("Temporary Location:")}};
    ChoiceField cboTryItemType{*this, {.name = "cboTryItemType", .caption = tr("Item Type:")}};
    ChoiceField cboTryTempItemType{*this,
                                   {.name = "cboTryTempItemType", .caption = tr("Temporary Item Type:")}};
    ChoiceField cboTryHoldings{*this, {.name = "cboTryHoldings", .caption = tr("Holdings Location:")}};
    ChoiceField cboTryCallNumberType{*this,
                                     {.name = "cboTryCallNumberType", .caption = tr("Call Number Type:")}};
    TextField txtTryCallNumber{
        *this, {.name = "txtTryCallNumber", .caption = tr("Call Number:"), .maxLength = CallNumberLength}};
    NumberField txtTryYear{*this, {.name = "txtTryYear", .caption = tr("Year:"), .most = MostSlipYear}};
};

TryRequestDialog::TryRequestDialog(const CallSlipRuleForm& choices, const QList<callslips::Rule>& rules,
                                   const QList<TriedRule>& names, int start, QWidget* parent)
    : QDialog(parent)
    , m_rules(rules)
    , m_names(names)
    , m_routing(rules, choices.Known())
    , m_form(std::make_unique<TriedRequestForm>(choices)) {
    setObjectName("frmTryRequest");
    setProperty(HelpContextProperty, HelpTopic);
    setWindowTitle(tr("Try a Request"));
    resize(860, 620);

    TriedRequestForm& form = *m_form;
    if (start >= 0)
        form.Begin(rules[start]);
    m_view = std::make_unique<FormView>(form,
                                        Below({Beside({form.cboTryLocation, form.cboTryItemType}),
                                               Beside({form.cboTryTempLocation, form.cboTryTempItemType}),
                                               Beside({form.cboTryHoldings, form.cboTryCallNumberType}),
                                               Beside({form.txtTryYear, form.txtTryCallNumber})}),
                                        this);
    lblVerdict = new QLabel(this);
    lblVerdict->setObjectName("lblVerdict");
    lblVerdict->setWordWrap(true);
    QFont bold = lblVerdict->font();
    bold.setBold(true);
    lblVerdict->setFont(bold);

    tabResult = new QTabWidget(this);
    tabResult->setObjectName("tabResult");
    tabResult->tabBar()->setAccessibleName(tr("Result"));
    const auto addPage = [this](const QString& caption, const QString& name, const QString& accessible,
                                const QList<GridColumn>& columns) {
        auto* page = new QWidget(tabResult);
        auto* below = new QVBoxLayout(page);
        auto* grid = new ListGrid(name, columns, page);
        grid->setAccessibleName(accessible);
        below->addWidget(grid->FilterBox());
        below->addWidget(grid, 1);
        QWidget::setTabOrder(grid->FilterBox(), grid);
        tabResult->addTab(page, caption);
        return grid;
    };
    vsfTried = addPage(
        tr("Rules &Tried"), "vsfTried", tr("Rules Tried"),
        {{tr("Rank"), 50}, {tr("Print Group Name"), 190}, {tr("Location Name"), 190}, {tr("Result")}});
    vsfTried->SetSortable(false);
    vsfLeft = addPage(tr("Taken by &No Rule"), "vsfLeft", tr("Taken by No Rule"),
                      {{tr("Item Location"), 260}, {tr("Requests")}});

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    buttons->button(QDialogButtonBox::Close)->setObjectName("cmdClose");
    auto* whole = new QVBoxLayout(this);
    whole->addWidget(m_view.get());
    whole->addWidget(lblVerdict);
    whole->addWidget(tabResult, 1);
    whole->addWidget(buttons);
    AssignMnemonics(*this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(&form, &Form::Changed, this, &TryRequestDialog::Try);
    connect(tabResult, &QTabWidget::currentChanged, this, &TryRequestDialog::ShowLeftOver);
    m_view->FocusFirst();
    Try();
}

TryRequestDialog::~TryRequestDialog() = default;

void TryRequestDialog::Try() {
    const std::vector<callslips::Misfits> tried = m_routing.Try(m_form->Request());
    const bool isTaken = !tried.empty() && !tried.back().Any();
    QList<GridRow> rows;
    rows.reserve(qsizetype(tried.size()));
    for (const callslips::Misfits& misfits : tried) {
        const int place = int(rows.size());
        const TriedRule& rule = m_names[place];
        const QString result = misfits.Any() ? Reason(place, misfits) : tr("takes the request");
        rows.append({QString::number(place), {rule.rank, rule.queue, rule.location, result}, {}});
    }
    vsfTried->SetRows(rows);
    if (isTaken)
        vsfTried->SelectKey(rows.last().key);
    lblVerdict->setText(isTaken ? tr("Rule %1 takes it: %2").arg(rows.last().cells[0], rows.last().cells[1])
                                : tr("No rule takes it: it goes to the default queue."));
}

QString TryRequestDialog::Reason(int place, const callslips::Misfits& misfits) const {
    const callslips::Rule& rule = m_rules[place];
    QStringList reasons;
    for (size_t i = 0; i < callslips::AttributeCount; ++i)
        if (misfits.attributes[i]) {
            const ChoiceField& choice = m_form->ChoiceOf(callslips::Attribute(i));
            reasons.append(tr("%1 is not %2").arg(choice.PlainCaption(), TextOf(choice, rule.attributes[i])));
        }
    const auto range = [&](const QString& what, const QString& least, const QString& end) {
        reasons.append(end.isEmpty()     ? tr("%1 is not %2 or behind").arg(what, least)
                       : least.isEmpty() ? tr("%1 is not before %2").arg(what, end)
                                         : tr("%1 is not from %2 to before %3").arg(what, least, end));
    };
    if (misfits.callNumber)
        range(tr("Call Number (%1)").arg(TextOf(m_form->cboTryCallNumberType, rule.callNumberType)),
              rule.leastCallNumber, rule.endCallNumber);
    const auto year = [](const std::optional<int>& value) {
        return value ? QString::number(*value) : QString();
    };
    if (misfits.year)
        range(tr("Year"), year(rule.firstYear), year(rule.endYear));
    return reasons.join("; ");
}

QString TryRequestDialog::InWords(const callslips::Part& part) const {
    QStringList words;
    const auto& types = part.attributes[size_t(callslips::Attribute::ItemType)];
    const auto typeName = [&](int value) { return TextOf(m_form->cboTryItemType, m_routing.ValueOf(value)); };
    if (types.value != 0) {
        words.append(tr("item type %1").arg(typeName(types.value)));
    } else if (!types.excluded.empty()) {
        QStringList names;
        for (int value : types.excluded)
            names.append(typeName(value));
        words.append(tr("item types other than %1").arg(names.join(", ")));
    }
    if (!part.type.isEmpty()) {
        const QString type = TextOf(m_form->cboTryCallNumberType, part.type);
        words.append(part.least.isEmpty() && part.end ? tr("first call numbers of %1").arg(type)
                     : part.end                       ? tr("some call numbers of %1").arg(type)
                     : part.least.isEmpty()           ? tr("call numbers of %1").arg(type)
                                                      : tr("last call numbers of %1").arg(type));
    } else if (!part.excludedTypes.empty()) {
        words.append(tr("other call numbers or none"));
    }
    const bool fromStart = part.firstYear <= 0;
    const bool toEnd = part.endYear > MostSlipYear;
    if (part.withoutYear && part.firstYear >= part.endYear)
        words.append(tr("without a year"));
    else if (!fromStart && !toEnd)
        words.append(tr("years %1 to %2").arg(part.firstYear).arg(part.endYear - 1));
    else if (!fromStart)
        words.append(tr("years from %1 on").arg(part.firstYear));
    else if (!toEnd)
        words.append(tr("years before %1").arg(part.endYear));
    return words.isEmpty() ? tr("all") : words.join(", ");
}

// Reckoned when it is first looked at: a library has many locations.
void TryRequestDialog::ShowLeftOver() {
    if (tabResult->currentIndex() == 0 || m_isLeftShown)
        return;
    m_isLeftShown = true;
    QList<GridRow> rows;
    for (const PickItem& location : m_form->cboTryLocation.Items()) {
        if (location.id.isEmpty())
            continue;
        const auto parts = m_routing.LeftAt(location.id);
        QStringList words;
        if (!parts)
            words.append(tr("too many rules for any location to tell"));
        for (const callslips::Part& part : parts.value_or(std::vector<callslips::Part>()))
            if (const QString text = InWords(part); !words.contains(text))
                words.append(text);
        if (words.isEmpty())
            continue;
        const qsizetype more = words.size() - MostParts;
        const QString text = words.mid(0, MostParts).join("; ");
        rows.append(
            {location.id, {location.text, more > 0 ? tr("%1; and %2 more").arg(text).arg(more) : text}, {}});
    }
    vsfLeft->SetRows(rows);
}

} // namespace sysadmin

#include "moc_TryRequestDialog.cpp"
