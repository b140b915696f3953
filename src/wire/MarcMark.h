#pragma once

#include <QString>

namespace sysadmin::wire {

/// Whether the text stands for one character of a leader or for an indicator: a digit, a lower-case letter,
/// "_" for a blank, "*" for any.
bool IsMarcMark(const QString& text);

} // namespace sysadmin::wire
