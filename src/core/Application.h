#pragma once

#include "core/Prefs.h"
#include "core/Prompter.h"
#include "core/ScreenCatalogue.h"
#include "core/data/Clusters.h"
#include "core/data/Communication.h"
#include "core/data/Notices.h"
#include "core/data/OrderingRules.h"
#include "core/data/PickLists.h"
#include "core/data/SecurityProfile.h"

#include <functional>

namespace sysadmin {

class MainWindow;
struct ScreenDeclaration;

/// Everything that lives for the whole run, handed to each screen by reference.
class Application {
public:
    Application(Communication& communication, Prompter& prompter);
    ~Application();
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    Communication& comm;
    RequestChannel& channel;
    Prompter& prompter;
    ScreenCatalogue catalogue;
    SecurityProfile profile;
    OrderingRules orderingRules;
    Prefs prefs;
    ClusterCollection clusters;
    PickLists pickLists;
    Notices notices;
    /// May alter what a screen declares before it is built: how tests find out whether a wrong letter is
    /// noticed. Empty in the program.
    std::function<void(ScreenDeclaration&)> alterDeclaration{};
    MainWindow* mainWindow = nullptr; ///< null until start-up has made it, and in tests of a single screen

    QString OperatorId() const { return comm.GetSession().OperatorId(); }

    /// Tells the operator that a request failed: a message box, or the error dialog for a serious status.
    /// `operation` is what was being done ("Save Acquisitions Vendor Types"), `screenName` the screen's
    /// subject, `prefix` stands directly in front of the message, `more` is a further button of the box.
    void ReportRequestFailure(qint16 status, const QString& operation, const QString& screenName,
                              const QString& prefix = {}, const Box::More& more = {});

private:
    void TellOfChanges();

    QStringList m_changedByOthers; // not told yet
};

} // namespace sysadmin
