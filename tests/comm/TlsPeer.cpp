#include "comm/TlsPeer.h"

#include "wire/Codec.h"

#include <QProcess>
#include <QSslConfiguration>
#include <QSslServer>
#include <QSslSocket>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace sysadmin {

namespace {

void RunOpenSsl(const QTemporaryDir& folder, const QStringList& arguments) {
    QProcess openssl;
    openssl.setWorkingDirectory(folder.path());
    openssl.setStandardErrorFile(QProcess::nullDevice());
    openssl.start("openssl", arguments);
    EXPECT_TRUE(openssl.waitForFinished() && openssl.exitCode() == 0) << arguments.join(' ').toStdString();
}

void Write(const QString& fileName, const QByteArray& contents) {
    QFile file(fileName);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size());
}

} // namespace

SelfMadeCertificate MakeCertificate(const CertificateWish& wish) {
    const QTemporaryDir folder;
    // Valid in the past means to be signed in two steps: only the second takes such a number of days.
    RunOpenSsl(folder, QStringList{"req", "-new", "-nodes", "-batch", "-subj", "/CN=" + wish.name, "-keyout",
                                   "key.pem", "-out", "request.pem", "-newkey"} +
                           (wish.weak ? QStringList{"rsa:1024"}
                                      : QStringList{"ec", "-pkeyopt", "ec_paramgen_curve:prime256v1"}));
    Write(folder.filePath("extensions"),
          QByteArray("basicConstraints=CA:") + (wish.isAuthority ? "TRUE" : "FALSE") +
              "\nsubjectAltName=DNS:localhost" + (wish.forThisHost ? ",IP:127.0.0.1" : "") + '\n');
    QStringList sign{"x509",     "-req",
                     "-in",      "request.pem",
                     "-out",     "certificate.pem",
                     "-days",    QString::number(wish.days),
                     "-extfile", "extensions"};
    if (wish.authority) {
        Write(folder.filePath("ca.pem"), wish.authority->certificate.toPem());
        Write(folder.filePath("ca-key.pem"), wish.authority->key.toPem());
        sign += {"-CA", "ca.pem", "-CAkey", "ca-key.pem", "-CAcreateserial"};
    } else {
        sign += {"-signkey", "key.pem"};
    }
    RunOpenSsl(folder, sign);
    QFile keyFile(folder.filePath("key.pem"));
    QFile certificateFile(folder.filePath("certificate.pem"));
    if (!keyFile.open(QIODevice::ReadOnly) || !certificateFile.open(QIODevice::ReadOnly))
        return {QSslCertificate(), QSslKey()};
    return {QSslCertificate(&certificateFile), QSslKey(&keyFile, wish.weak ? QSsl::Rsa : QSsl::Ec)};
}

class TlsPeer::Worker : public QObject {
public:
    Worker(ModelServer& model, const SelfMadeCertificate& certificate, std::atomic<int>& connections)
        : m_model(model)
        , m_connections(connections)
        , m_server(this) {
        Show(certificate);
        connect(&m_server, &QSslServer::pendingConnectionAvailable, this, [this] {
            while (auto* socket = qobject_cast<QSslSocket*>(m_server.nextPendingConnection()))
                Serve(*socket);
        });
    }

    void Show(const SelfMadeCertificate& certificate) {
        m_certificate = certificate;
        Offer(QSslConfiguration::defaultConfiguration());
    }

    void Offer(QSslConfiguration configuration) {
        configuration.setLocalCertificate(m_certificate.certificate);
        configuration.setPrivateKey(m_certificate.key);
        m_server.setSslConfiguration(configuration);
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
    SelfMadeCertificate m_certificate;
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

void TlsPeer::Show(const SelfMadeCertificate& certificate) {
    QMetaObject::invokeMethod(
        m_worker, [&] { m_worker->Show(certificate); }, Qt::BlockingQueuedConnection);
}

void TlsPeer::Offer(const QSslConfiguration& configuration) {
    QMetaObject::invokeMethod(
        m_worker, [&] { m_worker->Offer(configuration); }, Qt::BlockingQueuedConnection);
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
