#pragma once

#include <QObject>

class QLabel;
class QStatusBar;
class QTimer;

namespace sysadmin {

class Application;

/// What stands in the panels of the main window's status bar, in order: what goes on, the operator, the
/// screen, its cluster, the library.
class StatusPanels : public QObject {
    Q_OBJECT

public:
    StatusPanels(Application& application, QStatusBar* bar);

    /// What is being waited for; an empty text when nothing is.
    void ShowWaiting(const QString& text);
    /// What was done ("Saved Bookseller"), for some seconds.
    void ShowDone(const QString& text);
    void ShowScreen(const QString& text);
    /// The cluster that the screen works in; an empty text hides the panel.
    void ShowCluster(const QString& text);
    /// The library, in its own colour if it has one.
    void ShowPlace(const QString& text, const QColor& colour);

private:
    void ShowActivity(const QString& text);

    QTimer* m_doneTime;
    QString m_done; // what was done last
    QLabel* lblActivity;
    QLabel* lblOperator;
    QLabel* lblScreen;
    QLabel* lblCluster;
    QLabel* lblPlace;
};

} // namespace sysadmin
