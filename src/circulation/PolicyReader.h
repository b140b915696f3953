#pragma once

#include "core/data/PickLists.h"
#include "loan/Policy.h"

#include <QSet>

namespace sysadmin {

class RequestChannel;

/// Reads what the loans of a circulation cluster depend on: as much as is needed, and each piece once. Every
/// function answers 0, or the status of the first request that failed.
class PolicyReader {
public:
    PolicyReader(RequestChannel& channel, const QString& clusterId);

    /// What there is: the names of patron groups and item types, the policy groups with their locations,
    /// flags and item settings. Forgets what was read before.
    qint16 ReadGroups();
    /// The rules, the patrons' rules and the calendars of a policy group.
    qint16 ReadRules(qint64 group);
    /// How demerits count for a patron group, where they are in use.
    qint16 ReadDemerits(qint64 patronGroup);
    /// All policy groups with everything.
    qint16 ReadAll();

    const loan::Policy& Policy() const { return m_policy; }
    void SetDecimals(int decimals) { m_policy.decimals = decimals; }
    const QString& ClusterId() const { return m_clusterId; }
    /// The locations that belong to no policy group.
    const QList<PickItem>& FreeLocations() const { return m_freeLocations; }
    /// Patron groups and item types in the order in which the server lists them.
    const QList<PickItem>& PatronGroups() const { return m_patronGroups; }
    const QList<PickItem>& ItemTypes() const { return m_itemTypes; }

private:
    void PutScope();
    qint16 Send(const QString& request, const QString& id = {});
    qint16 ReadGroup(const QString& id);
    qint16 ReadCalendars(loan::Group& group);

    RequestChannel& m_channel;
    QString m_clusterId;
    loan::Policy m_policy;
    QList<PickItem> m_freeLocations;
    QList<PickItem> m_patronGroups;
    QList<PickItem> m_itemTypes;
    QHash<qint64, QStringList> m_calendarIds;   // by policy group
    QHash<QString, loan::Calendar> m_calendars; // groups share them
    QSet<qint64> m_whole;                       // policy groups that were read with their rules
};

} // namespace sysadmin
