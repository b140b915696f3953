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

    const ProfileSpec& spec;
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
