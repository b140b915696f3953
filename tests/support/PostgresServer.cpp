#include "support/PostgresServer.h"

#include "server/store/Database.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QThread>
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
    Initialize();
    if (m_reason.isEmpty())
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

void PostgresServer::Initialize() {
    const QString initialize = FindProgram("initdb");
    if (initialize.isEmpty() || FindProgram("postgres").isEmpty()) {
        m_reason = "PostgreSQL is not installed.";
        return;
    }
    if (m_root && QProcess::execute("chown", {"postgres", m_directory.path()}) != 0) {
        m_reason = "There is no user postgres, and PostgreSQL does not run as root.";
        return;
    }
    QStringList command = AsItsUser({initialize, "-D", m_directory.filePath("data"), "-A", "trust", "-U",
                                     "sysadmin", "-E", "UTF8", "--locale=C", "--no-sync"});
    QProcess initialization;
    initialization.setWorkingDirectory(m_directory.path());
    initialization.start(command.takeFirst(), command);
    initialization.waitForFinished(60'000);
    if (initialization.exitCode() != 0 || initialization.error() != QProcess::UnknownError)
        m_reason = "initdb failed: " + QString::fromUtf8(initialization.readAllStandardError());
}

void PostgresServer::Start() {
    QStringList command =
        AsItsUser({FindProgram("postgres"), "-D", m_directory.filePath("data"), "-k", m_directory.path(),
                   "-c", "listen_addresses=", "-c", m_disk == Disk::Waited ? "fsync=on" : "fsync=off"});
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.setStandardOutputFile(m_directory.filePath("log"), QIODevice::Append);
    m_process.setWorkingDirectory(m_directory.path());
    m_process.start(command.takeFirst(), command);
    m_reason = "The PostgreSQL server does not answer.";
    for (int attempt = 0; attempt < 600; ++attempt) {
        try {
            const Database database(Address("postgres"));
            m_reason.clear();
            return;
        } catch (const StoreError&) {
            QThread::msleep(50);
        }
    }
}

void PostgresServer::Crash() {
    QStringList command = AsItsUser({QFileInfo(FindProgram("initdb")).canonicalPath() + "/pg_ctl", "-D",
                                     m_directory.filePath("data"), "-m", "immediate", "-W", "stop"});
    QProcess::execute(command.takeFirst(), command);
    m_process.waitForFinished();
}

QString PostgresServer::Url(const QString& database) const {
    return "postgresql://sysadmin@/" + database +
           "?host=" + QString::fromLatin1(QUrl::toPercentEncoding(m_directory.path()));
}

StoreAddress PostgresServer::Parse(const QString& url) {
    QString error;
    return *StoreAddress::FromUrl(url, &error);
}

} // namespace sysadmin::testing
