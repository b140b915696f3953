#include "framework/DetailedRows.h"

#include "framework/BesideOrBelow.h"
#include "framework/FormView.h"
#include "framework/ListGrid.h"
#include "framework/RowsEditor.h"
#include "framework/forms/ValueFields.h"

#include <functional>

namespace sysadmin {

namespace {

/// Goes through the row's cells that a field edits.
void ForEachDetail(const QList<GridColumn>& columns, const Form& details,
                   const std::function<void(int column, ValueField& field)>& act) {
    for (int column = 0; column < columns.size(); ++column)
        if (columns[column].tag.isEmpty())
            continue;
        else if (auto* field = dynamic_cast<ValueField*>(details.FindByTag(columns[column].tag)))
            act(column, *field);
}

class DetailedRowsEditor : public FieldEditor {
public:
    DetailedRowsEditor(DetailedRowsField& field, QWidget* parent)
        : FieldEditor(field)
        , m_rows(field) {
        auto* both = new BesideOrBelow(parent);
        m_widget = both;
        m_editor = std::make_unique<RowsEditor>(field, m_widget);
        m_grid = qobject_cast<ListGrid*>(m_editor->NamedWidget());
        QList<Layout> fields;
        for (Field* each : field.Details().Fields())
            fields.append(*each);
        m_view = new FormView(field.Details(), Below(fields), m_widget);
        int least = 0;
        for (const GridColumn& column : field.Columns())
            least += column.hidden ? 0 : column.width;
        both->Place(m_editor->Widget(), m_view, least);
        m_named = m_grid;
        m_focusWidgets = m_editor->FocusWidgets() + m_view->TabOrder();
        connect(m_grid, &ListGrid::SelectionMoved, this, &DetailedRowsEditor::ShowDetails);
        connect(&field.Details(), &Form::Edited, this, &DetailedRowsEditor::TakeDetail);
    }

protected:
    void ShowValue() override {
        m_editor->Refresh();
        if (!m_taking)
            ShowDetails();
    }
    void Lock(bool usable, bool readOnly) override {
        m_grid->setEnabled(usable);
        m_editor->SetReadOnly(readOnly);
        m_view->SetReadOnly(!usable || readOnly);
    }

private:
    void ShowDetails() {
        Form& form = m_rows.Details();
        const Form::Loading loading(form);
        form.Clear();
        const GridRow* row = m_rows.FindRow(m_grid->SelectedKey());
        if (row)
            ForEachDetail(m_rows.Columns(), form,
                          [&](int column, ValueField& field) { field.SetStored(row->cells.value(column)); });
        m_view->setEnabled(row);
    }
    void TakeDetail(Field* edited) {
        const bool wasTaking = std::exchange(m_taking, true);
        ForEachDetail(m_rows.Columns(), m_rows.Details(), [&](int column, const ValueField& field) {
            if (&field == edited)
                m_rows.SetCells({m_grid->SelectedKey()}, column, field.Draft());
        });
        m_taking = wasTaking;
    }

    DetailedRowsField& m_rows;
    std::unique_ptr<RowsEditor> m_editor;
    ListGrid* m_grid = nullptr;
    FormView* m_view = nullptr;
    bool m_taking = false;
};

const EditorFor<DetailedRowsField, DetailedRowsEditor> detailedRowsEditor;

} // namespace

DetailedRowsField::DetailedRowsField(Form& form, const FieldSpec& spec, const QList<GridColumn>& columns,
                                     const RowsSpec& rows, Form& details)
    : RowsField(form, spec, columns, rows)
    , m_details(details) {}

QString DetailedRowsField::Problem() const {
    QString problem = RowsField::Problem();
    for (const GridRow& row : Rows())
        ForEachDetail(Columns(), m_details, [&](int column, const ValueField& field) {
            const auto* number = dynamic_cast<const NumberField*>(&field);
            const QString value = row.cells.value(column);
            if (!number || value.isEmpty() || !problem.isEmpty())
                return;
            bool isNumber = false;
            const int entered = value.toInt(&isNumber);
            if (!isNumber || entered < number->Least() || entered > number->Most())
                problem = Form::tr("\"%1\" of \"%2\" must be a whole number from %3 to %4.")
                              .arg(number->PlainCaption(), row.cells.value(0))
                              .arg(number->Least())
                              .arg(number->Most());
        });
    return problem;
}

QStringList DetailedRowsField::Words() const {
    QStringList words;
    for (const GridRow& row : Rows())
        words << DetailsInWords(row, Columns(), m_details);
    return words;
}

QString DetailsInWords(const GridRow& row, const QList<GridColumn>& columns, const Form& details) {
    QStringList words;
    ForEachDetail(columns, details, [&](int column, const ValueField& field) {
        QString value = row.cells.value(column);
        if (dynamic_cast<const FlagField*>(&field)) {
            if (value == u"Y")
                words << field.PlainCaption();
            return;
        }
        if (const auto* choice = dynamic_cast<const ChoiceField*>(&field))
            for (const PickItem& item : choice->Items())
                if (item.id == row.cells.value(column) && !item.id.isEmpty())
                    value = item.text;
        if (!value.isEmpty())
            words << field.PlainCaption() + " " + value;
    });
    return words.isEmpty() ? row.cells.value(0) : row.cells.value(0) + ": " + words.join(", ");
}

} // namespace sysadmin
