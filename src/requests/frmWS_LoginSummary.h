#pragma once

#include "framework/SingleRecordScreen.h"

namespace sysadmin {

/// The markers in the alert texts (two backslashes and a letter) belong to the web service; nothing here
/// reads or changes them.
struct LoginSummaryForm : Form {
    FlagField chkWebService{*this,
                            {.name = "chkWebService", .tag = "LSE", .caption = tr("Enable &Web Service?")}};
    FlagField chkOverdue{*this,
                         {.name = "chkOverdue", .tag = "OA", .caption = tr("Patron has &overdue items")}};
    TextField txtOverdue{*this,
                         {.name = "txtOverdue",
                          .tag = "OAT",
                          .maxLength = 250,
                          .initial = tr("You have overdue materials at \\\\l."),
                          .accessible = tr("Overdue alert text")}};
    FlagField chkFines{*this, {.name = "chkFines", .tag = "FA", .caption = tr("Patron owes &fines/fees")}};
    TextField txtFines{*this,
                       {.name = "txtFines",
                        .tag = "FAT",
                        .maxLength = 250,
                        .initial = tr("You have outstanding fines/fees at \\\\l."),
                        .accessible = tr("Fines/fees alert text")}};
    FlagField chkBlocks{*this, {.name = "chkBlocks", .tag = "BA", .caption = tr("Patron has &blocks")}};
    TextField txtBlocks{*this,
                        {.name = "txtBlocks",
                         .tag = "BAT",
                         .maxLength = 250,
                         .initial = tr("You have circulation blocks at \\\\l."),
                         .accessible = tr("Blocks alert text")}};
    FlagField chkExpire{*this,
                        {.name = "chkExpire", .tag = "EA", .caption = tr("Patron access will &expire")}};
    TextField txtExpire{*this,
                        {.name = "txtExpire",
                         .tag = "EAT",
                         .maxLength = 250,
                         .initial = tr("Your account will expire on \\\\d, \\\\n days from today."),
                         .accessible = tr("Expiration alert text")}};
    NumberField txtExpirationDays{
        *this,
        {.name = "txtExpirationDays", .tag = "ED", .caption = tr("Expiration Alert &Days:"), .initial = "30"},
        0,
        9999};
};

/// The alerts that a patron gets to see after logging in.
class frmWS_LoginSummary : public SingleRecordScreen {
    Q_OBJECT

public:
    frmWS_LoginSummary(Application& application, QWidget* parent);

private:
    LoginSummaryForm m_form;
};

} // namespace sysadmin
