#include "circulation/frmCirculation_UBPolicyDefinitions.h"

#include "circulation/UbPolicyTable.h"
#include "core/Application.h"
#include "wire/Status.h"

#include <QPushButton>

#include <utility>

namespace sysadmin {

namespace {

Layout Draw(UbPolicyForm& form) {
    QList<Layout> rows{form.chkUBEligible};
    QList<Layout> limits;
    for (const auto& limit : form.limits)
        limits.append(Beside({limit->applies, *limit->most, limit->blocks}));
    return Below(rows << Frame("fraLimits", Form::tr("Limits"), limits));
}

} // namespace

frmCirculation_UBPolicyDefinitions::frmCirculation_UBPolicyDefinitions(Application& application,
                                                                       QWidget* parent)
    : MaintenanceScreen(application, "frmCirculation_UBPolicyDefinitions",
                        tr("Circulation UB Policy Definitions"), Area::Circulation, parent) {
    AddTable({.subject = tr("UB Policy Definition"),
              .notice = "UbPol",
              .columns = {{.caption = tr("Codes"), .width = 90, .tag = "Cd"},
                          {.caption = tr("Names"), .tag = "Nm"}},
              .listRequest = "LstPatGp",
              .getRequest = "GetUbPol",
              .addRequest = "AddUbPol",
              .updateRequest = "UpdUbPol",
              .getKeyTag = "UBPGID",
              .originalTag = "UBPGID",
              .loadCaption = "Load Circulation UB Policy Definitions",
              .editCaption = "Edit Circulation UB Policy Defintions",
              .saveCaption = "Save UB Policy Defintions"},
             m_form, Draw(m_form));
    cmdAllGroups = MakeButton("cmdAllGroups", tr("&All Patron Groups..."));
    AddListButton(cmdAllGroups);
    Finish();
    SetRights(false, application.profile.MayEdit(Area::Circulation), false);
    findChild<QPushButton*>("cmdNew")->hide(); // the list is of the patron groups, which are made elsewhere
    connect(cmdAllGroups, &QPushButton::clicked, this, &frmCirculation_UBPolicyDefinitions::EditAll);
    connect(&application.notices, &Notices::SubjectChanged, this,
            &frmCirculation_UBPolicyDefinitions::OnSubjectChanged);
    connect(&application.notices, &Notices::ChangedByOthers, this, [this](const QString& subject) {
        if (subject == u"CrMsc")
            AskDemerits();
    });
}

void frmCirculation_UBPolicyDefinitions::BeforeLoad() {
    AskDemerits();
}

void frmCirculation_UBPolicyDefinitions::PutListKey(const Table&) {
    const clsCluster* cluster = App().clusters.Current();
    App().channel.PutField("CID", cluster ? cluster->sClusterID : QString());
}

// The operator was asked before about an open edit.
void frmCirculation_UBPolicyDefinitions::OnClusterChanged() {
    EndEdit();
    LoadList(Current());
}

// A failure is told by the screens that show the setting; here the fields stay locked.
void frmCirculation_UBPolicyDefinitions::AskDemerits() {
    m_usesDemerits =
        App().channel.SendRequest("GetCrMsc") == wire::status::Ok && App().channel.GetFlag("UDem");
    for (const auto& limit : m_form.limits)
        if (limit->spec.isDemerits)
            for (Field* field : QList<Field*>{&limit->applies, limit->most.get(), &limit->blocks})
                field->SetUsable(m_usesDemerits);
}

void frmCirculation_UBPolicyDefinitions::OnSubjectChanged(const QString& subject) {
    if (subject == u"CrMsc")
        AskDemerits();
    if (subject != u"PatGp")
        return;
    m_isListOld = true;
    RefreshOwnControls();
}

void frmCirculation_UBPolicyDefinitions::RefreshOwnControls() {
    cmdAllGroups->setEnabled(GetState() == State::List);
    if (GetState() != State::List || !std::exchange(m_isListOld, false))
        return;
    const QString selected = Current().grid->SelectedKey();
    LoadList(Current());
    Current().grid->SelectKey(selected);
}

// Nothing is kept of a group that is not eligible.
bool frmCirculation_UBPolicyDefinitions::SendRecord(Table& table) {
    const bool hasPolicy = m_form.chkUBEligible.Stored() == u"Y";
    return (!hasPolicy && !m_form.chkUBEligible.IsOn()) || MaintenanceScreen::SendRecord(table);
}

void frmCirculation_UBPolicyDefinitions::PutRecord(Table& table, const SaveContext& context) {
    const bool hasPolicy = m_form.chkUBEligible.Stored() == u"Y";
    if (!m_form.chkUBEligible.IsOn()) {
        table.spec.updateRequest = "DelUbPol";
        App().channel.PutField("UBPGID", context.originalKey);
        return;
    }
    table.spec.updateRequest = hasPolicy ? "UpdUbPol" : "AddUbPol";
    MaintenanceScreen::PutRecord(table, context);
}

void frmCirculation_UBPolicyDefinitions::EditAll() {
    if (EditAllUbPolicies(App(), this, IsReadOnly(), m_usesDemerits))
        Announce("UbPol");
}

} // namespace sysadmin

#include "moc_frmCirculation_UBPolicyDefinitions.cpp"
