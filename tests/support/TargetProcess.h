#pragma once

#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

namespace sysadmin::testing {

/// The test target of the YAZ package on a free port.
class TargetProcess {
public:
    TargetProcess() {
        {
            QTcpServer free;
            free.listen(QHostAddress::LocalHost, 0);
            m_port = free.serverPort();
        }
        m_process.start("yaz-ztest", {"-v", "none", QString("tcp:127.0.0.1:%1").arg(m_port)});
    }
    ~TargetProcess() { End(); }
    void End() {
        m_process.kill();
        m_process.waitForFinished();
    }
    bool IsThere() {
        if (!m_process.waitForStarted())
            return false;
        return QTest::qWaitFor(
            [this] {
                QTcpSocket socket;
                socket.connectToHost("127.0.0.1", m_port);
                return socket.waitForConnected(1000);
            },
            20'000);
    }
    QString Port() const { return QString::number(m_port); }

private:
    QProcess m_process;
    quint16 m_port = 0;
};

} // namespace sysadmin::testing
