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
/// setting of which there is one record has the id 0. Everything throws `StoreError`.
class Changes {
public:
    explicit Changes(Database& database)
        : m_database(database) {}

    static Table Declare();

    /// The number of the last change that this transaction sees.
    qint64 Last() const;
    /// A change of a record.
    struct Entry {
        QString table;
        qint64 id = 0;
        std::optional<QString> removedKey; ///< the folded key text of one that is removed
    };
    /// Enters changes of one request, each record once.
    void Enter(const QList<Entry>& entries, qint64 number, const Changer& changer);

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
    Database& m_database;
};

} // namespace sysadmin::server
