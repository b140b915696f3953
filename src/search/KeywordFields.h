#pragma once

#include "framework/forms/RowsField.h"

namespace sysadmin {

/// The columns of the record fields whose words a keyword index takes.
QList<GridColumn> KeywordColumns();
/// How those rows are read, put and entered in the dialog of one field.
RowsSpec KeywordRows();
/// What is wrong with a list of subfields, in a sentence.
QString SubfieldsProblem();

} // namespace sysadmin
