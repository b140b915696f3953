#include "attack/AttackLibrary.h"

#include "server/store/Database.h"

#include <cstdio>

namespace sysadmin {

using namespace server;

AttackLibrary::AttackLibrary(const QString& engine) {
    LibraryOptions options;
    options.whenMissing = LibraryOptions::WhenMissing::MakeSample;
    options.hashCost = HashCost::Least();
    if (engine == "postgresql") {
        m_postgres = std::make_unique<testing::PostgresServer>(testing::PostgresServer::Disk::Waited);
        if (!m_postgres->Reason().isEmpty())
            qFatal("%s", qPrintable(m_postgres->Reason()));
        Database(m_postgres->Address("postgres")).Run("CREATE DATABASE library");
        options.address = m_postgres->Address("library");
        m_arguments = {"--database", m_postgres->Url("library")};
    } else if (engine == "sqlite") {
        options.address = StoreAddress::InDirectory(m_directory.path());
        m_arguments = {"--library", m_directory.path()};
    } else {
        qFatal("The engine \"%s\" is not known; there are sqlite and postgresql.", qPrintable(engine));
    }
    QString error;
    m_library = Library::Open(options, &error);
    if (!m_library)
        qFatal("%s", qPrintable(error));
}

void Report(const QString& line) {
    std::printf("%s\n", qPrintable(line));
    std::fflush(stdout);
}

} // namespace sysadmin
