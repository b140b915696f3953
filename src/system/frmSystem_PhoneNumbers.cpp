#include "system/frmSystem_PhoneNumbers.h"

#include "framework/Captions.h"
#include "framework/FormView.h"

#include <QDialogButtonBox>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace sysadmin {

frmSystem_PhoneNumbers::frmSystem_PhoneNumbers(const QList<PickItem>& types, const QString& type,
                                               const QString& number, QWidget* parent)
    : QDialog(parent) {
    setObjectName("frmSystem_PhoneNumbers");
    setWindowTitle(tr("Phone Numbers"));
    m_view = new FormView(m_form, Column({m_form.cboPhoneType, m_form.txtPhoneNumber}), this);
    auto* buttons = new QDialogButtonBox(this);
    auto* cmdOK = buttons->addButton(tr("&OK"), QDialogButtonBox::AcceptRole);
    cmdOK->setObjectName("cmdOK");
    cmdOK->setDefault(true);
    buttons->addButton(tr("&Cancel"), QDialogButtonBox::RejectRole)->setObjectName("cmdCancel");
    auto* whole = new QVBoxLayout(this);
    whole->addWidget(m_view, 1);
    whole->addWidget(buttons);
    AssignMnemonics(*this);

    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(&m_form, &Form::Changed, this, [this, cmdOK] { cmdOK->setEnabled(m_form.IsComplete()); });
    m_form.cboPhoneType.SetItems(types);
    // The library's first type is the usual one; the list itself is in alphabetical order.
    const auto usual = std::min_element(types.begin(), types.end(), [](const PickItem& a, const PickItem& b) {
        return a.id.toLongLong() < b.id.toLongLong();
    });
    m_form.cboPhoneType.SetStored(type.isEmpty() && usual != types.end() ? usual->id : type);
    m_form.txtPhoneNumber.SetStored(number);
    m_view->FocusField(m_form.txtPhoneNumber);
}

} // namespace sysadmin
