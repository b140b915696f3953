#include "wire/WebAddress.h"

#include <QUrl>

namespace sysadmin::wire {

bool IsWebAddress(const QString& address) {
    if (address.trimmed().isEmpty())
        return true;
    const QUrl url(address.trimmed(), QUrl::StrictMode);
    return url.isValid() && (url.scheme() == "http" || url.scheme() == "https") && !url.host().isEmpty();
}

bool IsEncryptedAddress(const QString& address) {
    return QUrl(address.trimmed(), QUrl::StrictMode).scheme() == "https";
}

} // namespace sysadmin::wire
