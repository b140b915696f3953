#pragma once

#include "comm/ModelServer.h"
#include "comm/ServerAddress.h"

#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QThread>

#include <functional>

namespace sysadmin {

/// A certificate made by the test, with its key.
struct SelfMadeCertificate {
    QSslCertificate certificate;
    QSslKey key;
    QByteArray Fingerprint() const { return certificate.digest(QCryptographicHash::Sha256); }
};

/// What a certificate is to be like.
struct CertificateWish {
    QString name = "localhost";
    bool forThisHost = true; ///< made also for 127.0.0.1
    int days = 2;            ///< for which it is valid; -1: it has expired
    bool isAuthority = false;
    const SelfMadeCertificate* authority = nullptr; ///< who vouches for it; itself when null
    bool weak = false;                              ///< its key can be broken
};
SelfMadeCertificate MakeCertificate(const CertificateWish& wish = {});

/// A server on 127.0.0.1 with TLS, in a thread of its own. The model server answers unless the fault function
/// says what to do instead.
class TlsPeer {
public:
    /// What to do with a request.
    struct Fault {
        enum Kind {
            None,
            CutBefore, ///< cut the connection before the request is carried out
            CutAfter,  ///< carry it out, and cut the connection instead of replying
            Silence,   ///< carry it out and do not reply
            Send,      ///< send `bytes` in place of the reply
            Append,    ///< send `bytes` after the reply
        };
        Kind kind = None;
        QByteArray bytes = {};
        int delay = 0; ///< milliseconds to wait first
        int piece = 0; ///< bytes to send at a time, a millisecond apart; 0: all at once
    };
    using Faults = std::function<Fault(const wire::Request& request, int connection)>;

    explicit TlsPeer(ModelServer& model, const SelfMadeCertificate& certificate = MakeCertificate());
    ~TlsPeer();

    void SetFaults(Faults faults);
    /// Shows another certificate from the next connection on.
    void Show(const SelfMadeCertificate& certificate);
    /// Talks in this way from the next connection on; the certificate stays.
    void Offer(const QSslConfiguration& configuration);
    /// Stops listening and cuts all connections.
    void Stop();
    /// Listens again at the same port.
    void Start();
    ServerAddress Address() const { return {"127.0.0.1", m_port}; }
    int Connections() const { return m_connections; }

private:
    class Worker;

    quint16 m_port = 0;
    std::atomic<int> m_connections = 0;
    QThread m_thread;
    Worker* m_worker = nullptr;
};

} // namespace sysadmin
