#pragma once

#include "server/store/StoreAddress.h"

#include <QHostAddress>
#include <QStringList>

#include <optional>
#include <variant>

namespace sysadmin::server {

/// What the server's command line asks for.
struct ServerOptions {
    StoreAddress library;
    QHostAddress address = QHostAddress(QHostAddress::LocalHost);
    quint16 port = 7443; ///< 0: any that is free
    QString certificateFile;
    QString keyFile;
    bool createSample = false;
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
