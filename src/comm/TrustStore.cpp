#include "comm/TrustStore.h"

#include "core/data/UserSettings.h"

#include <QUrl>

namespace sysadmin {

namespace {

QString KeyOf(const ServerAddress& server) {
    return "TrustedServers/" + QString::fromLatin1(QUrl::toPercentEncoding(server.Text())) + "/Fingerprint";
}

} // namespace

QByteArray TrustStore::Fingerprint(const ServerAddress& server) const {
    return QByteArray::fromHex(UserSettings().value(KeyOf(server)).toByteArray());
}

void TrustStore::Keep(const ServerAddress& server, const QByteArray& fingerprint) {
    QSettings settings = UserSettings();
    settings.setValue(KeyOf(server), QString::fromLatin1(fingerprint.toHex()));
}

void TrustStore::Forget(const ServerAddress& server) {
    QSettings settings = UserSettings();
    settings.remove(KeyOf(server));
}

QString FingerprintText(const QByteArray& fingerprint) {
    return QString::fromLatin1(fingerprint.toHex(':').toUpper());
}

} // namespace sysadmin
