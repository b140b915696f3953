#pragma once

#include "server/Databases.h"
#include "server/Library.h"
#include "server/Sessions.h"
#include "wire/Endpoint.h"

namespace sysadmin::server {

class SessionView;

/// The server's end of a client's connection: keeps to the protocol, signs on, and carries out requests. It
/// may be called from several threads, one at a time.
class ServerConnection : public wire::Endpoint {
public:
    /// `peer` is the address of the other side, "local" inside the process.
    /// `databases` are those that it shares with other connections; its own when there are none.
    ServerConnection(std::shared_ptr<const Library> library, const QString& peer,
                     std::shared_ptr<Databases> databases = {});
    ~ServerConnection() override;

    std::optional<QByteArray> Handle(const QByteArray& message) override;
    void HandleThen(const QByteArray& message, const Answered& answered) override;
    QString Account() const override { return IsSignedOn() ? m_operator : QString(); }
    bool Writes(const QByteArray& request) const override;
    qint64 MessageLimit() const override;

    bool IsSignedOn() const { return m_session != 0; }

private:
    Database& GetDatabase();
    /// Handles a message, the disk apart.
    std::optional<QByteArray> HandleMessage(const QByteArray& message);
    std::optional<QByteArray> HandleSessionRequest(const wire::Request& request);
    std::optional<QByteArray> HandleNumbered(const wire::Request& request);
    Answer Hello();
    Answer ChangePassword(const wire::Fields& request);
    /// The session, unless it is over or another connection has taken it up.
    std::optional<StoredSession> LoadSession();
    Answer Carry(const wire::Request& request, const RequestRule& rule, const StoredSession& session,
                 SessionView& view, Prepared* prepared, ListCursor& cursor);
    /// Does what of a request is slow and can be done before its transaction.
    std::shared_ptr<Prepared> Prepare(const wire::Request& request, const RequestRule* rule);
    void TouchSession();

    std::shared_ptr<const Library> m_library;
    QString m_peer;
    std::shared_ptr<Databases> m_databases;
    QString m_nonce;      ///< under which a password for a sign-on is sealed; empty before a `Hello`
    qint64 m_session = 0; ///< row of the session; 0 while nobody is signed on
    QString m_operator;   ///< whose session it is
    qint64 m_epoch = 0;
    quint64 m_number = 0;   ///< of the last request on this connection
    bool m_resumed = false; ///< the next request may have any higher number: replies to reads are not kept
    std::optional<StoredSession> m_known; ///< the session as it was last read
    int m_wrongSignOns = 0;
};

} // namespace sysadmin::server
