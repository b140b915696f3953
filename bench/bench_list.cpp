// A list of records from the store to the painted screen, and the same rows, ready in memory, into a
// QTableWidget.
#include "support/BenchLibrary.h"

#include "acquisitions/AcquisitionsScreens.h"
#include "comm/CommLibrary.h"
#include "comm/CommandLine.h"
#include "core/Application.h"
#include "core/Screen.h"
#include "framework/ListGrid.h"
#include "system/SystemScreens.h"

#include <QApplication>
#include <QTableWidget>

#include <benchmark/benchmark.h>

using namespace sysadmin;

namespace {

/// The program signed on to a library in the process.
struct SignedOn {
    explicit SignedOn(const BenchLibrary& library)
        : comm(prompter, CommandLine{}, [&](const QString&, QString*) { return library.Endpoints(); })
        , application(comm, prompter) {
        const QString problem = comm.SignOnDirectly("SYSADMIN", "sample-admin-1");
        if (!problem.isEmpty())
            qFatal("%s", qPrintable(problem));
        application.profile.Load(application.channel, "SYSADMIN");
        AddAcquisitionsScreens(application.catalogue);
        AddSystemScreens(application.catalogue);
    }

    YesPrompter prompter;
    CommLibrary comm;
    Application application;
};

BenchLibrary& LibraryOf(benchmark::State& state) {
    static BenchLibrary library; // grows from size to size
    library.GrowVendorTypes(int(state.range(0)));
    return library;
}

void Paint(QWidget& window) {
    window.resize(900, 600);
    window.show();
    QApplication::processEvents();
    window.repaint();
}

void OpenAgainAndAgain(benchmark::State& state, SignedOn& program, const QString& key) {
    const ScreenEntry& entry = *program.application.catalogue.Find(key);
    for (auto _ : state) {
        std::unique_ptr<Screen> screen(entry.screen.make(program.application, nullptr));
        screen->LoadScreen();
        Paint(*screen);
        state.PauseTiming();
        if (screen->findChild<ListGrid*>("vsf")->Model().rowCount() != state.range(0))
            state.SkipWithError("rows are missing");
        screen.reset();
        state.ResumeTiming();
    }
}

void OpenScreen(benchmark::State& state) {
    SignedOn program(LibraryOf(state));
    OpenAgainAndAgain(state, program, "Acquisitions_VendorTypes");
}

void OpenLocations(benchmark::State& state) {
    BenchLibrary& library = LibraryOf(state);
    library.GrowLocations(int(state.range(0)));
    SignedOn program(library);
    OpenAgainAndAgain(state, program, "System_Locations");
}

void RequestOnly(benchmark::State& state) {
    SignedOn program(LibraryOf(state));
    for (auto _ : state)
        if (program.application.channel.SendRequest("LstVenTp") != 0)
            state.SkipWithError("the list was refused");
}

/// The request, and its records as rows of a list.
void RequestAndRows(benchmark::State& state) {
    SignedOn program(LibraryOf(state));
    RequestChannel& channel = program.application.channel;
    const QStringList tags{"Cd", "Nm"};
    for (auto _ : state) {
        channel.SendRequest("LstVenTp");
        QList<GridRow> rows;
        while (channel.NextRecord("Cd"))
            rows.append({channel.GetField("Cd"), channel.GetRecord(tags), {}});
        if (rows.size() != state.range(0))
            state.SkipWithError("rows are missing");
    }
}

void FillTableWidget(benchmark::State& state) {
    SignedOn program(LibraryOf(state));
    RequestChannel& channel = program.application.channel;
    channel.SendRequest("LstVenTp");
    QList<QStringList> rows;
    while (channel.NextRecord("Cd"))
        rows.append({channel.GetField("Cd"), channel.GetField("Nm")});
    for (auto _ : state) {
        auto table = std::make_unique<QTableWidget>(int(rows.size()), 2);
        for (int row = 0; row < rows.size(); ++row)
            for (int column = 0; column < 2; ++column)
                table->setItem(row, column, new QTableWidgetItem(rows[row][column]));
        table->sortItems(0);
        Paint(*table);
        state.PauseTiming();
        table.reset();
        state.ResumeTiming();
    }
}

} // namespace

int main(int argc, char** argv) {
    const BenchEnvironment environment;
    QApplication application(argc, argv);
    // Size by size: the library only grows.
    for (const int size : {1000, 10000, 100000})
        for (auto* one : {benchmark::RegisterBenchmark("OpenScreen", OpenScreen),
                          benchmark::RegisterBenchmark("RequestOnly", RequestOnly),
                          benchmark::RegisterBenchmark("RequestAndRows", RequestAndRows),
                          benchmark::RegisterBenchmark("FillTableWidget", FillTableWidget)})
            one->Arg(size)->UseRealTime()->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);
    for (const int size : {633, 10000}) // a real library's number, and a very large one's
        benchmark::RegisterBenchmark("OpenLocations", OpenLocations)
            ->Arg(size)
            ->UseRealTime()
            ->MeasureProcessCPUTime()
            ->Unit(benchmark::kMillisecond);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
