#include "server/StandsOn.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QVariant>

#include <openssl/crypto.h>
#include <sodium.h>
#include <yaz/yaz-version.h>

namespace sysadmin::server {

namespace {

/// What the SQLite that Qt uses says of itself.
QString SqliteVersion() {
    const QString name = "stands-on";
    QString version = "-";
    {
        QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE", name);
        database.setDatabaseName(":memory:");
        QSqlQuery query(database);
        if (database.open() && query.exec("SELECT sqlite_version()") && query.next())
            version = query.value(0).toString();
    }
    QSqlDatabase::removeDatabase(name);
    return version;
}

} // namespace

QList<QPair<QString, QString>> StandsOn() {
    char yaz[64] = "";
    yaz_version(yaz, nullptr);
    const QString driver = QString("Qt %1").arg(qVersion());
    return {{"SQLite", SqliteVersion()},
            {"PostgreSQL driver", QSqlDatabase::isDriverAvailable("QPSQL") ? driver : QString("-")},
            {"libsodium", sodium_version_string()},
            {"OpenSSL", OpenSSL_version(OPENSSL_VERSION_STRING)},
            {"YAZ", yaz}};
}

} // namespace sysadmin::server
