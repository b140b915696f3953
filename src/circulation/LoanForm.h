#pragma once

#include "framework/forms/Field.h"
#include "framework/forms/Layout.h"
#include "framework/forms/ValueFields.h"
#include "loan/Loan.h"

namespace sysadmin {

/// A date with a time; a date without a time takes the time of the loan.
struct MomentFields {
    MomentFields(Form& form, const QString& role);

    DateField date;
    TimeField time;
};

/// What is asked about a loan.
struct LoanForm : Form {
    static constexpr int Renewals = 3;

    LoanForm();
    Layout Draw();
    /// Begins with a loan at this moment and nothing else that happens.
    void Begin(const QDateTime& now);
    /// The question in the reckoning's own words.
    loan::Request Request() const;

    ChoiceField cboLocation{*this, {.name = "cboLocation", .caption = tr("&Location:")}};
    ChoiceField cboPatronGroup{*this, {.name = "cboPatronGroup", .caption = tr("&Patron Group:")}};
    ChoiceField cboItemType{*this, {.name = "cboItemType", .caption = tr("&Item Type:")}};
    MomentFields charged{*this, "Loan"};
    std::array<MomentFields, Renewals> renewed{
        {{*this, "Renewal1"}, {*this, "Renewal2"}, {*this, "Renewal3"}}};
    MomentFields recalled{*this, "Recall"};
    MomentFields returned{*this, "Return"};
    FlagField chkAlways{*this, {.name = "chkAlways", .caption = tr("Renewed whenever it is due")}};
    FlagField chkHold{*this, {.name = "chkHold", .caption = tr("Somebody waits for it")}};

private:
    std::optional<QDateTime> At(const MomentFields& moment) const;
};

} // namespace sysadmin
