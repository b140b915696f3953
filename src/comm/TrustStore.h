#pragma once

#include "comm/ServerAddress.h"

#include <QByteArray>

namespace sysadmin {

/// Why the operator trusts a server.
struct Trust {
    enum class Kind {
        None,        ///< the server is not known yet
        Authority,   ///< an authority that this computer knows has vouched for its certificates so far
        Fingerprint, ///< the operator has accepted one certificate
    };
    Kind kind = Kind::None;
    QByteArray fingerprint = {}; ///< of the accepted certificate: SHA-256 of its DER form, 32 bytes
    bool operator==(const Trust&) const = default;

    static Trust Vouched() { return {Kind::Authority}; }
    static Trust Accepted(const QByteArray& fingerprint) { return {Kind::Fingerprint, fingerprint}; }
};

/// Which servers are trusted and why, in the per-user settings store.
class TrustStore {
public:
    Trust Of(const ServerAddress& server) const;
    void Keep(const ServerAddress& server, const Trust& trust);
    void Forget(const ServerAddress& server) { Keep(server, {}); }
};

/// A fingerprint as people compare it: pairs of capital hexadecimal digits with colons between.
QString FingerprintText(const QByteArray& fingerprint);

} // namespace sysadmin
