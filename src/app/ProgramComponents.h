#pragma once

class QWidget;

namespace sysadmin {

class Prompter;

/// Shows what the program stands on: itself, Qt, and the libraries behind it, each with its version.
void ShowProgramComponents(Prompter& prompter, QWidget* parent);

} // namespace sysadmin
