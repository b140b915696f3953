#pragma once

#include "server/Context.h"

#include <QSet>

namespace sysadmin::server {

/// Records in an order that the operator sets: a column holds their places, from 1 and without gaps.
struct Ranks {
    QString table;
    QString column;
    QString idTag;   ///< of a record's key in the request that sets the order
    QString rankTag; ///< of its new place there
};

/// The place behind all others.
qint64 NextRank(Context& context, const Ranks& ranks);
/// The records behind one that goes move up. They have not changed: the history tells of the one that goes.
void CloseGap(Context& context, const Ranks& ranks, const QVariant& rank);
/// Gives every record the place that the request says. 3 when these are not the numbers from 1 on, 131 when
/// the records are not those that there are. The history tells of the records that were moved, not of those
/// that only made room for them: nobody's edit of one of these is in the way.
Answer StoreOrder(Context& context, const Ranks& ranks, const wire::Fields& request);

/// Which of the numbers, all different, must go elsewhere for the others to stand in rising order; as few as
/// possible.
QSet<qint64> Moved(const QList<qint64>& numbers);

} // namespace sysadmin::server
