#pragma once

#include <QtGlobal>

/// The statuses that both ends name. The texts for them are the client's (core/data/StatusTable.h).
namespace sysadmin::wire::status {

inline constexpr qint16 Ok = 0;
inline constexpr qint16 CommunicationsFailure = 1;
inline constexpr qint16 TableError = 2;
inline constexpr qint16 ColumnError = 3;
inline constexpr qint16 DuplicateRecord = 4;
inline constexpr qint16 NotFound = 5;
inline constexpr qint16 UnknownRequest = 6;
inline constexpr qint16 DuplicateName = 7;
inline constexpr qint16 DuplicateCode = 8;
inline constexpr qint16 DuplicateId = 9;
inline constexpr qint16 InvalidSignOn = 11;
inline constexpr qint16 NotAuthorised = 12;
inline constexpr qint16 InUse = 13;
inline constexpr qint16 ReservedCode = 16;
inline constexpr qint16 IsOpacDesk = 51; ///< a location that is a policy group's desk of the public catalogue
inline constexpr qint16 LastSecurityRight = 53;
inline constexpr qint16 Continues = 55;
inline constexpr qint16 InvalidFund = 59;
inline constexpr qint16 DefaultRecord = 72; ///< it stays while it is the default one
inline constexpr qint16 WrongLeastCallNumber = 75;
inline constexpr qint16 WrongMostCallNumber = 76;
inline constexpr qint16 NoClusterLocation = 98;
inline constexpr qint16 RepeatedPassword = 107;
inline constexpr qint16 MinimumPasswordAge = 108;
inline constexpr qint16 WeakPassword = 109;
inline constexpr qint16 PublishedPassword = 110;
inline constexpr qint16 ReplyTooLong = 130;
/// Somebody else changed the record after this session read it: nothing was written.
inline constexpr qint16 RecordChanged = 131;
/// Some of the pairs for which rules were to be added have one already: nothing was written.
inline constexpr qint16 MatrixEntriesExist = 132;
/// The calendars of a policy group have days in common.
inline constexpr qint16 CalendarsOverlap = 133;
/// A location is in another circulation policy group.
inline constexpr qint16 LocationInOtherGroup = 134;
/// Another search database has the same address and port.
inline constexpr qint16 AddressInUse = 135;
/// The local search database was to be deleted or to get another code.
inline constexpr qint16 LocalDatabase = 136;
/// A search index that comes with the system was to be deleted or to get another code.
inline constexpr qint16 SystemIndex = 137;
/// What was there at that time is not known: older entries of the history were removed.
inline constexpr qint16 HistoryRemoved = 138;

} // namespace sysadmin::wire::status
