#pragma once

#include "framework/SingleRecordScreen.h"

namespace sysadmin {

struct SystemMiscellaneousForm : Form {
    FlagField chkCircHistory{
        *this, {.name = "chkCircHistory", .tag = "RP", .caption = tr("Retain Patron Id for Circ History")}};
    FlagField chkMediaHistory{*this,
                              {.name = "chkMediaHistory",
                               .tag = "MP",
                               .caption = tr("Retain Patron Id for Media Booking History")}};
    FlagField chkDistHistory{
        *this,
        {.name = "chkDistHistory", .tag = "D", .caption = tr("Retain Patron Id for Distribution History")}};
    FlagField chkDisplayHeadSubSep{*this,
                                   {.name = "chkDisplayHeadSubSep",
                                    .tag = "DSS",
                                    .caption = tr("Display Headings Subfield Separators")}};
};

/// System-wide switches that belong to no other screen.
class frmSystem_Misc : public SingleRecordScreen {
    Q_OBJECT

public:
    frmSystem_Misc(Application& application, QWidget* parent);

private:
    SystemMiscellaneousForm m_form;
};

} // namespace sysadmin
