#include "core/data/YesNo.h"

#include "core/data/RequestChannel.h"

namespace sysadmin {

int YNIndex(const QString& value) {
    return value == u"N" ? 0 : value == u"Y" ? 1 : -1;
}

int YNToCheck(const RequestChannel& channel, const QString& tag) {
    return YNIndex(channel.GetField(tag));
}

QString CheckToYN(int state) {
    return state == 0 ? "N" : state == 1 ? "Y" : "";
}

QString BoolToYN(bool value) {
    return value ? "Y" : "N";
}

} // namespace sysadmin
