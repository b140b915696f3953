#pragma once

#include "wire/Lengths.h"

#include <QString>

/// What both ends know of title lists: the results of a search, a line for each title.
namespace sysadmin::wire::titles {

/// The kinds of catalogue, which have a title list each.
inline const QString Staff = "S";
inline const QString PublicCatalogue = "P";

inline constexpr int TextCodeLength = 10;
inline constexpr int HeadingLength = lengths::TextLength;
inline constexpr int MostWidth = 200; ///< of a column, in characters
inline constexpr int UsualWidth = 20; ///< of a column that was just chosen

/// Whether texts can come from there: a field, or several (as in definitions of indexes), or none: then the
/// catalogue makes the text itself.
bool IsTextField(const QString& text);

} // namespace sysadmin::wire::titles
