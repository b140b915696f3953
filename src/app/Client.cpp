#include "app/Client.h"

#include "acquisitions/AcquisitionsScreens.h"
#include "app/ProgramComponents.h"
#include "cataloging/CatalogingScreens.h"
#include "circulation/CirculationScreens.h"
#include "circulation/RuleFindings.h"
#include "core/HelpWindow.h"
#include "core/MainWindow.h"
#include "core/Prompter.h"
#include "core/StartUp.h"
#include "framework/ClusterSelection.h"
#include "framework/frmHealth.h"
#include "look/Appearance.h"
#include "requests/RequestsScreens.h"
#include "search/SearchScreens.h"
#include "security/SecurityScreens.h"
#include "server/Embedded.h"
#include "system/SystemScreens.h"

#include <QApplication>

namespace sysadmin {

void SetUpProgram(QApplication& program, const CommandLine& line) {
    // No display name: Qt would add it to the title of every box and dialog.
    QApplication::setApplicationVersion(SYSADMIN_VERSION);
    ApplyAppearance(program, AppearanceOf(line.appearance).value_or(Appearance::System));
}

void AddAllScreens(ScreenCatalogue& catalogue) {
    AddAcquisitionsScreens(catalogue);
    AddCatalogingScreens(catalogue);
    AddCirculationScreens(catalogue);
    AddRequestsScreens(catalogue);
    AddSearchScreens(catalogue);
    AddSecurityScreens(catalogue);
    AddSystemScreens(catalogue);
    AddHealthScreen(catalogue, CirculationChecks() + CallSlipChecks() + SecurityChecks() + SearchChecks());
}

Client::Client(Prompter& prompter, const CommandLine& line, EndpointMaker makeEndpoints)
    : m_comm(prompter, line, makeEndpoints ? std::move(makeEndpoints) : server::MakeEmbeddedEndpoint)
    , m_application(m_comm, prompter) {
    AddAllScreens(m_application.catalogue);
    prompter.showHelp = [this](QDialog& dialog, int helpContext) {
        HelpWindow::ShowOver(dialog, m_application.catalogue, helpContext);
    };
    m_comm.SetWaitObserver([this](const QString&, bool waiting) {
        if (m_window)
            m_window->ShowWaiting(waiting ? MainWindow::tr("Waiting for the server ...") : QString());
    });
}

Client::~Client() {
    m_application.prompter.showHelp = {};
}

bool Client::Start(const QStringList& arguments) {
    m_window = StartUp(m_application, arguments);
    if (!m_window)
        return false;
    if (m_comm.GetSession().Line().appearance.isEmpty())
        ApplyAppearance(*qApp, m_application.prefs.GetAppearance());
    m_window->showComponents = [this] {
        ShowProgramComponents(m_application.prompter, QApplication::activeWindow());
    };
    m_window->SetClusterSelection({.choose = [this] { return GetClusterList(m_application, m_window.get()); },
                                   .change = [this] { ChangeCluster(m_application, m_window.get()); }});
    return true;
}

void Client::CloseWindow() {
    m_window.reset();
}

} // namespace sysadmin
