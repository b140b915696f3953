#pragma once

#include "framework/ListGrid.h"
#include "search/ConnectionTest.h"

#include <QDialog>
#include <QTimer>

#include <map>

class QLabel;
class QLineEdit;
class QPushButton;

namespace sysadmin {

class Application;

/// Tests the connections of all databases, a few at a time: a table of state, hits and milliseconds.
class frmSearch_DatabaseTestAll : public QDialog {
    Q_OBJECT

public:
    /// `databases`: key the code; cells code, name and type as the list shows them.
    frmSearch_DatabaseTestAll(Application& application, const QList<GridRow>& databases, QWidget* parent);
    ~frmSearch_DatabaseTestAll() override;

    void reject() override;

private:
    void Begin();
    void Poll();
    void Stop();
    void ShowState(const QString& code, const ConnectionResult& result);
    void Refresh();

    Application& m_application;
    QStringList m_waiting;
    std::map<QString, ConnectionTest> m_running;
    int m_done = 0;
    int m_connected = 0;
    QTimer m_timer;
    ListGrid* m_grid = nullptr;
    QLineEdit* m_txtTerm = nullptr;
    QLabel* m_lblState = nullptr;
    QPushButton* m_cmdTest = nullptr;
    QPushButton* m_cmdExport = nullptr;
    QPushButton* m_cmdClose = nullptr;
};

} // namespace sysadmin
