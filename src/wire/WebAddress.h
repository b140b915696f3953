#pragma once

#include <QString>

namespace sysadmin::wire {

inline constexpr int WebAddressLength = 250;

/// An address of a web service (http or https), or nothing.
bool IsWebAddress(const QString& address);
/// Whether nobody can read on the way what is sent there.
bool IsEncryptedAddress(const QString& address);

} // namespace sysadmin::wire
