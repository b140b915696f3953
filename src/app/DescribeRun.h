#pragma once

#include <QString>

namespace sysadmin {

struct CommandLine;

/// Opens every screen of the catalogue and its dialogs on the sample library and writes, for each state
/// ("list", "new", "edit", "view"), NAME.STATE.png and NAME.STATE.json to the folder of the command line.
/// Answers what went wrong in one line; empty when nothing did.
QString RunDescribe(const CommandLine& line);

} // namespace sysadmin
