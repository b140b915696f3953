#include "support/PostgresServer.h"

#include "server/store/Database.h"

#include <QDir>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

namespace sysadmin::testing {

using namespace server;

PostgresServer::PostgresServer(Disk disk)
    : m_disk(disk) {
#ifdef Q_OS_UNIX
    m_root = geteuid() == 0; // it refuses to run as root
#endif
    Prepare();
    if (m_reason.isEmpty())
        Start();
}

PostgresServer::~PostgresServer() {
    Crash();
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

int PostgresServer::Run(const QString& program, const QStringList& arguments) const {
    QStringList command{FindProgram(program)};
    command += arguments;
    if (m_root)
        command = QStringList{"runuser", "-u", "postgres", "--"} + command;
    QProcess process;
    process.setWorkingDirectory(m_directory.path());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(m_directory.filePath("errors"));
    process.start(command.takeFirst(), command);
    return process.waitForFinished(60'000) ? process.exitCode() : -1;
}

void PostgresServer::Prepare() {
    if (FindProgram("initdb").isEmpty() || FindProgram("pg_ctl").isEmpty())
        m_reason = "PostgreSQL is not installed.";
    else if (m_root && QProcess::execute("chown", {"postgres", m_directory.path()}) != 0)
        m_reason = "There is no user postgres, and PostgreSQL does not run as root.";
    else if (Run("initdb", {"-D", m_directory.filePath("data"), "-A", "trust", "-U", "sysadmin", "-E", "UTF8",
                            "--locale=C", "--no-sync"}) != 0)
        m_reason = "initdb failed.";
}

void PostgresServer::Start() {
    m_running =
        Run("pg_ctl",
            {"start", "-w", "-s", "-D", m_directory.filePath("data"), "-l", m_directory.filePath("log"), "-o",
             "-k " + m_directory.path() +
                 " -c listen_addresses=" + (m_disk == Disk::Ignored ? " -c fsync=off" : "")}) == 0;
    m_reason = m_running ? QString() : QString("The PostgreSQL server does not start.");
}

void PostgresServer::Crash() {
    if (m_running)
        Run("pg_ctl", {"stop", "-w", "-s", "-m", "immediate", "-D", m_directory.filePath("data")});
    m_running = false;
}

StoreAddress PostgresServer::MakeDatabase(const QString& name, const QString& from) const {
    Database(Address("postgres"))
        .Run("CREATE DATABASE " + name + (from.isEmpty() ? "" : " TEMPLATE " + from));
    return Address(name);
}

QString PostgresServer::Url(const QString& database) const {
    return "postgresql://sysadmin@/" + database + "?host=" + QUrl::toPercentEncoding(m_directory.path());
}

StoreAddress PostgresServer::Address(const QString& database) const {
    QString error;
    return *StoreAddress::FromUrl(Url(database), &error);
}

} // namespace sysadmin::testing
