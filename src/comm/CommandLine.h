#pragma once

#include "comm/ServerAddress.h"

#include <QString>
#include <QStringList>

namespace sysadmin {

/// The program's command line, taken apart.
struct CommandLine {
    std::optional<ServerAddress> server; ///< --server: a shared server
    QString library;      ///< --library: the folder of a library on this computer; empty: not given
    QString operatorId;   ///< --operator
    QString traceFile;    ///< --trace
    QString describeDir;  ///< --describe
    QString tourDir;      ///< --tour
    QString appearance;   ///< --appearance: light, dark or system; empty: as the operator prefers
    QString components;   ///< --components: the folder of the workstation's components; empty: the usual one
    bool noCheck = false; ///< /nocheck: no check of the components' versions
    bool help = false;
    bool version = false;
};

/// What `ParseCommandLine` made of the arguments. `error` is one line for the operator that says what is
/// wrong and how to do it right; empty when all is well.
struct ParsedCommandLine {
    CommandLine commandLine;
    QString error;
};

/// Takes the arguments (without the program's name) apart. "/nocheck" may stand anywhere, in any case of
/// letters.
ParsedCommandLine ParseCommandLine(const QStringList& arguments);

/// The options with their meaning, as --help prints them.
QString CommandLineHelp();

/// The folder of the sample library, which is opened unless the operator names another: in the user's data
/// folder.
QString SampleLibraryFolder();

} // namespace sysadmin
