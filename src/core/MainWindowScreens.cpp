#include "core/MainWindow.h"

#include "core/Application.h"
#include "core/NavigationBar.h"
#include "core/Prompter.h"
#include "core/Screen.h"
#include "core/ScreenArea.h"
#include "core/StatusPanels.h"
#include "look/IconLoader.h"
#include "wire/Status.h"

#include <QApplication>
#include <QMdiSubWindow>
#include <QTimer>

// The screens of the main window: how they are opened, found, and gone to.
namespace sysadmin {

namespace {

constexpr int BusyPause = 50; // milliseconds
constexpr qsizetype MostRecent = 6;

} // namespace

void MainWindow::OpenScreen(const QString& key) {
    if (QMdiSubWindow* open = FindWindow(key)) {
        ActivateWindow(open);
        return;
    }
    const ScreenEntry* entry = m_application.catalogue.Find(key);
    if (!entry || !entry->screen.make)
        return;
    if (entry->screen.needsCluster && !m_application.clusters.Current() && m_clusterSelection.choose &&
        !m_clusterSelection.choose())
        return;

    Screen* screen = entry->screen.make(m_application, mdiScreens);
    auto* window = new QMdiSubWindow;
    window->setWidget(screen);
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->setWindowIcon(LoadIcon(entry->icon));
    screen->LoadScreen();
    mdiScreens->MarkUnsaved(window, screen->HasUnsaved());
    connect(screen, &Screen::UnsavedChanged, window,
            [this, window, screen] { mdiScreens->MarkUnsaved(window, screen->HasUnsaved()); });
    mdiScreens->addSubWindow(window);
    m_windows[key] = window;
    window->show();
    ActivateWindow(window);
    NoteRecent(key);
}

bool MainWindow::ShowRecord(const QString& word, const QString& key, const QString& control) {
    const SubjectPlace* place = PlaceOf(word);
    if (!place)
        return false;
    OpenScreen(place->key);
    Screen* screen = FindScreen(place->key);
    return screen && screen->ShowRecord(word, key, control);
}

void MainWindow::FindRecords(const QString& text) {
    RequestChannel& channel = m_application.channel;
    if (channel.IsBusy()) { // a reply is being read
        QTimer::singleShot(BusyPause, this, [this, text] { FindRecords(text); });
        return;
    }
    QList<FoundRecord> records;
    channel.PutField("Txt", text);
    if (channel.SendRequest("FndRec") == wire::status::Ok)
        while (channel.NextRecord("Sbj")) {
            const SubjectPlace* place = PlaceOf(channel.GetField("Sbj"));
            if (!place)
                continue;
            const ScreenWord field = place->fields.value(channel.GetField("UT"));
            const QString name = channel.GetField("UN");
            const QString value = channel.GetField("UV");
            QStringList detail;
            if (!field.caption.isEmpty())
                detail << field.caption;
            if (value != name)
                detail << value;
            records.append({channel.GetField("Sbj"), channel.GetField("UK"), name, field.control,
                            detail.join(": "), place->screen, place->icon});
        }
    albMain->ShowRecords(text, records);
}

void MainWindow::GoToRecord(const QString& word, const QString& key, const QString& name,
                            const QString& control) {
    if (!ShowRecord(word, key, control))
        m_application.prompter.ShowBox(
            this, {.text = tr("\"%1\" is not in the list as it is shown now: it may belong to another "
                              "circulation cluster, or something else is being edited there.")
                               .arg(name)});
}

void MainWindow::NoteRecent(const QString& key) {
    QStringList recent = m_application.prefs.Remembered("RecentScreens").toStringList();
    recent.removeAll(key);
    recent.prepend(key);
    m_application.prefs.Remember("RecentScreens", recent.mid(0, MostRecent));
    ShowRecent();
}

void MainWindow::ShowHealth(const QString& summary, const QStringList& lines) {
    mdiScreens->SetHealth(summary, lines);
}

void MainWindow::ShowRecent() {
    QList<ScreenEntry> recent;
    for (const QString& key : m_application.prefs.Remembered("RecentScreens").toStringList())
        for (const NavigationGroup& group : m_groups) // what the operator may use now
            for (const ScreenEntry& entry : group.items)
                if (entry.key == key)
                    recent.append(entry);
    mdiScreens->SetRecent(recent);
}

void MainWindow::ActivateWindow(QMdiSubWindow* window) {
    mdiScreens->setActiveSubWindow(window);
    OnScreenActivated();
    QWidget* screen = window->widget();
    if (!screen || window->isAncestorOf(QApplication::focusWidget()))
        return;
    QWidget* last = screen->focusWidget(); // where the operator was when another screen came to the front
    (last ? last : screen)->setFocus();
}

QMdiSubWindow* MainWindow::FindWindow(const QString& key) const {
    // A window that was closed lives on until the event loop deletes it; the area has let go of it already.
    QMdiSubWindow* window = m_windows.value(key);
    return mdiScreens->subWindowList().contains(window) ? window : nullptr;
}

Screen* MainWindow::FindScreen(const QString& key) const {
    const QMdiSubWindow* window = FindWindow(key);
    return window ? qobject_cast<Screen*>(window->widget()) : nullptr;
}

Screen* MainWindow::ActiveScreen() const {
    const QMdiSubWindow* window = mdiScreens->currentSubWindow();
    return window ? qobject_cast<Screen*>(window->widget()) : nullptr;
}

QString MainWindow::KeyOf(const QMdiSubWindow* window) const {
    for (auto it = m_windows.begin(); it != m_windows.end(); ++it)
        if (window && it.value() == window)
            return it.key();
    return {};
}

const ScreenEntry* MainWindow::ActiveEntry() const {
    return m_application.catalogue.Find(KeyOf(mdiScreens->currentSubWindow()));
}

void MainWindow::OnScreenActivated() {
    const ScreenEntry* entry = ActiveEntry();
    albMain->MarkItem(entry ? entry->key : QString());
    ShowClusterPanel(entry);
    if (!entry) {
        m_status->ShowScreen({});
        return;
    }
    QString group = entry->groupKey;
    for (const ScreenGroup& candidate : m_application.catalogue.Groups())
        if (candidate.key == entry->groupKey)
            group = candidate.caption;
    m_status->ShowScreen(group + ":  " + QString(entry->caption).replace("&&", "&"));
}

} // namespace sysadmin
