#pragma once

#include <QIcon>
#include <QString>

namespace sysadmin {

/// The program's own picture of this name (`data/icons/NAME.svg`): line drawings in two colours, which take
/// the palette's text and accent colour when they are painted, at any size and pixel ratio. An unknown name
/// is an empty icon.
QIcon LoadIcon(const QString& name);

} // namespace sysadmin
