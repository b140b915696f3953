#pragma once

#include <QWidget>

namespace sysadmin {

class Application;

/// A setting screen: one child window of the main window. Exists at most once per navigation key.
class Screen : public QWidget {
    Q_OBJECT

public:
    /// `formName` is the screen's given name (`frmAcquisitions_VendorTypes`) and becomes its object name;
    /// `caption` its window title.
    Screen(Application& application, const QString& formName, const QString& caption,
           QWidget* parent = nullptr);

    Application& App() const { return m_application; }
    /// Fills the screen from the server. Called once, after construction and before it is shown.
    virtual void LoadScreen() = 0;
    /// Whether the window may close now; a screen with an open edit warns and answers false.
    virtual bool MayClose() { return true; }
    /// The current circulation cluster is another one now. Only screens that depend on it act.
    virtual void OnClusterChanged() {}

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    Application& m_application;
};

} // namespace sysadmin
