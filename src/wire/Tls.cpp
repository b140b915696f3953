#include "wire/Tls.h"

#include <QSslCertificate>
#include <QSslCipher>
#include <QSslKey>

namespace sysadmin::wire {

namespace {

bool IsWanted(const QSslCipher& cipher) {
    if (cipher.protocol() == QSsl::TlsV1_3)
        return true;
    const QString name = cipher.name();
    return name.startsWith("ECDHE-") && (name.contains("-GCM-") || name.contains("-CHACHA20-"));
}

} // namespace

QSslConfiguration TlsConfiguration() {
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setProtocol(QSsl::TlsV1_2OrLater);
    QList<QSslCipher> ciphers;
    for (const QSslCipher& cipher : QSslConfiguration::supportedCiphers())
        if (IsWanted(cipher))
            ciphers.append(cipher);
    configuration.setCiphers(ciphers);
    return configuration;
}

bool HasWeakKey(const QSslCertificate& certificate) {
    const QSslKey key = certificate.publicKey();
    switch (key.algorithm()) {
    case QSsl::Rsa:
    case QSsl::Dsa:
        return key.length() < 2048;
    case QSsl::Ec:
        return key.length() < 224;
    default:
        return false; // Ed25519 and its like have no weak sizes
    }
}

} // namespace sysadmin::wire
