#pragma once

#include <QString>

/// What both ends know of cataloging policy groups.
namespace sysadmin::wire::catalogingpolicy {

/// What becomes of a record in which a check found something wrong.
inline const QString Warn = "W";   ///< the cataloger is told and may save it all the same
inline const QString Refuse = "R"; ///< it is not saved

bool IsConsequence(const QString& value);

} // namespace sysadmin::wire::catalogingpolicy
