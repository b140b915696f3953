#pragma once

#include "wire/Lengths.h"

#include <QStringList>

/// What both ends know of the definitions of search indexes.
namespace sysadmin::wire::indexes {

/// The families of indexes, which have a screen and a table each.
enum class Family { Keyword, HoldingsKeyword, Composite, Headings };

inline constexpr int CodeLength = 20;
inline constexpr int NameLength = lengths::NameLength;
inline constexpr int DefinitionLength = 2000;
inline constexpr int RdaLength = 20;
inline constexpr int SubfieldsLength = 36; ///< every letter and digit once
inline constexpr int MostUse = 99999;      ///< of the Z39.50 use attributes: targets have their own
inline constexpr int MostDisplays = 3;
inline constexpr int MostSortKeys = 3;
inline constexpr int MostOffset = 9999; ///< of and in a field's text, in characters

/// The one code that no index may have.
inline const QString ReservedCode = "852B";
/// Stands for a blank among indicators.
inline constexpr char BlankIndicator = '_';
/// Between the codes of a composite index's components.
inline constexpr char ComponentSeparator = '~';
/// Of what the library sorts by when nothing is said.
inline const QString NoSortKey = " ";
inline const QString NoRdaFormats = "NNN";

/// The items of a definition.
namespace key {
inline const QString Kind = "IX";
inline const QString Components = "CS";
inline const QString ShowsColumn = "IDS";
inline const QString AllOccurrences = "AL";
inline const QString FirstOccurrence = "FS";
inline const QString LastOccurrence = "LS";
inline const QString IncludeSubfields = "S+";
inline const QString ExcludeSubfields = "S-";
inline const QString ExcludeFirstIndicator = "1-";
inline const QString IncludeFirstIndicator = "1+";
inline const QString ExcludeSecondIndicator = "2-";
inline const QString IncludeSecondIndicator = "2+";
inline const QString CallNumber = "CL";
inline const QString FixedOffset = "FO";
inline const QString FixedLength = "FL";
inline const QString BibField = "NF";
inline const QString TextLength = "LN";
} // namespace key

/// What an index is made of, as the item "IX" says.
namespace kind {
inline const QString Bibliographic = "B";
inline const QString Composite = "C";
inline const QString Holdings = "M";
inline const QString Headings = "H";
} // namespace kind

/// Whether the index comes with the system: it is not deleted and keeps its code.
bool IsSystemCode(Family family, const QString& code);
/// A code holds no blanks and nothing that has a meaning in definitions.
bool IsCode(const QString& code);
/// The field of a record: three digits, the last of which may be "X" for any, or "*" for all fields.
bool IsFieldPattern(const QString& text);
/// Subfields, or values of an indicator: each a digit or a lower-case letter, once.
bool AreSubfields(const QString& text);
bool AreIndicators(const QString& text);
bool IsSortKey(const QString& text);
/// Whether what is known of a definition is in order; what is not known is left alone.
bool IsDefinition(const QString& text);
/// The codes of a composite index's components, in order.
QStringList ComponentsOf(const QString& definition);

} // namespace sysadmin::wire::indexes
