#pragma once

#include "framework/MaintenanceScreen.h"

namespace sysadmin {

/// A percentage that counts, and must be given, only while its check box is checked.
class PercentField : public NumberField {
public:
    PercentField(Form& form, const FlagField& flag, const QString& name, const QString& tag,
                 const QString& accessible)
        : NumberField(form, {.name = name,
                             .tag = tag,
                             .maxLength = 3,
                             .required = true,
                             .unit = "%",
                             .accessible = accessible,
                             .most = 999}) {
        EnableBy(flag);
    }
};

struct FundTypeForm : Form {
    TextField txtName{*this,
                      {.name = "txtName",
                       .tag = "Nm",
                       .caption = tr("Fund Type Name:"),
                       .maxLength = TextLength,
                       .required = true}};
    FlagField chkOverCommitWarning{
        *this, {.name = "chkOverCommitWarning", .tag = "OCW", .caption = tr("Overcommit Warning:")}};
    PercentField txtOvercommitWarningPercent{*this, chkOverCommitWarning, "txtOvercommitWarningPercent",
                                             "OCWP", tr("Overcommit warning percentage")};
    FlagField chkOverexpendWarning{
        *this, {.name = "chkOverexpendWarning", .tag = "OEW", .caption = tr("Overexpend Warning:")}};
    PercentField txtOverexpendWarningPercent{*this, chkOverexpendWarning, "txtOverexpendWarningPercent",
                                             "OEWP", tr("Overexpend warning percentage")};
    FlagField chkOverCommitLimit{
        *this, {.name = "chkOverCommitLimit", .tag = "OCL", .caption = tr("Overcommit Limit:")}};
    PercentField txtOvercommitLimitPercent{*this, chkOverCommitLimit, "txtOvercommitLimitPercent", "OCLP",
                                           tr("Overcommit limit percentage")};
    FlagField chkOverexpendLimit{
        *this, {.name = "chkOverexpendLimit", .tag = "OEL", .caption = tr("Overexpend Limit:")}};
    PercentField txtOverexpendLimitPercent{*this, chkOverexpendLimit, "txtOverexpendLimitPercent", "OELP",
                                           tr("Overexpend limit percentage")};
    FlagField chkUndercommit{*this, {.name = "chkUndercommit", .tag = "UC", .caption = tr("Undercommit:")}};
    PercentField txtUnderCommitPercent{*this, chkUndercommit, "txtUnderCommitPercent", "UCP",
                                       tr("Undercommit percentage")};
    FlagField chkUnderexpend{*this, {.name = "chkUnderexpend", .tag = "UE", .caption = tr("Underexpend:")}};
    PercentField txtUnderexpendPercent{*this, chkUnderexpend, "txtUnderexpendPercent", "UEP",
                                       tr("Underexpend percentage")};
};

/// Fund types: from which share of a fund's allocation on staff are warned or stopped.
class frmAcquisitions_FundTypes : public MaintenanceScreen {
    Q_OBJECT

public:
    frmAcquisitions_FundTypes(Application& application, QWidget* parent);

private:
    FundTypeForm& m_form = KeepForm<FundTypeForm>();
};

} // namespace sysadmin
