#include "framework/forms/Field.h"

#include "framework/forms/Rules.h"
#include "framework/forms/ValueFields.h"

#include <algorithm>
#include <utility>

namespace sysadmin {

Field::Field(Form& form, Kind kind, const FieldSpec& spec)
    : m_form(form)
    , m_kind(kind)
    , m_spec(spec) {
    form.m_fields.append(this);
}

QString Field::Problem() const {
    if (m_spec.required && IsBlank())
        return Form::tr("Please enter a value for \"%1\".").arg(PlainCaption());
    return {};
}

bool Field::IsUsable() const {
    return m_usable && m_blocks == 0 && (m_chosen || !m_form.m_several);
}

void Field::EnableBy(const FlagField& flag) {
    m_form.When([&flag] { return flag.IsUsable() && flag.IsOn(); }).Enable(*this);
}

void Field::SetUsable(bool usable) {
    if (m_usable == usable)
        return;
    m_usable = usable;
    NotifyChange();
}

void Field::Block(bool block) {
    const bool wasUsable = IsUsable();
    m_blocks += block ? 1 : -1;
    if (wasUsable != IsUsable())
        NotifyChange();
}

void Field::SetChosen(bool chosen) {
    if (m_chosen == chosen)
        return;
    m_chosen = chosen;
    NotifyChange();
}

void Field::SetCaption(const QString& caption) {
    if (Caption() == caption)
        return;
    m_caption = caption;
    NotifyChange();
}

void Field::SetUnit(const QString& unit) {
    if (Unit() == unit)
        return;
    m_unit = unit;
    NotifyChange();
}

QString Field::PlainCaption() const {
    QString plain = Caption().trimmed().isEmpty() ? m_spec.accessible : Caption();
    plain.remove('&');
    while (plain.endsWith(':') || plain.endsWith(' '))
        plain.chop(1);
    return plain;
}

void Field::NotifyChange() {
    emit m_form.Changed(this);
    m_form.FollowRules(false);
}

void Field::NotifyEdit() {
    // What a rule wrote needs no correction when it is left: it is as the rule wants it.
    m_typed = m_typed || !m_form.m_following;
    // Whoever hears of it may change captions and the like: the rules look at the edit all the same.
    ++m_form.m_loading;
    emit m_form.Changed(this);
    --m_form.m_loading;
    m_form.FollowRules(true);
    emit m_form.Edited(this);
}

void Field::Leave() {
    if (!m_typed)
        return;
    m_typed = false;
    Tidy();
    m_typed = false;
    const bool wasFollowing = std::exchange(m_form.m_following, true);
    for (const auto& [field, correct] : m_form.m_corrections)
        if (field == this)
            correct();
    m_form.m_following = wasFollowing;
    m_form.FollowRules(true);
    if (m_form.m_toldWhenLeft.contains(this))
        emit m_form.Left(this);
}

Form::Form() = default;
Form::~Form() = default;

Form::Loading::~Loading() {
    if (--m_form.m_loading == 0)
        m_form.FollowRules(false);
}

Rule& Form::When(std::function<bool()> condition) {
    return *m_rules.emplace_back(std::make_unique<Rule>(*this, std::move(condition)));
}

void Form::WhenLeft(const Field& field, std::function<void()> correct) {
    m_corrections.append({&field, std::move(correct)});
}

void Form::TellWhenLeft(Field& field, std::function<QString()> problem) {
    m_toldWhenLeft.insert(
        &field, problem ? std::move(problem) : [&field] { return field.Problem(); });
}

QString Form::ProblemWhenLeft(Field* field) const {
    const auto problem = m_toldWhenLeft.value(field);
    return problem ? problem() : QString();
}

void Form::LeaveFields() {
    for (Field* field : m_fields)
        field->Leave();
    emit Left(nullptr);
}

// A rule may move what another one looks at: they act until nothing moves any more, but not without end.
void Form::FollowRules(bool edited) {
    if (m_loading > 0)
        return;
    m_again = true;
    if (m_following)
        return;
    m_following = true;
    for (size_t round = 0; m_again && round <= m_rules.size(); ++round) {
        m_again = false;
        for (const std::unique_ptr<Rule>& rule : m_rules)
            rule->Follow(edited);
    }
    m_following = false;
}

void Form::SetSeveral(bool several) {
    const Loading loading(*this);
    m_several = several;
    for (Field* field : m_fields) {
        field->m_chosen = false;
        emit Changed(field);
    }
}

QList<Field*> Form::Chosen() const {
    QList<Field*> chosen;
    std::copy_if(m_fields.begin(), m_fields.end(), std::back_inserter(chosen),
                 [](const Field* field) { return field->IsChosen(); });
    return chosen;
}

QList<std::any> Form::TakeDrafts() const {
    QList<std::any> drafts;
    for (const Field* field : m_fields)
        drafts.append(field->TakeDraft());
    return drafts;
}

void Form::GiveDrafts(const QList<std::any>& drafts) {
    const Loading loading(*this);
    for (qsizetype i = 0; i < m_fields.size(); ++i)
        m_fields[i]->GiveDraft(drafts.value(i));
}

Field* Form::Find(const QString& name) const {
    if (name.isEmpty())
        return nullptr; // fields without a control have none
    for (Field* field : m_fields)
        if (field->Name() == name)
            return field;
    return nullptr;
}

Field* Form::FindByTag(const QString& tag) const {
    if (tag.isEmpty())
        return nullptr;
    for (Field* field : m_fields)
        if (field->Tag() == tag)
            return field;
    return nullptr;
}

Field* Form::FindByColumn(const QString& tag) const {
    for (Field* field : m_fields)
        if (!tag.isEmpty() && field->Spec().column.tag == tag)
            return field;
    return FindByTag(tag);
}

// Whatever is done to the whole form ends what was typed before.
template <class Act>
void Form::ForEach(const Act& act) {
    const Loading loading(*this);
    for (Field* field : m_fields) {
        act(*field);
        field->m_typed = false;
    }
}

void Form::Load(RequestChannel& channel) {
    ForEach([&](Field& field) { field.Load(channel); });
}

void Form::Clear() {
    ForEach([](Field& field) { field.Clear(); });
}

void Form::Tidy() {
    ForEach([](Field& field) { field.Tidy(); });
}

void Form::Accept() {
    ForEach([](Field& field) { field.Accept(); });
}

void Form::Revert() {
    ForEach([](Field& field) { field.Revert(); });
}

void Form::BecomeNew() {
    ForEach([](Field& field) { field.BecomeNew(); });
}

bool Form::IsChanged() const {
    return std::any_of(m_fields.begin(), m_fields.end(),
                       [](const Field* field) { return field->IsChanged(); });
}

QList<Field*> Form::Missing() const {
    QList<Field*> missing;
    std::copy_if(m_fields.begin(), m_fields.end(), std::back_inserter(missing), [](const Field* field) {
        return field->Spec().required && field->IsUsable() && field->IsBlank();
    });
    return missing;
}

std::optional<Form::Finding> Form::FirstProblem() {
    for (Field* field : m_fields) {
        if (!field->IsUsable())
            continue;
        if (const QString problem = field->Problem(); !problem.isEmpty())
            return Finding{field, problem};
    }
    return FormProblem();
}

QList<Form::Finding> Form::Problems() {
    QList<Finding> problems;
    for (Field* field : m_fields)
        if (const QString problem = field->IsUsable() ? field->Problem() : QString(); !problem.isEmpty())
            problems.append({field, problem});
    if (const std::optional<Finding> problem = FormProblem())
        problems.append(*problem);
    return problems;
}

} // namespace sysadmin

#include "moc_Field.cpp"
