#include "core/System.h"

#ifndef Q_OS_WIN

namespace sysadmin {

QStringList GivenArguments(int argc, char** argv) {
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    return arguments;
}

void JoinConsole() {}

void PaintWithoutDisplay() {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
}

bool ShowCompiledHelp(int) {
    return false;
}

} // namespace sysadmin

#endif
