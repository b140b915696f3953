#include "core/StartUp.h"

#include "core/Application.h"
#include "core/MainWindow.h"
#include "core/Navigation.h"
#include "core/Prompter.h"

#include <QCoreApplication>

namespace sysadmin {

namespace {

// Tells the operator why, and takes the window away without asking anything.
std::unique_ptr<MainWindow> Refuse(Application& application, MainWindow& window, const char* reason) {
    const QString text = QCoreApplication::translate("StartUp", reason);
    application.prompter.ShowBox(&window, {text, Box::Icon::Critical});
    return nullptr;
}

} // namespace

std::unique_ptr<MainWindow> StartUp(Application& application, const QStringList& arguments) {
    Communication& comm = application.comm;
    Session& session = comm.GetSession();

    session.SetCommandLine(arguments);
    if (comm.PreCheck())
        return nullptr;
    const QString informationCaption = session.InformationCaption();

    comm.ShowSignOn();
    if (!application.channel.SignOn(session)) {
        comm.CloseSignOn();
        return nullptr;
    }

    auto window = std::make_unique<MainWindow>(application, informationCaption);
    window->show();
    comm.CloseSignOn();
    if (!comm.PostSignOn())
        return nullptr;

    application.profile.Load(application.channel, session.OperatorId());
    if (application.profile.LoadFailed())
        return Refuse(application, *window, QT_TRANSLATE_NOOP("StartUp", "Failed to load security profile."));

    Navigation navigation(application.catalogue);
    const bool authorised = navigation.TrimToRights(application.profile);
    if (!authorised)
        return Refuse(application, *window,
                      QT_TRANSLATE_NOOP("StartUp", "You are not authorized to use System Adminstration."));

    window->ShowPlace(comm.LibraryName(), comm.ServerName(), comm.LibraryColour());
    application.orderingRules.Load(application.channel);
    application.prefs.LoadPreferences(session);
    window->RestoreLayout();
    window->ShowNavigation(navigation);
    window->BuildFunctionsMenu();
    return window;
}

} // namespace sysadmin
