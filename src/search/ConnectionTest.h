#pragma once

#include <QString>

#include <optional>

namespace sysadmin {

class RequestChannel;

/// What came of calling the server of a database.
struct ConnectionResult {
    QString outcome{}; ///< as it travels: "connected", "refused", ...
    QString detail{};  ///< the other side's own words
    QString place{};   ///< "host:port"
    QString timeout{}; ///< seconds
    QString milliseconds{};
    QString fingerprint{}; ///< of the certificate that it showed
    QString name{};        ///< of the target or library
    QString version{};
    QString hits{}; ///< empty: nothing was searched
    QString record{};

    bool IsConnected() const { return outcome == u"connected"; }
    /// Whether the operator may accept the certificate.
    bool AsksForTrust() const { return outcome == u"new-certificate" || outcome == u"other-certificate"; }
    /// What became of it, in a sentence for the operator.
    QString Sentence() const;
    /// The question whether to accept the certificate.
    QString TrustQuestion() const;

    /// Reads it from the channel's reply.
    static ConnectionResult Read(const RequestChannel& channel);
};

/// A test of a database's connection, which the server carries out while the program asks how far it is.
class ConnectionTest {
public:
    static constexpr int PollPause = 150; ///< milliseconds between two questions how far it is
    static constexpr size_t AtOnce = 4;   ///< databases that are called side by side when all are
    static inline const QString UsualTerm = "history";

    ConnectionTest(RequestChannel& channel, const QString& code, const QString& searchCode = {},
                   const QString& term = {});

    /// Begins the test, or asks how far it is. None while it goes on; after a failure of the request itself
    /// `Status` is not 0.
    std::optional<ConnectionResult> Poll();
    qint16 Status() const { return m_status; }
    bool IsRunning() const { return m_running; }
    void Cancel();

private:
    void Put(const QString& goesOn);

    RequestChannel& m_channel;
    QString m_code;
    QString m_searchCode;
    QString m_term;
    bool m_running = false;
    qint16 m_status = 0;
};

/// Tells the server that the certificate with this fingerprint is the right one for the database. The status.
qint16 SendTrust(RequestChannel& channel, const QString& code, const QString& fingerprint);

} // namespace sysadmin
