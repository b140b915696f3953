// A small request to the settings server and back over TLS on this machine, and the same bytes over bare
// sockets.
#include "support/BenchLibrary.h"

#include "comm/EmbeddedTransport.h"
#include "comm/NetworkTransport.h"
#include "comm/PasswordEncoder.h"
#include "comm/SessionData.h"
#include "comm/WireChannel.h"
#include "server/Listener.h"
#include "wire/Codec.h"

#include <QApplication>
#include <QSslConfiguration>
#include <QSslSocket>

#include <benchmark/benchmark.h>

using namespace sysadmin;

namespace {

// A request with a handful of fields, as a save sends it, and a reply of one record.
const QByteArray RequestBytes = wire::Encode(wire::Request{
    12, "UpdVenTp", {{"Cd", "BOOK"}, {"Nm", "Bookseller"}, {"NCd", "N"}, {"NNm", "Y"}, {"OCd", "BOOK"}}});
const QByteArray ReplyBytes = wire::Encode(wire::Reply{12, 0, {{"Cd", "BOOK"}, {"Nm", "Bookseller"}}});

/// The least that a server can do: one ready reply to everything.
class ReadyEndpoint : public wire::Endpoint {
public:
    std::optional<QByteArray> Handle(const QByteArray&) override { return ReplyBytes; }
    QString Account() const override { return "BENCH"; }
    bool Writes(const QByteArray&) const override { return false; }
    qint64 MessageLimit() const override { return wire::Limits().message; }
};

/// Answers as many bytes as a request has with those of the reply, through nothing but sockets.
class BareServer : public QTcpServer {
public:
    explicit BareServer(const server::ServerIdentity& identity) {
        m_configuration.setPeerVerifyMode(QSslSocket::VerifyNone);
        m_configuration.setLocalCertificateChain(identity.chain);
        m_configuration.setPrivateKey(identity.key);
    }

protected:
    void incomingConnection(qintptr handle) override {
        auto* socket = new QSslSocket(this);
        socket->setSocketDescriptor(handle);
        socket->setSslConfiguration(m_configuration);
        socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        connect(socket, &QSslSocket::readyRead, this, [this, socket] {
            m_received += socket->readAll().size();
            if (m_received < RequestBytes.size())
                return;
            m_received -= RequestBytes.size();
            socket->write(ReplyBytes);
            socket->flush();
        });
        socket->startServerEncryption();
    }

private:
    QSslConfiguration m_configuration = QSslConfiguration::defaultConfiguration();
    qsizetype m_received = 0;
};

server::ServerIdentity Identity(const BenchLibrary& library) {
    QString error;
    const auto identity = server::OwnIdentity(*library.Get(), &error);
    if (!identity)
        qFatal("%s", qPrintable(error));
    return *identity;
}

void BareEcho(benchmark::State& state) {
    const BenchLibrary library;
    const ServerThread thread([identity = Identity(library)] { return new BareServer(identity); });
    QSslSocket socket;
    socket.setPeerVerifyMode(QSslSocket::VerifyNone);
    socket.connectToHostEncrypted("127.0.0.1", thread.Port());
    if (!socket.waitForEncrypted()) {
        state.SkipWithError("no connection");
        return;
    }
    socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
    for (auto _ : state) {
        socket.write(RequestBytes);
        socket.flush();
        qsizetype left = ReplyBytes.size();
        while (left > 0 && socket.waitForReadyRead())
            left -= socket.readAll().size();
    }
}

void TransportToListener(benchmark::State& state) {
    const BenchLibrary library;
    const auto factory = [](const QString&) { return std::make_unique<ReadyEndpoint>(); };
    YesPrompter prompter;
    std::unique_ptr<NetworkTransport> transport; // outlives the server, as in a real shutdown
    const ServerThread thread([&] { return new server::Listener(Identity(library), factory); });
    transport = std::make_unique<NetworkTransport>(ServerAddress{"127.0.0.1", thread.Port()}, prompter);
    transport->Open();
    for (auto _ : state)
        if (transport->Exchange(RequestBytes, std::chrono::seconds(5)) != ReplyBytes)
            state.SkipWithError("no reply");
}

void SignOn(WireChannel& channel) {
    const Greeting greeting = channel.Hello();
    const PasswordEncoder encoder(greeting.publicKey, greeting.nonce);
    SessionData session;
    session.SetCredentials("SYSADMIN", encoder.Encode("sample-admin-1", wire::PasswordPurpose::SignOn));
    if (!channel.SignOn(session))
        qFatal("%s", qPrintable(channel.LastProblem()));
}

// A read and a save. What the store takes is the same in both of the next two.
void Read(benchmark::State& state, WireChannel& channel) {
    for (auto _ : state)
        if (channel.SendRequest("LstVenTp") != 0)
            state.SkipWithError("the list was refused");
}

void Save(benchmark::State& state, WireChannel& channel) {
    int count = 0;
    for (auto _ : state) {
        channel.PutField("Cd", "BOOK");
        channel.PutField("Nm", "Bookseller " + QString::number(++count));
        channel.PutField("NCd", "N");
        channel.PutField("NNm", "Y");
        channel.PutField("OCd", "BOOK");
        if (channel.SendRequest("UpdVenTp") != 0)
            state.SkipWithError("the save was refused");
    }
}

using Requests = void (*)(benchmark::State&, WireChannel&);

void OverTheNetwork(benchmark::State& state, Requests requests) {
    const BenchLibrary library;
    YesPrompter prompter;
    WireChannel channel;
    const ServerThread thread([&] { return new server::Listener(Identity(library), library.Endpoints()); });
    channel.Use(std::make_unique<NetworkTransport>(ServerAddress{"127.0.0.1", thread.Port()}, prompter));
    SignOn(channel);
    requests(state, channel);
}

void InTheProcess(benchmark::State& state, Requests requests) {
    const BenchLibrary library;
    WireChannel channel;
    channel.Use(std::make_unique<EmbeddedTransport>(
        library.Folder(), [&](const QString&, QString*) { return library.Endpoints(); }));
    SignOn(channel);
    requests(state, channel);
}

void ReadOverTheNetwork(benchmark::State& state) {
    OverTheNetwork(state, Read);
}
void ReadInTheProcess(benchmark::State& state) {
    InTheProcess(state, Read);
}
void SaveOverTheNetwork(benchmark::State& state) {
    OverTheNetwork(state, Save);
}
void SaveInTheProcess(benchmark::State& state) {
    InTheProcess(state, Save);
}

// Wall time: the work is shared between the threads of both ends.
BENCHMARK(BareEcho)->UseRealTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(TransportToListener)->UseRealTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(ReadOverTheNetwork)->UseRealTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(ReadInTheProcess)->UseRealTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(SaveOverTheNetwork)->UseRealTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(SaveInTheProcess)->UseRealTime()->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv) {
    const BenchEnvironment environment;
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
