#pragma once

#include "framework/MaintenanceScreen.h"
#include "framework/forms/ListFields.h"
#include "security/PasswordCheck.h"

#include <QPointer>

class QCheckBox;

namespace sysadmin {

struct OperatorForm : Form {
    OperatorForm();
    /// Whether the password was expired when the record was read.
    bool IsExpired() const { return chkExpireNow.Stored() == u"Y"; }
    bool HasNewPassword() const { return !txtPassword.IsBlank(); }

    TextField txtOperatorID{*this,
                            {.name = "txtOperatorID",
                             .tag = "OI",
                             .caption = tr("Operator ID:"),
                             .maxLength = OperatorIdLength,
                             .required = true}};
    TextField txtLastName{*this,
                          {.name = "txtLastName",
                           .tag = "LNm",
                           .caption = tr("Last Name:"),
                           .maxLength = OperatorNameLength,
                           .required = true}};
    TextField txtFirstName{*this,
                           {.name = "txtFirstName",
                            .tag = "FNm",
                            .caption = tr("First Name:"),
                            .maxLength = OperatorNameLength}};
    TextField txtMIName{*this, {.name = "txtMIName", .tag = "MI", .caption = tr("M.I."), .maxLength = 1}};
    PasswordField txtPassword{
        *this,
        {.name = "txtPassword", .caption = tr("Password:"), .maxLength = LongestPassword, .required = true}};
    FlagField chkSkipValidation{
        *this, {.name = "chkSkipValidation", .tag = "SPV", .caption = tr("Skip password validation")}};
    FlagField chkNeverExpire{
        *this, {.name = "chkNeverExpire", .tag = "Nexp", .caption = tr("This password never expires")}};
    FlagField chkRestrictChange{
        *this, {.name = "chkRestrictChange", .tag = "Rchg", .caption = tr("Restrict password change")}};
    FlagField chkExpireNow{
        *this, {.name = "chkExpireNow", .tag = "Exp", .caption = tr("Expire password immediately")}};
    TextField txtStatus{
        *this, {.name = "txtStatus", .caption = tr("Status:"), .maxLength = 12, .displayOnly = true}};
    TextField lblCreateDate{*this,
                            {.name = "lblCreateDate",
                             .tag = "CrDt",
                             .caption = tr("Create Date:"),
                             .maxLength = 12,
                             .displayOnly = true,
                             .format = "MM/dd/yyyy"}};
    TextField lblModifyDate{*this,
                            {.name = "lblModifyDate",
                             .tag = "MdDt",
                             .caption = tr("Modify Date:"),
                             .maxLength = 12,
                             .displayOnly = true,
                             .format = "MM/dd/yyyy"}};
    TextField lblModifyOperator{*this,
                                {.name = "lblModifyOperator",
                                 .tag = "MdOpr",
                                 .caption = tr("Modify Operator:"),
                                 .maxLength = 20,
                                 .displayOnly = true}};
    RowsField vsfOperatorList{
        *this,
        {.name = "vsfOperatorList", .displayOnly = true, .accessible = tr("Current Profiles")},
        {{tr("Profiles")}}};
};

/// The staff accounts that sign on to the library system: names, password and its state, and the rights
/// profiles that each belongs to.
class frmSecurity_OperatorProfiles : public MaintenanceScreen {
    Q_OBJECT

public:
    frmSecurity_OperatorProfiles(Application& application, QWidget* parent);

protected:
    void PutListKey(const Table& table) override;
    GridRow ReadRow(const Table& table) override;
    void ReadRecord(Table& table) override;
    bool CheckBeforeSave(Table& table) override;
    void PutRecord(Table& table, const SaveContext& context) override;
    void ReportSaveFailure(Table& table, qint16 status) override;
    GridRow RowFromForm(const Table& table, const QString& key) const override;
    void AfterSave(Table& table, const GridRow& row, bool wasNew) override;
    bool ConfirmRowDelete(Table& table, const GridRow& row) override;
    bool MayDeleteRow(const GridRow& row) const override;
    void RefreshOwnControls() override;

private:
    QWidget* MakeSlot(const QString& name);
    void SortBy(int column);
    void ShowSortOrder();
    bool SendGet(const QString& operation);
    void ShowStatus();
    void ChangePassword();
    void ExpireNow();
    void ShowLockout();
    void Compare();
    wire::PasswordOwner Owner() const;

    OperatorForm& m_form = KeepForm<OperatorForm>();
    QString m_sort = "L";
    bool m_locked = false;
    bool m_liftsExpiry = false; // what is being saved replaces an expired password
    QPushButton* m_cmdChangePassword = nullptr;
    QPushButton* m_cmdExpire = nullptr;
    QPushButton* m_cmdLockoutStatus = nullptr;
    QPushButton* m_cmdCompare = nullptr;
    QCheckBox* m_chkShowPassword = nullptr;
    QPointer<QWidget> m_fraAccount;
};

} // namespace sysadmin
