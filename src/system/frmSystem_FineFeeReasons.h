#pragma once

#include "framework/MaintenanceScreen.h"

namespace sysadmin {

struct FineFeeReasonForm : Form {
    TextField txtCode{*this,
                      {.name = "txtCode",
                       .tag = "Cd",
                       .caption = tr("Code:"),
                       .maxLength = CodeLength,
                       .required = true,
                       .column = {tr("Codes"), 120},
                       .changedTag = "NCd"}};
    TextField txtName{*this,
                      {.name = "txtName",
                       .tag = "Nm",
                       .caption = tr("Name:"),
                       .maxLength = NameLength,
                       .required = true,
                       .column = {tr("Names")},
                       .changedTag = "NNm"}};
};

struct PaymentTypeForm : Form {
    TextField txtPaymentName{*this,
                             {.name = "txtPaymentName",
                              .tag = "PNm",
                              .caption = tr("Name:"),
                              .maxLength = NameLength,
                              .required = true,
                              .column = {tr("Names")}}};
};

struct PostingTypeForm : Form {
    TextField txtPostingName{*this,
                             {.name = "txtPostingName",
                              .tag = "PstNm",
                              .caption = tr("Name:"),
                              .maxLength = NameLength,
                              .required = true,
                              .column = {tr("Names")},
                              .changedTag = "NNm"}};
    FlagField chkFines{
        *this,
        {.name = "chkFines", .tag = "TF", .caption = tr("Fines"), .column = {tr("Fines"), 0, true, true}}};
    FlagField chkDemerits{*this,
                          {.name = "chkDemerits",
                           .tag = "TD",
                           .caption = tr("Demerits"),
                           .column = {tr("Demerits"), 0, true, true}}};
};

/// Fine and fee reasons, payment types and posting types: three tables on tabs with one set of buttons.
class frmSystem_FineFeeReasons : public MaintenanceScreen {
    Q_OBJECT

public:
    frmSystem_FineFeeReasons(Application& application, QWidget* parent);
    void LoadScreen() override;

protected:
    void LoadList(Table& table) override;
    QString EditCaption(const Table& table, State state) const override;

private:
    FineFeeReasonForm& m_reason = KeepForm<FineFeeReasonForm>();
    PaymentTypeForm& m_payment = KeepForm<PaymentTypeForm>();
    PostingTypeForm& m_posting = KeepForm<PostingTypeForm>();
    bool m_isOpening = false;
};

} // namespace sysadmin
