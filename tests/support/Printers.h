#pragma once

#include "wire/Message.h"

#include <QString>

#include <ostream>

// How failed comparisons show texts and fields. Precompiled into every test program.

inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

namespace sysadmin::wire {

inline void PrintTo(const Field& field, std::ostream* out) {
    *out << field.tag.toStdString() << "=\"" << field.value.toStdString() << '"';
}

} // namespace sysadmin::wire
