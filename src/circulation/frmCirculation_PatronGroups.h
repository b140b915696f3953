#pragma once

#include "framework/MaintenanceScreen.h"
#include "framework/forms/RowsField.h"
#include "wire/Counts.h"

#include <QHash>

namespace sysadmin {

struct PatronGroupForm : Form {
    PatronGroupForm();

    /// Cells of a row of the limits: the row's key is the item type.
    enum LimitCell { ItemTypeName, CurrentLimit, NewLimit };

    TextField txtCode{*this,
                      {.name = "txtCode",
                       .tag = "Cd",
                       .caption = tr("Code:"),
                       .maxLength = CodeLength,
                       .required = true,
                       .column = {tr("Codes"), 160}}};
    TextField txtName{*this,
                      {.name = "txtName",
                       .tag = "Nm",
                       .caption = tr("Name:"),
                       .maxLength = NameLength,
                       .required = true,
                       .column = {tr("Names")}}};
    TextField txtDisplayName{
        *this,
        {.name = "txtDisplayName", .tag = "Dsp", .caption = tr("Display Name:"), .maxLength = NameLength}};
    FlagField chkDemeritsApply{
        *this, {.name = "chkDemeritsApply", .tag = "DemAply", .caption = tr("Demerits Apply")}};
    NumberField txtMaxDemerits{*this,
                               {.name = "txtMaxDemerits",
                                .tag = "MaxDem",
                                .caption = tr("Max Demerits:"),
                                .required = true,
                                .enabledBy = "chkDemeritsApply",
                                .most = wire::MostCount}};
    NumberField txtSuspensionDays{*this,
                                  {.name = "txtSuspensionDays",
                                   .tag = "SusDays",
                                   .caption = tr("Suspension Days:"),
                                   .required = true,
                                   .enabledBy = "chkDemeritsApply",
                                   .most = wire::MostCount}};
    FlagField chkOPACMessages{*this,
                              {.name = "chkOPACMessages",
                               .tag = "ChrgdStatDsply",
                               .caption = tr("Display OPAC Messages for charged Items")}};
    FlagField chkChargeLimit{*this,
                             {.name = "chkChargeLimit",
                              .tag = "PatChrgLmtAply",
                              .caption = tr("Charged items limit for all item types")}};
    NumberField txtChargeLimit{*this,
                               {.name = "txtChargeLimit",
                                .tag = "PatChrgLmt",
                                .required = true,
                                .accessible = tr("Charged items limit for all item types"),
                                .enabledBy = "chkChargeLimit",
                                .most = wire::MostCount}};
    RowsField vsfItemTypes;
};

/// The patron groups of a cluster: who they are, how many demerits suspend them, how many items they may have
/// charged, of all types and of single ones.
class frmCirculation_PatronGroups : public MaintenanceScreen {
    Q_OBJECT

public:
    frmCirculation_PatronGroups(Application& application, QWidget* parent);

protected:
    void BeforeLoad() override;
    bool FillForm(Table& table, const GridRow& row) override;
    bool PrepareNew(Table& table) override;
    std::optional<Box> QuestionBeforeSave(Table& table) override;
    bool SendSteps(Table& table) override;

private:
    void AskDemerits();
    /// Reads the limits for item types; of a new group (no key) there are none yet.
    bool ReadLimits(const QString& key);

    QHash<QString, QString> m_limits; // by item type, as the server has them; empty: none
    PatronGroupForm& m_form = KeepForm<PatronGroupForm>();
};

} // namespace sysadmin
