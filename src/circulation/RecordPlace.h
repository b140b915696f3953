#pragma once

#include "circulation/MatrixEntries.h"

class QWidget;

namespace sysadmin {

namespace loan {
struct Group;
}
class Application;
class PolicyReader;

/// Where a setting stands: in a record of a maintenance screen, perhaps in a row of one of its lists.
struct RecordPlace {
    QString screen;    ///< navigation key
    QString cluster{}; ///< in which the record is; empty: it does not depend on one
    QString record{};  ///< its key in the screen's list
    QString grid{};    ///< the list inside the record, by its control's name; empty: the record itself
    QString row{};     ///< the row's key there
};

/// Makes the cluster the current one; false when an edit that is open in the present one is in the way, of
/// which the operator is told. An empty id is the current one.
bool GoToCluster(Application& application, const QString& cluster);

/// Opens the record, as far as the operator may see it, and goes to the row. An edit that is open in the
/// screen stays open, and the operator is told; false then, and when there is no such record.
bool OpenPlace(Application& application, const RecordPlace& place);

/// A pair of patron group and item type in a policy group, with its loan rule if it has one.
struct RulePlace {
    MatrixGroup group;
    MatrixEntry entry; ///< without an id: there is no rule
    MatrixKind kind = MatrixKind::Regular;
};

RulePlace PlaceOfRule(const Application& application, const PolicyReader& reader, const loan::Group& group,
                      qint64 patronGroup, qint64 itemType);
/// Shows the rule, or begins one for the pair where there is none. True when something was stored.
bool OpenRule(Application& application, QWidget* parent, const RulePlace& place);

} // namespace sysadmin
