#pragma once

#include "exact/ExactTables.h"

namespace sysadmin {
struct ScreenDeclaration;
}

namespace sysadmin::exact {

/// Compares what a screen declares with what its rows say, word by word: for screens whose behaviour stories
/// tell. A line for each difference.
QStringList CompareDeclaration(const Screen& rows, const ScreenDeclaration& declared);

} // namespace sysadmin::exact
