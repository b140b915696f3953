#pragma once

#include "wire/Endpoint.h"
#include "wire/Message.h"
#include "wire/SealedPassword.h"

#include <QHash>
#include <QMutex>
#include <QStringList>

#include <optional>

namespace sysadmin {

/// A settings server of the smallest kind that keeps strictly to the protocol: sessions, numbers, kept
/// replies; its operator is OPER with the password "secret". "Add" adds its field "V", "Get" answers its own
/// fields, everything else is unknown. May be used from several threads.
class ModelServer {
public:
    /// What a connection knows; one per connection.
    struct Connection {
        QString token;
        QString nonce; ///< under which its passwords are sealed
    };

    ModelServer();

    /// Further fields of the replies to "Hello" and "SignOn".
    wire::Fields hello;
    wire::Fields signOn;

    /// The reply, or none when the peer broke the protocol.
    std::optional<wire::Reply> Handle(Connection& connection, const wire::Request& request);
    /// Connection ends inside the process.
    wire::EndpointFactory Endpoints();

    /// All values added, in order.
    QStringList Added() const;
    /// All requests in the order of their arrival, as "NUMBER NAME".
    QStringList Received() const;
    void ForgetSessions();
    /// The password in a sealed text; in brackets why there is none.
    QString Open(const QString& sealed, wire::PasswordPurpose purpose, const QString& nonce) const;

private:
    struct Session {
        quint64 number = 0;
        wire::Reply reply = {};
    };

    wire::Reply HandleOutsideSession(Connection& connection, const wire::Request& request);

    mutable QMutex m_mutex;
    QByteArray m_publicKey;
    QByteArray m_secretKey;
    QHash<QString, Session> m_sessions;
    QStringList m_added;
    QStringList m_received;
    int m_nonces = 0;
};

} // namespace sysadmin
