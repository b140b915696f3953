#include "security/LastSecurityHolder.h"

#include <QCoreApplication>

namespace sysadmin {

QString LastSecurityHolderText() {
    return QCoreApplication::translate(
        "LastSecurityHolder", "At least one operator must keep the right to change security settings.");
}

} // namespace sysadmin
