#pragma once

#include "framework/MaintenanceScreen.h"
#include "framework/forms/ListFields.h"

namespace sysadmin {

struct ClusterForm : Form {
    ClusterForm();

    TextField txtCode{*this,
                      {.name = "txtCode",
                       .tag = "CCD",
                       .caption = tr("Cluster Code:"),
                       .maxLength = CodeLength,
                       .required = true}};
    TextField txtName{*this,
                      {.name = "txtName",
                       .tag = "CNM",
                       .caption = tr("Cluster Name:"),
                       .maxLength = NameLength,
                       .required = true}};
    /// Entries: id a location's, data its policy group's.
    CheckedField lstOpacCircDesk{
        *this,
        {.name = "lstOpacCircDesk",
         .caption = tr("OPAC Circ Desk:"),
         .toolTip = tr("The circulation desk that serves requests from the public catalogue.")}};
    ChoiceField lstDefPULoc{
        *this, {.name = "lstDefPULoc", .tag = "CPLID", .caption = tr("Default Pickup Location:")}};
    FlagField chkBlockLocalTrans{
        *this,
        {.name = "chkBlockLocalTrans",
         .tag = "BLT",
         .caption = tr("Block local transactions for reaching UB aggregate limits.")}};
};

/// Circulation clusters: groups of circulation policy groups and their locations. Rights of their own say who
/// may make, change and delete them.
class frmClusterMaintenance : public MaintenanceScreen {
    Q_OBJECT

public:
    frmClusterMaintenance(Application& application, QWidget* parent);

protected:
    void BeforeLoad() override;
    void PutListKey(const Table& table) override;
    void ReportLoadFailure(Table& table, qint16 status) override;
    void ReadRecord(Table& table) override;
    bool CheckBeforeSave(Table& table) override;
    void AfterSave(Table& table, const GridRow& row, bool wasNew) override;
    bool ConfirmRowDelete(Table& table, const GridRow& row) override;
    void AfterDelete(Table& table, const GridRow& row) override;
    QString EditCaption(const Table& table, State state) const override;

private:
    bool m_mayEdit = false;
    ClusterForm& m_form = KeepForm<ClusterForm>();
};

} // namespace sysadmin
