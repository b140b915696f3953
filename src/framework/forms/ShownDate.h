#pragma once

#include <QString>

class QDate;

namespace sysadmin {

/// How dates, and dates with a time of day, travel where nothing else is said.
inline constexpr const char* WireDate = "yyyy-MM-dd";
inline constexpr const char* WireMoment = "yyyy-MM-dd HH:mm:ss";

/// The form in which people here read and write dates: the locale's short one with the whole year.
QString DateForm();

/// The date in that form; an invalid one is an empty text.
QString ShownDate(QDate date);

/// A date in the text form `format`, with a time of day if the format has hours, as people here read it. Any
/// other text as it is.
QString ShownDate(const QString& text, const QString& format);

/// A time of day "HH:mm" as people here read it; any other text is an empty one.
QString ShownTime(const QString& time);

} // namespace sysadmin
