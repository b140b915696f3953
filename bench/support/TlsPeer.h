#pragma once

#include "server/Certificate.h"
#include "wire/Message.h"

#include <QByteArray>

#include <memory>
#include <optional>
#include <thread>

struct ssl_st;
struct ssl_ctx_st;

namespace sysadmin {

/// A client that costs next to nothing besides what TLS does: a blocking socket for one thread. Ends the
/// program when something goes wrong.
class TlsPeer {
public:
    explicit TlsPeer(quint16 port);
    ~TlsPeer();
    TlsPeer(const TlsPeer&) = delete;
    TlsPeer& operator=(const TlsPeer&) = delete;

    /// Sends the bytes and reads one whole message.
    QByteArray Ask(const QByteArray& request);
    wire::Reply Ask(quint64 number, const QString& name, const wire::Fields& fields = {});
    void SignOn();

private:
    ssl_ctx_st* m_context = nullptr;
    ssl_st* m_ssl = nullptr;
    int m_socket = -1;
};

/// What any server has to do: it sends back what it gets, a thread for each connection.
class TlsEcho {
public:
    explicit TlsEcho(const server::ServerIdentity& identity);
    /// Waits until all peers have gone.
    ~TlsEcho();
    TlsEcho(const TlsEcho&) = delete;
    TlsEcho& operator=(const TlsEcho&) = delete;

    quint16 Port() const { return m_port; }

private:
    void Accept();

    ssl_ctx_st* m_context = nullptr;
    int m_socket = -1;
    quint16 m_port = 0;
    std::thread m_accepting;
};

} // namespace sysadmin
