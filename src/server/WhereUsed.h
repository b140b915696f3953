#pragma once

#include "server/store/Records.h"

namespace sysadmin::server {

struct Context;

/// A record that refers to another one, in one of its fields.
struct Use {
    RecordName record; ///< as people know it: for a row that is a part of a record, that record
    QString table;     ///< of the row that refers
    QString column;
    qint64 rows = 1;    ///< of the record that do so in this column
    bool keeps = false; ///< the record to which it refers cannot be removed meanwhile
};

/// All records that refer to this one, but for its own parts, by table; of each column at most `mostRecords`.
QList<Use> UsesOf(Context& context, const RecordName& record, int mostRecords);

} // namespace sysadmin::server
