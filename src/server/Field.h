#pragma once

#include "server/store/Table.h"
#include "wire/Lengths.h"

#include <limits>

namespace sysadmin::server {

using namespace wire::lengths;

/// A field of a subject's records: its tag on the wire and the column that keeps it. A field is part of the
/// reply to a get and is taken from add and update requests unless it says otherwise.
///
///     Field::Text("Nm", "name", 40).Required().Unique(status::DuplicateName).InList()
class Field {
public:
    enum class Kind { Text, Flag, Whole, Decimal, Reference, Joined };

    /// A text of up to `limit` characters.
    static Field Text(const QString& tag, const QString& column, int limit);
    /// "Y" or "N"; "N" unless something else is said.
    static Field Flag(const QString& tag, const QString& column, const QString& fallback = "N");
    /// A whole number, or nothing.
    static Field Whole(const QString& tag, const QString& column, qint64 least = 0,
                       qint64 most = std::numeric_limits<qint32>::max());
    /// An amount: digits with an optional decimal point and sign, or nothing. Kept exactly as it was sent.
    static Field Decimal(const QString& tag, const QString& column);
    /// The id of a record of another table, or nothing.
    static Field Reference(const QString& tag, const QString& column, const QString& target,
                           OnRemoval onRemoval = OnRemoval::Refuse);
    /// A column of the record to which the reference column `through` points. Never written.
    static Field Joined(const QString& tag, const QString& through, const QString& target,
                        const QString& column);

    /// Must not be empty.
    Field Required() &&;
    /// No two records have the same text; a second one is refused with the status. With `within` (the column
    /// of a reference) only records that refer to the same record are compared.
    Field Unique(qint16 status, const QString& within = {}) &&;
    /// Part of list replies too.
    Field InList() &&;
    /// Part of list replies only.
    Field OnlyInList() &&;
    /// Sent in replies and never taken from requests.
    Field ReadOnly() &&;
    /// Taken from requests and never sent.
    Field WriteOnly() &&;
    /// What a new record gets when the request does not say.
    Field Default(const QString& value) &&;
    /// A check of the value's own; a value that fails it is refused like a wrong number.
    Field Checked(bool (*check)(const QString& value)) &&;
    /// On the wire a reference carries this column of its record ("code") instead of the id.
    Field Carrying(const QString& targetColumn) &&;

    QString tag;
    QString column;
    Kind kind = Kind::Text;
    int limit = 0;
    qint64 least = 0;
    qint64 most = 0;
    QString target;       ///< Reference and Joined: the other table
    QString targetColumn; ///< Joined, and Reference that carries another column than the id
    OnRemoval onRemoval = OnRemoval::Refuse;
    QString fallback;
    bool required = false;
    qint16 duplicateStatus = 0; ///< 0: need not be unique
    QString uniqueWithin;
    bool inList = false;
    bool inGet = true;
    bool inPut = true;
    bool (*check)(const QString& value) = nullptr;

    /// The column that it needs in its table.
    Column StoredAs() const;
};

} // namespace sysadmin::server
