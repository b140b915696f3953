#pragma once

#include "wire/Lengths.h"

#include <QList>
#include <QString>

/// What both ends know of the orders of MARC fields.
namespace sysadmin::wire::fieldorder {

inline constexpr int NameLength = lengths::NameLength;
inline constexpr int DescriptionLength = 250;
inline constexpr int ParameterLength = 100;
inline constexpr int MostGroups = 999; ///< of a configuration, and sort options of a group

/// What a sort option brings to the front, or sorts by.
enum class Sorts {
    Tag,
    TagDescending,
    Field,      ///< the fields with a tag
    Indicator1, ///< those of the group's fields with a first indicator
    Indicator2,
    FirstIndicator, ///< by its value
    SecondIndicator,
    Text,
    Subfield, ///< by the text of one subfield
    Source,   ///< those whose terms are of a source ($2)
    Contains, ///< those in which a text stands
};

/// A sort option as the catalogue offers it.
struct Option {
    int id = 0;
    const char* name = "";
    bool repeatable = false;
    bool takesParameter = false;
    const char* label = ""; ///< of the parameter
    const char* type = "";  ///< how many characters it has ("3C"); empty: any text
    Sorts sorts = Sorts::Tag;
};

inline constexpr char SpecificField[] = "Specific Field";
inline constexpr char SpecificIndicator1[] = "Specific Indicator 1";
inline constexpr char SpecificIndicator2[] = "Specific Indicator 2";

/// Stands in parameters for any tag, and for any indicator; and for an indicator that is blank.
inline const QString AnyTag = "XXX";
inline constexpr char AnyIndicator = '*';
inline constexpr char BlankIndicator = '#';

/// The sort options in the order in which they are offered.
const QList<Option>& Options();
/// The option of an id, or null.
const Option* FindOption(int id);

/// Which fields a group takes: "*", "245", "65X", "6XX", or a range "100-199" from low to high.
bool IsPattern(const QString& pattern);
/// Whether a field with this tag is one of the pattern's.
bool Takes(const QString& pattern, const QString& tag);
/// How a stored parameter that names an indicator begins for a group of this pattern.
QString TagPrefix(const QString& pattern);
/// Whether an option of a group may have the parameter in the form in which it is stored.
bool IsParameter(const Option& option, const QString& pattern, const QString& parameter);

} // namespace sysadmin::wire::fieldorder
