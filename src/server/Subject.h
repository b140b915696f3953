#pragma once

#include "server/Children.h"
#include "server/ColumnList.h"
#include "server/Context.h"
#include "server/Membership.h"
#include "server/SubjectField.h"

#include <functional>

namespace sysadmin::server {

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

/// Rights of their own that a request asks for in place of its area's.
struct RequestRights {
    QStringList anyOf = {};                ///< one of them, by its tag, ...
    std::optional<wire::Area> orView = {}; ///< ... or the right to view this area
    QString unless = {};                   ///< and not this one, which takes rights away

    bool IsHeld(const Rights& rights) const;
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
    QList<SubjectField> fields = {};

    /// The tag of the key. When it is one of the fields the record is found by that (unique) text, else by
    /// its id.
    QString key = "ID";
    /// In updates, the tag of the key that the record had before.
    QString originalKey = {};
    /// Who may list; everybody may use lists from which other screens choose.
    std::optional<Area> listArea = {};
    /// By the name of the request, where it is not the area's rights that count.
    QHash<QString, RequestRights> rights = {};
    /// Columns that no request carries.
    QList<Column> columns = {};
    QList<UsedBy> usedBy = {};
    QList<UsageKind> usages = {};
    QList<Membership> memberships = {};
    QList<Children> children = {};
    /// What else the reply to a list carries.
    QList<ColumnList> alsoListed = {};
    /// Tags that the reply to an add carries (the key and fields).
    QStringList addReply = {};
    /// The tag of the new record's id in that reply, where it is not the key's.
    QString addedIdTag = {};
    /// A field by which requests may say among which records they work (the cluster, the policy group): for
    /// them a record with another value in the column is not there, and none moves from one to the other.
    std::optional<ListFilter> within = {};
    QList<ListFilter> listFilters = {};
    /// The list's order as columns; by id when empty. Lists in batches are always by id.
    QStringList order = {};
    /// When not 0 the list goes out in batches of so many records, all but the last with status 55.
    int batch = 0;
    /// There is one record at the most: get needs no key and answers nothing while there is none, add makes
    /// it, update changes it. Without an add request it is there from the start, with the defaults.
    bool single = false;
    /// What must hold of a record, whichever way it comes into the library. Requests that would
    /// break it are refused.
    QList<RowRule> rules = {};
    /// Flags that one record has as soon as there are records, and never two.
    QStringList onlyOne = {};

    /// Looks over the record that an add (`before` empty) or update is about to write, and may alter it.
    std::function<qint16(Context&, const wire::Fields& request, const Row& before, Row& after)> checkPut = {};
    std::function<qint16(Context&, const wire::Fields& request, qint64 id, bool added)> afterPut = {};
    std::function<qint16(Context&, qint64 id, const Row& record)> checkRemove = {};
    /// Tells of the rows that refer to the record otherwise than by a reference column, and so keep it.
    std::function<void(Context&, qint64 id, const Row& record,
                       const std::function<void(const RecordName& user, const QString& column)>& tell)>
        findUses = {};
    /// The id is 0 while there is no record of a single one.
    std::function<void(Context&, qint64 id, ReplyFields& reply)> addToGet = {};
    std::function<void(Context&, const wire::Fields& request, ReplyFields& reply)> addToList = {};
};

} // namespace sysadmin::server
