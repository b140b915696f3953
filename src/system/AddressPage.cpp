#include "system/AddressPage.h"

#include "core/Application.h"
#include "core/Prompter.h"
#include "framework/FormView.h"
#include "framework/ListGrid.h"
#include "system/frmSystem_PhoneNumbers.h"

#include <QHBoxLayout>
#include <QPushButton>

namespace sysadmin {

QList<Field*> AddressForm::TypeFlags() {
    return {&chkShipToAddress, &chkBillToAddress,   &chkStreetAddress,
            &chkCampusAddress, &chkCircDeskAddress, &chkOtherAddress};
}

AddressPage::AddressPage(Application& application, bool readOnly, QWidget* parent)
    : QWidget(parent)
    , m_application(application)
    , m_readOnly(readOnly) {
    const Layout types =
        Frame("fraAddressType", tr("Address Type"),
              {Row({m_form.chkShipToAddress, m_form.chkBillToAddress, m_form.chkStreetAddress}),
               Row({m_form.chkCampusAddress, m_form.chkCircDeskAddress, m_form.chkOtherAddress})});
    const Layout phones =
        Frame("fraPhoneNumbers", tr("Phone Numbers"), {m_form.vsfPhone, Slot("phoneButtons")});
    m_view = new FormView(m_form, Row({Column(m_form.PostalLayout()), Column({types, phones})}), this,
                          [this](const QString&) { return MakePhoneButtons(); });
    m_grid = findChild<ListGrid*>("vsfPhone");
    m_grid->SetPrompter(application.prompter);
    auto* whole = new QHBoxLayout(this);
    whole->addWidget(m_view);

    connect(&m_form, &Form::Changed, this, [this] {
        RefreshButtons();
        emit Changed();
    });
    connect(m_grid, &ListGrid::SelectionMoved, this, &AddressPage::RefreshButtons);
    const auto clickOn = [](QPushButton* button) {
        return [button] {
            if (button->isEnabled())
                button->click();
        };
    };
    connect(m_grid, &ListGrid::RowActivated, this, clickOn(cmdEdit));
    connect(m_grid, &ListGrid::InsertPressed, this, clickOn(cmdAdd));
    connect(m_grid, &ListGrid::DeletePressed, this, clickOn(cmdRemove));
    Close();
}

QWidget* AddressPage::MakePhoneButtons() {
    auto* line = new QWidget;
    auto* layout = new QHBoxLayout(line);
    layout->setContentsMargins({});
    const auto make = [&](const QString& name, const QString& caption) {
        auto* button = new QPushButton(caption, line);
        button->setObjectName(name);
        button->setAutoDefault(false);
        layout->addWidget(button);
        return button;
    };
    cmdAdd = make("cmdAdd", tr("Add..."));
    cmdEdit = make("cmdEdit", tr("Edit..."));
    cmdRemove = make("cmdRemove", tr("Remove"));
    connect(cmdAdd, &QPushButton::clicked, this, [this] { EditPhone(true); });
    connect(cmdEdit, &QPushButton::clicked, this, [this] { EditPhone(false); });
    connect(cmdRemove, &QPushButton::clicked, this, &AddressPage::RemovePhone);
    return line;
}

bool AddressPage::IsBlank() const {
    for (const Field* field : m_form.Fields()) {
        const bool filled = field->GetKind() == Field::Kind::Flag
                                ? static_cast<const FlagField*>(field)->IsOn()
                                : !field->IsBlank();
        if (filled)
            return false;
    }
    return true;
}

void AddressPage::ReadAddress(RequestChannel& channel) {
    m_id = channel.GetField("AdrID");
    m_isOpen = true;
    m_phones = m_storedPhones = {};
    m_form.Load(channel);
    m_view->SetReadOnly(m_readOnly);
    ShowPhones(true);
}

void AddressPage::ReadPhone(const RequestChannel& channel) {
    const clsPhone phone{.sPhoneID = channel.GetField("PhID"),
                         .sAddressID = m_id,
                         .sType = channel.GetField("PhTp"),
                         .sNumber = channel.GetField("PhNm")};
    m_phones.Load(phone);
    m_storedPhones.Load(phone);
    ShowPhones(true);
}

void AddressPage::StartNew() {
    Close();
    m_isOpen = true;
    m_view->SetReadOnly(false);
    RefreshButtons();
    emit Changed();
    FocusFirst();
}

void AddressPage::Close() {
    m_id.clear();
    m_isOpen = false;
    m_phones = m_storedPhones = {};
    m_form.Clear();
    m_view->SetReadOnly(true);
    RefreshButtons();
    emit Changed();
}

void AddressPage::Revert() {
    if (m_id.isEmpty()) {
        Close();
        return;
    }
    m_phones = m_storedPhones;
    m_form.Revert();
}

void AddressPage::EmptyFields() {
    m_form.EmptyDrafts();
    FocusFirst();
}

void AddressPage::Put(RequestChannel& channel, Action action) {
    channel.PutField("AdrRq", QString::number(int(action)));
    channel.PutField("AdrID", m_id);
    for (const Field* field : m_form.PostalFields() + m_form.TypeFlags())
        field->Put(channel);
    for (int i = 0; i < m_phones.CountPhoneData(); ++i) {
        const clsPhone& phone = m_phones.GetPhoneClass(i);
        const bool removed = action == Action::Removed;
        channel.PutField("PhNm", phone.sNumber);
        channel.PutField("PhTp", phone.sType);
        channel.PutField("PhRq", QString::number(int(removed ? clsPhone::Action::Removed : phone.action)));
        channel.PutField("PhAID", m_id);
    }
}

void AddressPage::FocusFirst() {
    m_view->FocusFirst();
}

void AddressPage::ShowPhones(bool stored) {
    QList<GridRow> rows;
    for (int i = 0; i < m_phones.CountPhoneData(); ++i) {
        const clsPhone& phone = m_phones.GetPhoneClass(i);
        if (phone.action != clsPhone::Action::Removed)
            rows.append({QString::number(i),
                         {TypeName(phone.sType), phone.sNumber, phone.sPhoneID, phone.sAddressID},
                         {}});
    }
    if (stored)
        m_form.vsfPhone.SetStoredRows(rows);
    else
        m_form.vsfPhone.SetRows(rows);
}

void AddressPage::EditPhone(bool isNew) {
    const int index = isNew ? -1 : m_grid->SelectedKey().toInt();
    const clsPhone phone = isNew ? clsPhone() : m_phones.GetPhoneClass(index);
    frmSystem_PhoneNumbers dialog(m_application.pickLists.Items("cboPhoneType"), phone.sType, phone.sNumber,
                                  this);
    if (!m_application.prompter.RunDialog(dialog))
        return;
    const int kept = m_phones.UpdataPhoneData(index, dialog.Type(), dialog.Number());
    ShowPhones(false);
    m_grid->SelectKey(QString::number(kept));
}

void AddressPage::RemovePhone() {
    const bool remove = m_application.prompter.ShowBox(
        this, {.text = tr("Are you sure you want to delete this phone number?"),
               .icon = Box::Icon::Question,
               .buttons = Box::Buttons::YesNo,
               .title = tr("Delete Phone Number")});
    if (!remove)
        return;
    m_phones.RemovePhoneData(m_grid->SelectedKey().toInt());
    ShowPhones(false);
}

void AddressPage::RefreshButtons() {
    const bool mayEdit = m_isOpen && !m_readOnly;
    const bool hasRow = m_grid && m_grid->SelectedRow();
    cmdAdd->setEnabled(mayEdit);
    cmdEdit->setEnabled(mayEdit && hasRow);
    cmdRemove->setEnabled(mayEdit && hasRow);
}

QString AddressPage::TypeName(const QString& id) const {
    const QList<PickItem> types = m_application.pickLists.Items("cboPhoneType");
    for (const PickItem& type : types)
        if (type.id == id)
            return type.text;
    return id;
}

} // namespace sysadmin
