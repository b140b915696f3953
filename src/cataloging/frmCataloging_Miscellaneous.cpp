#include "cataloging/frmCataloging_Miscellaneous.h"

#include "wire/FieldOrder.h"

namespace sysadmin {

CatalogingMiscellaneousForm::CatalogingMiscellaneousForm()
    : txtReorderServiceURL(*this, {.name = "txtReorderServiceURL",
                                   .tag = "CNSU",
                                   .caption = tr("Reorder Service URL:"),
                                   .maxLength = wire::fieldorder::AddressLength}) {}

frmCataloging_Miscellaneous::frmCataloging_Miscellaneous(Application& application, QWidget* parent)
    : SingleRecordScreen(application, "frmCataloging_Miscellaneous", tr("Cataloging Miscellaneous"),
                         Area::Cataloging, parent) {
    Build({.subject = tr("Cataloging Miscellaneous"),
           .word = "MarcOrderServiceControl",
           .frameNoun = tr("Miscellaneous"),
           .loadCaption = "Load Cataloging Miscellaneous - GET_MARC_ORDER_SVC_URL",
           .saveCaption = "Save Cataloging Miscellaneous"},
          m_form);
}

bool frmCataloging_Miscellaneous::CheckBeforeSave() {
    if (!SingleRecordScreen::CheckBeforeSave())
        return false;
    if (wire::fieldorder::IsServiceAddress(m_form.txtReorderServiceURL.Draft()))
        return true;
    Tell(tr("Please enter an address that begins with http:// or https://."));
    View().FocusField(m_form.txtReorderServiceURL);
    return false;
}

} // namespace sysadmin
