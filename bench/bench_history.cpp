// A million changes in the history: the first page of all of them, of one operator's, of one kind of
// record's, and the history of one record. And records found by their texts among 100,000. Beside each the
// bare statement that reads what is needed most.
#include "support/BenchLibrary.h"

#include "comm/CommLibrary.h"
#include "comm/CommandLine.h"
#include "server/store/Database.h"
#include "wire/Status.h"

#include <QApplication>

#include <benchmark/benchmark.h>

using namespace sysadmin;

namespace {

constexpr int Changes = 1'000'000;
constexpr int Records = 100'000;

/// The program's channel to a library in the process, with the history and the records.
class Client {
    BenchLibrary m_library; // the first: all else lives on it
    YesPrompter m_prompter;

public:
    static Client& Get() {
        static Client client;
        return client;
    }

    CommLibrary comm;
    std::unique_ptr<server::Database> database;

    /// Sends the request and tells how many records came.
    qsizetype Ask(const QString& request, const wire::Fields& fields, const QString& recordTag) {
        RequestChannel& channel = comm.GetChannel();
        for (const wire::Field& field : fields)
            channel.PutField(field.tag, field.value);
        if (channel.SendRequest(request) != wire::status::Ok)
            qFatal("%s was refused.", qPrintable(request));
        qsizetype records = 0;
        while (channel.NextRecord(recordTag))
            ++records;
        return records;
    }

private:
    Client()
        : comm(m_prompter, CommandLine{}, [this](const QString&, QString*) { return m_library.Endpoints(); })
        , database(m_library.Get()->Connect()) {
        m_library.GrowLocations(Records);
        server::RunInTransaction(*database, [&] {
            for (int i = 1; i <= Changes; ++i) {
                // One in a thousand is another operator's; ten records have most changes.
                database->Run("INSERT INTO history_requests (at, operator_id, peer, request, records) "
                              "VALUES (?, ?, 'local', 'UpdLoc', 1)",
                              {QString("2026-01-01T00:00:00.%1Z").arg(i, 7, 10, QChar('0')),
                               i % 1000 == 7 ? "CIRC" : "SYSADMIN"});
                const int record = i % 100 == 1 ? 500 + i % 997 : 1 + i % 10;
                database->Run(
                    "INSERT INTO history_records (request_id, table_name, record_id, subject_table, "
                    "subject_id, kind, fields) VALUES (?, ?, ?, ?, ?, 'changed', ?)",
                    {i, i % 50 == 1 ? "vendor_types" : "locations", record,
                     i % 50 == 1 ? "vendor_types" : "locations", record,
                     "{\"name\":[\"Before\",\"After\"]}"});
            }
        });
        const QString problem = comm.SignOnDirectly("SYSADMIN", "sample-admin-1");
        if (!problem.isEmpty())
            qFatal("%s", qPrintable(problem));
    }
};

void Page(benchmark::State& state, const QString& request, const wire::Fields& fields) {
    Client& client = Client::Get();
    for (auto _ : state)
        if (client.Ask(request, fields, "HN") == 0)
            state.SkipWithError("no changes came");
}
BENCHMARK_CAPTURE(Page, all, QString("LstChg"), wire::Fields{})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Page, of_an_operator, QString("LstChg"), wire::Fields{{"Op", "CIRC"}})
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Page, of_a_kind, QString("LstChg"), wire::Fields{{"Sbj", "VenTp"}})
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Page, of_both, QString("LstChg"), wire::Fields{{"Sbj", "Loc"}, {"Op", "CIRC"}})
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Page, of_a_record, QString("LstHst"), wire::Fields{{"Sbj", "Loc"}, {"HRow", "3"}})
    ->Unit(benchmark::kMillisecond);

/// The last hundred rows, and their requests.
void BareRows(benchmark::State& state) {
    Client& client = Client::Get();
    for (auto _ : state) {
        int rows = 0;
        client.database->Each("SELECT r.*, h.* FROM history_records r JOIN history_requests h ON "
                              "h.id=r.request_id ORDER BY r.id DESC LIMIT 100",
                              {}, [&](const server::ResultRow&) { ++rows; });
        if (rows != 100)
            state.SkipWithError("rows are missing");
    }
}
BENCHMARK(BareRows)->Unit(benchmark::kMillisecond);

void FindRecords(benchmark::State& state, const QString& text) {
    Client& client = Client::Get();
    for (auto _ : state)
        benchmark::DoNotOptimize(client.Ask("FndRec", {{"Txt", text}}, "Sbj"));
}
BENCHMARK_CAPTURE(FindRecords, some, QString("room 99"))->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(FindRecords, none, QString("zyzzyva"))->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(FindRecords, beyond_ascii, QString("Bücherei"))->Unit(benchmark::kMillisecond);

/// All texts of the locations, looked at by the bare engine.
void BareScan(benchmark::State& state) {
    Client& client = Client::Get();
    for (auto _ : state)
        benchmark::DoNotOptimize(client.database->FirstValue(
            "SELECT COUNT(*) FROM locations WHERE name LIKE '%zyzzyva%' OR code LIKE '%zyzzyva%'"));
}
BENCHMARK(BareScan)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    const BenchEnvironment environment;
    QApplication program(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
