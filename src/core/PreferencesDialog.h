#pragma once

#include <QDialog>

class QCheckBox;
class QComboBox;

namespace sysadmin {

class Prefs;

/// Edits the operator's preferences (`frmPrefs`). OK keeps them; an appearance is seen as soon as it is
/// chosen, and Cancel brings the former one back.
class PreferencesDialog : public QDialog {
    Q_OBJECT

public:
    explicit PreferencesDialog(Prefs& prefs, QWidget* parent = nullptr);

    void accept() override;
    void reject() override;

private:
    Prefs& m_prefs;
    QCheckBox* chkWarnOnClose = nullptr;
    QComboBox* cboAppearance = nullptr;
};

} // namespace sysadmin
