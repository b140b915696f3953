#include "comm/LoginInformationDialog.h"

#include "core/Prompter.h"

#include <QFormLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>

namespace sysadmin {

LoginInformationDialog::LoginInformationDialog(const LoginInformation& information, QWidget* parent)
    : QDialog(parent) {
    setObjectName("frmLoginInformation");
    setProperty(HelpContextProperty, 50103);
    setWindowTitle(tr("Login Information"));

    auto* form = new QFormLayout;
    form->setHorizontalSpacing(20);
    form->setVerticalSpacing(10);
    form->setLabelAlignment(Qt::AlignLeft | Qt::AlignTop);
    const auto addRow = [&](const QString& name, const QString& caption, const QString& text) {
        auto* label = new QLabel(caption, this);
        label->setObjectName("lbl" + name + "Caption");
        label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
        label->setForegroundRole(QPalette::PlaceholderText);
        auto* value = new QLabel(text, this);
        value->setObjectName("lbl" + name);
        value->setAccessibleName(caption);
        value->setTextFormat(Qt::PlainText);
        value->setTextInteractionFlags(Qt::TextSelectableByMouse);
        value->setWordWrap(true);
        value->setAlignment(Qt::AlignLeft | Qt::AlignTop);
        value->setMinimumWidth(360);
        form->addRow(label, value);
    };
    addRow("Operator", tr("Operator:"), information.operatorId);
    addRow("OperatorName", tr("Name:"), information.operatorName);
    addRow("Library", tr("Library:"), information.library);
    addRow("Server", tr("Server:"), information.server);
    addRow("Since", tr("Signed on since:"), QLocale().toString(information.since, QLocale::ShortFormat));
    addRow("Connection", tr("Connection:"), information.connection);

    auto* cmdClose = new QPushButton(tr("&Close"), this);
    cmdClose->setObjectName("cmdClose");
    cmdClose->setDefault(true);
    connect(cmdClose, &QPushButton::clicked, this, &QDialog::accept);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 24, 24, 16);
    layout->setSpacing(20);
    layout->addLayout(form);
    layout->addWidget(cmdClose, 0, Qt::AlignRight);
    cmdClose->setFocus();
}

} // namespace sysadmin

#include "moc_LoginInformationDialog.cpp"
