#pragma once

#include "framework/MaintenanceScreen.h"

namespace sysadmin {

struct NoFillReasonForm : Form {
    TextField txtCode{*this,
                      {.name = "txtCode",
                       .tag = "C",
                       .caption = tr("Code:"),
                       .maxLength = CodeLength,
                       .required = true,
                       .column = {tr("Codes"), 120}}};
    TextField txtDescription{*this,
                             {.name = "txtDescription",
                              .tag = "D",
                              .caption = tr("Description:"),
                              .maxLength = NameLength,
                              .required = true,
                              .column = {tr("Descriptions")}}};
    FlagField chkSuppress{*this,
                          {.name = "chkSuppress",
                           .tag = "S",
                           .caption = tr("Suppress"),
                           .toolTip = tr("A suppressed reason is not offered any more."),
                           .column = {.caption = tr("Suppress"), .width = 80, .yesNo = true}}};
};

/// Why a call slip could not be filled.
class frmCallSlip_NoFillReasons : public MaintenanceScreen {
    Q_OBJECT

public:
    frmCallSlip_NoFillReasons(Application& application, QWidget* parent);

private:
    NoFillReasonForm& m_form = KeepForm<NoFillReasonForm>();
};

} // namespace sysadmin
