#include "comm/TrustStore.h"

#include "core/data/UserSettings.h"

#include <QUrl>

namespace sysadmin {

namespace {

// The value of the key "Fingerprint" while an authority vouches for the server.
constexpr char Authority[] = "Authority";

QString KeyOf(const ServerAddress& server) {
    return "TrustedServers/" + QString::fromLatin1(QUrl::toPercentEncoding(server.Text())) + "/Fingerprint";
}

} // namespace

Trust TrustStore::Of(const ServerAddress& server) const {
    const QByteArray kept = UserSettings().value(KeyOf(server)).toByteArray();
    if (kept == Authority)
        return Trust::Vouched();
    return kept.isEmpty() ? Trust() : Trust::Accepted(QByteArray::fromHex(kept));
}

void TrustStore::Keep(const ServerAddress& server, const Trust& trust) {
    QSettings settings = UserSettings();
    switch (trust.kind) {
    case Trust::Kind::None:
        settings.remove(KeyOf(server));
        break;
    case Trust::Kind::Authority:
        settings.setValue(KeyOf(server), QString(Authority));
        break;
    case Trust::Kind::Fingerprint:
        settings.setValue(KeyOf(server), QString::fromLatin1(trust.fingerprint.toHex()));
        break;
    }
}

QString FingerprintText(const QByteArray& fingerprint) {
    return QString::fromLatin1(fingerprint.toHex(':').toUpper());
}

} // namespace sysadmin
