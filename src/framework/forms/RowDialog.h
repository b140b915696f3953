#pragma once

#include "framework/forms/GridRow.h"

#include <functional>
#include <memory>
#include <optional>

class QWidget;

namespace sysadmin {

class Form;
class Prompter;

/// What is said once about a dialog that edits a form.
struct FormDialogSpec {
    QString name{}; ///< the dialog's name ("frmSystem_PhoneNumbers")
    QString title{};
    int helpContext = 0; ///< number of its help topic
    QString okName = "cmdOK";
    QString cancelName = "cmdCancel";
    QString focus{};        ///< the field in which it begins; empty: the first one
    QString okCaption{};    ///< empty: "&OK"
    QString newCaption{};   ///< the same for a new row; empty: as for any other
    QString refusalTitle{}; ///< of the box that says why the row is not taken; empty: the program's
    bool readOnly = false;
    /// Several records at once: a box in front of each field says whether it is written to them.
    bool several = false;
    /// Says why the entry is not taken; empty takes it. Asked after the form's own checks.
    std::function<QString()> check{};
    /// Makes the widget of a slot of the layout, by the slot's name.
    std::function<QWidget*(const QString& name)> makeSlot{};
};

/// Says why a row is not taken; empty takes it. `former` is the row as it was, null for a new one.
using RowCheck = std::function<QString(const GridRow& row, const GridRow* former)>;

/// The dialog in which the operator enters a row: what is said about it, and how it asks.
struct RowAsker {
    /// Asks in a dialog that closes only over a row that the check takes; none when the operator gives up.
    /// `former` as above.
    using Ask = std::function<std::optional<GridRow>(const FormDialogSpec& dialog, QWidget* parent,
                                                     Prompter& prompter, const GridRow* former,
                                                     const RowCheck& check)>;

    FormDialogSpec dialog{};
    Ask ask{};
    std::shared_ptr<Form> form{}; ///< whose fields are asked for; null: the dialog has controls of its own
    QStringList captions{};       ///< of those controls

    explicit operator bool() const { return ask != nullptr; }
};

} // namespace sysadmin
