#pragma once

#include <QDate>
#include <QTime>

namespace sysadmin::server {

// What texts of records that are a date or a time of day must be like; they may be empty.

/// "20250930"
inline bool IsDate(const QString& value) {
    return value.isEmpty() || (value.size() == 8 && QDate::fromString(value, "yyyyMMdd").isValid());
}

/// "07:30"
inline bool IsTimeOfDay(const QString& value) {
    return value.isEmpty() || (value.size() == 5 && QTime::fromString(value, "HH:mm").isValid());
}

} // namespace sysadmin::server
