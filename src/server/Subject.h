#pragma once

#include "server/Context.h"
#include "server/Membership.h"

#include <functional>
#include <limits>

namespace sysadmin::server {

/// How long codes and names may be unless a subject has a reason of its own. What came from elsewhere is kept
/// whole, also where a screen's own field is shorter.
inline constexpr int CodeLength = 40;
inline constexpr int NameLength = 100;
inline constexpr int NoteLength = 4000;

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

/// Rows of another table that keep a record from being removed.
struct UsedBy {
    QString table;
    QString column; ///< refers to the record
    qint16 status = status::InUse;
};

/// Records of the library's other clients that keep a record from being removed. How many there are is
/// counted in the table `usage` under the subject's table and this kind.
struct UsageKind {
    QString kind;
    qint16 status = status::InUse;
};

/// The names of a subject's requests; an empty one does not exist.
struct RequestNames {
    QString list = {};
    QString get = {};
    QString add = {};
    QString update = {};
    QString remove = {};
    QString available = {}; ///< what a new record may have attached
};

/// A list request narrowed by a field of the request: only records that hold its value in the column.
struct ListFilter {
    QString tag;
    QString column;
};

/// One kind of setting: how its records are stored, which requests serve it and which rules it follows.
///
/// What a declaration cannot say, the functions at the end do: they run inside the request's transaction, and
/// a status other than 0 refuses the request.
struct Subject {
    QString table;
    Area area = Area::System;
    RequestNames requests = {};
    QList<Field> fields = {};

    /// The tag of the key. When it is one of the fields the record is found by that (unique) text, else by
    /// its id.
    QString key = "ID";
    /// In updates, the tag of the key that the record had before.
    QString originalKey = {};
    /// Who may list; everybody may use lists from which other screens choose.
    std::optional<Area> listArea = {};
    /// Columns that no request carries.
    QList<Column> columns = {};
    QList<UsedBy> usedBy = {};
    QList<UsageKind> usages = {};
    QList<Membership> memberships = {};
    /// Tags that the reply to an add carries (the key and fields).
    QStringList addReply = {};
    QList<ListFilter> listFilters = {};
    /// The list's order as columns; by id when empty. Lists in batches are always by id.
    QStringList order = {};
    /// When not 0 the list goes out in batches of so many records, all but the last with status 55.
    int batch = 0;
    /// There is one record at the most: get needs no key and answers nothing while there is none, add makes
    /// it, update changes it. Without an add request it is there from the start, with the defaults.
    bool single = false;

    /// Looks over the record that an add (`before` empty) or update is about to write, and may alter it.
    std::function<qint16(Context&, const wire::Fields& request, const Row& before, Row& after)> checkPut = {};
    std::function<qint16(Context&, const wire::Fields& request, qint64 id, bool added)> afterPut = {};
    std::function<qint16(Context&, qint64 id, const Row& record)> checkRemove = {};
    std::function<void(Context&, qint64 id, wire::Fields& reply)> addToGet = {};
    std::function<void(Context&, const wire::Fields& request, wire::Fields& reply)> addToList = {};
};

} // namespace sysadmin::server
