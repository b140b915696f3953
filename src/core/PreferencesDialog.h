#pragma once

#include <QDialog>

class QCheckBox;

namespace sysadmin {

class Prefs;

/// Edits the operator's preferences (`frmPrefs`); OK keeps them.
class PreferencesDialog : public QDialog {
    Q_OBJECT

public:
    explicit PreferencesDialog(Prefs& prefs, QWidget* parent = nullptr);

    void accept() override;

private:
    Prefs& m_prefs;
    QCheckBox* chkWarnOnClose = nullptr;
};

} // namespace sysadmin
