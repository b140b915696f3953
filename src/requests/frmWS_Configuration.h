#pragma once

#include "framework/SingleRecordScreen.h"

namespace sysadmin {

struct WebServiceForm : Form {
    FlagField chkChangeSMS{
        *this, {.name = "chkChangeSMS", .tag = "US", .caption = tr("&Enable Change SMS Service")}};
    FlagField chkChangePIN{
        *this, {.name = "chkChangePIN", .tag = "UP", .caption = tr("Enable Change &PIN Service")}};
    TextField txtDefaultPIN{*this,
                            {.name = "txtDefaultPIN",
                             .tag = "DP",
                             .caption = tr("&Default PIN:"),
                             .maxLength = 25,
                             .toolTip = tr("The PIN of patrons who have none of their own")}};
};

/// Which web services patrons may use to change their PIN and SMS number.
class frmWS_Configuration : public SingleRecordScreen {
    Q_OBJECT

public:
    frmWS_Configuration(Application& application, QWidget* parent);

private:
    WebServiceForm m_form;
};

} // namespace sysadmin
