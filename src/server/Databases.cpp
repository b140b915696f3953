#include "server/Databases.h"

#include "server/Library.h"
#include "server/store/Database.h"

#include <QThread>

namespace sysadmin::server {

Databases::Databases(std::shared_ptr<const Library> library)
    : m_library(std::move(library)) {}

Databases::~Databases() {
    for (const auto& [thread, entry] : m_entries)
        QObject::disconnect(entry.threadEnd);
}

Database& Databases::OfThisThread() {
    QThread* const thread = QThread::currentThread();
    quint64 generation = 0;
    bool isOld = false;
    {
        const std::scoped_lock lock(m_mutex);
        generation = m_generation;
        if (const auto entry = m_entries.find(thread); entry != m_entries.end()) {
            isOld = entry->second.generation != generation;
            if (!isOld)
                return *entry->second.database;
        }
    }
    if (isOld)
        CloseOfThisThread();
    // Connecting may take its time, and nobody else makes this thread's entry.
    Entry entry{m_library->Connect(), generation, {}};
    Database& database = *entry.database;
    database.DeferDisk();
    entry.threadEnd = QObject::connect(thread, &QThread::finished, [this] { CloseOfThisThread(); });
    const std::scoped_lock lock(m_mutex);
    m_entries.emplace(thread, std::move(entry));
    return database;
}

Database* Databases::KeptByThisThread() {
    const std::scoped_lock lock(m_mutex);
    const auto entry = m_entries.find(QThread::currentThread());
    return entry == m_entries.end() ? nullptr : entry->second.database.get();
}

void Databases::CloseOfThisThread() {
    Entry closing;
    const std::scoped_lock lock(m_mutex);
    const auto entry = m_entries.find(QThread::currentThread());
    if (entry == m_entries.end())
        return;
    closing = std::move(entry->second);
    m_entries.erase(entry);
    QObject::disconnect(closing.threadEnd);
}

void Databases::RenewAll() {
    const std::scoped_lock lock(m_mutex);
    ++m_generation;
}

} // namespace sysadmin::server
