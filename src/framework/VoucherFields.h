#pragma once

#include "framework/SecretField.h"
#include "framework/forms/Layout.h"

namespace sysadmin {

/// The numbered vouchers with which a library pays for what it orders by e-mail: sign-on, range, and the one
/// that was used last. The password travels under `passwordTag`, its mark under "PC".
struct VoucherFields {
    VoucherFields(Form& form, const QString& passwordTag);

    static QString PageCaption();
    QList<Layout> Draw();
    QList<const Field*> All() const;
    /// The range begins before it ends and holds the voucher that was used last.
    std::optional<Form::Finding> Problem();

    TextField txtLogin;
    SecretField txtPassword;
    TextField txtPrefix;
    NumberField txtStart;
    NumberField txtEnd;
    NumberField txtLastUsed;
};

} // namespace sysadmin
