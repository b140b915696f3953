#pragma once

#include "server/Library.h"
#include "support/PostgresServer.h"

namespace sysadmin {

/// A sample library, with cheap password hashes, for a real server that is about to have a hard time.
class AttackLibrary {
public:
    /// "sqlite" or "postgresql"; ends the program when that cannot be.
    explicit AttackLibrary(const QString& engine);

    /// How `sysadmin-server` is told where it is.
    QStringList ServerArguments() const { return m_arguments; }
    const server::Library& GetLibrary() const { return *m_library; }
    std::unique_ptr<server::Database> Connect() const { return m_library->Connect(); }
    /// For what is done to it inside this process.
    std::shared_ptr<const server::Library> Get() const { return m_library; }
    /// Null with SQLite.
    testing::PostgresServer* Postgres() { return m_postgres.get(); }

private:
    QTemporaryDir m_directory;
    std::unique_ptr<testing::PostgresServer> m_postgres;
    QStringList m_arguments;
    std::shared_ptr<const server::Library> m_library;
};

/// Prints a line at once.
void Report(const QString& line);

} // namespace sysadmin
