#include "cataloging/FieldOrderForm.h"

#include "cataloging/frmCataloging_MARCFieldGroups.h"
#include "core/Prompter.h"
#include "wire/FieldOrder.h"

namespace sysadmin {

namespace {

constexpr int PatternColumn = 0;
constexpr int RulesColumn = 2;
const QChar RuleEnd('\n');
const QChar OptionEnd('\t');

QList<GridColumn> GroupColumns() {
    return {{.caption = Form::tr("Field Group"), .width = 130},
            {.caption = Form::tr("Sort Rule")},
            {.caption = Form::tr("Rules"), .hidden = true}};
}

RowsSpec GroupBehaviour() {
    return {.ranked = true,
            .add = {"cmdAddSortGroup", Form::tr("&Add...")},
            .modify = {"cmdEditSortGroup", Form::tr("Ed&it...")},
            .remove = {"cmdRemoveSortGroup", Form::tr("&Remove")},
            .up = {"cmdUp", Form::tr("&Up")},
            .down = {"cmdDown", Form::tr("Do&wn")},
            .asksInView = true};
}

} // namespace

FieldOrderGroupsField::FieldOrderGroupsField(Form& form, const FieldSpec& spec, OrderingRules& catalogue)
    : RowsField(form, spec, GroupColumns(), GroupBehaviour())
    , m_catalogue(catalogue) {
    RowAsker& asker = Behaviour().ask;
    asker.dialog = {.name = "frmCataloging_MARCFieldGroups",
                    .title = Form::tr("MARC Field Groups and Sorting"),
                    .helpContext = 50451,
                    .okName = "cmdSave"};
    asker.captions = {Form::tr("Any Field"), Form::tr("NNN - NNN:"), Form::tr("NNN:"), Form::tr("NNx:"),
                      Form::tr("Nxx:")};
    asker.ask = [this](const FormDialogSpec& dialog, QWidget* parent, Prompter& prompter,
                       const GridRow* former, const RowCheck&) -> std::optional<GridRow> {
        FieldOrderGroup group = former ? GroupOf(*former) : FieldOrderGroup();
        if (!former)
            group.priority = int(Rows().size()) + 1;
        frmCataloging_MARCFieldGroups editor(m_catalogue, prompter, dialog.readOnly, parent);
        editor.SetFieldOrderGroup(group);
        if (!prompter.RunDialog(editor) || editor.Cancelled())
            return std::nullopt;
        GridRow row = RowOf(editor.GetFieldOrderGroup());
        if (former)
            row.key = former->key;
        return row;
    };
}

GridRow FieldOrderGroupsField::RowOf(FieldOrderGroup group) const {
    QString rules;
    for (const FieldOrderRule& rule : group.rules)
        rules += QString::number(rule.ruleId) + OptionEnd + rule.parameter + RuleEnd;
    return {group.Key(m_catalogue), {group.match, group.RuleText(m_catalogue), rules}, {}};
}

FieldOrderGroup FieldOrderGroupsField::GroupOf(const GridRow& row) const {
    FieldOrderGroup group;
    group.match = row.cells.value(PatternColumn);
    group.id = qMax(row.key.toInt(), 0);
    for (const QString& line : row.cells.value(RulesColumn).split(RuleEnd, Qt::SkipEmptyParts)) {
        FieldOrderRule rule{.ruleId = line.section(OptionEnd, 0, 0).toInt(),
                            .parameter = line.section(OptionEnd, 1)};
        rule.displayParameter = ShownParameter(m_catalogue.Find(rule.ruleId), rule.parameter);
        group.rules.append(rule);
    }
    group.RenumberRules();
    return group;
}

QList<FieldOrderGroup> FieldOrderGroupsField::Groups() const {
    FieldOrderConfig configuration;
    for (const GridRow& row : Rows())
        configuration.groups.append(GroupOf(row));
    configuration.Renumber();
    return configuration.groups;
}

void FieldOrderGroupsField::SetStoredGroups(const QList<FieldOrderGroup>& groups) {
    QList<GridRow> rows;
    for (const FieldOrderGroup& group : groups)
        rows.append(RowOf(group));
    SetStoredRows(rows);
}

QStringList FieldOrderGroupsField::Words() const {
    QStringList words;
    for (const FieldOrderGroup& group : Groups()) {
        QStringList rules;
        for (const FieldOrderRule& rule : group.rules)
            rules.append(rule.Text(m_catalogue));
        words.append(QString::number(group.priority) + ". " + group.match +
                     (rules.isEmpty() ? QString() : ": " + rules.join(", ")));
    }
    return words;
}

FieldOrderForm::FieldOrderForm(OrderingRules& catalogue)
    : txtName(*this, {.name = "txtName",
                      .tag = "MFONAME",
                      .caption = tr("&Name:"),
                      .maxLength = wire::fieldorder::NameLength,
                      .required = true,
                      .column = {tr("Names"), 200}})
    , txtDescription(*this, {.name = "txtDescription",
                             .tag = "MFODESC",
                             .caption = tr("&Description:"),
                             .maxLength = wire::fieldorder::DescriptionLength,
                             .column = {tr("Descriptions")}})
    , chkPairing880(*this,
                    {.name = "chkPairing880", .tag = "MFO880", .caption = tr("A&pply 880 Paired Sorting")})
    , vsfGroups(*this, {.name = "vsfGroups", .accessible = tr("Field groups and sort rules")}, catalogue) {}

FieldOrderConfig FieldOrderForm::Draft() const {
    return {.name = txtName.Draft(),
            .description = txtDescription.Draft(),
            .pairing880 = chkPairing880.IsOn(),
            .groups = vsfGroups.Groups()};
}

} // namespace sysadmin
