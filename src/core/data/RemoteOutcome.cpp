#include "core/data/RemoteOutcome.h"

#include "core/data/Tr.h"

namespace sysadmin {

QString RemoteOutcome::Sentence() const {
    if (outcome == u"unknown-host")
        return Tr("There is no computer named %1.").arg(place.section(':', 0, -2));
    if (outcome == u"refused")
        return Tr("Nothing is running at %1.").arg(place);
    if (outcome == u"unreachable")
        return Tr("%1 cannot be reached: %2").arg(place, detail);
    if (outcome == u"timed-out")
        return Tr("%1 did not answer within %2 seconds.").arg(place, timeout);
    if (outcome == u"closed") {
        const QString ended = Tr("%1 ended the connection.").arg(place);
        return detail.isEmpty() ? ended : ended + ' ' + Tr("It says: %1").arg(detail);
    }
    if (outcome == u"too-long")
        return Tr("%1 sends more than any answer needs. The connection was cut.").arg(place);
    if (outcome == u"password-unreadable")
        return Tr("The stored password cannot be read on this server. Enter it again.");
    if (outcome == u"busy")
        return Tr("Too many connections are being tested. Try again in a moment.");
    if (outcome == u"cancelled")
        return Tr("The test was cancelled.");
    return {};
}

} // namespace sysadmin
