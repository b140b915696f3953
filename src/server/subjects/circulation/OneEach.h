#pragma once

#include "server/SubjectField.h"
#include "server/store/Records.h"
#include "wire/Message.h"

namespace sysadmin::server {

class ReplyFields;
struct Context;

/// A record that each record of another table may have one of, and by whose id requests know it: a cluster's
/// request configuration, a patron group's policy.
struct OneEach {
    QString table;
    QString owner;      ///< the column that refers to the other record
    QString ownerTable; ///< its table
    QString keyTag;     ///< its id in requests
    QList<SubjectField> fields;
    OnRemoval onRemoval = OnRemoval::RemoveToo;

    Table StoredAs() const;
};

/// The other record that a request names; none when there is no such record.
std::optional<qint64> OwnerIn(Context& context, const OneEach& one, const wire::Fields& request);
/// The id of the owner's record, if it has one.
std::optional<qint64> StoredFor(Context& context, const OneEach& one, qint64 owner);
/// Appends the fields of the owner's record; of an owner without one their defaults.
void PutOne(Context& context, const OneEach& one, qint64 owner, ReplyFields& reply);
/// Reads what a request says of the owner's record on top of what is stored: the row to be stored. 0 or 3.
qint16 ReadOne(Context& context, const OneEach& one, qint64 owner, const wire::Fields& request, Row& row);
/// Stores the row as the owner's record, the first one or in place of what was there.
void StoreOne(Context& context, const OneEach& one, qint64 owner, Row row);

} // namespace sysadmin::server
