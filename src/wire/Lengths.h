#pragma once

/// How many characters a text may have, by what it is: the same on both ends, so that no screen takes what
/// the server refuses.
namespace sysadmin::wire::lengths {

/// Codes and names unless a subject has a reason of its own. What came from elsewhere is kept whole, also
/// where a screen's own field is shorter.
inline constexpr int CodeLength = 40;
inline constexpr int NameLength = 100;
inline constexpr int NoteLength = 4000;

/// Names and texts of code tables.
inline constexpr int TextLength = 40;
inline constexpr int VendorTypeCodeLength = 10;
inline constexpr int EdiCodeLength = 10;
inline constexpr int MaterialCodeLength = 10;
inline constexpr int PrintLocationCodeLength = 20;
inline constexpr int CurrencyCodeLength = 10;

/// Addresses and phones.
inline constexpr int AddressLineLength = 60;
inline constexpr int StateLength = 40;
inline constexpr int PostalCodeLength = 20;
inline constexpr int StandardNumberLength = 20;
inline constexpr int PhoneLength = 40;
inline constexpr int MostAddresses = 6; ///< of a location
inline constexpr int DomainNameLength = 253;

/// Web services.
inline constexpr int PinLength = 25;
inline constexpr int AlertLength = 250;

/// Call slips.
inline constexpr int CallNumberLength = 100;
inline constexpr int MostSlipPeriod = 9999;
inline constexpr int MostSlipYear = 9999;

/// Operators.
inline constexpr int OperatorIdLength = 20;
inline constexpr int OperatorNameLength = 30;

} // namespace sysadmin::wire::lengths
