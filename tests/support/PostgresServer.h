#pragma once

#include "server/store/StoreAddress.h"

#include <QProcess>
#include <QTemporaryDir>

namespace sysadmin::testing {

/// A PostgreSQL server of the test's own, on a local socket. Belongs to the thread that made it.
class PostgresServer {
public:
    enum class Disk {
        Ignored, ///< nothing needs to outlive the machine: quicker
        Waited,  ///< a commit is on disk, as where people work
    };

    explicit PostgresServer(Disk disk = Disk::Ignored);
    ~PostgresServer();

    /// Why there is none; empty when it runs.
    const QString& Reason() const { return m_reason; }
    server::StoreAddress Address(const QString& database) const { return Parse(Url(database)); }
    QString Url(const QString& database) const;
    /// Tears it away: all its processes end at once, as if they had crashed.
    void Crash();
    /// Starts it again where it was.
    void Start();

private:
    static server::StoreAddress Parse(const QString& url);
    QString FindProgram(const QString& name) const;
    QStringList AsItsUser(const QStringList& command) const;
    void Initialize();

    QTemporaryDir m_directory;
    QProcess m_process;
    QString m_reason;
    Disk m_disk;
    bool m_root = false;
};

} // namespace sysadmin::testing
