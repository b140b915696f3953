#pragma once

#include <QString>

#include <functional>

namespace sysadmin::server {

struct ServerOptions;

/// Where the command line's words go.
struct RunOutput {
    std::function<void(const QString& line)> tell;
    std::function<void(const QString& line)> complain;
};

/// Exports, compares or imports a library's settings, as the options ask. Answers the exit status: 0 when all
/// is well and nothing differs, 1 when something differs or was refused, 2 when it could not be looked at.
int RunSettings(const ServerOptions& options, const RunOutput& output);

} // namespace sysadmin::server
