#pragma once

#include <QString>

namespace sysadmin {

class RequestChannel;

/// The value of a Y/N text as a check state: "N" 0, "Y" 1, anything else -1.
int YNIndex(const QString& value);
/// The same of a field of the current reply.
int YNToCheck(const RequestChannel& channel, const QString& tag);
/// A check state (0, 1, or 2 for greyed) as "N", "Y" or an empty text.
QString CheckToYN(int state);
QString BoolToYN(bool value);

} // namespace sysadmin
