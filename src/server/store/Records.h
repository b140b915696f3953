#pragma once

#include "server/store/Changes.h"
#include "server/store/Table.h"

#include <QMap>
#include <QSet>
#include <QVariantMap>

#include <memory>
#include <optional>

namespace sysadmin::server {

class Database;
class HistoryWriter;

/// The values of a row by column name.
using Row = QVariantMap;

/// A column of the row as text; empty when it has none.
inline QString TextOf(const Row& row, const char* column) {
    return row.value(column).toString();
}

/// Who changes something, for the history of changes.
struct Author {
    QString operatorId;
    QString peer; ///< the address from which the request came
    QString request;
    QString time;       ///< UTC, ISO 8601
    QString name = {};  ///< of the operator, for people
    qint64 session = 0; ///< row of the session; 0: none
};

/// A stored record.
struct RecordName {
    QString table;
    qint64 id = 0;
};

/// The declared tables by name.
using Tables = QMap<QString, Table>;

/// Reads and changes single rows. Every change goes into the history with the values before and after it, and
/// into the register of changes for the record to which the row belongs; the folded forms of unique texts are
/// kept beside them. All of it throws `StoreError`.
class Records {
public:
    /// Without an author nothing is written to the history (the sample library, the server's own
    /// bookkeeping).
    Records(Database& database, const Tables& tables, const std::optional<Author>& author = {});
    ~Records();
    Records(const Records&) = delete;
    Records& operator=(const Records&) = delete;

    Database& GetDatabase() const { return m_database; }
    const Tables& GetTables() const { return m_tables; }

    /// Adds a row; columns that are not named get their fallback. Answers its id.
    qint64 Insert(const QString& table, const Row& values);
    /// Sets the named columns of a row; false when there is none with this id.
    bool Update(const QString& table, qint64 id, const Row& values);
    /// The same for a row that is there and known: `before` holds what the columns that are set held until
    /// now, and those that name its owner.
    void Update(const QString& table, qint64 id, const Row& values, const Row& before);
    /// Removes a row, and before it the rows that do not outlive it; false when there is none with this id.
    bool Remove(const QString& table, qint64 id);
    /// Removes the rows of which a column holds the value.
    void RemoveWhere(const QString& table, const QString& column, const QVariant& value);

    /// Enters a change of a record that shows what this request has changed elsewhere.
    void Touch(const QString& table, qint64 id);

    /// All columns of a row.
    std::optional<Row> Find(const QString& table, qint64 id) const;
    /// The id of the first row of which a column holds the value.
    std::optional<qint64> IdWhere(const QString& table, const QString& column, const QVariant& value) const;
    /// The id of the row that holds the text in a unique column, letter case and surrounding blanks apart.
    std::optional<qint64> IdOfText(const QString& table, const QString& column, const QString& text) const;
    /// Whether another row than `except` holds the text in a unique column (among those with the same
    /// `within`).
    bool IsTaken(const QString& table, const UniqueText& unique, const QString& text, const QVariant& within,
                 qint64 except) const;
    /// How many rows hold the value in a column.
    qint64 Count(const QString& table, const QString& column, const QVariant& value) const;

    /// To be called after the last change of a request: completes its entry in the history.
    void Finish();
    /// The number of this request in the history of changes; 0 while it has changed nothing.
    qint64 ChangeNumber() const;
    /// The records that this request changed so far, in the order of the changes.
    QList<RecordName> Changed() const;

    /// Adds many rows that name the same columns: what is the same for all of them is worked out once.
    class Inserter {
    public:
        Inserter(Records& records, const QString& table, const QList<const Column*>& columns);
        /// Adds a row with these values of the columns. Answers its id.
        qint64 Add(const QVariantList& values);
        const QList<const Column*>& Columns() const { return m_columns; }

    private:
        /// A record that changes when rows are added that refer to it.
        struct Owner {
            qsizetype place; ///< of the reference in the row
            const Table* table;
        };

        Records& m_records;
        const Table& m_table;
        QList<const Column*> m_columns;
        QList<bool> m_isUnique;
        QList<Owner> m_owners;
        QVariantList m_row; ///< the last one that was added, or what a row without any values holds
        QVariantList m_bound;
        QString m_sql;
    };

private:
    const Table& Named(const QString& table) const;
    void Append(const Table& table, const Row& values, QStringList& names, QVariantList& bound) const;
    Inserter& InserterOf(const Table& table, const Row& values);
    void EnterChange(const Table& table, qint64 id, const Row& row, const Row& changed, bool removed);
    void EnterOwner(const Table& table, qint64 id);
    void Enter(const Table& table, qint64 id, const std::optional<QString>& removedKey = {});
    void EnterAdded(const Table& table, qint64 id);
    bool IsEnteredAsAdded(const Table& table, qint64 id) const;

    Database& m_database;
    const Tables& m_tables;
    std::optional<Author> m_author;
    std::unique_ptr<HistoryWriter> m_history;
    QHash<QString, std::shared_ptr<Inserter>> m_inserters; ///< the last one of each table
    QList<Changes::Entry> m_changes;                       ///< that are to be entered in the register
    QHash<QPair<QString, qint64>, qsizetype> m_entered;    ///< places of records among them
    QHash<QString, QList<Changes::Added>> m_added;         ///< likewise to be entered, by table
    QSet<QPair<QString, qint64>> m_owners;                 ///< that were entered with their owners
    mutable QHash<QString, QString> m_finds;               ///< how a row is found, by table
};

} // namespace sysadmin::server
