#pragma once

#include "framework/forms/RowsField.h"

namespace sysadmin {

/// The columns of the attributes that search codes send to a Z39.50 target.
QList<GridColumn> AttributeColumns();
/// How those rows are read, put, shown ("[1=4]") and entered in the dialog of one search code.
RowsSpec AttributeRows();

} // namespace sysadmin
