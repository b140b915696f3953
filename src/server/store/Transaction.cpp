#include "server/store/Database.h"
#include "server/store/Engine.h"

#include <QRandomGenerator>
#include <QScopeGuard>
#include <QThread>

namespace sysadmin::server {

namespace {

/// The advisory lock that a change holds in PostgreSQL; the number is nobody else's in a library's database.
constexpr qint64 WritersLock = 0x5359'5341'444d'494e;

} // namespace

Transaction::Transaction(Database& database, Mode mode)
    : m_database(database) {
    if (mode == Mode::Read)
        BeginReading();
    else
        BeginWriting(mode == Mode::Write);
}

void Transaction::BeginReading() {
    const bool sqlite = m_database.GetEngine() == StoreAddress::Engine::Sqlite;
    m_database.m_connection->RunLater(sqlite ? "BEGIN" : "BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY");
}

void Transaction::BeginWriting(bool wait) {
    // Within the program the line is fair; across programs the database sees to it that one writes at a time.
    const auto deadline = WriterQueue::Clock::now() + m_database.Patience();
    m_turn = wait ? m_database.m_writers->Wait(deadline) : m_database.m_writers->TakeIfFree();
    if (!m_turn)
        throw StoreError(StoreError::Kind::Busy, "Other changes take too long.");
    if (m_database.m_syncsLog)
        m_way = m_database.m_writers->Log().Open(m_database.m_address);
    if (m_database.GetEngine() == StoreAddress::Engine::Sqlite) {
        BeginImmediate(wait ? deadline : WriterQueue::Clock::now());
        return;
    }
    // Each statement sees what was committed before it began, and so all that was before the lock. The disk
    // is waited for after the turn: see Commit.
    EngineConnection& connection = *m_database.m_connection;
    connection.RunLater("BEGIN ISOLATION LEVEL READ COMMITTED");
    static const QString begin = "SELECT set_config('synchronous_commit', 'off', true), ";
    try {
        if (wait)
            connection.RunLater(begin + QString("pg_advisory_xact_lock(%1)").arg(WritersLock));
        else if (!m_database.FirstRow(begin + "pg_try_advisory_xact_lock(?)", {WritersLock})->at(1).toBool())
            throw StoreError(StoreError::Kind::Busy, "Somebody else is changing something.");
    } catch (...) {
        Undo();
        throw;
    }
}

void Transaction::BeginImmediate(WriterQueue::Clock::time_point deadline) {
    // The engine's own waiting looks ten times a second, and would seldom find a moment between the changes
    // of a busy program.
    EngineConnection& connection = *m_database.m_connection;
    connection.SetBusyWait(0);
    const auto after = qScopeGuard([&] { connection.SetBusyWait(Database::BusyMilliseconds); });
    while (!m_database.TryImmediate()) {
        if (WriterQueue::Clock::now() >= deadline)
            throw StoreError(StoreError::Kind::Busy, "Changes of other programs take too long.");
        QThread::usleep(500 + QRandomGenerator::global()->bounded(1500u));
    }
}

Transaction::~Transaction() {
    if (m_open)
        Undo();
}

void Transaction::Undo() {
    try {
        m_database.m_connection->Rollback();
    } catch (const std::exception&) {
        // The connection is gone, and the transaction with it. (Without memory it is not: then whoever sees
        // that closes the connection.)
    }
}

void Transaction::Commit() {
    m_database.m_connection->Commit();
    m_open = false;
    if (!m_turn)
        return;
    m_turn.End();
    if (m_database.GetEngine() == StoreAddress::Engine::Sqlite)
        m_database.CheckFile();
    // One wait for the disk serves all who committed before it, and the next changes go on meanwhile.
    m_database.m_committed = m_way;
    if (!m_database.m_defersDisk)
        m_database.WaitForDisk();
}

bool RunInTransaction(Database& database, Transaction::Mode mode, const std::function<bool()>& work) {
    const auto deadline = WriterQueue::Clock::now() + database.Patience();
    for (unsigned pause = 2;; pause = qMin(2 * pause, 100u)) {
        try {
            Transaction transaction(database, mode);
            if (!work())
                return false;
            transaction.Commit();
            return true;
        } catch (const StoreError& error) {
            if (error.GetKind() != StoreError::Kind::Transient)
                throw;
            if (WriterQueue::Clock::now() >= deadline)
                throw StoreError(StoreError::Kind::Busy, error.Text());
        }
        QThread::msleep(pause);
    }
}

void RunInTransaction(Database& database, const std::function<void()>& work) {
    RunInTransaction(database, Transaction::Mode::Write, [&] {
        work();
        return true;
    });
}

} // namespace sysadmin::server
