#pragma once

#include "framework/forms/PickedLists.h"
#include "framework/forms/ValueFields.h"

#include <functional>

namespace sysadmin {

/// What a save knows of the record besides its fields.
struct SaveContext {
    bool isNew = false;
    QString originalKey; ///< empty for a new record
};

/// One step of filling an add or update request. A screen states its steps in the order in which they are
/// put.
using PutStep = std::function<void(RequestChannel&, const SaveContext&)>;

/// The field's draft under its tag.
PutStep PutValue(const Field& field);
/// A fixed value.
PutStep PutConstant(const QString& tag, const QString& value);
/// Y or N: whether the field differs from what was loaded.
PutStep PutChanged(const QString& tag, const Field& field);
/// The key that the record had when editing began.
PutStep PutOriginalKey(const QString& tag);
/// A flag and, only when it is checked, the value that depends on it.
PutStep PutWhenOn(const FlagField& flag, const Field& value);
/// The rows moved out ("3") and moved in ("1"): each its id under `idTag` and its state under `stateTag`.
PutStep PutRemovals(const PickedLists& lists, const QString& idTag, const QString& stateTag);
PutStep PutAdditions(const PickedLists& lists, const QString& idTag, const QString& stateTag);
/// The step, only for a changed (not a new) record.
PutStep OnUpdate(PutStep step);
/// The step, only for a new record.
PutStep OnAdd(PutStep step);

} // namespace sysadmin
