#include "requests/frmCallSlip_Rules.h"

#include "callslips/CallNumberOrder.h"
#include "core/Application.h"
#include "core/MainWindow.h"
#include "core/Prompter.h"
#include "core/data/StatusTable.h"
#include "requests/CallSlipScreens.h"
#include "requests/RequestsScreens.h"
#include "requests/TryRequestDialog.h"
#include "wire/Status.h"

#include <QPushButton>

namespace sysadmin {

namespace {

const QString RankTag = "Rk";
const QString TakenByTag = "TakenBy"; // the screen's own: no reply has it
constexpr qsizetype MostTakers = 3;

/// The criteria, in the order of `callslips::Attribute`.
const QStringList AttributeTags{"PL", "TL", "IT", "TI", "LI"};

GridColumn HiddenColumn(const QString& tag) {
    return {.caption = tag, .hidden = true, .tag = tag};
}

QList<GridColumn> Columns() {
    QList<GridColumn> columns{
        {.caption = Form::tr("Print Group Name"), .tag = "GN"},
        {.caption = Form::tr("Location Name"), .tag = "LN"},
        {.caption = Form::tr("Call # Min"), .width = 68, .tag = "MND"},
        {.caption = Form::tr("Call # Max"), .width = 70, .tag = "MXD"},
        {.caption = Form::tr("Yr Min"), .width = 50, .tag = "YMN"},
        {.caption = Form::tr("Yr Max"), .width = 52, .tag = "YMX"},
        {.caption = Form::tr("Rank"), .width = 42, .tag = RankTag},
        {.caption = Form::tr("Never Reached"), .width = 92, .tag = TakenByTag},
    };
    for (const QString& tag : AttributeTags + QStringList{"GI", "CT"})
        columns.append(HiddenColumn(tag));
    return columns;
}

std::optional<int> YearOf(const QString& cell) {
    bool isNumber = false;
    const int year = cell.toInt(&isNumber);
    return isNumber ? std::optional(year) : std::nullopt;
}

/// The rule of which `value` answers what stands under a tag.
callslips::Rule RuleOf(const std::function<QString(const QString& tag)>& value) {
    callslips::Rule rule{.callNumberType = value("CT"),
                         .leastCallNumber = value("MND").trimmed(),
                         .endCallNumber = value("MXD").trimmed(),
                         .firstYear = YearOf(value("YMN")),
                         .endYear = YearOf(value("YMX"))};
    for (size_t i = 0; i < callslips::AttributeCount; ++i)
        rule.attributes[i] = value(AttributeTags[qsizetype(i)]);
    return rule;
}

/// "taken by 2, 5": the ranks of the rules in these places.
QString TakenBy(const QList<int>& places) {
    QStringList ranks;
    for (int place : places.mid(0, MostTakers))
        ranks.append(QString::number(place + 1));
    return places.size() > MostTakers ? Form::tr("taken by %1, ...").arg(ranks.join(", "))
                                      : Form::tr("taken by %1").arg(ranks.join(", "));
}

/// The rules in their order, and what tells whether one is never reached.
struct SlipRules {
    QStringList keys{};
    QStringList names{}; ///< "2: Main Stacks, Music Library"
    QList<callslips::Rule> rules{};
    std::array<QList<QString>, callslips::AttributeCount> known{};
};

qint16 ReadSlipRules(RequestChannel& channel, SlipRules& read) {
    qint16 result = wire::status::Ok;
    const auto readIds = [&](const QString& request) {
        QList<QString> ids;
        const auto take = [&](RequestChannel& reply) { ids.append(reply.GetField("ID")); };
        if (result == wire::status::Ok)
            result = ReadList(channel, {.request = request}, {{"ID", take}});
        return ids;
    };
    const QList<QString> locations = readIds("LstLoc");
    const QList<QString> itemTypes = readIds("LstItmTp");
    read.known = {locations, {}, itemTypes, {}, locations};
    const auto readRule = [&](RequestChannel& reply) {
        read.rules.append(RuleOf([&](const QString& tag) { return reply.GetField(tag); }));
        QStringList name{reply.GetField("GN"), reply.GetField("LN")};
        name.removeAll({});
        read.keys.append(reply.GetField("RR"));
        read.names.append(reply.GetField(RankTag) + ": " + name.join(", "));
    };
    return result == wire::status::Ok ? ReadList(channel, {.request = "LstCSR"}, {{"RR", readRule}}) : result;
}

qint16 CheckSlipRules(Application& application, QList<HealthFinding>& found) {
    SlipRules read;
    const qint16 result = ReadSlipRules(application.channel, read);
    if (result != wire::status::Ok)
        return result;
    const QList<QList<int>> shadows = callslips::Routing(read.rules, read.known).Shadows();
    for (qsizetype i = 0; i < shadows.size(); ++i) {
        if (shadows[i].isEmpty())
            continue;
        found.append(
            {read.keys[i], Form::tr("Rule %1").arg(read.names[i]),
             Form::tr("The rule is never reached: what it would take is %1").arg(TakenBy(shadows[i])),
             [&application, key = read.keys[i], name = read.names[i]](QWidget*) {
                 if (application.mainWindow)
                     application.mainWindow->GoToRecord("CSR", key, name);
             }});
    }
    return result;
}

} // namespace

QList<HealthCheck> CallSlipChecks() {
    return {{"callslips", Form::tr("Call Slip Rules"), wire::Area::System, CheckSlipRules}};
}

FieldSpec CallSlipRuleForm::QueueSpec() {
    return {.name = "cboPrintGroups",
            .tag = "GI",
            .caption = tr("Print Group:"),
            .required = true,
            .source = {.request = "LstCSl", .pickList = QueueList, .caption = "Load Call Slip Print Groups"}};
}

FieldSpec CallSlipRuleForm::LocationSpec(const QString& name, const QString& tag, const QString& caption,
                                         const QString& request) {
    return {.name = name,
            .tag = tag,
            .caption = caption,
            .source = {.request = request,
                       .pickList = "cboItemLocation",
                       .none = tr("(any)"),
                       .caption = "Load Location List"}};
}

FieldSpec CallSlipRuleForm::ItemTypeSpec(const QString& name, const QString& tag, const QString& caption,
                                         const QString& request) {
    return {
        .name = name,
        .tag = tag,
        .caption = caption,
        .source = {
            .request = request, .pickList = "cboItemType", .none = tr("(any)"), .caption = "Load Item List"}};
}

// A rule behind one rule for each of them is not reached.
std::array<QList<QString>, callslips::AttributeCount> CallSlipRuleForm::Known() const {
    const auto ids = [](const ChoiceField& field) {
        QList<QString> known;
        for (const PickItem& item : field.Items())
            if (!item.id.isEmpty())
                known.append(item.id);
        return known;
    };
    const QList<QString> locations = ids(cboItemLocation);
    return {locations, {}, ids(cboItemType), {}, locations};
}

std::optional<Form::Finding> CallSlipRuleForm::FormProblem() {
    const QString least = txtCallNumberMin.Draft().trimmed();
    const QString end = txtCallNumberMax.Draft().trimmed();
    if (!least.isEmpty() || !end.isEmpty()) {
        if (cboCallNumberType.IsBlank())
            return Finding{&cboCallNumberType, tr("Please choose the type of the call numbers.")};
        const callslips::Scheme scheme = callslips::SchemeOf(cboCallNumberType.Draft());
        if (!least.isEmpty() && !callslips::IsCallNumber(least, scheme))
            return Finding{&txtCallNumberMin, tr("Minimum Call Number is invalid.")};
        if (!end.isEmpty() && !callslips::IsCallNumber(end, scheme))
            return Finding{&txtCallNumberMax, tr("Maximum Call Number is invalid.")};
        if (!least.isEmpty() && !end.isEmpty() &&
            callslips::SortKey(least, scheme) >= callslips::SortKey(end, scheme))
            return Finding{
                &txtCallNumberMax,
                tr("The maximum call number must come behind the minimum.  It is itself no part of "
                   "the range.")};
    }
    if (!txtYearMin.IsBlank() && !txtYearMax.IsBlank() && txtYearMin.Value() >= txtYearMax.Value())
        return Finding{&txtYearMax,
                       tr("The maximum year must be later than the minimum.  It is itself no part "
                          "of the range.")};
    return std::nullopt;
}

frmCallSlip_Rules::frmCallSlip_Rules(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmCallSlip_Rules", tr("Call Slip Rules"), Area::System, parent) {
    AddTable({.subject = tr("Call Slip Rule"),
              .word = "CSR",
              .plural = "Call Slip Rules",
              .listAfterChange = true,
              .columns = Columns(),
              .recordTag = "RR",
              .sorted = false,
              .editCaption = "Edit Call Slip Rule",
              .saveCaption = "Save Call Slip Rule",
              .deleteCaption = "Delete Call Slip Rule",
              .order = {.request = "OrdCSR",
                        .rankTag = "RR",
                        .previousRankTag = "PRR",
                        .helpContext = 20210,
                        .caption = tr("Call Slip Rules"),
                        .derivedTags = {RankTag, TakenByTag}}, // both are of the order before
              .putOrder = {"PL", "TL", "IT", "TI", "LI", "GI", "CT", "MND", "MXD", "YMN", "YMX", "RR"}},
             m_form,
             Below({m_form.cboPrintGroups,
                    Frame("fraCriteria", tr("Criteria"),
                          {m_form.cboItemLocation, m_form.cboTempLocation, m_form.cboItemType,
                           m_form.cboTempItemType, m_form.cboHoldingsLocation}),
                    Frame("fraRanges", tr("Ranges"),
                          {m_form.cboCallNumberType, m_form.txtCallNumberMin, m_form.txtCallNumberMax,
                           m_form.txtYearMin, m_form.txtYearMax})}));
    cmdTry = MakeButton("cmdTry", tr("&Try a Request..."));
    AddListButton(cmdTry);
    Finish();
    connect(cmdTry, &QPushButton::clicked, this, &frmCallSlip_Rules::TryRequest);
    ReloadOn({"CSl", "Loc"}, [this] { ReloadLists(); }); // the list shows their names
}

QString frmCallSlip_Rules::Cell(const GridRow& row, const QString& tag) const {
    const QList<GridColumn>& columns = Current().spec.columns;
    for (qsizetype i = 0; i < columns.size(); ++i)
        if (columns[i].tag == tag)
            return row.cells.value(i);
    return {};
}

QList<callslips::Rule> frmCallSlip_Rules::Rules() const {
    const QList<GridColumn>& columns = Current().spec.columns;
    QHash<QString, qsizetype> places;
    for (qsizetype i = 0; i < columns.size(); ++i)
        places.insert(columns[i].tag, i);
    QList<callslips::Rule> rules;
    rules.reserve(Current().grid->Model().Rows().size());
    for (const GridRow& row : Current().grid->Model().Rows()) {
        rules.append(RuleOf([&](const QString& tag) { return row.cells.value(places.value(tag)); }));
    }
    return rules;
}

void frmCallSlip_Rules::LoadList(Table& table) {
    MaintenanceScreen::LoadList(table);
    MarkShadowed();
}

void frmCallSlip_Rules::MarkShadowed() {
    const callslips::Routing routing(Rules(), m_form.Known());
    const QList<QList<int>> shadows = routing.Shadows();
    ListGrid& grid = *Current().grid;
    const QList<GridColumn>& columns = Current().spec.columns;
    qsizetype takenBy = 0;
    while (columns[takenBy].tag != TakenByTag)
        ++takenBy;
    QList<GridRow> marked;
    for (qsizetype i = 0; i < shadows.size(); ++i) {
        if (shadows[i].isEmpty())
            continue;
        GridRow row = grid.Model().Rows()[i];
        row.cells[takenBy] = TakenBy(shadows[i]);
        marked.append(row);
    }
    grid.PutRows(marked);
}

QString frmCallSlip_Rules::DeleteItemText(const Table&, const GridRow& row) const {
    QStringList words{tr("Rule %1").arg(Cell(row, RankTag))};
    for (const char* tag : {"GN", "LN"})
        if (const QString text = Cell(row, tag); !text.isEmpty())
            words.append(text);
    return words.join(", ");
}

void frmCallSlip_Rules::RefreshOwnControls() {
    cmdTry->setEnabled(GetState() == State::List);
}

void frmCallSlip_Rules::TryRequest() {
    QList<TriedRule> rules;
    for (const GridRow& row : Current().grid->Model().Rows())
        rules.append({Cell(row, RankTag), Cell(row, "GN"), Cell(row, "LN")});
    const GridRow* selected = Current().grid->SelectedRow();
    const qsizetype start = selected ? Current().grid->Model().Rows().indexOf(*selected) : -1;
    TryRequestDialog dialog(m_form, Rules(), rules, int(start), this);
    App().prompter.RunDialog(dialog);
}

} // namespace sysadmin

#include "moc_frmCallSlip_Rules.cpp"
