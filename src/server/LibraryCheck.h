#pragma once

#include <QString>

#include <functional>

namespace sysadmin::server {

struct ServerOptions;

/// Looks whether the library that the options name, its keys and its certificate are sound, and tells each
/// thing that it found, good or bad, in a sentence. Changes nothing. True when all is well.
bool CheckLibrary(const ServerOptions& options, const std::function<void(const QString&)>& tell);

} // namespace sysadmin::server
