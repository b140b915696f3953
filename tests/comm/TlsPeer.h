#pragma once

#include "comm/ModelServer.h"
#include "comm/ServerAddress.h"

#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QThread>

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
};
SelfMadeCertificate MakeCertificate(const CertificateWish& wish = {});

/// A server on 127.0.0.1 with TLS, in a thread of its own. The model server answers.
class TlsPeer {
public:
    /// What to do with a reply.
    struct Fault {
        std::optional<QByteArray> instead = {}; ///< what to send in its place
        QByteArray behind = {};                 ///< what to send after it
        ulong delay = 0;                        ///< milliseconds to wait first
    };

    TlsPeer(ModelServer& model, const SelfMadeCertificate& certificate);
    ~TlsPeer();

    /// Lets the next reply go wrong.
    void FailOnce(const Fault& fault);
    /// Shows this certificate and talks in this way from the next connection on.
    void Offer(const SelfMadeCertificate& certificate,
               QSslConfiguration configuration = QSslConfiguration::defaultConfiguration());
    void StopListening();
    ServerAddress Address() const { return {"127.0.0.1", m_port}; }

private:
    class Worker;

    quint16 m_port = 0;
    QThread m_thread;
    Worker* m_worker = nullptr;
};

} // namespace sysadmin
