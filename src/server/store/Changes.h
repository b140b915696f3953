#pragma once

#include "server/store/Table.h"

#include <optional>

namespace sysadmin::server {

class Database;

/// Who changes something, as the register of changes keeps it.
struct Changer {
    qint64 session = 0; ///< row of the session; 0: no session
    QString name;       ///< for people
    QString time;       ///< UTC, ISO 8601
};

/// The latest change of a record by somebody else.
struct Change {
    qint64 number = 0;
    QString by;
    QString at; ///< UTC, ISO 8601
};

/// The register of changes: for each record that was ever changed the number of its last change, who made it,
/// and the same for the last change before it by another session. The numbers are those of the requests in
/// the history: they grow with each request that changes something and are given out in the order in which
/// the changes become visible, so that "everything up to number N has been read" is a sound statement. A
/// setting of which there is one record has the id 0.
///
/// Records that one request added, one behind the other, stand together in one row of `added_records` until
/// they change: then they get rows of their own. Everything throws `StoreError`.
class Changes {
public:
    explicit Changes(Database& database)
        : m_database(database) {}

    static QList<Table> Declare();

    /// The number of the last change that this transaction sees.
    qint64 Last() const;
    /// A change of a record.
    struct Entry {
        QString table;
        qint64 id = 0;
        std::optional<QString> removedKey; ///< the folded key text of one that is removed
    };
    /// Records that were added, all from the first id to the last.
    struct Added {
        QString table;
        qint64 first = 0;
        qint64 last = 0;
    };
    /// From so many on they are entered together: looking for them then costs less than rows of their own.
    static constexpr int LeastTogether = 20;
    /// Enters changes of one request, each record once. Of those that it `added` together, only the removed
    /// ones are entries besides.
    void Enter(const QList<Entry>& entries, qint64 number, const Changer& changer,
               const QList<Added>& added = {});

    /// Drops what no session can ask about any more: what was changed before all of them began.
    void Prune();

    /// The last change of a record by another session.
    std::optional<Change> ByOthers(const QString& table, qint64 id, qint64 session) const;
    /// The last change of any record of a table by another session after the number.
    std::optional<Change> LastByOthers(const QString& table, qint64 number, qint64 session) const;
    /// The removal by another session of the record with this id, or of the last one with this key text.
    std::optional<Change> RemovalOf(const QString& table, qint64 id, qint64 session) const;
    std::optional<Change> RemovalOf(const QString& table, const QString& keyText, qint64 session) const;
    /// The tables in which other sessions changed records after the number.
    QStringList TablesChangedSince(qint64 number, qint64 session) const;

private:
    void EnterOneByOne(const QList<Entry>& entries);

    Database& m_database;
};

} // namespace sysadmin::server
