#pragma once

#include "server/Passwords.h"
#include "server/remote/RemoteResult.h"

#include <memory>

namespace sysadmin::server {

/// The settings server of another library, and who signs on there.
struct PeerCall {
    QString host;
    quint16 port = 0;
    QString user;
    std::shared_ptr<const Secret> password{}; ///< null: none
    /// Which certificate is trusted: its SHA-256 in hexadecimal digits, "Authority" for any that one vouches
    /// for; empty while nobody has accepted one.
    QString trusted;
    bool readsClusters = false; ///< gets clusters and patron groups, too
};

/// The value of `PeerCall::trusted` while an authority vouches for the server.
inline const QString TrustedByAuthority = "Authority";

/// Signs on at the other server, asks what is to be asked and signs off. Nothing is sent to a server whose
/// certificate is not trusted.
RemoteResult CallPeer(const PeerCall& call, const Patience& patience);

/// Whether anything that talks TLS answers there.
bool IsReachable(const QString& host, quint16 port, const Patience& patience);

} // namespace sysadmin::server
