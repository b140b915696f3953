#pragma once

#include "server/store/StoreAddress.h"
#include "server/store/WriterQueue.h"

#include <QHash>
#include <QStringList>
#include <QVariant>

#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <unordered_map>

namespace sysadmin::server {

class EngineConnection;
class EngineStatement;

/// A statement or connection that the database refused. Handlers let it pass: whoever runs the request rolls
/// back and turns it into a status.
class StoreError : public std::exception {
public:
    enum class Kind {
        Unstorable, ///< a text that the engines would not give back as it was
        Failure,    ///< disk full, damaged file, wrong statement, ...
        Duplicate,  ///< a unique value is there already
        Referenced, ///< a reference would point nowhere
        Transient,  ///< another transaction was in the way: the whole transaction may be tried again
        Busy,       ///< others were in the way for longer than one waits; nothing was done
        Lost,       ///< the connection is gone
    };

    /// `text` is the database's own message and `code` its number for the error; without a code it is a text
    /// of the program's own.
    StoreError(Kind kind, const QString& text, const QString& code = {});
    Kind GetKind() const { return m_kind; }
    /// The database's own words, for whoever opens a library. They may quote statements and values: what goes
    /// into a log is `what`.
    const QString& Text() const { return m_text; }
    /// What happened, with the database's number for it and nothing of the statement or the data.
    const char* what() const noexcept override { return m_what.constData(); }

private:
    Kind m_kind;
    QString m_text;
    QByteArray m_what;
};

/// The row at which a query's result stands.
class ResultRow {
public:
    explicit ResultRow(const EngineStatement& statement)
        : m_statement(statement) {}
    /// The value of a column; invalid for NULL, so that its text is empty whatever the column's type.
    QVariant value(int column) const;
    /// Its text, without the way over a value.
    QString Text(int column) const;
    /// The same as valid UTF-8, which is there until the next one is asked for.
    QByteArrayView Utf8(int column) const;
    int Count() const;

private:
    const EngineStatement& m_statement;
};

/// One connection to a library's database, for use by one thread. Statements use "?" for their values, are
/// portable between the engines, and stay prepared. Everything throws `StoreError`.
class Database {
public:
    using Values = QVariantList;

    /// Connects. An SQLite file is made when it is missing. Connections of one program to one library share
    /// the line of writers (none: this one has its own); `patience` is how long to wait for others.
    explicit Database(const StoreAddress& address, std::shared_ptr<WriterQueue> writers = {},
                      std::chrono::milliseconds patience = std::chrono::seconds(10));
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    StoreAddress::Engine GetEngine() const { return m_address.engine; }
    std::chrono::milliseconds Patience() const { return m_patience; }

    /// Carries out a statement; answers how many rows it touched.
    int Run(const QString& sql, const Values& values = {});
    /// The same within a transaction, for who does not need the answer: the engine may carry it out together
    /// with what is asked next, at the latest with the commit, which then throws what this would.
    void RunLater(const QString& sql, const Values& values);
    /// Throws what was put off would throw.
    void Settle();
    /// Carries out an INSERT and answers the new row's id.
    qint64 RunInsert(const QString& sql, const Values& values);
    /// Adds `count` rows of a table, later (see `RunLater`); `fill` says the values of the columns.
    /// `conflict` is what follows the values.
    void InsertMany(const QString& table, const QStringList& columns, qsizetype count,
                    const std::function<void(qsizetype row, Values& values)>& fill,
                    const QString& conflict = {});
    /// Calls `visit` with each row of the result.
    void Each(const QString& sql, const Values& values, const std::function<void(const ResultRow&)>& visit);
    /// The first row of the result.
    std::optional<Values> FirstRow(const QString& sql, const Values& values = {});
    /// The first value of the first row; invalid when there is no row.
    QVariant FirstValue(const QString& sql, const Values& values = {});
    /// All values of the first column.
    Values FirstColumn(const QString& sql, const Values& values = {});

    /// From now on commits do not wait for the disk: whoever uses this connection asks `WhenOnDisk` before he
    /// tells anybody of what was committed.
    void DeferDisk() { m_defersDisk = true; }
    /// Whether there is something to wait for.
    bool HasCommitted() const { return m_committed != 0; }
    /// Calls `told`, at once or from another thread, when what was committed here is on the disk or cannot be
    /// brought there.
    void WhenOnDisk(LogSync::Told told);
    /// The same, waiting. Throws `StoreError` when it cannot be brought there.
    void WaitForDisk();

    QStringList TableNames();
    bool HasTable(const QString& table) { return TableNames().contains(table); }
    QStringList ColumnsOf(const QString& table);

private:
    friend class Transaction;
    /// How long SQLite waits by itself for what only takes a moment.
    static constexpr int BusyMilliseconds = 2000;

    class Use;
    using Kept = std::unordered_map<QString, std::unique_ptr<EngineStatement>>;
    static constexpr size_t MostKept = 1000;

    int RunOnce(const QString& sql);
    QStringList TextsOf(const QString& sql, const Values& values);
    bool TryImmediate();
    void CheckFile() const;

    StoreAddress m_address;
    std::shared_ptr<WriterQueue> m_writers;
    std::chrono::milliseconds m_patience;
    std::pair<quint64, quint64> m_file; ///< which file is open; SQLite only
    bool m_syncsLog = false;            ///< the disk is waited for after a commit and not in it
    quint64 m_committed = 0; ///< the way to the disk on which a commit is still to be waited for; 0: none is
    bool m_defersDisk = false; ///< and that is done by who uses this
    std::unique_ptr<EngineConnection> m_connection;
    Kept m_prepared; ///< by their texts; nothing in the place of one that is in use
    /// The text that was used last, and the place that it has there.
    std::pair<QString, std::unique_ptr<EngineStatement>*> m_latest;
};

/// A transaction on a connection; rolled back unless committed. Those that write come one after the other,
/// whatever the connection, the program or the machine they come from: what one of them has looked at stays
/// as it is until it ends, so a rule may look first and write then. (With PostgreSQL its turn among other
/// programs comes with its first statement.) Those that read wait for nobody.
class Transaction {
public:
    enum class Mode {
        Read,        ///< sees one state of the data throughout
        Write,       ///< waits in line
        WriteIfFree, ///< as `Write`; with `StoreError::Kind::Busy` at once when somebody else writes just now
    };

    Transaction(Database& database, Mode mode);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    /// Makes the changes lasting: they are on disk when this returns, unless the connection defers that.
    void Commit();

private:
    void BeginReading();
    void BeginWriting(bool wait);
    void BeginImmediate(WriterQueue::Clock::time_point deadline);
    void Undo();

    WriterQueue::Turn m_turn; // ends after the transaction
    Database& m_database;
    quint64 m_way = 0; ///< to the disk
    bool m_open = true;
};

/// Runs `work` in a transaction, again from the start while other transactions are in the way, and keeps what
/// it did when it answers true. Answers what `work` answered.
bool RunInTransaction(Database& database, Transaction::Mode mode, const std::function<bool()>& work);
/// Runs `work` in a write transaction that is kept unless it throws.
void RunInTransaction(Database& database, const std::function<void()>& work);

} // namespace sysadmin::server
