#pragma once

#include "circulation/RecordPlace.h"
#include "core/data/PickLists.h"
#include "framework/HealthCheck.h"
#include "loan/RuleCheck.h"

namespace sysadmin {

/// A finding about the rules of a cluster, with the way to its place.
struct RuleFinding {
    QString cluster;
    QString clusterName;
    QString group; ///< name of the policy group
    loan::Finding finding;
    RulePlace rule; ///< of a finding about a pair

    /// What makes it the same one in the next check.
    QString Key() const;
    /// Goes to its place; true when something was stored there.
    bool Open(Application& application, QWidget* parent) const;
};

/// What a look at the circulation rules of all clusters brought.
struct RuleFindings {
    QList<RuleFinding> found;
    qsizetype groups = 0;            ///< that were looked over
    QList<PickItem> freeLocations{}; ///< that belong to no policy group
};

/// The status of the first request that failed, else 0.
qint16 ReadRuleFindings(Application& application, RuleFindings& findings);

/// The checks of the circulation settings.
QList<HealthCheck> CirculationChecks();

} // namespace sysadmin
