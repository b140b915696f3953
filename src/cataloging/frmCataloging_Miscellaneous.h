#pragma once

#include "framework/SingleRecordScreen.h"
#include "framework/forms/CheckedText.h"

namespace sysadmin {

/// Where the service is that applies the orders of fields.
struct CatalogingMiscellaneousForm : Form {
    CheckedText txtReorderServiceURL;

    CatalogingMiscellaneousForm();
};

class frmCataloging_Miscellaneous : public SingleRecordScreen {
    Q_OBJECT

public:
    frmCataloging_Miscellaneous(Application& application, QWidget* parent);

protected:
    void AfterCancel() override {} // the loaded value is back; the screen stays

private:
    CatalogingMiscellaneousForm& m_form = KeepForm<CatalogingMiscellaneousForm>();
};

} // namespace sysadmin
