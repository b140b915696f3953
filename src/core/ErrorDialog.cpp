#include "core/ErrorDialog.h"

#include "core/Prompter.h"

#include <QFormLayout>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

namespace sysadmin {

namespace {

QLabel* MakeValueLabel(const QString& name, const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setWordWrap(true);
    return label;
}

QPushButton* MakeButton(const QString& name, const QString& caption, QWidget* parent) {
    auto* button = new QPushButton(caption, parent);
    button->setObjectName(name);
    button->setAutoDefault(false);
    return button;
}

} // namespace

ErrorDialog::ErrorDialog(const Failure& failure, QWidget* parent)
    : QDialog(parent) {
    setObjectName("frmError");
    setProperty(HelpContextProperty, 50104);
    setWindowTitle(tr("System Error"));

    auto* imgError = new QLabel(this);
    imgError->setObjectName("imgError");
    imgError->setAccessibleName(tr("Error"));
    imgError->setPixmap(
        style()->standardIcon(QStyle::SP_MessageBoxCritical).pixmap(QSize(40, 40), devicePixelRatioF()));

    auto* lblErrorMessage =
        MakeValueLabel("lblErrorMessage", QString(failure.message).replace("\r\n", "\n"), this);
    lblErrorMessage->setMinimumWidth(320);

    cmdOKCompress = MakeButton("cmdOKCompress", tr("&OK"), this);
    cmdOKCompress->setDefault(true);
    cmdDetailsExpand = MakeButton("cmdDetailsExpand", tr("&Details  >>"), this);
    cmdDetailsCompress = MakeButton("cmdDetailsCompress", tr("<<  &Details"), this);
    BuildDetails(failure);

    auto* message = new QHBoxLayout;
    message->setSpacing(16);
    message->addWidget(imgError, 0, Qt::AlignTop);
    message->addWidget(lblErrorMessage, 1, Qt::AlignVCenter);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOKCompress);
    buttons->addWidget(cmdDetailsExpand);
    buttons->addWidget(cmdDetailsCompress);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 20, 20, 16);
    layout->setSpacing(16);
    layout->addLayout(message);
    layout->addLayout(buttons);
    layout->addWidget(fraDetails);
    // The window is as high as what it shows, with and without the details.
    layout->setSizeConstraint(QLayout::SetFixedSize);

    connect(cmdOKCompress, &QPushButton::clicked, this, &QDialog::accept);
    connect(cmdDetailsExpand, &QPushButton::clicked, this, [this] { ShowDetails(true); });
    connect(cmdDetailsCompress, &QPushButton::clicked, this, [this] { ShowDetails(false); });
    fraDetails->hide();
    cmdDetailsCompress->hide();
    cmdOKCompress->setFocus();
}

void ErrorDialog::BuildDetails(const Failure& failure) {
    fraDetails = new QFrame(this);
    fraDetails->setObjectName("fraDetails");
    fraDetails->setFrameShape(QFrame::StyledPanel);

    auto* form = new QFormLayout(fraDetails);
    form->setContentsMargins(12, 12, 12, 12);
    form->setLabelAlignment(Qt::AlignLeft | Qt::AlignTop);
    const auto addRow = [&](const QString& name, const QString& caption, const QString& text) {
        auto* label = new QLabel(caption, fraDetails);
        label->setObjectName("lbl" + name);
        QLabel* value = MakeValueLabel("lbl" + name + "Text", text, fraDetails);
        value->setAccessibleName(caption);
        form->addRow(label, value);
    };
    addRow("FormName", tr("Form:"), failure.screenName);
    addRow("Module", tr("Module:"), failure.operation);
    addRow("ReturnCode", tr("Return Code:"), QString::number(failure.status));
    if (!failure.cause.isEmpty())
        addRow("Cause", tr("Cause:"), failure.cause);
}

void ErrorDialog::ShowDetails(bool shown) {
    fraDetails->setVisible(shown);
    cmdDetailsExpand->setVisible(!shown);
    cmdDetailsCompress->setVisible(shown);
    // The button under the operator's hands has gone: its opposite takes the focus, not the next control.
    (shown ? cmdDetailsCompress : cmdDetailsExpand)->setFocus();
}

} // namespace sysadmin

#include "moc_ErrorDialog.cpp"
