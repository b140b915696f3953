#pragma once

#include "core/WordIndex.h"

#include <QHash>
#include <QMainWindow>
#include <QPointer>
#include <QUrl>

#include <functional>

class QMdiSubWindow;
class QMenu;
class QSplitter;

namespace sysadmin {

class HelpWindow;
class NavigationBar;
class ScreenArea;
class StatusPanels;

/// How the operator chooses the circulation cluster to work in.
struct ClusterSelection {
    std::function<bool()> choose; ///< asked while none is current; true when one is afterwards
    std::function<void()> change; ///< asked while the program runs
};

/// The program's one top-level window (`frmMain`): menus, navigation bar, the open screens, status bar.
class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    /// `informationCaption` is the communication library's caption for its entry in the File menu.
    MainWindow(Application& application, const QString& informationCaption);
    ~MainWindow() override;

    /// While set, the window closes without asking.
    bool Abort = false;

    /// Fills the navigation bar with what the operator may use, in the style the operator left it in.
    void ShowNavigation(const Navigation& navigation);
    /// Adds the "Func&tions" menu, which offers what the navigation bar does. Called once, at the end of
    /// start-up.
    void BuildFunctionsMenu();
    /// Gives the screens that need a current cluster a way to one, and operators who may use such screens the
    /// File menu's entry for another one.
    void SetClusterSelection(const ClusterSelection& selection);
    /// Shows what the program stands on, from the about box; whoever knows that sets it.
    std::function<void()> showComponents{};
    /// Puts the window's parts back as the operator left them; the preferences must be loaded.
    void RestoreLayout();

    /// Opens the screen of a navigation key, or brings its one instance back. A key without a screen does
    /// nothing.
    void OpenScreen(const QString& key);
    /// The place of the records that the word stands for in requests; null when the operator may not see it.
    const SubjectPlace* PlaceOf(const QString& word) { return m_wordIndex.PlaceOf(word); }
    /// Opens the screen of such a record and shows it; false when the record is not there to see.
    bool ShowRecord(const QString& word, const QString& key, const QString& control);
    /// The same for a record that was listed elsewhere under this name; the operator is told when it is not
    /// there.
    void GoToRecord(const QString& word, const QString& key, const QString& name,
                    const QString& control = {});
    /// The open screen of a key, or null.
    Screen* FindScreen(const QString& key) const;
    /// The screen the operator works in, or null while none is open.
    Screen* ActiveScreen() const;

    /// Says in the status bar what is being waited for; an empty text when nothing is.
    void ShowWaiting(const QString& text);
    /// Shows on the empty page what a look at the settings brought: a sentence, and a line for each check
    /// that found something.
    void ShowHealth(const QString& summary, const QStringList& lines);
    /// Names the library that is worked on, in the title and in the status bar. `colour` ("#c03028", "red")
    /// is the library's own, by which libraries are told apart; empty: it has none.
    void ShowPlace(const QString& library, const QString& server, const QString& colour = {});
    /// Shows the help topic of a context number; 0 shows the contents.
    void ShowHelp(int helpContext);
    /// How web addresses are opened; the system's browser unless set.
    void SetBrowser(std::function<bool(const QUrl&)> browser) { m_browser = std::move(browser); }

protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void BuildFileMenu(const QString& informationCaption);
    void BuildHelpMenu();
    void BuildShortcuts();
    void RestorePlace();
    void ShareRoom();
    void KeepLayout() const;
    bool MayCloseScreens();
    void ActivateWindow(QMdiSubWindow* window);
    void OnScreenActivated();
    void NoteRecent(const QString& key);
    /// Asks the server for records with the text, and shows them in the navigation bar.
    void FindRecords(const QString& text);
    void ShowRecent();
    void OnClusterNotice();
    void ChangeCluster();
    void ShowClusterPanel(const ScreenEntry* entry);
    void OpenAddress(const QString& settingsKey, const QString& otherwise);
    QMdiSubWindow* FindWindow(const QString& key) const;
    QString KeyOf(const QMdiSubWindow* window) const;
    const ScreenEntry* ActiveEntry() const;

    Application& m_application;
    QList<NavigationGroup> m_groups; // as the navigation bar shows them
    QHash<QString, QPointer<QMdiSubWindow>> m_windows;
    QString m_clusterId;
    ClusterSelection m_clusterSelection;
    WordIndex m_wordIndex;
    std::function<bool(const QUrl&)> m_browser;

    QMenu* mnuFile = nullptr;
    QMenu* mnuFunctions = nullptr;
    QMenu* mnuHelp = nullptr;
    NavigationBar* albMain = nullptr;
    QSplitter* splMain = nullptr;
    ScreenArea* mdiScreens = nullptr;
    int m_navigationWidth = 0;    // as the operator chose it; a narrow window has less room for it
    QWidget* fraColour = nullptr; // the band of the library's colour
    StatusPanels* m_status = nullptr;
    HelpWindow* frmHelp = nullptr;
};

} // namespace sysadmin
