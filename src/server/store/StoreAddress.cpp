#include "server/store/StoreAddress.h"

#include <QDir>
#include <QUrl>
#include <QUrlQuery>

namespace sysadmin::server {

StoreAddress StoreAddress::InDirectory(const QString& directory) {
    StoreAddress address;
    address.file = QDir(directory).absoluteFilePath("library.sqlite");
    return address;
}

std::optional<StoreAddress> StoreAddress::FromUrl(const QString& text, QString* error) {
    const QUrl url(text, QUrl::StrictMode);
    const QString database = url.path().mid(1);
    if (!url.isValid() || (url.scheme() != "postgresql" && url.scheme() != "postgres") ||
        database.isEmpty() || database.contains('/')) {
        *error = "The database must be given as postgresql://USER@HOST:PORT/DATABASE.";
        return std::nullopt;
    }
    QStringList options;
    const auto items = QUrlQuery(url).queryItems(QUrl::FullyDecoded);
    for (const auto& [name, value] : items) {
        if (name == "host") { // the directory of a local socket does not fit into the host part
            continue;
        }
        if (name != "sslmode" && name != "sslrootcert" && name != "connect_timeout") {
            *error = "The database option \"" + name +
                     "\" is not known; there are sslmode, sslrootcert and connect_timeout.";
            return std::nullopt;
        }
        options << QString(name + '=' + value);
    }
    // A database machine that has vanished is found out while somebody still waits for the answer.
    for (const char* patience : {"connect_timeout=10", "tcp_user_timeout=30000", "keepalives_idle=30",
                                 "keepalives_interval=10", "keepalives_count=3"}) {
        const QString option(patience);
        if (options.filter(option.section('=', 0, 0) + '=').isEmpty())
            options << option;
    }
    StoreAddress address;
    address.engine = Engine::PostgreSql;
    address.host = url.host();
    if (const QString socket = QUrlQuery(url).queryItemValue("host", QUrl::FullyDecoded); !socket.isEmpty())
        address.host = socket;
    address.port = url.port(5432);
    address.database = database;
    address.user = url.userName();
    address.password = url.password();
    address.options = options;
    return address;
}

QString StoreAddress::Describe() const {
    if (engine == Engine::Sqlite)
        return file;
    return "database \"" + database + "\" on " + (host.isEmpty() ? QString("this machine") : host);
}

} // namespace sysadmin::server
