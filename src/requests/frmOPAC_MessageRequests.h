#pragma once

#include "framework/MaintenanceScreen.h"

namespace sysadmin {

struct RequestMessageForm : Form {
    TextField txtCode{*this,
                      {.name = "txtCode",
                       .tag = "Cd",
                       .caption = tr("Message Code:"),
                       .maxLength = TextLength,
                       .required = true,
                       .column = {tr("Codes"), 120}}};
    TextField txtName{*this,
                      {.name = "txtName",
                       .tag = "Nm",
                       .caption = tr("Message Name:"),
                       .maxLength = NameLength,
                       .required = true,
                       .column = {tr("Names")}}};
    FlagField chkSuspension{
        *this,
        {.name = "chkSuspension",
         .tag = "S",
         .caption = tr("Suspension"),
         .toolTip = tr("A request with this message waits until the message is taken away"),
         .column = {.caption = tr("Suspension"), .width = 90, .yesNo = true}}};
};

/// Messages that can be attached to call slip requests.
class frmOPAC_MessageRequests : public MaintenanceScreen {
    Q_OBJECT

public:
    frmOPAC_MessageRequests(Application& application, QWidget* parent);

private:
    RequestMessageForm& m_form = KeepForm<RequestMessageForm>();
};

} // namespace sysadmin
