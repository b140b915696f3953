#include "cataloging/frmCataloging_Miscellaneous.h"

#include "wire/WebAddress.h"

namespace sysadmin {

CatalogingMiscellaneousForm::CatalogingMiscellaneousForm()
    : txtReorderServiceURL(*this,
                           {.name = "txtReorderServiceURL",
                            .tag = "CNSU",
                            .caption = tr("Reorder Service URL:"),
                            .maxLength = wire::WebAddressLength},
                           wire::IsWebAddress,
                           tr("Please enter an address that begins with http:// or https://.")) {}

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

} // namespace sysadmin

#include "moc_frmCataloging_Miscellaneous.cpp"
