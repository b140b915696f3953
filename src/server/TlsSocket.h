#pragma once

#include "server/Certificate.h"

#include <memory>
#include <span>

using SSL = struct ssl_st;
using SSL_CTX = struct ssl_ctx_st;

namespace sysadmin::server {

/// What the TLS connections of a server share: its certificate, and what it agrees to.
class TlsContext {
public:
    /// Throws `std::runtime_error` when the identity cannot be used.
    explicit TlsContext(const ServerIdentity& identity);

    SSL_CTX* Get() const { return m_context.get(); }

private:
    struct End {
        void operator()(SSL_CTX* context) const;
    };
    std::unique_ptr<SSL_CTX, End> m_context;
};

/// The server's end of an encrypted connection, straight on its socket: it keeps nothing while nothing is on
/// the way, so that many may be idle.
class TlsSocket {
public:
    enum class Result {
        Done,
        Waiting, ///< for the peer: nothing more comes, or goes out, now
        Gone,    ///< the peer has closed the connection or broken the rules
    };

    /// Takes the socket over.
    TlsSocket(qintptr socket, const TlsContext& context);
    ~TlsSocket();
    TlsSocket(const TlsSocket&) = delete;
    TlsSocket& operator=(const TlsSocket&) = delete;

    qintptr Descriptor() const { return m_socket; }

    /// Goes on with the handshake.
    Result Shake();
    bool IsEncrypted() const { return m_isEncrypted; }
    /// Reads what is there, at most as much as fits; `count` says how many bytes.
    Result Read(std::span<char> into, qint64* count);
    /// Writes as much as the system takes; `count` says how many bytes.
    Result Write(QByteArrayView bytes, qint64* count);

private:
    struct End {
        void operator()(SSL* ssl) const;
    };

    Result ResultOf(int answer) const;

    qintptr m_socket;
    std::unique_ptr<SSL, End> m_ssl;
    bool m_isEncrypted = false;
};

} // namespace sysadmin::server
