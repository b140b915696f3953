#pragma once

#include "framework/ConflictDialog.h"
#include "framework/forms/GridRow.h"

#include <functional>
#include <optional>

namespace sysadmin {

class Application;
class Form;
class RequestChannel;

/// What the refusal in the channel's reply says about somebody else's change; none when the status is about
/// something else.
std::optional<Conflict> ConflictOf(const RequestChannel& channel, qint16 status, const QString& subject);

/// Settles a refused save. `readTheirs` reads the record anew into the form; false when that failed. The form
/// comes back with the operator's draft, as a change of what is stored now. A change by others of which this
/// form shows nothing needs no question: it answers SaveMine.
ConflictAnswer SettleSave(Application& application, QWidget* parent, const Conflict& conflict, Form& form,
                          bool canSave, const std::function<bool()>& readTheirs);

/// Why a change of several records was refused, in words: a line for each one that somebody else changed
/// after the list was read. `nameOf` says what the operator calls the record with the key.
QString ChangedByOthers(RequestChannel& channel, const QString& keyTag,
                        const std::function<QString(const QString& key)>& nameOf);

/// Settles a refused delete: the row as the operator saw it beside the row as it is now. SaveMine: delete.
ConflictAnswer SettleDelete(Application& application, QWidget* parent, const Conflict& conflict,
                            const QList<GridColumn>& columns, const GridRow& seen, const GridRow& now);

} // namespace sysadmin
