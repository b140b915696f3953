#pragma once

#include "cataloging/ImportTrial.h"

namespace sysadmin {

struct ImportRuleForm;
struct OrderSettingsForm;

/// By which hierarchy holdings at a location get their call numbers.
struct CallNumberPolicies {
    /// What the cataloging policy group of a location says.
    struct OfLocation {
        QString group;
        QString hierarchy; ///< id; empty: the default one
    };

    QList<CallNumberHierarchy> hierarchies{};
    QHash<QString, OfLocation> locations{}; ///< those that are in a group, by id

    /// Asks for them; the status of the request that failed, or 0.
    qint16 Read(RequestChannel& channel);
    /// Settles which hierarchy counts for a mapping that names none.
    void Settle(TriedMapping& mapping, const QString& location) const;
};

/// The rule in the form as plain values; `orders` holds its order settings, where it creates orders.
ImportTrialRule RuleToTry(const ImportRuleForm& form, const OrderSettingsForm& orders,
                          const CallNumberPolicies& callNumbers);
/// What the orders are compared with. It refers to `orders`.
TriedLibrary LibraryToTry(const OrderSettingsForm& orders);

} // namespace sysadmin
