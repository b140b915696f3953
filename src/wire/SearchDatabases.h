#pragma once

#include "wire/Lengths.h"

#include <QString>

/// What both ends know of search databases.
namespace sysadmin::wire::databases {

/// The code of the library's own database, which is always there.
inline const QString LocalCode = "LOCAL";

/// The types: a database of the library system itself, and a Z39.50 target.
inline const QString SystemType = "V";
inline const QString TargetType = "Z";

inline constexpr int CodeLength = 20;
inline constexpr int SearchCodeLength = 20;
inline constexpr int NameLength = lengths::NameLength;
inline constexpr int UserLength = 100;
inline constexpr int PasswordLength = 128;
inline constexpr int AddressLength = lengths::DomainNameLength;
inline constexpr int KeyLength = 40;

inline constexpr int MostPort = 65535;
inline constexpr int MostWeight = 500;
inline constexpr int MostHits = 10000;
inline constexpr int MostTimeout = 32767; ///< seconds

} // namespace sysadmin::wire::databases
