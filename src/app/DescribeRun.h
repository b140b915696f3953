#pragma once

#include <QString>

#include <functional>

class QWidget;

namespace sysadmin {

struct CommandLine;
class FormScreen;
class ScreenCatalogue;

/// What is done at each window and at each screen's declaration.
struct WindowVisitor {
    /// The window in one of its states ("list", "new", "edit", "view"; "edit-2" on its second page), once for
    /// each.
    std::function<void(QWidget& window, const QString& state, int helpContext)> window;
    std::function<void(const FormScreen& screen)> declaration;
    std::function<void(const ScreenCatalogue& catalogue)> navigation = {};
};

/// Opens every screen of the catalogue and its dialogs on the sample library (or the command line's), as an
/// operator who may edit and as one who may not. Answers what went wrong in one line; empty when nothing did.
QString VisitWindows(const CommandLine& line, const WindowVisitor& visitor);

/// Writes each window in each state as NAME.STATE.png and NAME.STATE.json, and what each screen declares as
/// declarations/NAME.json, to the folder of the command line; navigation.json there has the groups of the
/// navigation and the help topics of their items. Answers as above.
QString RunDescribe(const CommandLine& line);

} // namespace sysadmin
