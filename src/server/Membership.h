#pragma once

#include "server/OnlyWhere.h"
#include "server/store/Table.h"
#include "wire/Message.h"

#include <optional>

namespace sysadmin::server {

class ReplyFields;
struct Context;

/// The records that may be attached to a record of a subject, split into available and selected ones: the
/// locations of a limit group, the operators of a profile.
///
/// With a `table` of its own the same member may be attached to many owners. Without one the member keeps its
/// one owner in its own column `ownerColumn`; selecting it takes it away from the owner it had.
struct Membership {
    QString table = {};
    QString ownerColumn;
    QString memberTable;
    QString memberColumn = {};    ///< refers to the member, in `table`
    QString key = "id";           ///< the member's column that travels as its id
    QString name = "m.name";      ///< what travels as its name: SQL over the member's row `m`
    QString condition = {};       ///< SQL over `m`: which records may be attached at all
    QString availableMarker = {}; ///< tag in front of the available ones; none when empty
    QString availableId = "AI";
    QString availableName = "AN";
    QString selectedMarker = {};
    QString selectedId = "SI";
    QString selectedName = "SN";
    QString state = "LS"; ///< per member in requests: "1" attached, "3" removed; "4" left as it is
    /// Requests name all members instead of the changes; a request without any leaves none.
    bool whole = false;
    /// Records that do not suit have no members.
    OnlyWhere where = {};
    /// Part of the reply that says what a new record may have attached.
    bool offered = true;
    /// With a table: a member has one owner at most. Those of other owners are not available, and attaching
    /// one is refused with this status. 0: it may have many.
    qint16 elsewhere = 0;

    /// The table of the membership itself; none when it has none of its own.
    std::optional<Table> StoredAs(const QString& ownerTable) const;
};

/// Appends the members that are not attached to the owner; all of them when there is no owner yet.
void PutAvailable(Context& context, const Membership& membership, std::optional<qint64> owner,
                  ReplyFields& reply);
/// Appends the members that are attached to the owner.
void PutSelected(Context& context, const Membership& membership, qint64 owner, ReplyFields& reply);
/// Attaches and removes what a request says. 3 when an id or state is wrong, 5 when a member is not there.
qint16 ApplyMembers(Context& context, const Membership& membership, qint64 owner,
                    const wire::Fields& request);

} // namespace sysadmin::server
