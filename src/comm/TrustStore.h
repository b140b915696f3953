#pragma once

#include "comm/ServerAddress.h"

#include <QByteArray>

namespace sysadmin {

/// The certificates that the operator has trusted, by server, in the per-user settings store. A certificate
/// is known by its fingerprint: SHA-256 of its DER form, 32 bytes.
class TrustStore {
public:
    /// The fingerprint kept for a server; empty when there is none.
    QByteArray Fingerprint(const ServerAddress& server) const;
    void Keep(const ServerAddress& server, const QByteArray& fingerprint);
    void Forget(const ServerAddress& server);
};

/// A fingerprint as people compare it: pairs of capital hexadecimal digits with colons between.
QString FingerprintText(const QByteArray& fingerprint);

} // namespace sysadmin
