#pragma once

#include <QProcess>
#include <QStringList>

namespace sysadmin {

/// What a program that has ended left behind.
struct ProgramResult {
    int exitStatus = -1; ///< -1: it crashed or did not end in time
    QString output;
    QString errors;

    /// Whether the errors are one line, and nothing else was said.
    bool IsOneLineOfErrors() const {
        return output.isEmpty() && errors.count('\n') == 1 && errors.size() > 1;
    }
};

/// Runs a program to its end, away from the settings and data of whoever runs the tests and without a
/// display.
ProgramResult RunProgram(const QString& program, const QStringList& arguments);

/// The settings server in a process of its own. Belongs to the thread that made it.
class ServerProcess {
public:
    ~ServerProcess() { Kill(); }

    /// Starts it and waits until it listens; false when it ended instead.
    bool Start(const QStringList& arguments, const QString& program = SYSADMIN_SERVER_PROGRAM);
    /// Ends it without giving it any chance to put things in order.
    void Kill();

    /// Lets no file that it writes to grow beyond so many bytes; 0 ends that. False where the system cannot.
    bool LimitFiles(quint64 bytes) const;

    quint16 Port() const { return m_port; }
    /// The certificate's fingerprint as the server tells it: pairs of hexadecimal digits with colons between.
    const QString& Fingerprint() const { return m_fingerprint; }
    /// The most memory it has had so far, in KiB; 0 where the system does not tell.
    qint64 PeakMemory() const;

private:
    QProcess m_process;
    quint16 m_port = 0;
    QString m_fingerprint;
};

} // namespace sysadmin
