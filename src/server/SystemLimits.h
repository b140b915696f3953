#pragma once

namespace sysadmin::server {

/// Gives memory that was freed back to the system, where the system's library would keep it.
void ReturnFreedMemory();
/// Lets this process open as many files and sockets as the system allows it.
void AllowManyFiles();

} // namespace sysadmin::server
