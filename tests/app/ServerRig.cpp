#include "app/ServerRig.h"

#include "app/Programs.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

#include <gtest/gtest.h>

#include <optional>

namespace sysadmin {

namespace {

constexpr int AwayMilliseconds = 300; // of a server that is started again

} // namespace

class ServerRig::Worker : public QObject {
public:
    explicit Worker(const QStringList& library)
        : m_library(library)
        , m_relay(this) {
        connect(&m_relay, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket* client = m_relay.nextPendingConnection())
                Relay(*client);
        });
    }

    void Start() {
        EXPECT_TRUE(server.Start(m_library + QStringList{"--create-sample", "--listen",
                                                         "127.0.0.1:" + QString::number(m_serverPort)}));
        m_serverPort = server.Port();
        EXPECT_TRUE(m_relay.listen(QHostAddress::LocalHost, m_port));
        m_port = m_relay.serverPort();
    }

    void Stop() {
        m_relay.close();
        server.Kill();
    }

    void KillLater() {
        if (killsLeft == 0)
            return;
        --killsLeft;
        QTimer::singleShot(killMilliseconds, this, [this] {
            Stop();
            Start();
            ++faults;
            KillLater();
        });
    }

    quint16 Port() const { return m_port; }
    quint16 ServerPort() const { return m_serverPort; }

    ServerProcess server;
    std::optional<Fault> expected;
    int faults = 0;
    int pieces = 0;
    int killsLeft = 0;
    int killMilliseconds = 0;

private:
    using Direction = Fault::Direction;

    void Relay(QTcpSocket& client) {
        auto* upstream = new QTcpSocket(&client);
        for (QTcpSocket* socket : {&client, upstream})
            socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        const auto forward = [this, &client, upstream] {
            if (upstream->state() == QAbstractSocket::ConnectedState)
                Forward(client, *upstream, Direction::ToServer);
        };
        connect(&client, &QTcpSocket::readyRead, this, forward);
        connect(upstream, &QTcpSocket::connected, this, forward);
        connect(upstream, &QTcpSocket::readyRead, this,
                [this, &client, upstream] { Forward(*upstream, client, Direction::ToClient); });
        connect(upstream, &QTcpSocket::disconnected, &client, &QTcpSocket::disconnectFromHost);
        connect(upstream, &QTcpSocket::errorOccurred, &client, &QTcpSocket::disconnectFromHost);
        connect(&client, &QTcpSocket::disconnected, &client, &QObject::deleteLater);
        upstream->connectToHost(QHostAddress(QHostAddress::LocalHost), m_serverPort);
    }

    void Forward(QTcpSocket& from, QTcpSocket& to, Direction direction) {
        QByteArray bytes = from.readAll();
        if (from.property("stalled").toBool() || to.property("stalled").toBool())
            return;
        const bool fails = expected && expected->direction == direction;
        if (fails)
            bytes.truncate(expected->passed);
        const qsizetype piece = pieces > 0 ? pieces : bytes.size();
        for (qsizetype sent = 0; sent < bytes.size(); sent += piece) {
            to.write(bytes.mid(sent, piece));
            to.flush();
            if (pieces > 0)
                QThread::usleep(300);
        }
        if (!fails)
            return;
        const Fault::Then then = expected->then;
        expected.reset();
        ++faults;
        if (then == Fault::Then::Stall) {
            from.setProperty("stalled", true);
            return;
        }
        if (then == Fault::Then::Kill) {
            Stop();
            QTimer::singleShot(AwayMilliseconds, this, &Worker::Start);
        }
        to.disconnectFromHost();
        from.disconnectFromHost();
    }

    QStringList m_library;
    QTcpServer m_relay;
    quint16 m_port = 0;
    quint16 m_serverPort = 0;
};

template <class Work>
auto ServerRig::InThread(const Work& work) const {
    using Result = decltype(work());
    if constexpr (std::is_void_v<Result>) {
        QMetaObject::invokeMethod(m_worker, work, Qt::BlockingQueuedConnection);
    } else {
        Result result{};
        QMetaObject::invokeMethod(
            m_worker, [&] { result = work(); }, Qt::BlockingQueuedConnection);
        return result;
    }
}

ServerRig::ServerRig(const QStringList& library) {
    m_thread.start();
    // The process and the sockets belong to the thread that makes them.
    auto* maker = new QObject;
    maker->moveToThread(&m_thread);
    QMetaObject::invokeMethod(
        maker,
        [&] {
            m_worker = new Worker(library);
            m_worker->Start();
            delete maker;
        },
        Qt::BlockingQueuedConnection);
}

ServerRig::~ServerRig() {
    QObject::connect(&m_thread, &QThread::finished, m_worker, &QObject::deleteLater);
    m_thread.quit();
    m_thread.wait();
}

ServerAddress ServerRig::Address() const {
    return {"127.0.0.1", InThread([this] { return m_worker->Port(); })};
}

quint16 ServerRig::ServerPort() const {
    return InThread([this] { return m_worker->ServerPort(); });
}

QString ServerRig::Fingerprint() const {
    return InThread([this] { return m_worker->server.Fingerprint(); });
}

bool ServerRig::LimitFiles(quint64 bytes) {
    return InThread([this, bytes] { return m_worker->server.LimitFiles(bytes); });
}

void ServerRig::KillServer() {
    InThread([this] { m_worker->Stop(); });
}

void ServerRig::StartServer() {
    InThread([this] { m_worker->Start(); });
}

void ServerRig::Expect(const Fault& fault) {
    InThread([&] { m_worker->expected = fault; });
}

int ServerRig::Faults() const {
    return InThread([this] { return m_worker->faults; });
}

void ServerRig::SetPieces(int bytes) {
    InThread([&] { m_worker->pieces = bytes; });
}

void ServerRig::KillAgainAndAgain(int times, int milliseconds) {
    InThread([&] {
        m_worker->killsLeft = times;
        m_worker->killMilliseconds = milliseconds;
        m_worker->KillLater();
    });
}

} // namespace sysadmin
