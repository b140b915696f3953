#pragma once

#include "framework/forms/Layout.h"
#include "framework/forms/ListFields.h"
#include "framework/forms/ValueFields.h"

namespace sysadmin {

class Application;

/// A whole number from 0 to 9999; nothing entered is 0.
class MatrixCountField : public NumberField {
public:
    MatrixCountField(Form& form, const QString& name, const QString& tag, const QString& caption,
                     const QString& unit = {});

protected:
    QString ToWire() const override { return IsBlank() ? "0" : Draft(); }
};

/// How long something is lent: a number from 0 to 9999, with decimals where there are any.
class LoanPeriodField : public TextField {
public:
    using TextField::TextField;
    QString Problem() const override;

protected:
    QString ToWire() const override { return IsBlank() ? "0" : Draft(); }
};

/// What the circulation settings mean for the matrix.
struct MatrixSettings {
    bool usesDemerits = false; ///< fines count demerits
    bool allowsUb = false;     ///< requests by universal borrowing are possible
};
/// Asks for them; a failure leaves all off, and is no reason to keep anybody from a rule.
MatrixSettings AskMatrixSettings(Application& application);

/// A loan rule: what an entry of the matrix says. The short-loan page has controls of its own for what the
/// loan page shows, too; both edit the same value.
struct MatrixForm : Form {
    explicit MatrixForm(const Application& application, const MatrixSettings& settings);

    FlagField chkChargeRenew;
    FlagField chkHold;
    FlagField chkRecall;
    FlagField chkCallSlip;
    FlagField chkUB;
    LoanPeriodField txtLoanPeriod;
    ChoiceField cboLoanPeriod;
    MatrixCountField txtGracePeriod;
    MoneyField txtFineRate;
    ChoiceField cboFineInterval;
    MoneyField txtMaxFine;
    MatrixCountField txtMaxRenewals;
    MatrixCountField txtRenewalPeriod;
    ChoiceField cboRenewalPeriod;
    LetterField optRenewFrom;
    MatrixCountField txtRecallReturnInterval;
    MatrixCountField txtMinLoanRecalled;
    MatrixCountField txtRecallGracePeriod;
    MoneyField txtRecallFineRate;
    ChoiceField cboRecallFineInterval;
    MoneyField txtMaxRecallFine;
    FlagField chkMaxItems;
    MatrixCountField txtMaxItems;
    // Short loans only.
    FlagField chkBookingsOnOverdue;
    FlagField chkNextFixedDueTime;
    MatrixCountField txtWarningPeriod;
    ChoiceField cboWarningPeriod;
    // Notices.
    MatrixCountField txtCourtesyInterval;
    MatrixCountField txtMinLoanCourtesy;
    MatrixCountField txtFirstOverdue;
    MatrixCountField txtLostInterval;
    MatrixCountField txtOverdueCount;
    MatrixCountField txtOverdueInterval;
    MatrixCountField txtRecallNoticeCount;
    MatrixCountField txtRecallNoticeInterval;
    MatrixCountField txtHoldShelfLife;
    ChoiceField cboHoldShelfLife;

    /// Whether it is the rule of an item type that is lent as a short loan.
    bool IsShortLoan() const { return m_isShortLoan; }
    void SetShortLoan(bool isShortLoan);

    /// The fields that travel with such a rule, in the order in which they do.
    QList<ValueField*> InOrder();
    /// The loan unit's dependent units.
    QList<ChoiceField*> DependentUnits();
    /// The units that a dependent field may have with a loan unit, the first one to be chosen; empty: the
    /// loan unit leaves them as they are.
    QList<PickItem> UnitsFor(const ChoiceField& dependent, const QString& loanUnit) const;
    /// "Loan", "Short Loan" and "Notices", behind another page where there is one.
    Layout Pages(const QList<Layout>& before = {});
    /// The fields in which a zero is worth a question, by the names in which it is asked.
    QStringList Zeros() const;

private:
    void FollowLoanUnit();
    void RelabelUnits();

    bool m_showsUb = false;
    bool m_isShortLoan = false;
};

} // namespace sysadmin
