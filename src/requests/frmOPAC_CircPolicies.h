#pragma once

#include "framework/SingleRecordScreen.h"

namespace sysadmin {

struct CatalogueRegistrationForm : Form {
    // Not marked as required: what is missing is told in words of its own.
    ChoiceField cboDefaultGroup{
        *this, {.name = "cboDefaultGroup", .tag = "G", .caption = tr("Default Patron Group:")}};
    NumberField txtPurge{
        *this,
        {.name = "txtPurge", .tag = "P", .caption = tr("Set Purge:"), .unit = tr("days"), .most = 9999}};
};

/// What becomes of patrons who register themselves in the public catalogue.
class frmOPAC_CircPolicies : public SingleRecordScreen {
    Q_OBJECT

public:
    frmOPAC_CircPolicies(Application& application, QWidget* parent);

protected:
    void ReadRecord() override;
    bool CheckBeforeSave() override;

private:
    CatalogueRegistrationForm& m_form = KeepForm<CatalogueRegistrationForm>();
};

} // namespace sysadmin
