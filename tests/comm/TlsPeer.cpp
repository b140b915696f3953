#include "comm/TlsPeer.h"

#include "wire/Codec.h"

#include <QProcess>
#include <QSslConfiguration>
#include <QSslServer>
#include <QSslSocket>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace sysadmin {

SelfMadeCertificate MakeCertificate() {
    const QTemporaryDir folder;
    const QString key = folder.filePath("key.pem");
    const QString certificate = folder.filePath("certificate.pem");
    QProcess openssl;
    openssl.setStandardErrorFile(QProcess::nullDevice());
    openssl.start("openssl",
                  {"req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes",
                   "-batch", "-subj", "/CN=localhost", "-days", "2", "-keyout", key, "-out", certificate});
    EXPECT_TRUE(openssl.waitForFinished() && openssl.exitCode() == 0) << "openssl made no certificate";
    QFile keyFile(key);
    QFile certificateFile(certificate);
    if (!keyFile.open(QIODevice::ReadOnly) || !certificateFile.open(QIODevice::ReadOnly))
        return {QSslCertificate(), QSslKey()};
    return {QSslCertificate(&certificateFile), QSslKey(&keyFile, QSsl::Ec)};
}

class TlsPeer::Worker : public QObject {
public:
    Worker(ModelServer& model, const SelfMadeCertificate& certificate, std::atomic<int>& connections)
        : m_model(model)
        , m_connections(connections)
        , m_server(this) {
        QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
        configuration.setLocalCertificate(certificate.certificate);
        configuration.setPrivateKey(certificate.key);
        m_server.setSslConfiguration(configuration);
        connect(&m_server, &QSslServer::pendingConnectionAvailable, this, [this] {
            while (auto* socket = qobject_cast<QSslSocket*>(m_server.nextPendingConnection()))
                Serve(*socket);
        });
    }

    quint16 Listen(quint16 port) {
        EXPECT_TRUE(m_server.listen(QHostAddress::LocalHost, port));
        return m_server.serverPort();
    }

    void Stop() {
        m_server.close();
        for (QSslSocket* socket : m_server.findChildren<QSslSocket*>())
            socket->abort();
    }

    Faults faults;

private:
    struct Client {
        int number = 0;
        QByteArray received;
        wire::FrameScanner scanner;
        ModelServer::Connection connection;
    };

    void Serve(QSslSocket& socket) {
        auto client = std::make_shared<Client>();
        client->number = ++m_connections;
        connect(&socket, &QSslSocket::readyRead, this, [this, &socket, client] { Read(socket, *client); });
        connect(&socket, &QSslSocket::disconnected, &socket, &QObject::deleteLater);
        Read(socket, *client);
    }

    void Read(QSslSocket& socket, Client& client) {
        client.received += socket.readAll();
        while (client.scanner.Scan(client.received) == wire::FrameScanner::Result::Complete) {
            const QByteArray message = client.received.left(client.scanner.Length());
            client.received.remove(0, message.size());
            client.scanner.Reset();
            if (const std::optional<wire::Request> request = wire::DecodeRequest(message))
                Answer(socket, client, *request);
        }
    }

    void Answer(QSslSocket& socket, Client& client, const wire::Request& request) {
        const Fault fault = faults ? faults(request, client.number) : Fault();
        QThread::msleep(ulong(fault.delay));
        std::optional<wire::Reply> reply;
        if (fault.kind != Fault::CutBefore)
            reply = m_model.Handle(client.connection, request);
        if (!reply || fault.kind == Fault::CutAfter) {
            socket.abort();
            return;
        }
        QByteArray bytes;
        if (fault.kind == Fault::None || fault.kind == Fault::Append)
            bytes = wire::Encode(*reply);
        if (fault.kind == Fault::Send || fault.kind == Fault::Append)
            bytes += fault.bytes;
        const qsizetype piece = fault.piece > 0 ? fault.piece : bytes.size();
        for (qsizetype sent = 0; sent < bytes.size(); sent += piece) {
            socket.write(bytes.mid(sent, piece));
            if (fault.piece > 0) {
                socket.flush();
                QThread::msleep(1);
            }
        }
    }

    ModelServer& m_model;
    std::atomic<int>& m_connections;
    QSslServer m_server;
};

TlsPeer::TlsPeer(ModelServer& model, const SelfMadeCertificate& certificate)
    : m_worker(new Worker(model, certificate, m_connections)) {
    m_worker->moveToThread(&m_thread);
    QObject::connect(&m_thread, &QThread::finished, m_worker, &QObject::deleteLater);
    m_thread.start();
    Start();
}

TlsPeer::~TlsPeer() {
    m_thread.quit();
    m_thread.wait();
}

void TlsPeer::SetFaults(Faults faults) {
    QMetaObject::invokeMethod(
        m_worker, [&] { m_worker->faults = std::move(faults); }, Qt::BlockingQueuedConnection);
}

void TlsPeer::Stop() {
    QMetaObject::invokeMethod(
        m_worker, [this] { m_worker->Stop(); }, Qt::BlockingQueuedConnection);
}

void TlsPeer::Start() {
    QMetaObject::invokeMethod(
        m_worker, [this] { m_port = m_worker->Listen(m_port); }, Qt::BlockingQueuedConnection);
}

} // namespace sysadmin
