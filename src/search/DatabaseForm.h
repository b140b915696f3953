#pragma once

#include "framework/SecretField.h"
#include "framework/forms/ListFields.h"
#include "framework/forms/PutList.h"

#include <array>
#include <memory>

namespace sysadmin {

/// One of the services of a database: address and port in a frame of their own.
struct ServiceFields {
    ServiceFields(Form& form, const QString& role, const QString& frameCaption, const QString& addressTag,
                  const QString& portTag);

    QString role;
    QString caption;
    TextField address;
    NumberField port;
};

/// A database that staff and public clients can search: one of the library system's own, here or in another
/// library, or a Z39.50 target.
struct DatabaseForm : Form {
    DatabaseForm();

    bool IsTarget() const;
    /// Whether the record, as it was read, is the library's own database.
    bool IsLocal() const;
    /// What a save puts, in order.
    QList<PutStep> Puts() const;

    TextField txtCode;
    TextField txtName;
    ChoiceField cboType;
    FlagField chkPublicUse;
    FlagField chkUB;
    TextField txtKey;
    std::array<std::unique_ptr<ServiceFields>, 6> services; ///< the first is the public catalogue's
    TextField txtDatabaseName;
    TextField txtUserID;
    SecretField txtPassword;
    NumberField txtWeight;
    NumberField txtMaxHit;
    NumberField txtTimeout;
    FlagField chkOPACSuppress;
    FlagField chkStaffSuppress;
    ChoiceField cboHoldingsHook;
    ChoiceField cboCharSet;
    RowsField vsfAttributes;
    PickedField accessGroups;
    RowsField vsfRemoteClusters;
};

/// The text that the lists show for a type.
QString DatabaseTypeText(const QString& type);

} // namespace sysadmin
