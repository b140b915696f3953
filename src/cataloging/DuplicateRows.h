#pragma once

#include "framework/forms/RowsField.h"

namespace sysadmin {

/// The kinds of records of a profile's quality hierarchy, the best first.
QList<GridColumn> QualityColumns();
RowsSpec QualityRows();

/// The fields that a merge keeps. `width`: of the first columns, in pixels.
QList<GridColumn> MergeColumns(int width);
RowsSpec MergeRows(int width);

} // namespace sysadmin
