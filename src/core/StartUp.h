#pragma once

#include <QStringList>

#include <memory>

namespace sysadmin {

class Application;
class MainWindow;

/// Signs the operator on, shows the main window and trims it to the operator's rights. `arguments` is the
/// command line without the program's name. Null when the program ends here; whoever refused has told the
/// operator why.
std::unique_ptr<MainWindow> StartUp(Application& application, const QStringList& arguments);

} // namespace sysadmin
