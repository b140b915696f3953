#pragma once

#include "circulation/PolicyForm.h"
#include "circulation/frmCirculation_Matrix.h"
#include "framework/MaintenanceScreen.h"

namespace sysadmin {

/// Circulation policy groups of the current cluster: their locations, calendars, rules for patron groups,
/// settings for item types, group-wide settings and the matrix of loan rules.
class frmCirculation_PolicyDef : public MaintenanceScreen {
    Q_OBJECT

public:
    frmCirculation_PolicyDef(Application& application, QWidget* parent);

protected:
    void BeforeLoad() override;
    bool FillForm(Table& table, const GridRow& row) override;
    bool PrepareNew(Table& table) override;
    void RefreshOwnControls() override;

private:
    void AddSteps(TableSpec& spec);
    Layout DrawForm();
    QList<PutStep> Puts() const;
    void PutGroup(const QString& id);
    QString ClusterId() const;
    MatrixGroup GroupOf(const QString& id) const;
    void TestLoan();
    bool ReadGroup(const QString& id, const QString& caption);
    bool StoreNewGroup();
    RowAsker LocationAsker();
    bool PrepareLocation(const GridRow& row);
    bool Ask(const QString& request, const QString& location = {});
    std::optional<PatronAlerts> ReadAlerts(const QString& location);
    std::optional<QList<PickItem>> ReadAlertKinds();
    void OfferChoices();
    void AskForSeveralItems();

    PolicyDialogs m_dialogs;
    PolicyForm& m_form = KeepForm<PolicyForm>(m_dialogs);
    MatrixPages* m_matrix = nullptr;
    QPushButton* m_cmdTestLoan = nullptr;
};

} // namespace sysadmin
