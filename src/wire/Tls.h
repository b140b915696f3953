#pragma once

#include <QSslConfiguration>

class QSslCertificate;

namespace sysadmin::wire {

/// What both ends of a connection agree to: TLS 1.3, or 1.2 with a key of its own for each connection and
/// encryption that is authenticated (no CBC suites). This is the client's end.
QSslConfiguration TlsConfiguration();
/// The same suites of TLS 1.2 in OpenSSL's words, for the server's end.
constexpr const char* OlderCiphers = "ECDHE+AESGCM:ECDHE+CHACHA20";

/// Whether a certificate's key can be broken with today's means: RSA below 2048 bits, elliptic curves below
/// 224.
bool HasWeakKey(const QSslCertificate& certificate);

} // namespace sysadmin::wire
