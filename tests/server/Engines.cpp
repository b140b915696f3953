#include "Engines.h"

#include "server/store/Database.h"

#include <QDir>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QThread>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

namespace sysadmin::testing {

using namespace server;

namespace {

/// A PostgreSQL server of the test's own, on a local socket.
class PostgresServer {
public:
    PostgresServer();
    ~PostgresServer();
    /// Why there is none; empty when it runs.
    const QString& Reason() const { return m_reason; }
    StoreAddress Address(const QString& database) const;

private:
    QString FindProgram(const QString& name) const;
    QStringList AsItsUser(const QStringList& command) const;
    void Start();

    QTemporaryDir m_directory;
    QProcess m_process;
    QString m_reason;
    bool m_root = false;
};

PostgresServer::PostgresServer() {
#ifdef Q_OS_UNIX
    m_root = geteuid() == 0; // it refuses to run as root
#endif
    Start();
}

PostgresServer::~PostgresServer() {
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.terminate();
    if (!m_process.waitForFinished(10'000))
        m_process.kill();
    m_process.waitForFinished(1'000);
    if (m_root)
        QProcess::execute("chown", {"-R", "root", m_directory.path()});
}

QString PostgresServer::FindProgram(const QString& name) const {
    if (const QString inPath = QStandardPaths::findExecutable(name); !inPath.isEmpty())
        return inPath;
    const QDir versions("/usr/lib/postgresql");
    const QStringList folders =
        versions.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name | QDir::Reversed);
    for (const QString& folder : folders)
        if (const QString found = QStandardPaths::findExecutable(name, {versions.filePath(folder + "/bin")});
            !found.isEmpty())
            return found;
    return {};
}

QStringList PostgresServer::AsItsUser(const QStringList& command) const {
    return m_root ? QStringList{"runuser", "-u", "postgres", "--"} + command : command;
}

void PostgresServer::Start() {
    const QString initialize = FindProgram("initdb");
    const QString serve = FindProgram("postgres");
    if (initialize.isEmpty() || serve.isEmpty()) {
        m_reason = "PostgreSQL is not installed.";
        return;
    }
    const QString data = m_directory.filePath("data");
    if (m_root && QProcess::execute("chown", {"postgres", m_directory.path()}) != 0) {
        m_reason = "There is no user postgres, and PostgreSQL does not run as root.";
        return;
    }
    QStringList command = AsItsUser(
        {initialize, "-D", data, "-A", "trust", "-U", "sysadmin", "-E", "UTF8", "--locale=C", "--no-sync"});
    QProcess initialization;
    initialization.setWorkingDirectory(m_directory.path());
    initialization.start(command.takeFirst(), command);
    initialization.waitForFinished(60'000);
    if (initialization.exitCode() != 0 || initialization.error() != QProcess::UnknownError) {
        m_reason = "initdb failed: " + QString::fromUtf8(initialization.readAllStandardError());
        return;
    }
    command = AsItsUser(
        {serve, "-D", data, "-k", m_directory.path(), "-c", "listen_addresses=", "-c", "fsync=off"});
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.setWorkingDirectory(m_directory.path());
    m_process.start(command.takeFirst(), command);
    m_reason = "The PostgreSQL server does not answer.";
    for (int attempt = 0; attempt < 200; ++attempt) {
        try {
            const Database database(Address("postgres"));
            m_reason.clear();
            return;
        } catch (const StoreError&) {
            QThread::msleep(50);
        }
    }
}

StoreAddress PostgresServer::Address(const QString& database) const {
    QString error;
    return *StoreAddress::FromUrl("postgresql://sysadmin@/" + database +
                                      "?host=" + QUrl::toPercentEncoding(m_directory.path()),
                                  &error);
}

/// One server for all tests of the program: starting it takes longer than they do.
class PostgresEnvironment : public ::testing::Environment {
public:
    PostgresServer& Server() {
        if (!m_server)
            m_server = std::make_unique<PostgresServer>();
        return *m_server;
    }
    void TearDown() override { m_server.reset(); }

private:
    std::unique_ptr<PostgresServer> m_server;
};

auto* const postgres = new PostgresEnvironment;
[[maybe_unused]] auto* const registered = ::testing::AddGlobalTestEnvironment(postgres);

} // namespace

void EngineTest::SetUp() {
    if (GetParam() == StoreAddress::Engine::Sqlite)
        return;
    PostgresServer& server = postgres->Server();
    if (!server.Reason().isEmpty())
        GTEST_SKIP() << server.Reason().toStdString();
    static int number = 0;
    const QString name = QString("library%1").arg(++number);
    Database(server.Address("postgres")).Run("CREATE DATABASE " + name);
    m_address = server.Address(name);
}

} // namespace sysadmin::testing
