#pragma once

#include "wire/Lengths.h"

#include <QString>
#include <QStringList>

/// What both ends know of the request forms of the public catalogue.
namespace sysadmin::wire::requestforms {

/// The type of the form without bibliographic data, and the code that it always has.
inline const QString WithoutBibliographicData = "0";
inline const QString WithoutBibliographicDataCode = "nobibdat";
inline const QString ItemLevel = "I";
inline const QString Book = "L";
inline const QString Article = "P";
inline const QString EmailVoucher = "A";
/// The code of the form by which the catalogue places call slip requests; its fields are known to the system.
inline const QString CallSlipCode = "CALLSLIP";

/// The type codes of all forms, ...
inline const QString AllTypes = "0ILPSZUXCYAEFNB";
/// ... of those that are offered in universal borrowing databases, ...
inline const QString UniversalBorrowingTypes = "SZU";
/// ... and of those that are exchanged with an outside interlibrary loan system, field by field.
inline const QString ExchangedTypes = "XCYAEF";
/// Of these the ones whose patron fields the outside system fills itself.
inline const QString PatronFilledTypes = "EF";

inline constexpr int CodeLength = lengths::TextLength;
inline constexpr int NameLength = lengths::NameLength;
inline constexpr int EmailLength = 254;
inline constexpr int InstructionsLength = lengths::NoteLength;
inline constexpr int LabelLength = 60;
inline constexpr int MappingLength = 60;
inline constexpr int LoginLength = 60;
inline constexpr int PasswordLength = 128;
inline constexpr int PrefixLength = 20;
inline constexpr int MostVoucher = 999999999;
inline constexpr int MostFields = 99;

/// The fields of the outside system, in the order in which they are offered.
const QStringList& OutsideFields();
/// Those of them that say who the patron is.
bool IsPatronField(const QString& outsideField);
/// Whether the text has the form of one e-mail address.
bool IsEmailAddress(const QString& text);

inline bool IsType(const QString& type) {
    return type.size() == 1 && AllTypes.contains(type);
}
inline bool IsExchanged(const QString& type) {
    return type.size() == 1 && ExchangedTypes.contains(type);
}
inline bool IsUniversalBorrowing(const QString& type) {
    return type.size() == 1 && UniversalBorrowingTypes.contains(type);
}

} // namespace sysadmin::wire::requestforms
