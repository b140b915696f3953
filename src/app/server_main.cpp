#include "server/HistoryKeeper.h"
#include "server/LibraryCheck.h"
#include "server/Listener.h"
#include "server/ServerConnection.h"
#include "server/ServerOptions.h"
#include "server/SettingsRun.h"
#include "server/SystemLimits.h"
#include "server/store/Database.h"

#include <QCoreApplication>
#include <QStandardPaths>
#include <QThread>

#include <csignal>
#include <cstdio>
#include <cstring>

using namespace sysadmin;
using namespace sysadmin::server;

namespace {

void Print(FILE* stream, const QString& line) {
    std::fputs(qPrintable(line + '\n'), stream);
    std::fflush(stream); // who starts the server reads its first lines
}

int Fail(const QString& line) {
    Print(stderr, line);
    return 1;
}

int Serve(const ServerOptions& options) {
    LibraryOptions opening;
    opening.address = options.library;
    opening.sessions = options.sessions;
    opening.servesOthers = !options.address.isLoopback();
    opening.whenMissing = options.createPartner  ? LibraryOptions::WhenMissing::MakePartner
                          : options.createSample ? LibraryOptions::WhenMissing::MakeSample
                                                 : LibraryOptions::WhenMissing::MakeEmpty;
    opening.patience = std::chrono::seconds(50); // just less than clients wait
    QString error;
    const auto library = Library::Open(opening, &error);
    if (!library)
        return Fail(error);
    if (options.createSample && !library->IsSample())
        return Fail(
            "There is a library already, and it is not the sample library; --create-sample leaves it alone.");
    if (!library->FirstPassword().isEmpty())
        Print(stdout, "A new library was made. Sign on as SYSADMIN with the password " +
                          library->FirstPassword() + " ; it must be changed at once.");
    try {
        if (!(options.name + options.colour).isEmpty())
            MarkLibrary(*library->Connect(), options.name, options.colour);
        if (!options.address.isLoopback() && HasSamplePassword(*library->Connect()))
            return Fail(
                "A password of the sample library is in force, and everybody knows it: the server listens "
                "on this machine only until it is changed.");
    } catch (const StoreError& failure) {
        return Fail(failure.Text());
    }
    const auto identity = options.certificateFile.isEmpty()
                              ? OwnIdentity(*library, &error)
                              : ReadIdentity(options.certificateFile, options.keyFile, &error);
    if (!identity)
        return Fail(error);

    AllowManyFiles();
    PeerLimits limits;
    limits.sessions = options.sessions;
    const int connections = options.databaseConnections > 0 ? options.databaseConnections
                                                            : qBound(12, 4 * QThread::idealThreadCount(), 32);
    limits.writers = connections / 3;
    limits.workers = connections - limits.writers;
    const auto databases = std::make_shared<Databases>(library);
    std::unique_ptr<Listener> listener;
    try {
        listener = std::make_unique<Listener>(
            *identity,
            [library, databases](const QString& peer) {
                return std::make_unique<ServerConnection>(library, peer, databases);
            },
            limits);
    } catch (const std::exception& failure) {
        return Fail(failure.what());
    }
    if (!listener->listen(options.address, options.port))
        return Fail("Cannot listen on " + options.address.toString() + ':' + QString::number(options.port) +
                    ": " + listener->errorString() + '.');
    std::optional<HistoryKeeper> keeper;
    if (options.historyKeep > 0)
        keeper.emplace(library, options.historyKeep);
    Print(stdout, "Certificate SHA-256 " + identity->Fingerprint());
    const bool isIPv6 = options.address.protocol() == QAbstractSocket::IPv6Protocol;
    const QString host = isIPv6 ? '[' + options.address.toString() + ']' : options.address.toString();
    Print(stdout, "Listening on " + host + ':' + QString::number(listener->serverPort()));
    return QCoreApplication::exec();
}

/// Overwrites the password in a URL among the arguments: everybody on the machine can list those.
void HidePassword(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        char* url = std::strstr(argv[i], "postgres");
        char* user = url ? std::strstr(url, "://") : nullptr;
        char* end = user ? std::strrchr(user, '@') : nullptr;
        char* colon = end ? std::strchr(user + 3, ':') : nullptr;
        if (colon && colon < end)
            std::memset(colon + 1, 'x', size_t(end - colon - 1));
    }
}

} // namespace

int main(int argc, char** argv) {
#ifdef SIGXFSZ
    std::signal(SIGXFSZ, SIG_IGN); // a file that may not grow is a failed request, not the server's end
#endif
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName("sysadmin-server");
    const QString directory =
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + "/sysadmin-server";
    const auto asked = ReadOptions(application.arguments().mid(1), directory);
    HidePassword(argc, argv);
    if (const auto* print = std::get_if<PrintAndExit>(&asked)) {
        Print(print->exitStatus == 0 ? stdout : stderr, print->text);
        return print->exitStatus;
    }
    qunsetenv(DatabasePasswordVariable);
    const auto& options = std::get<ServerOptions>(asked);
    if (options.check)
        return CheckLibrary(options, [](const QString& sentence) { Print(stdout, sentence); }) ? 0 : 1;
    if (options.task != ServerOptions::Task::None)
        return RunSettings(options, {.tell = [](const QString& line) { Print(stdout, line); },
                                     .complain = [](const QString& line) { Print(stderr, line); }});
    return Serve(options);
}
