#pragma once

#include <QString>

/// What both ends know of the places in a record from which a holdings record takes its call number.
namespace sysadmin::wire::callnumbers {

inline constexpr int MostPlaces = 50; ///< of a hierarchy
inline constexpr int MostSubfields = 10;

/// Subfields in the order in which they make a call number: digits and lower-case letters, each once. Empty
/// for a control field, which has none.
bool IsSubfields(const QString& value);
/// Whether field and subfields go together: a control field (001 to 009) has none, any other needs them.
bool GoTogether(const QString& field, const QString& subfields);

} // namespace sysadmin::wire::callnumbers
