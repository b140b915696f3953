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
    RunOpenSsl(folder, {"req", "-new", "-nodes", "-batch", "-subj", "/CN=" + wish.name, "-keyout", "key.pem",
                        "-out", "request.pem", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1"});
    Write(folder.filePath("extensions"),
          QByteArray("basicConstraints=CA:") + (wish.isAuthority ? "TRUE" : "FALSE") +
              "\nsubjectAltName=DNS:localhost" + (wish.forThisHost ? ",IP:127.0.0.1" : "") + '\n');
    QStringList sign = QString("x509 -req -in request.pem -out certificate.pem -extfile extensions -days %1")
                           .arg(wish.days)
                           .split(' ');
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
    EXPECT_TRUE(keyFile.open(QIODevice::ReadOnly) && certificateFile.open(QIODevice::ReadOnly));
    return {QSslCertificate(&certificateFile), QSslKey(&keyFile, QSsl::Ec)};
}

class TlsPeer::Worker : public QObject {
public:
    explicit Worker(ModelServer& model)
        : m_model(model) {
        connect(&server, &QSslServer::pendingConnectionAvailable, this, [this] {
            while (auto* socket = qobject_cast<QSslSocket*>(server.nextPendingConnection()))
                Serve(*socket);
        });
    }

    /// Runs the function in the thread of the worker.
    template <class Function>
    void Run(Function function) {
        QMetaObject::invokeMethod(this, std::move(function), Qt::BlockingQueuedConnection);
    }

    QSslServer server{this};
    Fault fault; // of the next reply

private:
    void Serve(QSslSocket& socket) {
        auto endpoint = std::shared_ptr<wire::Endpoint>(m_model.Endpoints()({}));
        auto received = std::make_shared<QByteArray>();
        const auto read = [this, &socket, endpoint, received] {
            *received += socket.readAll();
            wire::FrameScanner scanner;
            if (scanner.Scan(*received) != wire::FrameScanner::Result::Complete)
                return;
            const std::optional<QByteArray> reply = endpoint->Handle(std::exchange(*received, {}));
            const Fault now = std::exchange(fault, {});
            QThread::msleep(now.delay);
            if (reply)
                socket.write(now.instead.value_or(*reply) + now.behind);
            else
                socket.abort();
        };
        connect(&socket, &QSslSocket::readyRead, this, read);
        connect(&socket, &QSslSocket::disconnected, &socket, &QObject::deleteLater);
        read();
    }

    ModelServer& m_model;
};

TlsPeer::TlsPeer(ModelServer& model, const SelfMadeCertificate& certificate)
    : m_worker(new Worker(model)) {
    m_worker->moveToThread(&m_thread);
    QObject::connect(&m_thread, &QThread::finished, m_worker, &QObject::deleteLater);
    m_thread.start();
    Offer(certificate);
    m_worker->Run([this] {
        EXPECT_TRUE(m_worker->server.listen(QHostAddress::LocalHost));
        m_port = m_worker->server.serverPort();
    });
}

TlsPeer::~TlsPeer() {
    m_thread.quit();
    m_thread.wait();
}

void TlsPeer::FailOnce(const Fault& fault) {
    m_worker->Run([&] { m_worker->fault = fault; });
}

void TlsPeer::Offer(const SelfMadeCertificate& certificate, QSslConfiguration configuration) {
    configuration.setLocalCertificate(certificate.certificate);
    configuration.setPrivateKey(certificate.key);
    m_worker->Run([&] { m_worker->server.setSslConfiguration(configuration); });
}

void TlsPeer::StopListening() {
    m_worker->Run([this] { m_worker->server.close(); });
}

} // namespace sysadmin
