#include "system/AddressPage.h"

#include "core/Application.h"
#include "core/data/YesNo.h"
#include "framework/ListGrid.h"

#include <QHBoxLayout>
#include <QSignalBlocker>

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
              {Beside({m_form.chkShipToAddress, m_form.chkBillToAddress, m_form.chkStreetAddress}),
               Beside({m_form.chkCampusAddress, m_form.chkCircDeskAddress, m_form.chkOtherAddress})});
    const Layout phones = Frame("fraPhoneNumbers", tr("Phone Numbers"), {m_form.vsfPhone});
    RowsSpec& behaviour = m_form.vsfPhone.Behaviour();
    behaviour.belongs = [this](const GridRow& phone) { return phone.cells.value(3) == m_id; };
    behaviour.puts.append(PutFixed("PhAID", [this] { return m_id; }));
    behaviour.shown.insert(0, [this](const GridRow& phone) { return TypeName(phone.cells.value(0)); });
    behaviour.ask = AskPhone(application.pickLists);
    m_view = std::make_unique<FormView>(m_form,
                                        Beside({Below(m_form.PostalLayout()), Below({types, phones})}), this);
    findChild<ListGrid*>("vsfPhone")->SetPrompter(application.prompter);
    auto* whole = new QHBoxLayout(this);
    whole->setContentsMargins({});
    whole->addWidget(m_view->InScrollArea(this));
    connect(&m_form, &Form::Changed, this, &AddressPage::Changed);
    Close();
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
    m_form.Load(channel);
    m_view->SetReadOnly(m_readOnly);
}

void AddressPage::StartNew() {
    Close();
    m_isOpen = true;
    m_view->SetReadOnly(false);
    emit Changed();
    FocusFirst();
}

void AddressPage::Close() {
    m_id.clear();
    m_isOpen = false;
    m_form.Clear();
    m_view->SetReadOnly(true);
    emit Changed();
}

void AddressPage::Revert() {
    if (m_id.isEmpty())
        Close();
    else
        m_form.Revert();
}

void AddressPage::EmptyFields() {
    m_form.EmptyDrafts();
    FocusFirst();
}

void AddressPage::Put(RequestChannel& channel, Action action) {
    channel.PutField("AdrRq", QString::number(int(action)));
    channel.PutField("AdrID", m_id);
    const auto putFields = [&] {
        for (const Field* field : m_form.PostalFields() + m_form.TypeFlags())
            field->Put(channel);
    };
    if (action != Action::Removed) {
        putFields();
        m_form.vsfPhone.Put(channel);
        return;
    }
    // It is removed as the server has it. What was typed stays until that has worked.
    const QSignalBlocker quiet(&m_form);
    const Form::Loading loading(m_form);
    const QList<std::any> drafts = m_form.TakeDrafts();
    m_form.Revert();
    putFields();
    m_form.vsfPhone.PutRemoval(channel);
    m_form.GiveDrafts(drafts);
}

bool AddressPage::Holds(const RequestChannel& channel) {
    for (const Field* field : m_form.PostalFields() + m_form.TypeFlags()) {
        const auto& value = *static_cast<const ValueField*>(field);
        const bool isFlag = field->GetKind() == Field::Kind::Flag;
        const QString sent = isFlag ? BoolToYN(static_cast<const FlagField*>(field)->IsOn()) : value.Draft();
        if (sent != channel.GetField(value.Tag()))
            return false;
    }
    return true;
}

void AddressPage::FocusFirst() {
    m_view->FocusFirst();
}

QString AddressPage::TypeName(const QString& id) const {
    const QList<PickItem> types = m_application.pickLists.Items("cboPhoneType");
    for (const PickItem& type : types)
        if (type.id == id)
            return type.text;
    return id;
}

} // namespace sysadmin

#include "moc_AddressPage.cpp"
