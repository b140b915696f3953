#pragma once

#include "framework/MaintenanceScreen.h"

namespace sysadmin {

struct PrintLocationForm : Form {
    TextField txtCode{*this,
                      {.name = "txtCode",
                       .tag = "Cd",
                       .caption = tr("Code:"),
                       .maxLength = PrintLocationCodeLength,
                       .required = true,
                       .changedTag = "NCd"}};
    TextField txtName{*this,
                      {.name = "txtName",
                       .tag = "Nm",
                       .caption = tr("Name:"),
                       .maxLength = TextLength,
                       .required = true,
                       .changedTag = "NNm"}};
    FlagField chkDefault{
        *this,
        {.name = "chkDefault",
         .tag = "DP",
         .caption = tr("Default Print Location"),
         .toolTip = tr("There is always one: marking another print location takes the mark from this one.")}};
    FlagField chkCircGroups{*this, {.name = "chkCircGroups", .tag = "CG", .caption = tr("Circulation")}};
    FlagField chkAcqGroups{*this, {.name = "chkAcqGroups", .tag = "AG", .caption = tr("Acquisitions")}};
    FlagField chkMediaGroups{*this,
                             {.name = "chkMediaGroups", .tag = "MSG", .caption = tr("Media Scheduling")}};
    FlagField chkCatGroups{*this, {.name = "chkCatGroups", .tag = "CtG", .caption = tr("Cataloging")}};
};

/// Print locations: where slips and notices are printed, and which policy groups may choose them.
class frmSystem_PrintLocations : public MaintenanceScreen {
    Q_OBJECT

public:
    frmSystem_PrintLocations(Application& application, QWidget* parent);

protected:
    bool PrepareNew(Table& table) override;

private:
    PrintLocationForm& m_form = KeepForm<PrintLocationForm>();
};

} // namespace sysadmin
