#pragma once

/// What both ends know of the connection to the RDA Toolkit.
namespace sysadmin::wire::rdatoolkit {

inline constexpr int AccountLength = 100;
inline constexpr int PasswordLength = 100;
inline constexpr int TestSeconds = 20; ///< that a test waits for an answer

} // namespace sysadmin::wire::rdatoolkit
