#pragma once

#include "cataloging/FieldOrder.h"
#include "framework/forms/ListFields.h"
#include "framework/forms/ValueFields.h"

namespace sysadmin {

/// The groups of a configuration in their order; each row holds a whole group.
class FieldOrderGroupsField : public RowsField {
public:
    FieldOrderGroupsField(Form& form, const FieldSpec& spec, OrderingRules& catalogue);

    QList<FieldOrderGroup> Groups() const;
    void SetStoredGroups(const QList<FieldOrderGroup>& groups);
    /// With all rules of each group, not "<multiple>".
    QStringList Words() const override;

private:
    GridRow RowOf(FieldOrderGroup group) const;
    FieldOrderGroup GroupOf(const GridRow& row) const;

    OrderingRules& m_catalogue;
};

/// A configuration: in which order the fields of MARC records are to stand.
struct FieldOrderForm : Form {
    explicit FieldOrderForm(OrderingRules& catalogue);

    /// What is entered now.
    FieldOrderConfig Draft() const;

    TextField txtName;
    TextField txtDescription;
    FlagField chkPairing880;
    FieldOrderGroupsField vsfGroups;
};

} // namespace sysadmin
