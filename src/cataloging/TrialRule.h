#pragma once

#include "cataloging/ImportTrial.h"

namespace sysadmin {

struct ImportRuleForm;
struct OrderSettingsForm;

/// The rule in the form as plain values; `orders` holds its order settings, where it creates orders.
ImportTrialRule RuleToTry(const ImportRuleForm& form, const OrderSettingsForm& orders);
/// What the orders are compared with. It refers to `orders`.
TriedLibrary LibraryToTry(const OrderSettingsForm& orders);

} // namespace sysadmin
