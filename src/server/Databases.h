#pragma once

#include <QMetaObject>

#include <map>
#include <memory>
#include <mutex>

class QThread;

namespace sysadmin::server {

class Database;
class Library;

/// Connections to a library's database, one for each thread that asks; it goes with its thread.
class Databases {
public:
    explicit Databases(std::shared_ptr<const Library> library);
    ~Databases();
    Databases(const Databases&) = delete;
    Databases& operator=(const Databases&) = delete;

    /// The calling thread's connection. Throws `StoreError` when it cannot be opened.
    Database& OfThisThread();
    /// Closes the calling thread's connection; the next use opens another.
    void CloseOfThisThread();

private:
    struct Entry {
        std::unique_ptr<Database> database;
        QMetaObject::Connection threadEnd;
    };

    std::shared_ptr<const Library> m_library;
    std::mutex m_mutex;
    std::map<QThread*, Entry> m_entries;
};

} // namespace sysadmin::server
