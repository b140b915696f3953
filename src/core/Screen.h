#pragma once

#include <QHash>
#include <QList>
#include <QWidget>

namespace sysadmin {

class Application;

/// Something on a screen that can be found by its caption: a field, a right, a button.
struct ScreenWord {
    QString caption; ///< without mnemonic mark and colon
    QString control; ///< name of the control; empty: a column of a list that is part of the record
    QHash<QString, QString> values{}; ///< what a choice's or option's values are called, by what travels
};

/// A kind of record that a screen maintains.
struct ScreenSubject {
    QString word;                      ///< of its requests: "Loc" of "GetLoc"
    QHash<QString, ScreenWord> fields; ///< by tag
};

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
    /// Whether something was entered that is not saved yet.
    virtual bool HasUnsaved() const { return false; }
    /// What can be found on it by its caption. Asks the server nothing, before `LoadScreen` neither.
    virtual QList<ScreenWord> Words() const { return {}; }
    /// What it maintains. Asks the server nothing, either.
    virtual QList<ScreenSubject> Subjects() const { return {}; }
    /// Goes to the record, and to the control of this name in it, as far as that is possible now; false when
    /// the record is not shown.
    virtual bool ShowRecord(const QString& /*word*/, const QString& /*key*/, const QString& /*control*/) {
        return false;
    }
    /// Goes to the control of this name, as far as that is possible now.
    virtual void GoTo(const QString& /*control*/) {}

signals:
    /// What `HasUnsaved` answers may be another one now.
    void UnsavedChanged();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    Application& m_application;
};

} // namespace sysadmin
