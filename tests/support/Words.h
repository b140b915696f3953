#pragma once

#include "wire/Message.h"

#include <QStringList>

namespace sysadmin::testing {

/// The words of a line of the test tables: a text in double quotes (also behind a "=") is one word, in which
/// \n is a line break as it travels, and a backslash takes any other letter as it is.
QStringList SplitWords(const QString& line);

/// TAG=VALUE words as fields.
wire::Fields FieldsOf(const QStringList& words);

} // namespace sysadmin::testing
