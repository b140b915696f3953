#pragma once

#include "exact/ExactTables.h"

namespace sysadmin {
struct GridColumn;
struct ScreenDeclaration;
} // namespace sysadmin

namespace sysadmin::exact {

/// Compares what a screen declares with what its rows say, word by word: for screens whose behaviour stories
/// tell. A line for each difference.
QStringList CompareDeclaration(const Screen& rows, const ScreenDeclaration& declared);

/// How a column says that it shows Y and N: "yes-no", with the mark of its own if it has one; else empty.
QString MarksOf(const GridColumn& column);

} // namespace sysadmin::exact
