#pragma once

#include "framework/FormDialog.h"
#include "framework/forms/ValueFields.h"
#include "wire/Counts.h"

#include <QPointer>

namespace sysadmin {

struct SaveContext;
struct PutStep;

/// A count that a policy group limits something to. One that is missing or out of range is told by the
/// limit's name.
class LimitField : public NumberField {
public:
    LimitField(Form& form, const FieldSpec& spec, const QString& limit)
        : NumberField(form, spec)
        , m_limit(limit) {}
    QString Problem() const override;

private:
    QString m_limit;
};

/// The dialog for one row of a policy group's settings: each field with a tag is a column of the row.
class SettingsForm : public RowForm {
public:
    /// A column per field with a tag, in their order; hidden unless the field has a caption for it.
    QList<GridColumn> Columns() const;
    /// What a row puts of its settings, the first of which is the cell of this column.
    QList<RowTag> Puts(int firstColumn) const;
    /// What a row begins with.
    QStringList Defaults();
    /// What sets the row apart from one with nothing set, as people read it.
    QString InWords(const GridRow& row, const QList<GridColumn>& columns);

    void TakeRow(const GridRow* row, const QList<GridColumn>& columns) override;
    void Begin(FormDialog& dialog, Prompter& prompter, const GridRow* former) override;

protected:
    /// A line that says whose settings they are, in front of the rest.
    Layout Headed(const QList<Layout>& rest);
    FormDialog* Dialog() const { return m_dialog; }
    Prompter& GetPrompter() const { return *m_prompter; }

private:
    QString m_whose;
    QPointer<FormDialog> m_dialog;
    Prompter* m_prompter = nullptr;
};

/// The rows of a policy group that hold settings: one per patron group, one per item type.
class SettingsRows : public RowsField {
public:
    SettingsRows(Form& form, const FieldSpec& spec, const GridColumn& name, SettingsForm& settings,
                 const RowsSpec& rows);

    /// The rows of a new group: all with what a row begins with.
    void Begin(const QList<GridRow>& names);
    QStringList Words() const override;

private:
    SettingsForm& m_settings;
};

/// The rows that changed, or all rows of a new group.
PutStep PutSettings(const SettingsRows& rows);

} // namespace sysadmin
