#include "server/store/Database.h"
#include "server/store/Engine.h"

namespace sysadmin::server {

std::unique_ptr<EngineConnection> OpenPostgreSql(const StoreAddress& address) {
    throw StoreError(StoreError::Kind::Failure, "This program was built without PostgreSQL: " +
                                                    address.Describe() + " is out of reach.");
}

QString PostgreSqlVersion() {
    return "-";
}

} // namespace sysadmin::server
