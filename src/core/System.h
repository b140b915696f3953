#pragma once

#include <QStringList>

namespace sysadmin {

// What differs between the systems that the program runs on: System_windows.cpp, System_other.cpp.

/// The options that the program was started with, without its own name.
QStringList GivenArguments(int argc, char** argv);

/// Lets what the program prints appear where it was started from, for a program of windows that a console
/// started.
void JoinConsole();

/// Lets the program paint where there is no display, unless the environment says otherwise. To be called
/// before there is an application.
void PaintWithoutDisplay();

/// Shows a topic of the compiled help (0: its contents) in the system's viewer. Answers whether the viewer
/// took it.
bool ShowCompiledHelp(int helpContext);

} // namespace sysadmin
