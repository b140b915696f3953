#pragma once

#include "framework/SingleRecordScreen.h"

#include <memory>
#include <vector>

namespace sysadmin {

/// A field of the registration form that patrons fill in.
struct RegistrationField {
    /// `code`: what the web service calls it; `role`: its part of the control names.
    RegistrationField(Form& form, const QString& theCode, const QString& role, const QString& theCaption);

    QString code;
    QString caption;
    FlagField visible;
    FlagField required;
};

struct SelfRegistrationForm : Form {
    SelfRegistrationForm();
    /// The code under which the identifier travels: that of the chosen type.
    QString IdentifierCode() const;

    FlagField chkWebService{*this,
                            {.name = "chkWebService", .tag = "SRE", .caption = tr("Enable Web Service?")}};
    ChoiceField cboDefaultGroup{
        *this, {.name = "cboDefaultGroup", .tag = "G", .caption = tr("Default Patron Group:")}};
    ChoiceField cboIdType{*this,
                          {.name = "cboIdType",
                           .tag = "IDC",
                           .caption = tr("Identifier Type:"),
                           .options = {{"SSN", tr("SSN")}, {"institutionId", tr("Institution ID")}}}};
    NumberField txtPurgePeriod{*this,
                               {.name = "txtPurgePeriod",
                                .tag = "P",
                                .caption = tr("Purge Period:"),
                                .unit = tr("days"),
                                .most = 9999}};
    /// In the order in which they are shown and sent; the identifier is the last.
    std::vector<std::unique_ptr<RegistrationField>> fields;
};

/// How patrons register themselves over the web.
class frmWS_SelfRegistration : public SingleRecordScreen {
    Q_OBJECT

public:
    frmWS_SelfRegistration(Application& application, QWidget* parent);
    void OnClusterChanged() override;

protected:
    bool BeforeLoad() override;
    void PutKey() override;
    void ReadRecord() override;
    bool CheckBeforeSave() override;

private:
    void PutFields(RequestChannel& channel) const;

    SelfRegistrationForm& m_form = KeepForm<SelfRegistrationForm>();
};

} // namespace sysadmin
