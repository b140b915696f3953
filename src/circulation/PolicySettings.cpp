#include "circulation/PolicySettings.h"

#include "framework/Declaration.h"
#include "framework/forms/PutList.h"
#include "framework/forms/Rules.h"

#include <utility>

namespace sysadmin {

QString LimitField::Problem() const {
    bool isNumber = false;
    const int value = Draft().trimmed().toInt(&isNumber);
    if (isNumber && value >= Least() && value <= Most())
        return {};
    return m_limit + "\r\n\r\n" + Form::tr("Valid values range is ") +
           QString("%1 - %2.").arg(Least()).arg(Most());
}

QList<GridColumn> SettingsForm::Columns() const {
    QList<GridColumn> columns;
    for (const Field* field : Fields()) {
        if (field->Tag().isEmpty())
            continue;
        GridColumn column = field->Spec().column;
        column.tag = field->Tag();
        column.hidden = column.caption.isEmpty();
        column.yesNo = field->GetKind() == Field::Kind::Flag;
        columns.append(column);
    }
    return columns;
}

QList<RowTag> SettingsForm::Puts(int firstColumn) const {
    QList<RowTag> puts;
    for (const Field* field : Fields()) {
        if (field->Tag().isEmpty())
            continue;
        const int column = firstColumn + int(puts.size());
        puts.append(field->GetKind() == Field::Kind::Money ? PutAmount(field->Tag(), column)
                                                           : PutCell(field->Tag(), column));
    }
    return puts;
}

QStringList SettingsForm::Defaults() {
    Clear();
    QStringList cells;
    for (const GridColumn& column : Columns())
        cells.append(dynamic_cast<ValueField&>(*FindByTag(column.tag)).Draft());
    return cells;
}

QString SettingsForm::InWords(const GridRow& row, const QList<GridColumn>& columns) {
    TakeRow(&row, columns);
    QStringList words;
    for (const Field* field : Fields()) {
        const auto* value = dynamic_cast<const ValueField*>(field);
        const QString initial = field->Spec().initial;
        if (!value || field->Tag().isEmpty() || value->IsBlank() || value->Draft() == initial)
            continue;
        const auto* flag = dynamic_cast<const FlagField*>(field);
        if (flag && flag->IsOn())
            words.append(field->PlainCaption());
        else if (!flag)
            words.append(field->PlainCaption() + " " + field->Words().join(" "));
    }
    return row.cells.value(0) + ": " + words.join(", ");
}

void SettingsForm::TakeRow(const GridRow* row, const QList<GridColumn>& columns) {
    RowForm::TakeRow(row, columns);
    m_whose = row ? row->cells.value(0) : QString();
}

void SettingsForm::Begin(FormDialog& dialog, Prompter& prompter, const GridRow*) {
    m_dialog = &dialog;
    m_prompter = &prompter;
    dialog.problemBox = [](const Finding& finding) {
        if (!dynamic_cast<const LimitField*>(finding.field))
            return Box{.text = finding.text};
        return Box{.text = finding.text, .icon = Box::Icon::Critical, .title = tr("Invalid Value")};
    };
}

Layout SettingsForm::Headed(const QList<Layout>& rest) {
    Layout whole = Below(m_whose.isEmpty() ? rest : QList<Layout>{Note(m_whose)} + rest);
    Resolve(whole, *this);
    return whole;
}

SettingsRows::SettingsRows(Form& form, const FieldSpec& spec, const GridColumn& name, SettingsForm& settings,
                           const RowsSpec& rows)
    : RowsField(form, spec, QList<GridColumn>{name} + settings.Columns(), rows)
    , m_settings(settings) {}

void SettingsRows::Begin(const QList<GridRow>& names) {
    const QStringList defaults = m_settings.Defaults();
    QList<GridRow> rows;
    for (const GridRow& row : names)
        rows.append({row.key, row.cells.Texts() + defaults, {}});
    SetStoredRows(rows);
}

QStringList SettingsRows::Words() const {
    QStringList words;
    for (const GridRow& row : Rows())
        words.append(m_settings.InWords(row, Columns()));
    return words;
}

PutStep PutSettings(const SettingsRows& rows) {
    return PutStep(
        [&rows](RequestChannel& channel, const SaveContext& context) {
            if (!context.isNew)
                rows.Put(channel);
            else
                for (const GridRow& row : rows.Rows())
                    rows.PutOne(channel, row, RowState::Added);
        },
        rows.Behaviour().puts.first().tag);
}

} // namespace sysadmin
