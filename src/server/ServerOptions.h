#pragma once

#include "server/store/StoreAddress.h"

#include <QHostAddress>
#include <QStringList>

#include <optional>
#include <variant>

namespace sysadmin::server {

/// The environment variable that may hold the password of the database's user.
inline constexpr char DatabasePasswordVariable[] = "SYSADMIN_DATABASE_PASSWORD";

/// What the server's command line asks for.
struct ServerOptions {
    StoreAddress library;
    QHostAddress address = QHostAddress(QHostAddress::LocalHost);
    quint16 port = 7443; ///< 0: any that is free
    QString certificateFile;
    QString keyFile;
    int sessions = 10'000;       ///< operators signed on at once
    int databaseConnections = 0; ///< at the same time; 0: by the number of cores
    QString name;                ///< of the library from now on; empty: it keeps the one it has
    QString colour;              ///< the same; "none" takes it away
    bool createSample = false;
    bool createPartner = false; ///< the sample library that is made is the second one
    bool check = false;         ///< look at everything, tell, and end
    int historyKeep = 0;        ///< days for which the history is kept; 0: for ever
    /// What is done with files before the program ends.
    enum class Task { None, Export, Compare, Import, ExportHistory };
    Task task = Task::None;
    QString folder;      ///< of the settings' files
    QString historyFile; ///< into which the history is written
    QStringList only;    ///< the settings that it is about, by the names of their files; empty: all
    bool dryRun = false; ///< of an import: tell what it would do
};

/// What there is to do: serve, or print a text and end with an exit status.
struct PrintAndExit {
    QString text;
    int exitStatus = 0;
};

/// Reads the command line (without the program's name). `defaultDirectory` holds the library unless an option
/// says otherwise.
std::variant<ServerOptions, PrintAndExit> ReadOptions(const QStringList& arguments,
                                                      const QString& defaultDirectory);

} // namespace sysadmin::server
