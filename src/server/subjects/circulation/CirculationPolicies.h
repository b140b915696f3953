#pragma once

#include "server/subjects/circulation/KeyedRows.h"

namespace sysadmin::server {

/// The policy group (and its cluster) that a request names under "ID" and "CID"; none when there is no such
/// group in the cluster. Without "CID" any group of that id will do.
struct NamedGroup {
    qint64 id = 0;
    qint64 cluster = 0;
};
std::optional<NamedGroup> FindPolicyGroup(Context& context, const wire::Fields& request);

/// The locations of a policy group with their settings (tags of "UpdCrcGpLoc" and "GetCrcGp").
const KeyedRows& PolicyLocations();
/// Appends the locations that a group may take ("AI", "AN") and, of a stored one, those that it has ("SI",
/// "SN" and their settings).
void PutPolicyLocations(Context& context, std::optional<qint64> group, ReplyFields& reply);

/// A calendar's dates for comparing: "yyyyMMdd", an open end as the last day there is.
struct CalendarDates {
    qint64 id = 0;
    QString begin;
    QString end;

    bool Overlaps(const CalendarDates& other) const { return begin <= other.end && other.begin <= end; }
};
/// The dates of the calendars that a policy group has.
QList<CalendarDates> CalendarsOf(Context& context, qint64 group);
/// The end as it compares.
QString ComparableEnd(const QString& end);

} // namespace sysadmin::server
