// Many clients at once, each with a connection of its own: a small list and a save, on both engines, beside a
// bare TLS echo and beside what the engine alone can do.
#include "support/BenchLibrary.h"
#include "support/TlsPeer.h"

#include "../tests/support/PostgresServer.h"
#include "server/Listener.h"
#include "server/store/Database.h"
#include "wire/Codec.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <atomic>
#include <cstdio>

using namespace sysadmin;

namespace {

/// What the threads of a benchmark share.
struct Shared {
    std::unique_ptr<BenchLibrary> library;
    std::unique_ptr<ServerThread> server;
    std::unique_ptr<TlsEcho> echo;
};
Shared shared;

testing::PostgresServer& Postgres() {
    static testing::PostgresServer server(testing::PostgresServer::Disk::Waited);
    if (!server.Reason().isEmpty())
        qFatal("%s", qPrintable(server.Reason()));
    return server;
}

server::ServerIdentity Identity() {
    QString error;
    const auto identity = server::OwnIdentity(*shared.library->Get(), &error);
    if (!identity)
        qFatal("%s", qPrintable(error));
    return *identity;
}

void BeginSqlite(const benchmark::State&) {
    shared.library = std::make_unique<BenchLibrary>();
}

void BeginPostgres(const benchmark::State&) {
    static int count = 0;
    shared.library =
        std::make_unique<BenchLibrary>(Postgres().MakeDatabase("library" + QString::number(++count)));
}

void Serve() {
    server::PeerLimits limits;
    limits.sessions = 100'000;
    limits.strangers = 100'000;
    shared.server = std::make_unique<ServerThread>(
        [&] { return new server::Listener(Identity(), shared.library->Endpoints(), limits); });
}

template <void (*BeginLibrary)(const benchmark::State&)>
void Begin(const benchmark::State& state) {
    BeginLibrary(state);
    Serve();
}

void BeginEcho(const benchmark::State& state) {
    BeginSqlite(state);
    shared.echo = std::make_unique<TlsEcho>(Identity());
}

void End(const benchmark::State&) {
    shared.echo.reset();
    shared.server.reset();
    shared.library.reset();
}

/// Each request by itself; the counters are the rate of all clients together, and of one client's requests
/// the slowest hundredth and the longest, averaged over the clients.
template <class Work>
void Repeat(benchmark::State& state, const Work& work) {
    std::vector<double> took;
    for (auto _ : state) {
        const auto begin = std::chrono::steady_clock::now();
        work();
        took.push_back(
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count());
    }
    std::sort(took.begin(), took.end());
    state.SetItemsProcessed(state.iterations());
    state.counters["p99_ms"] = {took[took.size() * 99 / 100], benchmark::Counter::kAvgThreads};
    state.counters["longest_ms"] = {took.back(), benchmark::Counter::kAvgThreads};
}

void Echo(benchmark::State& state) {
    TlsPeer peer(shared.echo->Port());
    const QByteArray message = wire::Encode(wire::Request{12, "UpdVenTp", {{"Cd", "BOOK"}, {"Nm", "Books"}}});
    Repeat(state, [&] { peer.Ask(message); });
}

void List(benchmark::State& state) {
    TlsPeer peer(shared.server->Port());
    peer.SignOn();
    quint64 number = 0;
    Repeat(state, [&] {
        if (peer.Ask(++number, "LstVenTp").status != 0)
            qFatal("The list was refused.");
    });
}

void Save(benchmark::State& state) {
    TlsPeer peer(shared.server->Port());
    peer.SignOn();
    quint64 number = 0;
    static std::atomic<int> clients = 0;
    const QString code = QString("S%1").arg(++clients);
    if (peer.Ask(++number, "AddVenTp", {{"Cd", code}, {"Nm", code}}).status != 0)
        qFatal("The vendor type was refused.");
    Repeat(state, [&] {
        const QString name = QString("%1 %2").arg(code).arg(number);
        if (peer.Ask(++number, "UpdVenTp",
                     {{"Cd", code}, {"Nm", name}, {"NCd", "N"}, {"NNm", "Y"}, {"OCd", code}})
                .status != 0)
            qFatal("The save was refused.");
    });
}

/// What a list and a save cost the engine, without sessions, rights and history.
void BareList(benchmark::State& state) {
    const auto database = shared.library->Get()->Connect();
    Repeat(state, [&] {
        database->Each("SELECT code, name FROM vendor_types ORDER BY code", {}, [](const auto&) {});
    });
}

void BareSave(benchmark::State& state) {
    const auto database = shared.library->Get()->Connect();
    int count = 0;
    Repeat(state, [&] {
        RunInTransaction(*database, [&] {
            database->Run("UPDATE vendor_types SET name=? WHERE code=?", {QString::number(++count), "BOOK"});
        });
    });
}

qint64 ResidentBytes() {
    malloc_trim(0);
    QFile file("/proc/self/statm");
    return file.open(QIODevice::ReadOnly) ? file.readAll().split(' ').value(1).toLongLong() * 4096 : 0;
}

/// What this process takes of memory for each of many idle connections; their other ends are in a process of
/// their own.
void Hold(benchmark::State& state, quint16 port, const char* how) {
    for (auto _ : state) {
        const qint64 before = ResidentBytes();
        QProcess peers;
        peers.start(QCoreApplication::applicationFilePath(),
                    {how, QString::number(port), QString::number(state.range(0))});
        if (!peers.waitForReadyRead(300'000))
            qFatal("The peers have not connected.");
        state.counters["KB_each"] = double(ResidentBytes() - before) / 1024 / double(state.range(0));
        peers.closeWriteChannel();
        peers.waitForFinished();
    }
}

/// The other ends: connected, or signed on and with a first list, until the input ends.
int BePeers(bool signOn, quint16 port, int count) {
    std::vector<std::unique_ptr<TlsPeer>> peers;
    for (int i = 0; i < count; ++i) {
        peers.push_back(std::make_unique<TlsPeer>(port));
        if (!signOn)
            continue;
        peers.back()->SignOn();
        peers.back()->Ask(1, "LstVenTp");
    }
    std::puts("connected");
    std::fflush(stdout);
    return std::getchar() == EOF ? 0 : 1;
}

void HoldEcho(benchmark::State& state) {
    Hold(state, shared.echo->Port(), "--connected");
}

void HoldConnections(benchmark::State& state) {
    Hold(state, shared.server->Port(), "--connected");
}

void HoldSessions(benchmark::State& state) {
    Hold(state, shared.server->Port(), "--signed-on");
}

using Function = void (*)(benchmark::State&);
using Beginning = void (*)(const benchmark::State&);

/// Times are those of the clock, and of the processor for both ends together.
benchmark::internal::Benchmark* Add(const char* name, Function function, Beginning begin) {
    return benchmark::RegisterBenchmark(name, function)
        ->Setup(begin)
        ->Teardown(End)
        ->MeasureProcessCPUTime()
        ->UseRealTime()
        ->Unit(benchmark::kMicrosecond);
}

void AddOfClients(const char* name, Function function, Beginning begin) {
    for (const int clients : {1, 16, 64})
        Add(name, function, begin)->Threads(clients);
}

void AddAll() {
    AddOfClients("Echo", Echo, BeginEcho);
    Add("BareList/SQLite", BareList, BeginSqlite);
    Add("BareList/PostgreSQL", BareList, BeginPostgres);
    Add("BareSave/SQLite", BareSave, BeginSqlite);
    Add("BareSave/PostgreSQL", BareSave, BeginPostgres);
    AddOfClients("List/SQLite", List, Begin<BeginSqlite>);
    AddOfClients("List/PostgreSQL", List, Begin<BeginPostgres>);
    AddOfClients("Save/SQLite", Save, Begin<BeginSqlite>);
    AddOfClients("Save/PostgreSQL", Save, Begin<BeginPostgres>);
    Add("HoldEcho", HoldEcho, BeginEcho)->Arg(1000)->Iterations(1);
    Add("HoldConnections", HoldConnections, Begin<BeginSqlite>)->Arg(10'000)->Iterations(1);
    Add("HoldSessions", HoldSessions, Begin<BeginSqlite>)->Arg(10'000)->Iterations(1);
}

} // namespace

int main(int argc, char** argv) {
    const BenchEnvironment environment;
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.size() == 4 && (arguments[1] == "--connected" || arguments[1] == "--signed-on"))
        return BePeers(arguments[1] == "--signed-on", quint16(arguments[2].toUInt()), arguments[3].toInt());
    benchmark::Initialize(&argc, argv);
    AddAll();
    benchmark::RunSpecifiedBenchmarks();
}
