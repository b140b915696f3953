#include "app/Client.h"
#include "app/DescribeRun.h"
#include "app/Robot.h"
#include "app/Tour.h"
#include "comm/CommandLine.h"
#include "core/MainWindow.h"
#include "core/Prompter.h"
#include "core/System.h"
#include "framework/frmVersionInfo.h"

#include <QApplication>
#include <QDir>
#include <QSettings>
#include <QTemporaryDir>

#include <cstdio>

namespace {

using namespace sysadmin;

/// Exit statuses: 0 done, 1 something failed, 2 wrong options.
constexpr int Failed = 1;
constexpr int WrongOptions = 2;

int Complain(const QString& line, int status) {
    std::fprintf(stderr, "sysadmin: %s\n", qPrintable(line));
    return status;
}

/// Takes the tour on a sample library of its own, so that it finds what it expects and leaves nothing behind.
int RunTour(CommandLine line, QStringList arguments) {
    QTemporaryDir library;
    if (line.library.isEmpty() && !line.server) {
        line.library = library.path();
        arguments += {"--library", line.library};
    }
    if (!QDir().mkpath(line.tourDir))
        return Complain("cannot write to " + line.tourDir + "; name a folder that can be written: --tour DIR",
                        Failed);
    WindowPrompter prompter;
    Client client(prompter, line);
    Robot robot(line.tourDir);
    PlanTour(robot);
    // The robot may have failed inside a dialog, from which there is no way back to here.
    QObject::connect(&robot, &Robot::Failed, qApp,
                     [](const QString& problem) { std::exit(Complain("tour: " + problem, Failed)); });
    robot.Start();
    if (!client.Start(arguments))
        return Complain("the tour did not get past sign-on", Failed);
    QApplication::exec();
    if (!robot.Problem().isEmpty() || robot.StepsLeft() > 0)
        return Complain("tour: the window closed before the end", Failed);
    std::printf("The pictures of the tour are in %s\n", qPrintable(line.tourDir));
    return 0;
}

/// Leaves out what the platform without a display says about every window.
void PrintMessage(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (!message.contains("propagateSizeHints"))
        std::fprintf(stderr, "%s\n", qPrintable(qFormatLogMessage(type, context, message)));
}

} // namespace

int main(int argc, char** argv) {
    JoinConsole();
    const QStringList arguments = GivenArguments(argc, argv);
    const ParsedCommandLine parsed = ParseCommandLine(arguments);
    if (!parsed.error.isEmpty())
        return Complain(parsed.error, WrongOptions);
    const CommandLine& line = parsed.commandLine;
    if (line.help) {
        std::printf("%s", qPrintable(CommandLineHelp()));
        return 0;
    }
    if (line.version) {
        std::printf("sysadmin %s\n", SYSADMIN_VERSION);
        return 0;
    }

    if (!line.components.isEmpty() && !QDir(line.components).exists())
        return Complain("there is no folder " + line.components +
                            "; name the one of the components: "
                            "--components DIR",
                        WrongOptions);

    const bool onlyPictures = !line.tourDir.isEmpty() || !line.describeDir.isEmpty();
    if (onlyPictures)
        qInstallMessageHandler(PrintMessage);
    if (onlyPictures)
        PaintWithoutDisplay();
    QApplication program(argc, argv);
    SetUpProgram(program, line);
    // Whoever only looks leaves no trace in the settings of the operators who work here.
    QTemporaryDir settings;
    if (onlyPictures) {
        QSettings::setDefaultFormat(QSettings::IniFormat); // the registry of Windows has no other place
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settings.path());
    }
    if (!line.tourDir.isEmpty())
        return RunTour(line, arguments);
    if (!line.describeDir.isEmpty()) {
        const QString problem = RunDescribe(line);
        return problem.isEmpty() ? 0 : Complain(problem, Failed);
    }

    WindowPrompter prompter;
    Client client(prompter, line);
    ComponentSetup components{.check = !line.noCheck};
    if (!line.components.isEmpty())
        components.folder = line.components;
    if (!PrepareComponents(components, prompter))
        return 0;
    if (!client.Start(arguments))
        return Failed;
    return QApplication::exec();
}
