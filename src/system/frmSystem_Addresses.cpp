#include "system/frmSystem_Addresses.h"

#include "core/Application.h"
#include "core/Prompter.h"
#include "framework/Captions.h"
#include "framework/FormView.h"
#include "framework/Utility.h"
#include "system/AddressPage.h"
#include "wire/Status.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QShortcut>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace sysadmin {

namespace status = wire::status;

frmSystem_Addresses::frmSystem_Addresses(Application& application, const QString& locationId, bool readOnly,
                                         QWidget* parent)
    : QDialog(parent)
    , m_application(application)
    , m_locationId(locationId)
    , m_readOnly(readOnly) {
    setObjectName("frmSystem_Addresses");
    setProperty(HelpContextProperty, 50811);
    setWindowTitle(tr("System Address"));

    tabAddress = new QTabWidget(this);
    tabAddress->setObjectName("tabAddress");
    tabAddress->tabBar()->setAccessibleName(tr("Addresses"));
    for (int i = 1; i <= MostAddresses; ++i) {
        auto* page = new AddressPage(application, readOnly, tabAddress);
        m_pages.append(page);
        tabAddress->addTab(page, tr("Address&%1").arg(i));
        connect(page, &AddressPage::Changed, this, &frmSystem_Addresses::RefreshControls);
    }

    auto* buttons = new QHBoxLayout;
    const auto make = [&](const QString& name, const QString& caption) {
        auto* button = new QPushButton(caption, this);
        button->setObjectName(name);
        button->setAutoDefault(false);
        buttons->addWidget(button);
        return button;
    };
    cmdNew = make("cmdNew", tr("&New"));
    cmdDelete = make("cmdDelete", tr("&Delete"));
    buttons->addStretch();
    cmdClear = make("cmdClear", tr("C&lear"));
    cmdSave = make("cmdSave", tr("&Save"));
    cmdCancel = make("cmdCancel", tr("&Cancel"));
    cmdClose = make("cmdClose", tr("Cl&ose"));
    for (QPushButton* button : {cmdNew, cmdDelete, cmdClear, cmdSave, cmdCancel})
        button->setVisible(!readOnly);
    cmdCancel->setToolTip(tr("Throws away what was changed on this tab."));

    auto* whole = new QVBoxLayout(this);
    whole->addWidget(tabAddress, 1);
    whole->addLayout(buttons);
    AssignMnemonics(*this);
    resize(900, 560);

    connect(tabAddress, &QTabWidget::currentChanged, &m_whileOpen, [this] { RefreshControls(); });
    connect(cmdNew, &QPushButton::clicked, this, &frmSystem_Addresses::StartNew);
    connect(cmdSave, &QPushButton::clicked, this, &frmSystem_Addresses::Save);
    connect(cmdDelete, &QPushButton::clicked, this, &frmSystem_Addresses::Delete);
    connect(cmdClear, &QPushButton::clicked, this, [this] { CurrentPage().EmptyFields(); });
    connect(cmdCancel, &QPushButton::clicked, this, [this] { CurrentPage().Revert(); });
    connect(cmdClose, &QPushButton::clicked, this, &QDialog::reject);
    connect(new QShortcut(QKeySequence::Save, this), &QShortcut::activated, cmdSave, &QPushButton::click);
    RefreshControls();
}

bool frmSystem_Addresses::Load() {
    if (ReadLocation() != status::Ok) {
        m_application.prompter.ShowBox(parentWidget(), {.text = tr("Unable to load System Addresses.")});
        return false;
    }
    ReadAddresses(nullptr);
    tabAddress->setCurrentIndex(0);
    return true;
}

qint16 frmSystem_Addresses::ReadLocation() {
    RequestChannel& channel = m_application.channel;
    channel.PutField("ID", m_locationId);
    const qint16 result = channel.SendRequest("GetLoc");
    if (result == status::Ok) {
        m_location.clear();
        for (const char* tag : {"Cd", "Nm", "Spn", "Dsp", "OPAC", "Lb"})
            m_location.append(wire::Field{tag, channel.GetField(tag)});
    }
    return result;
}

void frmSystem_Addresses::ReadAddresses(AddressPage* justSaved) {
    RequestChannel& channel = m_application.channel;
    while (channel.NextRecord("AdrID")) {
        AddressPage* page = PageOf(channel.GetField("AdrID"));
        // Others may have added addresses meanwhile: the one just saved is known by what was saved.
        if (!page && justSaved && justSaved->Id().isEmpty() && justSaved->Holds(channel))
            page = justSaved;
        for (AddressPage* free : m_pages)
            if (!page && !free->IsOpen())
                page = free;
        // What is being edited on another tab stays.
        if (!page || (page != justSaved && page->IsChanged()))
            continue;
        page->ReadAddress(channel);
    }
    RefreshControls();
}

qint16 frmSystem_Addresses::Send(AddressPage& page, int action) {
    RequestChannel& channel = m_application.channel;
    page.Put(channel, AddressPage::Action(action));
    for (const wire::Field& field : m_location)
        channel.PutField(field.tag, field.value);
    channel.PutField("ID", m_locationId);
    channel.PutField("NCd", "N");
    return channel.SendRequest("UpdLoc");
}

void frmSystem_Addresses::StartNew() {
    const auto free =
        std::find_if(m_pages.begin(), m_pages.end(), [](const AddressPage* page) { return !page->IsOpen(); });
    if (free == m_pages.end())
        return;
    (*free)->StartNew();
    tabAddress->setCurrentWidget(*free);
    (*free)->FocusFirst();
}

void frmSystem_Addresses::Save() {
    AddressPage& page = CurrentPage();
    page.Fields().LeaveFields();
    if (!page.IsChanged() || page.IsBlank())
        return;
    const AddressPage::Action action =
        page.Id().isEmpty() ? AddressPage::Action::New : AddressPage::Action::Changed;
    if (const qint16 result = Send(page, int(action)); result != status::Ok) {
        m_application.prompter.ShowBox(this, {.text = tr("Unable to save Address") + tr(" data.")});
        m_application.ReportRequestFailure(result, "Save System Addresses", "System Addresses");
        return;
    }
    emit m_application.notices.SubjectChanged("Loc");
    // The server numbers new addresses and phones.
    if (ReadLocation() == status::Ok) {
        ReadAddresses(&page);
        if (!page.Id().isEmpty())
            return;
        page.Close(); // what the server made of it is found like any other's
        if (ReadLocation() == status::Ok) {
            ReadAddresses(nullptr);
            return;
        }
    }
    m_application.prompter.ShowBox(this, {.text = tr("Unable to load System Addresses.")});
    QDialog::reject(); // what stands here is no longer what the server has
}

void frmSystem_Addresses::Delete() {
    AddressPage& page = CurrentPage();
    const QString number = QString::number(tabAddress->currentIndex() + 1);
    const QString contact = page.Fields().txtContact.Stored();
    if (!ConfirmDelete(m_application, this, tr("Address"), contact.isEmpty() ? number : contact))
        return;
    if (page.Id().isEmpty()) {
        page.Close();
        return;
    }
    if (const qint16 result = Send(page, int(AddressPage::Action::Removed)); result != status::Ok) {
        m_application.prompter.ShowBox(this, {.text = tr("Database error ") + QString::number(result) +
                                                      tr(" while deleting System Address ") + number + "."});
        return;
    }
    page.Close();
    emit m_application.notices.SubjectChanged("Loc");
}

void frmSystem_Addresses::RefreshControls() {
    if (!cmdClose)
        return; // still building
    bool isFull = true;
    for (int i = 0; i < m_pages.size(); ++i) {
        // A tab that becomes disabled while it shows would hand the view to another one.
        tabAddress->setTabEnabled(i, m_pages[i]->IsOpen() || i == tabAddress->currentIndex());
        isFull = isFull && m_pages[i]->IsOpen();
    }
    const AddressPage& page = CurrentPage();
    cmdNew->setEnabled(!isFull);
    cmdDelete->setEnabled(page.IsOpen());
    cmdClear->setEnabled(page.IsOpen());
    cmdSave->setEnabled(page.IsChanged() && !page.IsBlank());
    cmdCancel->setEnabled(page.IsChanged());
}

void frmSystem_Addresses::reject() {
    for (AddressPage* page : m_pages)
        if (page->IsChanged()) {
            tabAddress->setCurrentWidget(page);
            WarnEditInProgress(m_application, this);
            return;
        }
    QDialog::reject();
}

AddressPage& frmSystem_Addresses::CurrentPage() const {
    return *m_pages[tabAddress->currentIndex()];
}

AddressPage* frmSystem_Addresses::PageOf(const QString& addressId) const {
    for (AddressPage* page : m_pages)
        if (page->IsOpen() && page->Id() == addressId)
            return page;
    return nullptr;
}

} // namespace sysadmin

#include "moc_frmSystem_Addresses.cpp"
