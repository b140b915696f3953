#include "system/frmSystem_Locations.h"

#include "core/Application.h"
#include "core/Prompter.h"
#include "system/frmSystem_Addresses.h"

#include <QPushButton>

#include <utility>

namespace sysadmin {

namespace {

const QString PhoneTypes = "cboPhoneType";

} // namespace

frmSystem_Locations::frmSystem_Locations(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmSystem_Locations", tr("System Locations"), Area::System, parent) {
    AddTable({.subject = tr("Location"),
              .word = "Loc",
              .plural = "System Locations",
              .boxOnLoadFailure = true,
              .deleteCaption = "Delete Locations",
              .matchTag = "Cd",
              .pickLists = {"cboItemLocation", "cboTempLocation"},
              .pickTag = "Nm",
              .morePuts = {OnUpdate(PutConstant("NCd", "False"))},
              .putOrder = {"Cd", "Nm", "Spn", "Dsp", "OPAC", "Lb"}},
             m_form,
             Below({m_form.txtCode, m_form.txtName, m_form.txtSpine, m_form.txtOPACName, m_form.chkOPAC,
                    m_form.cboOwningLib,
                    Frame("fraPolicies", tr("Policies"),
                          {m_form.fpCatalogPolicyGroup, m_form.fpAcqSerialsPolicyGroup,
                           m_form.fpCirculationPolicyGroup})}));
    cmdAddress = MakeButton("cmdAddress", tr("&Address"));
    AddEditButton(cmdAddress);
    Finish();
    connect(cmdAddress, &QPushButton::clicked, this, &frmSystem_Locations::EditAddresses);
    connect(&application.notices, &Notices::SubjectChanged, this, &frmSystem_Locations::OnSubjectChanged);
}

void frmSystem_Locations::LoadList(Table& table) {
    MaintenanceScreen::LoadList(table);
    QList<PickItem> types; // they come behind the locations
    while (App().channel.NextRecord("PTps"))
        types.append({App().channel.GetField("PTps"), App().channel.GetField("PDsc")});
    App().pickLists.Set(PhoneTypes, types);
}

bool frmSystem_Locations::ConfirmRowDelete(Table& table, const GridRow& row) {
    return App().prompter.ShowBox(
        this, {.text = tr("You will delete ") + table.spec.subject + ":\r\n\r\n" + row.cells.value(0) +
                       "\r\n\r\n" + tr("This may take a long time!") + "\r\n\r\n" + tr("Are you sure?"),
               .icon = Box::Icon::Question,
               .buttons = Box::Buttons::YesNo,
               .title = tr("Delete ") + table.spec.subject,
               .careful = true});
}

void frmSystem_Locations::RefreshOwnControls() {
    cmdAddress->setEnabled(GetState() != State::List && m_form.IsComplete());
    if (GetState() == State::List && std::exchange(m_isListOld, false))
        ReloadList();
}

void frmSystem_Locations::OnSubjectChanged(const QString& subject) {
    if (subject != u"Lib") // the list shows the libraries' names
        return;
    if (GetState() == State::List)
        ReloadList();
    else
        m_isListOld = true;
}

void frmSystem_Locations::ReloadList() {
    const QString selected = Current().grid->SelectedKey();
    LoadList(Current());
    Current().grid->SelectKey(selected);
}

void frmSystem_Locations::EditAddresses() {
    if (GetState() == State::EditingNew || m_form.IsChanged()) {
        const bool goOn = App().prompter.ShowBox(
            this, {.text = tr("Proceeding to address information will save the location to the "
                              "database. Continue?"),
                   .icon = Box::Icon::Question,
                   .buttons = Box::Buttons::OkCancel,
                   .title = tr("Save Location?")});
        if (!goOn || !Save(true))
            return;
    }
    frmSystem_Addresses dialog(App(), Saving().originalKey, IsReadOnly(), this);
    if (dialog.Load())
        App().prompter.RunDialog(dialog);
}

} // namespace sysadmin

#include "moc_frmSystem_Locations.cpp"
