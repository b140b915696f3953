#pragma once

#include "server/ServerConnection.h"
#include "server/store/Database.h"
#include "wire/Message.h"

#include <QTemporaryDir>

#include <memory>
#include <optional>

namespace sysadmin::testing {

/// A client's end of a connection to a server in this process. Numbers its requests as clients do.
class TestClient {
public:
    TestClient(std::shared_ptr<const server::Library> library, const QString& peer);

    /// The whole reply to a session request (`Hello`, `SignOn`, ...); none when the server cut the client
    /// off.
    std::optional<wire::Reply> Ask(const QString& name, const wire::Fields& fields = {});
    /// The whole reply to a request with a number of its own.
    std::optional<wire::Reply> SendNumbered(quint64 number, const QString& name,
                                            const wire::Fields& fields = {});
    /// The reply to the next request. Status 1 stands for being cut off.
    wire::Reply Send(const QString& name, const wire::Fields& fields = {});
    /// The whole reply to a sign-on; none when the server cut the client off.
    std::optional<wire::Reply> TrySignOn(const QString& operatorId, const QString& password);
    /// Status of a sign-on; the token is kept for `Resume`.
    qint16 SignOn(const QString& operatorId, const QString& password);
    /// Takes a session over; the numbers go on after `lastNumber`.
    qint16 Resume(const QString& token, quint64 lastNumber);
    /// A password as it travels, for a purpose of this connection or of the session that it began.
    QString Seal(const QString& password, wire::PasswordPurpose purpose = wire::PasswordPurpose::Set);

    const QString& Token() const { return m_token; }
    quint64 LastNumber() const { return m_number; }
    server::ServerConnection& Connection() { return m_connection; }

private:
    server::ServerConnection m_connection;
    QString m_token;
    QString m_nonce; ///< of the session
    quint64 m_number = 0;
};

/// A sample library of its own with a server, cheap password hashing, and a clock that tests set.
class TestServer {
public:
    struct Options {
        /// Where the library is; a directory that goes with the test unless a test says otherwise.
        std::optional<server::StoreAddress> address = {};
        std::shared_ptr<const server::Registry> registry = {};
        QString signOnAs = "SYSADMIN"; ///< nobody when empty
        bool servesOthers = false;
    };

    TestServer();
    explicit TestServer(const Options& options);

    /// The reply to a request of the operator that is signed on.
    wire::Reply Send(const QString& name, const wire::Fields& fields = {}) {
        return m_client->Send(name, fields);
    }
    qint16 StatusOf(const QString& name, const wire::Fields& fields = {}) {
        return Send(name, fields).status;
    }
    /// Signs one of the sample's operators on, in place of the one before.
    void SignOnAs(const QString& operatorId);
    TestClient& Client() { return *m_client; }
    /// Another connection, with nobody signed on.
    std::unique_ptr<TestClient> Connect(const QString& peer = "local") const;

    /// Closes the library and opens it again, as a restart of the server does. Connections and sessions of
    /// other clients are theirs to take up again; the operator signs on anew.
    void Restart();
    void Advance(qint64 seconds) { *m_now = m_now->addSecs(seconds); }
    QDateTime Now() const { return *m_now; }

    const server::Library& GetLibrary() const { return *m_library; }
    server::Database& GetDatabase();
    /// The first value that a statement answers, as text.
    QString Value(const QString& sql, const QVariantList& values = {});
    QString Directory() const { return m_directory.path(); }

private:
    void Open();

    QTemporaryDir m_directory;
    Options m_options;
    QString m_signedOn;
    std::shared_ptr<QDateTime> m_now;
    std::shared_ptr<const server::Library> m_library;
    std::unique_ptr<server::Database> m_database;
    std::unique_ptr<TestClient> m_client;
};

/// Fills an empty folder with a sample library: one that was made once for all tests of the process, because
/// making it takes longer than most tests.
void CopySample(const QString& folder);

/// The password of a sample operator.
QString SamplePassword(const QString& operatorId);

/// The values of a tag in a reply, in order.
QStringList ValuesOf(const wire::Fields& fields, const QString& tag);
/// The value of `wanted` in the record of a list in which `tag` has this value: the first one after it.
QString InRecord(const wire::Fields& fields, const QString& tag, const QString& value, const QString& wanted);

} // namespace sysadmin::testing
