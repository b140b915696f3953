#pragma once

#include <QString>

/// Many saves in one request: all of them are done, or none.
namespace sysadmin::wire::many {

inline const QString Request = "UpdMany";
/// Begins each save: the name of its request; its fields follow.
inline const QString Begins = "RQ";
/// Y, in front of the saves: nothing is kept, it is only told what would be refused.
inline const QString OnlyTry = "TRY";
/// Begins in the reply each save that is refused: its place, from 0.
inline const QString Refused = "BI";
/// The status with which it is refused; "ChBy" and "ChAt" follow where somebody else changed or removed it.
inline const QString Why = "BS";
/// Nothing was done: it was a try, or some saves are refused.
inline constexpr qint16 NotDone = 139;

} // namespace sysadmin::wire::many
