#pragma once

#include "framework/forms/RowsField.h"

namespace sysadmin {

/// The columns of a form's fields: labels alone, or fields that are exchanged with an outside system.
QList<GridColumn> SimpleFieldColumns();
QList<GridColumn> MappedFieldColumns();

/// What the catalogue lets the patron do with a field that is exchanged, by its code.
const QList<PickItem>& PatronChanges();

/// Asks for a field's label and whether it is required in "frmOpac_RequestFormsSettings".
RowAsker AskSimpleField();
/// Asks for all of a field that is exchanged. `formType` answers the type of its form.
RowAsker AskMappedField(const std::function<QString()>& formType);

} // namespace sysadmin
