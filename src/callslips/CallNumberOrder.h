#pragma once

#include <QList>
#include <QString>

// The order of call numbers, the same for both ends of the connection.

namespace sysadmin::callslips {

/// How the call numbers of a type are put in order.
enum class Scheme { LibraryOfCongress, Dewey, Other };

/// A type of call numbers: the code is the first indicator of the MARC holdings field 852.
struct CallNumberType {
    QString code;
    QString name;
    Scheme scheme = Scheme::Other;
};

/// The types in the order in which they are offered.
const QList<CallNumberType>& CallNumberTypes();
/// The scheme of a type; of a code that there is not, `Other`.
Scheme SchemeOf(const QString& typeCode);
bool IsCallNumberType(const QString& typeCode);

/// Whether the text is a call number of the scheme, or the beginning of one: a class of letters (LC) or of
/// digits (Dewey); of other schemes at least one letter or digit.
bool IsCallNumber(const QString& text, Scheme scheme);

/// A text by which call numbers of one scheme stand in shelf order when compared character by character.
/// Numbers count as numbers, what follows a decimal point or the letter of a Cutter number as decimals, and
/// what is shorter stands first. Letter case, blanks and punctuation around the parts do not count.
QString SortKey(const QString& callNumber, Scheme scheme);

} // namespace sysadmin::callslips
