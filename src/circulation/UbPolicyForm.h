#pragma once

#include "framework/forms/ValueFields.h"

namespace sysadmin {

/// A limit of universal borrowing: its tags and what it is called.
struct UbLimitSpec {
    const char* role;    ///< in control names
    const char* applies; ///< tags
    const char* most;
    const char* blocks;
    const char* appliesCaption; ///< to be translated in the context "UbPolicy"
    const char* mostCaption;
    bool isMoney = false;
    bool isDemerits = false;
};
const QList<UbLimitSpec>& UbLimits();
/// A caption of those.
QString UbCaption(const char* caption);

/// A limit on the form: whether it applies, the number or amount, whether who reaches it is blocked here too.
struct UbLimit {
    UbLimit(Form& form, const UbLimitSpec& spec);

    const UbLimitSpec& spec;
    FlagField applies;
    std::unique_ptr<ValueField> most;
    FlagField blocks;
};

/// What a patron group may do at other libraries. Without eligibility nothing else counts.
struct UbPolicyForm : Form {
    UbPolicyForm();

    FlagField chkUBEligible{*this, {.name = "chkUBEligible", .tag = "UBE", .caption = tr("UB Eligible")}};
    std::vector<std::unique_ptr<UbLimit>> limits;
};

} // namespace sysadmin
