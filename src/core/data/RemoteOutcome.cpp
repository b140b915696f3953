#include "core/data/RemoteOutcome.h"

#include <QCoreApplication>

namespace sysadmin {

namespace {

QString tr(const char* text) {
    return QCoreApplication::translate("RemoteOutcome", text);
}

} // namespace

QString RemoteOutcome::Sentence() const {
    if (outcome == u"unknown-host")
        return tr("There is no computer named %1.").arg(place.section(':', 0, -2));
    if (outcome == u"refused")
        return tr("Nothing is running at %1.").arg(place);
    if (outcome == u"unreachable")
        return tr("%1 cannot be reached: %2").arg(place, detail);
    if (outcome == u"timed-out")
        return tr("%1 did not answer within %2 seconds.").arg(place, timeout);
    if (outcome == u"closed") {
        const QString ended = tr("%1 ended the connection.").arg(place);
        return detail.isEmpty() ? ended : ended + ' ' + tr("It says: %1").arg(detail);
    }
    if (outcome == u"too-long")
        return tr("%1 sends more than any answer needs. The connection was cut.").arg(place);
    if (outcome == u"password-unreadable")
        return tr("The stored password cannot be read on this server. Enter it again.");
    if (outcome == u"busy")
        return tr("Too many connections are being tested. Try again in a moment.");
    if (outcome == u"cancelled")
        return tr("The test was cancelled.");
    return {};
}

} // namespace sysadmin
