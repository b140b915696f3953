#pragma once

#include <QCoreApplication>

namespace sysadmin {

/// Translates a text that stands outside of any class with a tr() of its own.
inline QString Tr(const char* text) {
    return QCoreApplication::translate("Sysadmin", text);
}

} // namespace sysadmin
