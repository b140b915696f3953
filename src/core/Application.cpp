#include "core/Application.h"

#include "core/ErrorDialog.h"
#include "core/MainWindow.h"
#include "core/Prompter.h"
#include "core/data/StatusTable.h"
#include "wire/Status.h"

namespace sysadmin {

Application::Application(Communication& communication, Prompter& thePrompter)
    : comm(communication)
    , channel(communication.GetChannel())
    , prompter(thePrompter) {}

void Application::ReportRequestFailure(qint16 status, const QString& operation, const QString& screenName,
                                       const QString& prefix) {
    const StatusText text = TextOfStatus(status);
    const QString message = prefix + text.message;
    if (text.serious && !message.isEmpty()) {
        const QString cause =
            status == wire::status::CommunicationsFailure ? channel.LastProblem() : QString();
        ErrorDialog dialog({message, operation, screenName, status, cause}, mainWindow);
        prompter.RunDialog(dialog);
    } else {
        prompter.ShowBox(mainWindow, {message});
    }
}

} // namespace sysadmin
