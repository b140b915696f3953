#pragma once

#include "server/store/Table.h"
#include "wire/Lengths.h"

#include <limits>

namespace sysadmin::server {

using namespace wire::lengths;

/// A field of a subject's records: its tag on the wire and the column that keeps it. A field is part of the
/// reply to a get and is taken from add and update requests unless it says otherwise.
///
///     SubjectField::Text("Nm", "name", 40).Required().Unique(status::DuplicateName).InList()
class SubjectField {
public:
    enum class Kind { Text, Flag, Whole, Decimal, Reference, Joined, Uses, Secret };

    /// A text of up to `limit` characters.
    static SubjectField Text(const QString& tag, const QString& column, int limit);
    /// "Y" or "N"; "N" unless something else is said.
    static SubjectField Flag(const QString& tag, const QString& column, const QString& fallback = "N");
    /// A whole number, or nothing.
    static SubjectField Whole(const QString& tag, const QString& column, qint64 least = 0,
                              qint64 most = std::numeric_limits<qint32>::max());
    /// An amount: digits with an optional decimal point and sign, or nothing. Kept exactly as it was sent.
    static SubjectField Decimal(const QString& tag, const QString& column);
    /// The id of a record of another table, or nothing.
    static SubjectField Reference(const QString& tag, const QString& column, const QString& target,
                                  OnRemoval onRemoval = OnRemoval::Refuse);
    /// A column of the record to which the reference column `through` points. Never written.
    static SubjectField Joined(const QString& tag, const QString& through, const QString& target,
                               const QString& column);

    /// How many records of the library's other clients have the record, of all kinds together. Never written.
    static SubjectField Uses(const QString& tag);

    /// A password for another system, of up to `limit` characters. It is kept so that only this server can
    /// read it and never sent: replies say under `mark` whether there is one. A request with the mark "Y"
    /// brings a new one under the tag, sealed as operators' passwords are; an empty one takes it away.
    static SubjectField Secret(const QString& tag, const QString& mark, const QString& column, int limit);

    /// Must not be empty.
    SubjectField Required() &&;
    /// No two records have the same text; a second one is refused with the status. With `within` (the column
    /// of a reference) only records that refer to the same record are compared.
    SubjectField Unique(qint16 status, const QString& within = {}) &&;
    /// Part of list replies too.
    SubjectField InList() &&;
    /// Part of list replies only.
    SubjectField OnlyInList() &&;
    /// Sent in replies and never taken from requests.
    SubjectField ReadOnly() &&;
    /// Taken from requests and never sent.
    SubjectField WriteOnly() &&;
    /// What a new record gets when the request does not say.
    SubjectField Default(const QString& value) &&;
    /// A check of the value's own; a value that fails it is refused like a wrong number.
    SubjectField Checked(bool (*check)(const QString& value)) &&;
    /// On the wire a reference carries this column of its record ("code") instead of the id.
    SubjectField Carrying(const QString& targetColumn) &&;

    QString tag;
    QString column;
    Kind kind = Kind::Text;
    int limit = 0;
    qint64 least = 0;
    qint64 most = 0;
    QString target;       ///< Reference and Joined: the other table
    QString targetColumn; ///< Joined, and Reference that carries another column than the id
    QString mark;         ///< Secret: the tag of the mark
    OnRemoval onRemoval = OnRemoval::Refuse;
    QString fallback;
    bool required = false;
    qint16 duplicateStatus = 0; ///< 0: need not be unique
    QString uniqueWithin;
    bool inList = false;
    bool inGet = true;
    bool inPut = true;
    bool (*check)(const QString& value) = nullptr;

    /// What its values must be like.
    CellRule Rule() const;
    /// The column that it needs in its table.
    Column StoredAs() const;
};

} // namespace sysadmin::server
