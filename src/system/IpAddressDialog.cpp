#include "system/IpAddressDialog.h"

#include "core/Prompter.h"
#include "framework/Captions.h"
#include "system/IpAddressBoxes.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include <algorithm>

namespace sysadmin {

namespace {

QDialogButtonBox* MakeButtons(QDialog& dialog, const QString& ok, const QString& cancel) {
    auto* buttons = new QDialogButtonBox(&dialog);
    auto* accepting = buttons->addButton(QDialog::tr("&OK"), QDialogButtonBox::AcceptRole);
    accepting->setObjectName(ok);
    accepting->setDefault(true);
    buttons->addButton(QDialog::tr("&Cancel"), QDialogButtonBox::RejectRole)->setObjectName(cancel);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    return buttons;
}

} // namespace

IpAddressDialog::IpAddressDialog(Prompter& prompter, const FormDialogSpec& spec, const IpDialogNames& names,
                                 const EntryCheck& check, QWidget* parent)
    : QDialog(parent)
    , m_prompter(prompter)
    , m_check(check) {
    setObjectName(spec.name);
    setWindowTitle(spec.title);
    setProperty(HelpContextProperty, spec.helpContext);
    m_ipv4 = new QRadioButton(tr("IPv&4"), this);
    m_ipv4->setObjectName(names.optionIpv4);
    m_ipv4->setChecked(true);
    m_ipv6 = new QRadioButton(tr("IPv&6"), this);
    m_ipv6->setObjectName(names.optionIpv6);
    auto* options = new QHBoxLayout;
    options->addWidget(m_ipv4);
    options->addWidget(m_ipv6);
    options->addStretch();

    auto* ends = new QGridLayout;
    for (int end = 0; end < names.captions.size(); ++end) {
        const QString& caption = names.captions[end];
        auto* boxes = new IpAddressBoxes(end, caption, this);
        auto* label = new QLabel(caption + ":", this);
        label->setBuddy(boxes);
        ends->addWidget(label, end, 0);
        ends->addWidget(boxes, end, 1);
        m_boxes.append(boxes);
        connect(boxes, &IpAddressBoxes::FamilyChanged, this, &IpAddressDialog::SetFamily);
    }
    auto* whole = new QVBoxLayout(this);
    whole->addLayout(options);
    whole->addLayout(ends);
    whole->addStretch(1);
    whole->addWidget(MakeButtons(*this, spec.okName, spec.cancelName));
    AssignMnemonics(*this);
    connect(m_ipv4, &QRadioButton::clicked, this, [this] { SetFamily(IpFamily::V4); });
    connect(m_ipv6, &QRadioButton::clicked, this, [this] { SetFamily(IpFamily::V6); });
    m_boxes.first()->setFocus();
}

void IpAddressDialog::SetFamily(IpFamily family) {
    (family == IpFamily::V4 ? m_ipv4 : m_ipv6)->setChecked(true);
    for (IpAddressBoxes* boxes : m_boxes)
        boxes->SetFamily(family);
}

void IpAddressDialog::SetAddresses(const QStringList& addresses) {
    // A range may begin as IPv4 and end as IPv6: then both ends are shown as IPv6.
    const bool isAllIpv4 = std::all_of(addresses.begin(), addresses.end(), [](const QString& address) {
        return FamilyOfIp(address) == IpFamily::V4;
    });
    const IpFamily family = isAllIpv4 ? IpFamily::V4 : IpFamily::V6;
    for (qsizetype i = 0; i < m_boxes.size(); ++i)
        m_boxes[i]->SetAddress(addresses.value(i), family);
    SetFamily(family);
    m_boxes.first()->FocusProblem();
}

void IpAddressDialog::accept() {
    QStringList addresses;
    for (IpAddressBoxes* boxes : m_boxes) {
        const std::optional<QString> address = boxes->Address();
        if (!address) {
            m_prompter.ShowBox(
                this, {.text = boxes->Family() == IpFamily::V4
                                   ? tr("IP Address must be a numeric value between 0 - 255.")
                                   : tr("IP Address must be an hexadecimal value between 0 - FFFF.")});
            boxes->FocusProblem();
            return;
        }
        addresses.append(*address);
    }
    if (const QString refusal = m_check(addresses); !refusal.isEmpty()) {
        m_prompter.ShowBox(this, {.text = refusal});
        m_boxes.first()->FocusProblem();
        return;
    }
    m_addresses = addresses;
    QDialog::accept();
}

} // namespace sysadmin

#include "moc_IpAddressDialog.cpp"
