#include "server/store/LogSync.h"

#include "server/store/Database.h"
#include "server/store/LibraryFolder.h"

#include <QFile>
#include <QFileInfo>

#include <condition_variable>
#include <future>
#include <mutex>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <unistd.h>
#endif

namespace sysadmin::server {

namespace {

/// Of one engine's log; used by one thread.
class Log {
public:
    virtual ~Log() = default;
    virtual bool Sync() = 0;
};

#ifdef Q_OS_UNIX
bool SyncPath(const QString& path, bool dataOnly) {
    const int file = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return false;
    const bool done = (dataOnly ? ::fdatasync(file) : ::fsync(file)) == 0;
    ::close(file); // the engine's locks are on other files
    return done;
}

/// SQLite's "-wal" file, which holds the commits in their order.
class SqliteLog : public Log {
public:
    explicit SqliteLog(const StoreAddress& address)
        : m_path(address.file + "-wal") {}

    bool Sync() override {
        // A log that was just made must be found again, too.
        const FileIdentity file = IdentityOf(m_path);
        if (file != m_known) {
            if (!SyncPath(QFileInfo(m_path).absolutePath(), false))
                return false;
            m_known = file;
        }
        return SyncPath(m_path, true);
    }

private:
    QString m_path;
    FileIdentity m_known; ///< the log whose name is on the disk, too
};
#endif

/// PostgreSQL writes its log in order: whatever is committed with a wait for the disk takes all before it
/// there.
class PostgresLog : public Log {
public:
    explicit PostgresLog(const StoreAddress& address)
        : m_database(address) {}

    bool Sync() override {
        try {
            m_database.Run("SELECT pg_logical_emit_message(true, 'sysadmin', '')");
            return true;
        } catch (const std::exception&) {
            return false;
        }
    }

private:
    Database m_database;
};

std::unique_ptr<Log> OpenLog(const StoreAddress& address) {
    if (address.engine == StoreAddress::Engine::PostgreSql)
        return std::make_unique<PostgresLog>(address);
#ifdef Q_OS_UNIX
    return std::make_unique<SqliteLog>(address);
#else
    return nullptr;
#endif
}

} // namespace

struct LogSync::State {
    struct Waiter {
        quint64 way = 0;
        Told told;
    };

    std::mutex mutex;
    std::condition_variable asked;
    std::vector<Waiter> waiting;
    bool wanted = false; ///< a way to the disk
    bool ending = false;
    std::condition_variable tried;
    quint64 way = 0; ///< the one that is open; 0: none is
    quint64 tries = 0;
    QString problem; ///< of the last try

    void Run(const StoreAddress& address) {
        std::unique_ptr<Log> log;
        std::unique_lock lock(mutex);
        for (;;) {
            asked.wait(lock, [&] { return ending || wanted || !waiting.empty(); });
            if (std::exchange(wanted, false) && way == 0)
                Try(address, log, lock);
            if (!waiting.empty())
                Serve(log, lock);
            else if (ending)
                return;
        }
    }

    void Try(const StoreAddress& address, std::unique_ptr<Log>& log, std::unique_lock<std::mutex>& lock) {
        lock.unlock();
        QString why;
        try {
            log = OpenLog(address);
        } catch (const StoreError& error) {
            why = error.Text();
        }
        lock.lock();
        ++tries;
        problem = why;
        way = log ? tries : 0;
        tried.notify_all();
    }

    void Serve(std::unique_ptr<Log>& log, std::unique_lock<std::mutex>& lock) {
        std::vector<Waiter> served = std::exchange(waiting, {});
        const quint64 open = way;
        lock.unlock();
        const bool done = log && log->Sync();
        for (const Waiter& waiter : served) {
            try {
                waiter.told(done && waiter.way == open);
            } catch (const std::exception& error) { // no memory for that one
                qWarning("Somebody cannot be told that a change is on the disk: %s", error.what());
            }
        }
        served.clear(); // what it holds may end the library, and with it this
        lock.lock();
        if (!done) {
            log.reset();
            way = 0;
        }
    }
};

LogSync::LogSync()
    : m_state(std::make_shared<State>()) {}

LogSync::~LogSync() {
    {
        const std::scoped_lock lock(m_state->mutex);
        m_state->ending = true;
    }
    m_state->asked.notify_all();
    if (m_thread.get_id() == std::this_thread::get_id())
        m_thread.detach(); // who was told held the last of the library
    else if (m_thread.joinable())
        m_thread.join();
}

bool LogSync::IsAvailable(StoreAddress::Engine engine) {
#ifdef Q_OS_UNIX
    Q_UNUSED(engine);
    return true;
#else
    return engine == StoreAddress::Engine::PostgreSql;
#endif
}

quint64 LogSync::Open(const StoreAddress& address) {
    std::unique_lock lock(m_state->mutex);
    if (m_state->way != 0)
        return m_state->way;
    if (!m_thread.joinable())
        m_thread = std::thread([state = m_state, address] { state->Run(address); });
    const quint64 before = m_state->tries;
    m_state->wanted = true;
    m_state->asked.notify_one();
    m_state->tried.wait(lock, [&] { return m_state->way != 0 || m_state->tries > before; });
    if (m_state->way == 0)
        throw StoreError(StoreError::Kind::Lost, m_state->problem);
    return m_state->way;
}

void LogSync::Then(quint64 way, Told told) {
    {
        const std::scoped_lock lock(m_state->mutex);
        m_state->waiting.push_back({way, std::move(told)});
    }
    m_state->asked.notify_one();
}

void LogSync::Wait(quint64 way) {
    std::promise<bool> onDisk;
    Then(way, [&](bool done) { onDisk.set_value(done); });
    if (!onDisk.get_future().get())
        throw StoreError(StoreError::Kind::Lost, "The library's log cannot be brought to the disk.");
}

} // namespace sysadmin::server
