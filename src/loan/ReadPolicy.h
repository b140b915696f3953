#pragma once

#include "loan/Policy.h"

#include <QPair>

namespace sysadmin::loan {

/// Fields under the tags of requests, in their order.
using Fields = QList<QPair<QString, QString>>;

/// Each takes over the fields that it knows and leaves what the others say as it is. Units are letters, flags
/// "Y" or "N", times "HH:mm", dates "yyyyMMdd", as requests carry them.
void ReadRule(const Fields& fields, Rule& rule);           ///< "GetMat"
void ReadRules(const Fields& fields, Group& group);        ///< "LstMatRule"
void ReadGroup(const Fields& fields, Group& group);        ///< the flags of "GetCrcGp"
void ReadItemSettings(const Fields& fields, Group& group); ///< the item rows of "GetCrcGp"
void ReadPatronRules(const Fields& fields, Group& group);  ///< "GetCrcPatronGp"
/// "GetPatGp"
void ReadDemeritRule(const Fields& fields, DemeritRule& rule);
void ReadCirculation(const Fields& fields, Policy& policy);  ///< "GetCrMsc"
void ReadLocations(const Fields& fields, Group& group);      ///< the selected locations of "GetCrcGp"
void ReadCalendar(const Fields& fields, Calendar& calendar); ///< "GetCal"

/// A unit by its letter; days for any other.
Unit UnitOf(const QString& letter);

} // namespace sysadmin::loan
