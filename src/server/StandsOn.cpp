#include "server/StandsOn.h"

#include "server/store/Engine.h"

#include <openssl/crypto.h>
#include <sodium.h>
#include <yaz/yaz-version.h>

namespace sysadmin::server {

QList<QPair<QString, QString>> StandsOn() {
    char yaz[64] = "";
    yaz_version(yaz, nullptr);
    return {{"SQLite", SqliteVersion()},
            {"PostgreSQL client", PostgreSqlVersion()},
            {"libsodium", sodium_version_string()},
            {"OpenSSL", OpenSSL_version(OPENSSL_VERSION_STRING)},
            {"YAZ", yaz}};
}

} // namespace sysadmin::server
