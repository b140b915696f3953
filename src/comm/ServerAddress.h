#pragma once

#include <QString>

#include <optional>

namespace sysadmin {

/// Where a shared settings server listens.
struct ServerAddress {
    static constexpr quint16 DefaultPort = 7443;

    QString host;
    quint16 port = DefaultPort;
    bool operator==(const ServerAddress&) const = default;

    /// "host:port", with brackets around a host that is an IPv6 address.
    QString Text() const;
};

/// The address written as HOST or HOST:PORT; none when it is not one.
std::optional<ServerAddress> ParseServerAddress(const QString& text);

} // namespace sysadmin
