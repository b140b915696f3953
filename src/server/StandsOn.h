#pragma once

#include <QList>
#include <QPair>
#include <QString>

namespace sysadmin::server {

/// The libraries on which the settings server stands, each with its version.
QList<QPair<QString, QString>> StandsOn();

} // namespace sysadmin::server
