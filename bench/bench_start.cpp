// From starting the program to its painted main window, and to an empty Qt window. Each start is a process of
// its own: this program again, told what to be.
#include "support/BenchLibrary.h"

#include "app/Client.h"
#include "comm/CommandLine.h"
#include "core/MainWindow.h"
#include "core/Screen.h"
#include "look/Appearance.h"
#include "server/Embedded.h"

#include <QApplication>
#include <QMainWindow>
#include <QProcess>

#include <benchmark/benchmark.h>

#include <cstdlib>

using namespace sysadmin;

namespace {

int Failed(const QString& problem) {
    std::fprintf(stderr, "%s\n", qPrintable(problem));
    return 1;
}

// Everything up to here is the start; taking the program down is not.
[[noreturn]] void PaintAndLeave(QWidget& window) {
    window.show();
    QApplication::processEvents();
    window.repaint();
    std::_Exit(0);
}

int BeProgram(const QString& libraryFolder) {
    ApplyAppearance(*qApp, *AppearanceOf("light"));
    CommandLine line;
    line.library = libraryFolder;
    YesPrompter prompter;
    Client client(prompter, line);
    const QString problem = client.Comm().SignOnDirectly("SYSADMIN", "sample-admin-1");
    if (!problem.isEmpty())
        return Failed(problem);
    if (!client.Start({"--library", libraryFolder}))
        return Failed("the program ended during its start");
    PaintAndLeave(*client.Window());
}

int BeEmptyWindow() {
    QMainWindow window;
    window.resize(1000, 700);
    PaintAndLeave(window);
}

int BeLibrary(const QString& libraryFolder) {
    QString error;
    if (!server::MakeEmbeddedEndpoint(libraryFolder, &error))
        return Failed(error);
    std::_Exit(0);
}

void Start(benchmark::State& state, const QString& what) {
    const BenchLibrary library;
    for (auto _ : state) {
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(QCoreApplication::applicationFilePath(), {"--be", what, library.Folder()});
        if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit ||
            process.exitCode() != 0)
            state.SkipWithError(process.readAll().constData());
    }
}

void StartProgram(benchmark::State& state) {
    Start(state, "program");
}
void StartEmptyWindow(benchmark::State& state) {
    Start(state, "window");
}
void OpenLibraryOnly(benchmark::State& state) {
    Start(state, "library");
}

/// Opening and painting a screen while so many others are open.
void OpenScreenBeside(benchmark::State& state) {
    const BenchLibrary library;
    CommandLine line;
    line.library = library.Folder();
    YesPrompter prompter;
    Client client(prompter, line);
    if (!client.Comm().SignOnDirectly("SYSADMIN", "sample-admin-1").isEmpty() ||
        !client.Start({"--library", line.library})) {
        state.SkipWithError("the program does not start");
        return;
    }
    const QString key = "Acquisitions_VendorTypes";
    MainWindow& window = *client.Window();
    window.show();
    int others = 0;
    for (const ScreenEntry& entry : client.App().catalogue.Entries())
        if (others < int(state.range(0)) && entry.key != key && entry.screen.make) {
            window.OpenScreen(entry.key);
            others += window.FindScreen(entry.key) != nullptr;
        }
    for (auto _ : state) {
        window.OpenScreen(key);
        QApplication::processEvents();
        state.PauseTiming();
        Screen* const screen = window.FindScreen(key);
        if (!screen || others != state.range(0))
            state.SkipWithError("a screen is missing");
        else
            screen->parentWidget()->close();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QApplication::processEvents();
        state.ResumeTiming();
    }
}

BENCHMARK(StartProgram)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(StartEmptyWindow)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(OpenLibraryOnly)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(OpenScreenBeside)->Arg(0)->Arg(10)->Arg(50)->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    const QString role =
        argc == 4 && qstrcmp(argv[1], "--be") == 0 ? QString::fromLocal8Bit(argv[2]) : QString();
    if (role == "library") {
        QCoreApplication application(argc, argv);
        return BeLibrary(QString::fromLocal8Bit(argv[3]));
    }
    if (!role.isEmpty()) {
        QApplication application(argc, argv);
        return role == "program" ? BeProgram(QString::fromLocal8Bit(argv[3])) : BeEmptyWindow();
    }
    const BenchEnvironment environment;
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
