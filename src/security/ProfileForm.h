#pragma once

#include "framework/forms/Layout.h"
#include "framework/forms/ListFields.h"
#include "framework/forms/ValueFields.h"
#include "security/ProfileSpec.h"

#include <deque>
#include <optional>

namespace sysadmin {

/// The record of a module rights profile: its name, its rights, and whom and where it holds for.
struct ProfileForm : Form {
    explicit ProfileForm(const ProfileSpec& spec);

    Layout Draw();
    FlagField* FindRight(const QString& tag);
    /// Whether the filter lets the right be seen: by its caption or by its sentence.
    bool Shows(const FlagField& right) const;

    const ProfileSpec& spec;
    QString filter; ///< of the rights; empty shows all
    TextField txtName{
        *this, {.name = "txtName", .tag = "Nm", .caption = tr("Name:"), .maxLength = 40, .required = true}};
    std::deque<FlagField> rights;
    std::optional<ChoiceField> cboLevel;
    PickedField operators;
    std::optional<FlagField> chkAllLocations;
    std::optional<PickedField> locations;
    std::deque<PickedField> lists;
};

} // namespace sysadmin
