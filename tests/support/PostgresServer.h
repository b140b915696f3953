#pragma once

#include "server/store/StoreAddress.h"

#include <QTemporaryDir>

namespace sysadmin::testing {

/// A PostgreSQL server of the test's own, on a local socket, that can be taken away. May be stopped and
/// started by any thread, one at a time.
class PostgresServer {
public:
    enum class Disk {
        Ignored, ///< nothing needs to outlive the machine: quicker
        Waited,  ///< a commit is on disk, as where people work
    };

    explicit PostgresServer(Disk disk = Disk::Ignored);
    ~PostgresServer();
    PostgresServer(const PostgresServer&) = delete;
    PostgresServer& operator=(const PostgresServer&) = delete;

    /// Why there is none; empty when it runs.
    const QString& Reason() const { return m_reason; }
    /// Tears it away: all its processes end at once, as if they had crashed.
    void Crash();
    /// Starts it again where it was, and waits until it answers.
    void Start();

    /// Makes an empty database, or a copy of another one to which nobody is connected.
    server::StoreAddress MakeDatabase(const QString& name, const QString& from = {}) const;
    /// A database as the server's command line names it.
    QString Url(const QString& database) const;
    server::StoreAddress Address(const QString& database) const;

private:
    void Prepare();
    QString FindProgram(const QString& name) const;
    int Run(const QString& program, const QStringList& arguments) const;

    QTemporaryDir m_directory;
    QString m_reason;
    Disk m_disk;
    bool m_root = false;
    bool m_running = false;
};

} // namespace sysadmin::testing
