#include "core/AboutDialog.h"

#include "core/Prompter.h"
#include "look/IconLoader.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace sysadmin {

AboutDialog::AboutDialog(QWidget* parent, const std::function<void()>& showComponents)
    : QDialog(parent) {
    setObjectName("frmAbout");
    setWindowTitle(tr("About System Administration"));

    auto* imgProgram = new QLabel(this);
    imgProgram->setObjectName("imgProgram");
    imgProgram->setPixmap(LoadIcon("Program").pixmap(QSize(64, 64), devicePixelRatioF()));

    auto* lblTitle = new QLabel(ApplicationTitle(), this);
    lblTitle->setObjectName("lblTitle");
    QFont titleFont = font();
    titleFont.setPointSizeF(titleFont.pointSizeF() * 1.5);
    titleFont.setWeight(QFont::DemiBold);
    lblTitle->setFont(titleFont);

    auto* lblVersion = new QLabel(tr("Version %1").arg(SYSADMIN_VERSION), this);
    lblVersion->setObjectName("lblVersion");
    lblVersion->setTextInteractionFlags(Qt::TextSelectableByMouse);

    auto* lblPurpose =
        new QLabel(tr("Defines the policies, code tables and rights that the library system's server "
                      "and its staff clients apply."),
                   this);
    lblPurpose->setObjectName("lblPurpose");
    lblPurpose->setWordWrap(true);
    lblPurpose->setMinimumWidth(300);

    auto* lblLibraries = new QLabel(tr("Runs on Qt %1.").arg(qVersion()), this);
    lblLibraries->setObjectName("lblLibraries");
    lblLibraries->setForegroundRole(QPalette::PlaceholderText);

    auto* cmdOK = new QPushButton(tr("&OK"), this);
    cmdOK->setObjectName("cmdOK");
    cmdOK->setDefault(true);
    connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);

    auto* texts = new QVBoxLayout;
    texts->setSpacing(4);
    texts->addWidget(lblTitle);
    texts->addWidget(lblVersion);
    texts->addSpacing(12);
    texts->addWidget(lblPurpose);
    texts->addWidget(lblLibraries);

    auto* top = new QHBoxLayout;
    top->setSpacing(20);
    top->addWidget(imgProgram, 0, Qt::AlignTop);
    top->addLayout(texts, 1);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 24, 24, 16);
    layout->setSpacing(20);
    layout->addLayout(top);
    auto* buttons = new QHBoxLayout;
    if (showComponents) {
        auto* cmdComponents = new QPushButton(tr("&Components..."), this);
        cmdComponents->setObjectName("cmdComponents");
        cmdComponents->setAutoDefault(false);
        connect(cmdComponents, &QPushButton::clicked, this, showComponents);
        buttons->addWidget(cmdComponents);
        setTabOrder(cmdComponents, cmdOK);
    }
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    layout->addLayout(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);
}

} // namespace sysadmin

#include "moc_AboutDialog.cpp"
