#include "framework/forms/Rules.h"

#include "framework/forms/ValueFields.h"

#include <algorithm>
#include <utility>

namespace sysadmin {

// What is declared last acts at once, so that a form is right before anything was loaded.
Rule& Rule::State(std::function<void(bool)> follow) {
    m_states.push_back(std::move(follow));
    m_form.FollowRules(false);
    return *this;
}

void Rule::Lock(Field& field, bool whileHolding) {
    State([&field, whileHolding, locked = false](bool holds) mutable {
        if (const bool lock = holds == whileHolding; std::exchange(locked, lock) != lock)
            field.Block(lock);
    });
}

Rule& Rule::Caption(Field& field, const QString& caption, const QString& otherwise) {
    return State([=, &field](bool holds) { field.SetCaption(holds ? caption : otherwise); });
}

Rule& Rule::Unit(Field& field, const QString& unit, const QString& otherwise) {
    return State([=, &field](bool holds) { field.SetUnit(holds ? unit : otherwise); });
}

Rule& Rule::Offer(ChoiceField& field, const QList<PickItem>& items, Lost lost) {
    if (lost == Lost::ChooseFirst)
        Do([items, &field] {
            const bool isOffered = std::any_of(
                items.begin(), items.end(), [&](const PickItem& item) { return item.id == field.Draft(); });
            if (!isOffered && !items.isEmpty())
                field.SetDraft(items.first().id);
        });
    return State([=, &field](bool holds) {
        if (holds)
            field.SetItems(items);
    });
}

Rule& Rule::Page(const QString& page) {
    return State([this, page](bool holds) {
        if (holds == m_form.HasPage(page))
            return;
        if (holds)
            m_form.m_lockedPages.removeAll(page);
        else
            m_form.m_lockedPages.append(page);
        emit m_form.PagesChanged();
    });
}

Rule& Rule::Set(ValueField& field, const QString& value) {
    return Do([&field, value] { field.SetDraft(value); });
}

Rule& Rule::Do(std::function<void()> correct) {
    m_corrections.push_back(std::move(correct));
    m_held = m_condition();
    return *this;
}

void Rule::Follow(bool edited) {
    const bool holds = m_condition();
    const bool turned = holds && !m_held;
    m_held = holds;
    for (const auto& follow : m_states)
        follow(holds);
    if (edited && turned)
        for (const auto& correct : m_corrections)
            correct();
}

} // namespace sysadmin
