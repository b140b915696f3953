#pragma once

#include "framework/forms/ValueFields.h"

#include <concepts>
#include <functional>

namespace sysadmin {

/// What a save knows of the record besides its fields.
struct SaveContext {
    bool isNew = false;
    QString originalKey; ///< empty for a new record
};

/// One step of filling an add or update request, as data that can be read and compared. A screen's steps are
/// taken in order.
struct PutStep {
    enum class Kind {
        Value,    ///< the field's draft under its tag
        Draft,    ///< the field's draft once more under `tag`: the new text of what is known by its old one
        Constant, ///< `value` under `tag`
        Changed,  ///< Y or N under `tag`: whether the field differs from what was loaded
        OriginalKey, ///< under `tag` the key that the record had when editing began
        WhenOn,      ///< a flag and, only when it is checked, the field that depends on it
        Own          ///< the screen's own; `tag` only names it
    };
    enum class When { Always, Update };
    using Action = std::function<void(RequestChannel&, const SaveContext&)>;

    PutStep() = default;
    PutStep(Kind theKind, const QString& theTag, const Field* theField = nullptr)
        : kind(theKind)
        , tag(theTag)
        , field(theField) {}
    /// A step of the screen's own.
    template <std::invocable<RequestChannel&, const SaveContext&> Function>
    PutStep(Function function, const QString& theTag = {}) // NOLINT: such a function is a step
        : tag(theTag)
        , own(std::move(function)) {}

    void operator()(RequestChannel& channel, const SaveContext& context) const;
    /// The tag by which the step is known: the field's, where it puts a field.
    QString Tag() const;

    Kind kind = Kind::Own;
    When when = When::Always;
    QString tag{};
    QString value{};
    const Field* field = nullptr;
    const Field* dependent = nullptr;
    Action own{};
};

PutStep PutValue(const Field& field);
PutStep PutDraft(const QString& tag, const ValueField& field);
PutStep PutConstant(const QString& tag, const QString& value);
PutStep PutChanged(const QString& tag, const Field& field);
PutStep PutOriginalKey(const QString& tag);
PutStep PutWhenOn(const FlagField& flag, const Field& value);
/// The step, only for a changed (not a new) record.
PutStep OnUpdate(PutStep step);

} // namespace sysadmin
