#pragma once

#include "server/Library.h"
#include "server/Sessions.h"
#include "wire/Endpoint.h"

#include <QThread>

namespace sysadmin::server {

/// The server's end of a client's connection: keeps to the protocol, signs on, and carries out requests. Its
/// database connection belongs to the thread that calls it; it opens another when it is called from another
/// one.
class ServerConnection : public wire::Endpoint {
public:
    /// `peer` is the address of the other side, "local" inside the process.
    ServerConnection(std::shared_ptr<const Library> library, const QString& peer);
    ~ServerConnection() override;

    std::optional<QByteArray> Handle(const QByteArray& message) override;
    qint64 MessageLimit() const override;

    bool IsSignedOn() const { return m_session != 0; }

private:
    Database& GetDatabase();
    std::optional<QByteArray> HandleSessionRequest(const wire::Request& request);
    std::optional<QByteArray> HandleNumbered(const wire::Request& request);
    Answer Hello();
    Answer ChangePassword(const wire::Fields& request);
    Answer Carry(const wire::Request& request, const RequestRule& rule, const StoredSession& session,
                 ListCursor& cursor);
    void TouchSession();

    std::shared_ptr<const Library> m_library;
    QString m_peer;
    std::unique_ptr<Database> m_database;
    Qt::HANDLE m_databaseThread = nullptr;
    qint64 m_session = 0; ///< row of the session; 0 while nobody is signed on
    qint64 m_epoch = 0;
    quint64 m_number = 0;   ///< of the last request on this connection
    bool m_resumed = false; ///< the next request may have any higher number: replies to reads are not kept
    int m_wrongSignOns = 0;
};

/// Whether the address is this machine's own.
bool IsLocalPeer(const QString& peer);

} // namespace sysadmin::server
