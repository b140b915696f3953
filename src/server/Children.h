#pragma once

#include "server/OnlyWhere.h"
#include "server/SubjectField.h"
#include "wire/Message.h"

namespace sysadmin::server {

/// What becomes of a row that a request carries: "3" it is removed, "4" left as it is, "1" and "2" it is to
/// hold what the request says.
namespace rowstate {
inline const QString Added = "1";
inline const QString Changed = "2";
inline const QString Removed = "3";
inline const QString Unchanged = "4";
} // namespace rowstate

class ReplyFields;
struct Context;

/// The rows of another table that are parts of a record and travel with it: the addresses of a location, and
/// of those the phones. In requests the fields of a row stand together and begin with its marker.
///
/// With `byState` each row says what becomes of it: "1" it is new, "2" changed, "3" removed, "4" left as it
/// is. Else the rows of a request are all that the record has afterwards; those marked "3" excepted, where
/// there is a state.
struct Children {
    QString table;
    QString owner; ///< the column that refers to the record
    QList<SubjectField> fields;
    QString marker = {}; ///< tag that begins a row in requests; that of the first field when empty
    QString idTag = {};  ///< the row's id; not sent when empty
    QString state = {};  ///< tag of the state, which may be the marker
    bool byState = false;
    /// Replies have the rows in the order of requests. Without it a row that stays the same keeps its id.
    bool ordered = false;
    QString ownerTag = {}; ///< of nested rows: the id of the row to which they belong, else the one before
    QStringList replyOrder = {}; ///< tags; the id and then the fields when empty
    int most = 0;                ///< rows of a record; 0: as many as anybody wants
    OnlyWhere where = {};        ///< of several that share a table, records take those that suit them
    bool (*check)(const QList<Row>& rows) = nullptr; ///< a check of all rows that a request carries
    QList<Children> children = {};

    /// The tables that they need.
    QList<Table> StoredAs(const QString& ownerTable) const;
};

/// Appends the rows of a record, then those of its rows.
void PutChildren(Context& context, const Children& children, qint64 owner, ReplyFields& reply);
/// Stores what a request says of a record's rows. 3 when a row is not in order, 5 when one is not there.
qint16 ApplyChildren(Context& context, const QList<Children>& all, const Row& record, qint64 owner,
                     const wire::Fields& request);

} // namespace sysadmin::server
