#include "core/Application.h"

#include "core/ErrorDialog.h"
#include "core/MainWindow.h"
#include "core/Prompter.h"
#include "core/data/StatusTable.h"
#include "wire/Status.h"

#include <QTimer>

namespace sysadmin {

Application::Application(Communication& communication, Prompter& thePrompter)
    : comm(communication)
    , channel(communication.GetChannel())
    , prompter(thePrompter) {
    channel.SetChangeObserver([this](const QStringList& subjects) {
        m_changedByOthers += subjects;
        QTimer::singleShot(0, &notices, [this] { TellOfChanges(); });
    });
}

Application::~Application() {
    channel.SetChangeObserver({});
}

void Application::TellOfChanges() {
    // Whoever hears of a change reads anew: not while the windows only paint during a long request.
    if (channel.IsBusy()) {
        QTimer::singleShot(50, &notices, [this] { TellOfChanges(); });
        return;
    }
    QStringList subjects = std::exchange(m_changedByOthers, {});
    subjects.removeDuplicates();
    for (const QString& subject : subjects) {
        emit notices.ChangedByOthers(subject);
        emit notices.SubjectChanged(subject);
    }
}

void Application::ReportRequestFailure(qint16 status, const QString& operation, const QString& screenName,
                                       const QString& prefix, const Box::More& more) {
    const StatusText text = TextOfStatus(status);
    const QString message = prefix + text.message;
    if (text.serious && !message.isEmpty()) {
        const bool mayHaveCause =
            status == wire::status::CommunicationsFailure || status == wire::status::NotAuthorised;
        const QString cause = mayHaveCause ? channel.LastProblem() : QString();
        ErrorDialog dialog({message, operation, screenName, status, cause}, mainWindow);
        prompter.RunDialog(dialog);
    } else {
        prompter.ShowBox(mainWindow, {.text = message, .more = more});
    }
}

} // namespace sysadmin
