#include "core/PreferencesDialog.h"

#include "core/Prefs.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

namespace sysadmin {

PreferencesDialog::PreferencesDialog(Prefs& prefs, QWidget* parent)
    : QDialog(parent)
    , m_prefs(prefs) {
    setObjectName("frmPrefs");
    setWindowTitle(tr("Preferences"));

    chkWarnOnClose = new QCheckBox(tr("&Warn before closing the program"), this);
    chkWarnOnClose->setObjectName("chkWarnOnClose");
    chkWarnOnClose->setToolTip(tr("Ask before the main window closes"));
    chkWarnOnClose->setChecked(prefs.WarnOnClose());

    auto* cmdOK = new QPushButton(tr("&OK"), this);
    cmdOK->setObjectName("cmdOK");
    cmdOK->setDefault(true);
    auto* cmdCancel = new QPushButton(tr("&Cancel"), this);
    cmdCancel->setObjectName("cmdCancel");

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 20, 20, 16);
    layout->setSpacing(24);
    layout->addWidget(chkWarnOnClose);
    layout->addLayout(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
}

void PreferencesDialog::accept() {
    m_prefs.SetWarnOnClose(chkWarnOnClose->isChecked());
    m_prefs.SavePreferences();
    QDialog::accept();
}

} // namespace sysadmin
