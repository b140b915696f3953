#include "comm/ServerAddress.h"

#include <QRegularExpression>
#include <QUrl>

namespace sysadmin {

QString ServerAddress::Text() const {
    const QString shown = host.contains(':') ? QString("[" + host + "]") : host;
    return shown + ":" + QString::number(port);
}

std::optional<ServerAddress> ParseServerAddress(const QString& text) {
    const QString trimmed = text.trimmed();
    // What a URL would take for a path, a user or an empty port is a slip of the pen here.
    if (trimmed.endsWith(':') || trimmed.contains(QRegularExpression("[\\s/?#@\\\\]")))
        return {};
    const QUrl url("tls://" + trimmed, QUrl::StrictMode);
    if (!url.isValid() || url.host().isEmpty())
        return {};
    const int port = url.port(ServerAddress::DefaultPort);
    if (port < 1)
        return {};
    return ServerAddress{url.host(), quint16(port)};
}

} // namespace sysadmin
