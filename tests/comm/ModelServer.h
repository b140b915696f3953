#pragma once

#include "wire/Endpoint.h"
#include "wire/Message.h"
#include "wire/SealedPassword.h"

#include <QHash>
#include <QMutex>
#include <QStringList>

#include <memory>
#include <optional>

namespace sysadmin {

/// A settings server of the smallest kind that keeps strictly to the protocol: sessions, numbers, kept
/// replies. "Add" adds its field "V", "Get" answers its own fields, everything else is unknown. May be used
/// from several threads.
class ModelServer {
public:
    /// What a connection knows; one per connection.
    struct Connection {
        QString token;
        QString nonce; ///< under which its passwords are sealed
    };

    ModelServer();

    /// The reply, or none when the peer broke the protocol.
    std::optional<wire::Reply> Handle(Connection& connection, const wire::Request& request);
    /// Connection ends inside the process.
    wire::EndpointFactory Endpoints();

    /// All values added, in order.
    QStringList Added() const;
    /// All requests in the order of their arrival, as "NUMBER NAME".
    QStringList Received() const;
    void ForgetSessions();
    void SetOperatorPassword(const QString& password) { m_password = password; }
    /// Further fields of the replies to "Hello" and "SignOn".
    void SetHello(const wire::Fields& fields) { m_hello = fields; }
    void SetSignOn(const wire::Fields& fields) { m_signOn = fields; }
    /// The status of "ChgOwnPwd".
    void SetChangeStatus(qint16 status) { m_changeStatus = status; }
    /// The password in a sealed text; in brackets why there is none.
    QString Open(const QString& sealed, wire::PasswordPurpose purpose, const QString& nonce) const;

private:
    struct Session {
        quint64 number = 0;
        wire::Reply reply = {};
        QString nonce = {};
    };

    wire::Reply HandleOutsideSession(Connection& connection, const wire::Request& request);

    mutable QRecursiveMutex m_mutex;
    QByteArray m_publicKey;
    QByteArray m_secretKey;
    QString m_password = "secret";
    wire::Fields m_hello;
    wire::Fields m_signOn;
    qint16 m_changeStatus = 0;
    QHash<QString, Session> m_sessions;
    QStringList m_added;
    QStringList m_received;
    int m_nonces = 0;
};

} // namespace sysadmin
