// 10,000 call slip rules: the screen opened with the rules that are never reached marked, one rule moved, a
// request tried. Beside the moves the same as bare SQL.
#include "support/BenchLibrary.h"

#include "callslips/CallNumberOrder.h"
#include "callslips/Routing.h"
#include "comm/CommLibrary.h"
#include "comm/CommandLine.h"
#include "core/Application.h"
#include "core/data/RequestChannel.h"
#include "requests/frmCallSlip_Rules.h"
#include "server/store/Database.h"

#include <QApplication>

#include <benchmark/benchmark.h>

using namespace sysadmin;

namespace {

constexpr int RuleCount = 10000;

/// A sample library with 10,000 rules over all its locations: ranges of call numbers, years, item types, and
/// rules for any location between them.
class SlipLibrary {
public:
    SlipLibrary()
        : m_comm(m_prompter, CommandLine{}, [&](const QString&, QString*) { return m_library.Endpoints(); })
        , m_application(m_comm, m_prompter) {
        const QString problem = m_comm.SignOnDirectly("SYSADMIN", "sample-admin-1");
        if (!problem.isEmpty())
            qFatal("%s", qPrintable(problem));
        m_application.profile.Load(Channel(), "SYSADMIN");
        const auto database = Connect();
        const QVariantList locations = database->FirstColumn("SELECT id FROM locations ORDER BY id");
        const QVariantList types = database->FirstColumn("SELECT id FROM item_types ORDER BY id");
        const QVariant queue = database->FirstValue("SELECT id FROM call_slip_queues");
        RunInTransaction(*database, [&] {
            database->Run("DELETE FROM call_slip_rules");
            for (int i = 0; i < RuleCount; ++i) {
                const int step = i / int(locations.size()); // the how manieth rule of its location
                const bool anyLocation = i % 500 == 499;
                const QString class1 = QChar('A' + step);
                const QString class2 = QChar('B' + step);
                database->Run("INSERT INTO call_slip_rules (item_location_id, item_type_id, queue_id, "
                              "call_number_type, "
                              "least_call_number, end_call_number, first_year, end_year, rank) "
                              "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)",
                              {anyLocation ? QVariant() : locations[i % locations.size()],
                               i % 3 == 0 ? types[i % types.size()] : QVariant(), queue, "0", class1 + "1",
                               class2 + "1", i % 5 == 0 ? QVariant(1900) : QVariant(), QVariant(), i + 1});
            }
        });
    }
    RequestChannel& Channel() { return m_comm.GetChannel(); }
    Application& App() { return m_application; }
    std::unique_ptr<server::Database> Connect() const { return m_library.Get()->Connect(); }

private:
    BenchLibrary m_library;
    YesPrompter m_prompter;
    CommLibrary m_comm;
    Application m_application;
};

SlipLibrary& Slips() {
    static SlipLibrary library;
    return library;
}

QList<callslips::Rule> Rules() {
    frmCallSlip_Rules screen(Slips().App(), nullptr);
    screen.LoadScreen();
    return screen.Rules();
}

void OpenScreen(benchmark::State& state) {
    for (auto _ : state) {
        frmCallSlip_Rules screen(Slips().App(), nullptr);
        screen.LoadScreen();
        if (screen.Rules().size() != RuleCount)
            state.SkipWithError("wrong number of rules");
    }
}

void ListRequest(benchmark::State& state) {
    Slips();
    for (auto _ : state)
        benchmark::DoNotOptimize(Slips().Channel().SendRequest("LstCSR"));
}

/// The rules in front of and behind the two that change places stay: every second time back.
void Move(benchmark::State& state) {
    const int distance = int(state.range(0));
    Slips().Channel().SendRequest("LstCSR");
    bool forth = true;
    for (auto _ : state) {
        for (int i = 1; i <= RuleCount; ++i) {
            const int from = i > distance + 1 ? i
                             : forth          ? (i == distance + 1 ? 1 : i + 1)
                                              : (i == 1 ? distance + 1 : i - 1);
            Slips().Channel().PutField("RR", QString::number(i));
            Slips().Channel().PutField("PRR", QString::number(from));
        }
        forth = !forth;
        if (const qint16 status = Slips().Channel().SendRequest("OrdCSR"))
            qFatal("OrdCSR: %d", status);
    }
}

void MoveBare(benchmark::State& state) {
    const auto database = Slips().Connect();
    for (auto _ : state)
        RunInTransaction(*database, [&] {
            database->Run("UPDATE call_slip_rules SET rank=rank+1 WHERE rank<=?", {qint64(state.range(0))});
            database->Run("UPDATE call_slip_rules SET rank=rank-1 WHERE rank<=?",
                          {qint64(state.range(0)) + 1});
        });
}

void FindShadows(benchmark::State& state) {
    const callslips::Routing routing(Rules());
    for (auto _ : state)
        benchmark::DoNotOptimize(routing.Shadows());
}

void TryRequest(benchmark::State& state) {
    const callslips::Routing routing(Rules());
    const callslips::Request nobody{.attributes = {"999999"}, .callNumberType = "0", .callNumber = "ZZ1"};
    for (auto _ : state) {
        benchmark::DoNotOptimize(routing.Try(nobody));
    }
}

/// Of all 633 locations.
void FindLeftOver(benchmark::State& state) {
    const callslips::Routing routing(Rules());
    QStringList locations;
    for (const QVariant& id : Slips().Connect()->FirstColumn("SELECT id FROM locations"))
        locations << id.toString();
    for (auto _ : state)
        for (const QString& location : locations)
            benchmark::DoNotOptimize(routing.LeftAt(location));
}

BENCHMARK(OpenScreen)->Unit(benchmark::kMillisecond);
BENCHMARK(ListRequest)->Unit(benchmark::kMillisecond);
BENCHMARK(Move)->Arg(1)->Arg(100)->Arg(RuleCount - 1)->Unit(benchmark::kMillisecond);
BENCHMARK(MoveBare)->Arg(RuleCount - 1)->Unit(benchmark::kMillisecond);
BENCHMARK(FindShadows)->Unit(benchmark::kMillisecond);
BENCHMARK(TryRequest)->Unit(benchmark::kMillisecond);
BENCHMARK(FindLeftOver)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    const BenchEnvironment environment;
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
