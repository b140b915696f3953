#pragma once

#include "wire/Message.h"

#include <QSslSocket>

#include <optional>

namespace sysadmin {

/// A client's socket without a client: writes whatever it is told to. Blocks, so that it serves in any
/// thread.
class RawPeer {
public:
    /// Connects with TLS to 127.0.0.1.
    explicit RawPeer(quint16 port);

    bool IsConnected() const { return m_socket.isEncrypted(); }
    void Write(const QByteArray& bytes);
    /// The next reply; none when the connection ended or nothing came in time.
    std::optional<wire::Reply> Read();
    std::optional<wire::Reply> Ask(quint64 number, const QString& name, const wire::Fields& fields = {});
    /// Whether a sample operator was accepted.
    bool SignOn(const QString& operatorId);
    /// Of the session that was begun: with it another connection takes the session up.
    const QString& Token() const { return m_token; }
    /// Reads and drops so many replies; false when the connection ended or nothing came in time.
    bool ReadAll(int replies);
    /// Breaks the connection off, whatever is still on its way.
    void Reset() { m_socket.abort(); }

private:
    QSslSocket m_socket;
    QString m_token;
};

} // namespace sysadmin
