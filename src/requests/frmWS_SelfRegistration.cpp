#include "requests/frmWS_SelfRegistration.h"

#include "core/Application.h"
#include "core/data/YesNo.h"
#include "framework/ClusterSelection.h"
#include "framework/forms/ListFields.h"
#include "framework/forms/Rules.h"

namespace sysadmin {

namespace {

FieldSpec FlagOf(const QString& role, const QString& end, const QString& accessible) {
    return {.name = "chk" + role + end, .accessible = accessible};
}

Layout FieldColumn(const SelfRegistrationForm& form, size_t from, size_t to) {
    QList<Layout> rows{Beside({Note({}), Note(Form::tr("Visible?")), Note(Form::tr("Required?"))})};
    for (size_t i = from; i < to; ++i)
        rows.append(
            Beside({Note(form.fields[i]->caption), form.fields[i]->visible, form.fields[i]->required}));
    return Below(rows);
}

} // namespace

RegistrationField::RegistrationField(Form& form, const QString& theCode, const QString& role,
                                     const QString& theCaption)
    : code(theCode)
    , caption(theCaption)
    , visible(form, FlagOf(role, "Visible", Form::tr("%1 Visible?").arg(theCaption)))
    , required(form, FlagOf(role, "Required", Form::tr("%1 Required?").arg(theCaption))) {}

SelfRegistrationForm::SelfRegistrationForm() {
    const auto add = [this](const QString& code, const QString& caption) {
        const QString role = code.left(1).toUpper() + code.mid(1);
        fields.push_back(std::make_unique<RegistrationField>(*this, code, role, caption));
    };
    add("title", tr("Title:"));
    add("firstName", tr("First Name:"));
    add("middleName", tr("Middle Name:"));
    add("lastName", tr("Last Name:"));
    add("primaryPhone", tr("Primary Phone:"));
    add("otherPhone", tr("Other Phone:"));
    for (int line = 1; line <= 5; ++line)
        add(QString("address%1").arg(line), tr("Address Line %1:").arg(line));
    add("city", tr("City:"));
    add("state", tr("State:"));
    add("country", tr("Country:"));
    add("zipCode", tr("Zip Code:"));
    add("emailAddress", tr("Email Address:"));
    add("SMSNumber", tr("SMS Number:"));
    add("department", tr("Department:"));
    add("major", tr("Major:"));
    add("birthDate", tr("Birth Date:"));
    fields.push_back(std::make_unique<RegistrationField>(*this, QString(), "Identifier", tr("Identifier:")));

    for (const auto& field : fields) {
        field->required.EnableBy(field->visible);
        // What a patron does not get to see cannot be asked of them.
        When([visible = &field->visible] { return !visible->IsOn(); }).Set(field->required, "N");
    }
}

QString SelfRegistrationForm::IdentifierCode() const {
    return cboIdType.Draft();
}

frmWS_SelfRegistration::frmWS_SelfRegistration(Application& application, QWidget* parent)
    : SingleRecordScreen(application, "frmWS_SelfRegistration", tr("Patron Self-Registration"), Area::System,
                         parent) {
    // Three columns of the same height.
    const size_t count = m_form.fields.size();
    const size_t third = (count + 2) / 3;
    Build({.subject = tr("Patron Self-Registration"),
           .notice = "WSSelfReg",
           .frameNoun = tr("Patron Self-Registration"),
           .getRequest = "GetWSSelfReg",
           .updateRequest = "UpdWSSelfReg",
           .loadFailure = tr("Unable to load self-registration configuration."),
           .saveFailure = tr("Unable to save self-registration configuration.")},
          m_form,
          Below({m_form.chkWebService, m_form.cboDefaultGroup, m_form.cboIdType, m_form.txtPurgePeriod,
                 Frame("fraFields", tr("Registration Fields"),
                       {Beside({FieldColumn(m_form, 0, third), FieldColumn(m_form, third, 2 * third),
                                FieldColumn(m_form, 2 * third, count)})})}),
          {[this](RequestChannel& channel, const SaveContext&) { PutFields(channel); },
           PutValue(m_form.chkWebService), PutValue(m_form.txtPurgePeriod), PutValue(m_form.cboDefaultGroup),
           PutValue(m_form.cboIdType)});
}

void frmWS_SelfRegistration::OnClusterChanged() {
    // The patron groups are the cluster's; an open edit keeps the ones it was begun with.
    if (!m_form.IsChanged())
        LoadScreen();
}

bool frmWS_SelfRegistration::BeforeLoad() {
    return App().clusters.Current() || GetClusterList(App(), this);
}

void frmWS_SelfRegistration::PutKey() {
    App().channel.PutField("CID", App().clusters.Current()->sClusterID);
}

void frmWS_SelfRegistration::ReadRecord() {
    RequestChannel& channel = App().channel;
    QList<PickItem> groups;
    for (const GridRow& row : ReadPairs(channel, "AI", "AN"))
        groups.append({row.key, row.cells.value(0)});
    m_form.cboDefaultGroup.SetItems(groups);

    const Form::Loading loading(m_form);
    SingleRecordScreen::ReadRecord();
    while (channel.NextRecord("FC")) {
        const QString code = channel.GetField("FC");
        for (const auto& field : m_form.fields)
            if (code == (field->code.isEmpty() ? m_form.IdentifierCode() : field->code)) {
                field->visible.SetStored(channel.GetField("FV"));
                field->required.SetStored(channel.GetField("FR"));
            }
    }
}

bool frmWS_SelfRegistration::CheckBeforeSave() {
    const auto isChosen = [this](const ChoiceField& choice, const QString& otherwise) {
        if (!choice.IsBlank())
            return true;
        Tell(otherwise);
        View().FocusField(choice);
        return false;
    };
    return isChosen(m_form.cboDefaultGroup, tr("Please select a Default Patron Group")) &&
           isChosen(m_form.cboIdType, tr("Please select an Identifier Type")) &&
           SingleRecordScreen::CheckBeforeSave();
}

void frmWS_SelfRegistration::PutFields(RequestChannel& channel) const {
    for (const auto& field : m_form.fields) {
        channel.PutField("FC", field->code.isEmpty() ? m_form.IdentifierCode() : field->code);
        channel.PutField("FV", BoolToYN(field->visible.IsOn()));
        channel.PutField("FR", BoolToYN(field->visible.IsOn() && field->required.IsOn()));
    }
}

} // namespace sysadmin

#include "moc_frmWS_SelfRegistration.cpp"
