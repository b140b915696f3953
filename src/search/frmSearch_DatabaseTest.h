#pragma once

#include "search/ConnectionTest.h"

#include "core/data/PickLists.h"

#include <QDialog>
#include <QTimer>

class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;

namespace sysadmin {

class Application;

/// Tests the connection to one database: a search with the attributes of a search code where it is a Z39.50
/// target, a sign-on where it is another library's.
class frmSearch_DatabaseTest : public QDialog {
    Q_OBJECT

public:
    /// `searchCodes` of a target; none: only the sign-on is tested.
    frmSearch_DatabaseTest(Application& application, const QString& code, const QString& name,
                           const QList<PickItem>& searchCodes, bool isTarget, QWidget* parent);
    ~frmSearch_DatabaseTest() override;

    void reject() override;

private:
    void Begin();
    void Poll();
    void Show(const ConnectionResult& result);
    void SetRunning(bool running);

    Application& m_application;
    QString m_code;
    std::optional<ConnectionTest> m_test;
    QTimer m_timer;
    QComboBox* m_cboSearchCode = nullptr;
    QLineEdit* m_txtTerm = nullptr;
    QLabel* m_lblState = nullptr;
    QProgressBar* m_progress = nullptr;
    QPlainTextEdit* m_txtResult = nullptr;
    QPushButton* m_cmdTest = nullptr;
    QPushButton* m_cmdClose = nullptr;
};

} // namespace sysadmin
