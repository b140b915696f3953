#pragma once

#include <QString>

namespace sysadmin {

/// What a status tells the operator. Line breaks in the text are CR LF.
struct StatusText {
    QString message;
    bool serious = false; ///< goes to the error dialog instead of a message box
};

/// The text of a status; a status without one of its own is "Database Error", serious.
StatusText TextOfStatus(qint16 status);

} // namespace sysadmin
