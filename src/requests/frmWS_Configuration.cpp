#include "requests/frmWS_Configuration.h"

namespace sysadmin {

frmWS_Configuration::frmWS_Configuration(Application& application, QWidget* parent)
    : SingleRecordScreen(application, "frmWS_Configuration", tr("Web Service Configuration"), Area::System,
                         parent) {
    Build({.subject = tr("Web Service Configuration"),
           .notice = "ZebConfig",
           .frameNoun = tr("Web Service Configuration"),
           .getRequest = "GetZebConfig",
           .updateRequest = "UpdZebConfig",
           .loadFailure = tr("Unable to load web service configuration."),
           .saveFailure = tr("Unable to save web service configuration.")},
          m_form, Column({m_form.chkChangeSMS, m_form.chkChangePIN, m_form.txtDefaultPIN}),
          {PutValue(m_form.chkChangeSMS), PutValue(m_form.chkChangePIN), PutValue(m_form.txtDefaultPIN)});
}

} // namespace sysadmin
