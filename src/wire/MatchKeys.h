#pragma once

#include <QString>

/// What both ends know of the keys by which records of different databases are found to be the same: a place
/// in a record, and how its text is made comparable.
namespace sysadmin::wire::matching {

/// How a text is made comparable.
namespace normal {
inline const QString AsItStands = "N";
inline const QString Text = "T";           ///< letters and digits, without case and marks
inline const QString StandardNumber = "S"; ///< ISBN (in thirteen digits), ISSN: without marks
inline const QString ControlNumber = "L";  ///< of the Library of Congress
inline const QString SystemNumber = "C";   ///< without agency, letters and zeros in front
} // namespace normal

inline constexpr int MostCompared = 10000; ///< results of a database that are compared
inline constexpr int UsuallyCompared = 200;

bool IsNormalisation(const QString& code);
/// The text as it is compared; empty when nothing of it counts.
QString Normalised(const QString& text, const QString& normalisation);

} // namespace sysadmin::wire::matching
