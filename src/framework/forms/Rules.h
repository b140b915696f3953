#pragma once

#include "core/data/PickLists.h"
#include "framework/forms/Field.h"

namespace sysadmin {

class ChoiceField;
class ValueField;

/// What a form does while a condition on its drafts holds; made by `Form::When`. What it says about state
/// (usable, caption, unit, entries, pages) follows the condition both ways and whenever a record is loaded.
/// What it does to values (clear, set) happens when an edit makes the condition true, and never by loading: a
/// record that is only looked at stays as it is.
class Rule {
public:
    /// What becomes of a choice whose entry is no longer among those that are offered.
    enum class Lost { Keep, ChooseFirst };

    Rule(Form& form, std::function<bool()> condition)
        : m_form(form)
        , m_condition(std::move(condition)) {}

    /// The fields are usable only while the condition holds.
    template <class... Fields>
    Rule& Enable(Fields&... fields) {
        (Lock(fields, false), ...);
        return *this;
    }
    /// The fields are usable only while it does not.
    template <class... Fields>
    Rule& Disable(Fields&... fields) {
        (Lock(fields, true), ...);
        return *this;
    }
    Rule& Caption(Field& field, const QString& caption, const QString& otherwise);
    Rule& Unit(Field& field, const QString& unit, const QString& otherwise);
    /// The entries while the condition holds; nothing happens to them otherwise.
    Rule& Offer(ChoiceField& field, const QList<PickItem>& items, Lost lost = Lost::Keep);
    /// The page, by its name in the layout, belongs to the record while the condition holds: it can be opened
    /// then, and its tab comes to the front.
    Rule& Page(const QString& page);

    Rule& Clear(ValueField& field) { return Set(field, {}); }
    Rule& Set(ValueField& field, const QString& value);
    /// Corrects values in some other way.
    Rule& Do(std::function<void()> correct);

private:
    friend class Form;
    void Lock(Field& field, bool whileHolding);
    void Follow(bool edited);
    Rule& State(std::function<void(bool holds)> follow);

    Form& m_form;
    std::function<bool()> m_condition;
    bool m_held = false;
    std::vector<std::function<void(bool)>> m_states;
    std::vector<std::function<void()>> m_corrections;
};

} // namespace sysadmin
