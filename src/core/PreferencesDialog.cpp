#include "core/PreferencesDialog.h"

#include "core/Prefs.h"
#include "core/Prompter.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace sysadmin {

namespace {

void Wear(Appearance appearance) {
    ApplyAppearance(*qApp, appearance);
}

} // namespace

PreferencesDialog::PreferencesDialog(Prefs& prefs, QWidget* parent)
    : QDialog(parent)
    , m_prefs(prefs) {
    setObjectName("frmPrefs");
    setProperty(HelpContextProperty, 50101);
    setWindowTitle(tr("Preferences"));

    chkWarnOnClose = new QCheckBox(tr("&Warn before closing the program"), this);
    chkWarnOnClose->setObjectName("chkWarnOnClose");
    chkWarnOnClose->setToolTip(tr("Ask before the main window closes"));
    chkWarnOnClose->setChecked(prefs.WarnOnClose());

    auto* lblAppearance = new QLabel(tr("&Appearance:"), this);
    lblAppearance->setObjectName("lblAppearance");
    cboAppearance = new QComboBox(this);
    cboAppearance->setObjectName("cboAppearance");
    cboAppearance->setToolTip(tr("Light or dark colours"));
    lblAppearance->setBuddy(cboAppearance);
    for (const auto& [appearance, caption] : {std::pair{Appearance::System, tr("As the system")},
                                              {Appearance::Light, tr("Light")},
                                              {Appearance::Dark, tr("Dark")}})
        cboAppearance->addItem(caption, WordOf(appearance));
    cboAppearance->setCurrentIndex(cboAppearance->findData(WordOf(prefs.GetAppearance())));
    connect(cboAppearance, &QComboBox::activated, this,
            [this] { Wear(*AppearanceOf(cboAppearance->currentData().toString())); });

    auto* cmdOK = new QPushButton(tr("&OK"), this);
    cmdOK->setObjectName("cmdOK");
    cmdOK->setDefault(true);
    auto* cmdCancel = new QPushButton(tr("&Cancel"), this);
    cmdCancel->setObjectName("cmdCancel");

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);

    auto* appearance = new QHBoxLayout;
    appearance->addWidget(lblAppearance);
    appearance->addWidget(cboAppearance, 1);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 20, 20, 16);
    layout->setSpacing(24);
    layout->addWidget(chkWarnOnClose);
    layout->addLayout(appearance);
    layout->addLayout(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
}

void PreferencesDialog::accept() {
    m_prefs.SetWarnOnClose(chkWarnOnClose->isChecked());
    m_prefs.SetAppearance(*AppearanceOf(cboAppearance->currentData().toString()));
    m_prefs.SavePreferences();
    QDialog::accept();
}

void PreferencesDialog::reject() {
    Wear(m_prefs.GetAppearance());
    QDialog::reject();
}

} // namespace sysadmin

#include "moc_PreferencesDialog.cpp"
