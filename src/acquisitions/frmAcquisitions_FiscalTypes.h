#pragma once

#include "framework/MaintenanceScreen.h"

namespace sysadmin {

struct FiscalPeriodForm : Form {
    TextField txtName{*this,
                      {.name = "txtName",
                       .tag = "Nm",
                       .caption = tr("Fiscal Period Name:"),
                       .maxLength = TextLength,
                       .required = true,
                       .column = {tr("Names")},
                       .changedTag = "NNm"}};
    DateField fpStartDate{
        *this, {.name = "fpStartDate", .tag = "StDt", .caption = tr("Start Date:"), .required = true}};
    // The period includes the whole of its last day.
    DateField fpEndDate{*this,
                        {.name = "fpEndDate",
                         .tag = "EDt",
                         .caption = tr("End Date:"),
                         .required = true,
                         .suffix = " 23:59:59"}};

    std::optional<Finding> FormProblem() override;
};

/// Fiscal periods, each from a first to a last day.
class frmAcquisitions_FiscalTypes : public MaintenanceScreen {
    Q_OBJECT

public:
    frmAcquisitions_FiscalTypes(Application& application, QWidget* parent);

private:
    FiscalPeriodForm& m_form = KeepForm<FiscalPeriodForm>();
};

} // namespace sysadmin
