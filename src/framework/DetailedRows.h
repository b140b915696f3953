#pragma once

#include "framework/forms/RowsField.h"

namespace sysadmin {

/// Rows of which the selected one is edited in fields beside the grid. The fields carry the tags of the
/// columns that they edit.
class DetailedRowsField : public RowsField {
public:
    /// `details` must live as long as the field.
    DetailedRowsField(Form& form, const FieldSpec& spec, const QList<GridColumn>& columns,
                      const RowsSpec& rows, Form& details);

    Form& Details() const { return m_details; }
    /// A number in a row that is out of the range of its field, told with the row's name.
    QString Problem() const override;
    QStringList Words() const override;

private:
    Form& m_details;
};

/// A row as one reads it aloud: its name (the first cell), and what the fields that carry the tags of its
/// columns say.
QString DetailsInWords(const GridRow& row, const QList<GridColumn>& columns, const Form& details);

} // namespace sysadmin
