#pragma once

#include <QMetaObject>

#include <map>
#include <memory>
#include <mutex>

class QThread;

namespace sysadmin::server {

class Database;
class Library;

/// Connections to a library's database, one for each thread that asks; it goes with its thread. Their commits
/// do not wait for the disk (`Database::DeferDisk`).
class Databases {
public:
    explicit Databases(std::shared_ptr<const Library> library);
    ~Databases();
    Databases(const Databases&) = delete;
    Databases& operator=(const Databases&) = delete;

    /// The calling thread's connection. Throws `StoreError` when it cannot be opened.
    Database& OfThisThread();
    /// The same if it is open; null when it is not.
    Database* KeptByThisThread();
    /// Closes the calling thread's connection; the next use opens another.
    void CloseOfThisThread();
    /// Makes every thread open another connection before its next use: the database went away, and with it
    /// all connections.
    void RenewAll();

private:
    struct Entry {
        std::unique_ptr<Database> database;
        quint64 generation = 0;
        QMetaObject::Connection threadEnd;
    };

    std::shared_ptr<const Library> m_library;
    std::mutex m_mutex;
    std::map<QThread*, Entry> m_entries;
    quint64 m_generation = 0;
};

} // namespace sysadmin::server
