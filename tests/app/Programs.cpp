#include "app/Programs.h"

#include <QFile>
#include <QTemporaryDir>

#ifdef Q_OS_LINUX
#include <sys/resource.h>
#endif

namespace sysadmin {

namespace {

constexpr int Patience = 300'000; // milliseconds; the sanitizers and a busy machine take theirs

QProcessEnvironment CleanEnvironment(const QString& home) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        environment.remove(name);
    for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR"})
        environment.insert(name, home);
    return environment;
}

} // namespace

ProgramResult RunProgram(const QString& program, const QStringList& arguments) {
    const QTemporaryDir home;
    QProcess process;
    process.setProcessEnvironment(CleanEnvironment(home.path()));
    process.start(program, arguments);
    if (!process.waitForFinished(Patience)) {
        process.kill();
        process.waitForFinished();
    }
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

bool ServerProcess::Start(const QStringList& arguments, const QString& program) {
    m_port = 0;
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(program, arguments);
    while (m_port == 0 && m_process.waitForReadyRead(Patience)) {
        while (m_process.canReadLine()) {
            const QString line = QString::fromUtf8(m_process.readLine()).trimmed();
            if (line.startsWith("Certificate SHA-256 "))
                m_fingerprint = line.section(' ', 2);
            if (line.startsWith("Listening on "))
                m_port = line.section(':', -1).toUShort();
        }
    }
    return m_port != 0;
}

void ServerProcess::Kill() {
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.kill();
    m_process.waitForFinished();
}

bool ServerProcess::LimitFiles(quint64 bytes) const {
#ifdef Q_OS_LINUX
    const rlimit limit{bytes == 0 ? RLIM_INFINITY : rlim_t(bytes), RLIM_INFINITY};
    return prlimit(pid_t(m_process.processId()), RLIMIT_FSIZE, &limit, nullptr) == 0;
#else
    return bytes == 0;
#endif
}

qint64 ServerProcess::PeakMemory() const {
    QFile status(QString("/proc/%1/status").arg(m_process.processId()));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : status.readAll().split('\n'))
        if (line.startsWith("VmHWM:"))
            return line.simplified().split(' ').value(1).toLongLong();
    return 0;
}

} // namespace sysadmin
