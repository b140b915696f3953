#pragma once

#include "wire/Lengths.h"

#include <QString>

/// What both ends know of the profiles by which incoming records are recognised as duplicates.
namespace sysadmin::wire::duplicates {

/// The types of records that a profile is for.
inline const QString Bibliographic = "B";
inline const QString Authority = "A";

/// What becomes of an incoming record that is a duplicate.
namespace handling {
inline const QString AddUnconditional = "A";
inline const QString Replace = "R";
inline const QString AddConditional = "D";
inline const QString Merge = "M";
inline const QString MergeBothWays = "B";
} // namespace handling

/// Stands for any value in patterns of records, and for any indicator.
inline const QString Any = "*";
/// Stands for a blank in a leader or an indicator.
inline constexpr char Blank = '_';

inline constexpr int CodeLength = lengths::CodeLength;
inline constexpr int NameLength = lengths::NameLength;
inline constexpr int AgencyLength = 40;
inline constexpr int MostWeight = 9999;
inline constexpr int MostScore = 99999;
inline constexpr int UsualWeight = 100; ///< of an index that was just selected

/// Of what a profile's code may consist.
inline const QString CodeCharacters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz1234567890_";

/// The code that stands among the indexes for the record's own identifier.
inline QString RecordIdCode(const QString& recordType) {
    return recordType == Authority ? QString("ATID") : QString("BBID");
}

bool IsRecordType(const QString& value);
bool IsHandling(const QString& value);
bool IsCancellation(const QString& value);
bool IsProfileCode(const QString& value);
/// A field of a record: three digits.
bool IsField(const QString& value);

} // namespace sysadmin::wire::duplicates
