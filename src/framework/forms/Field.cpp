#include "framework/forms/Field.h"

#include "framework/forms/ValueFields.h"

#include <algorithm>

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
    return m_usable && (!m_enabledBy || (m_enabledBy->IsUsable() && m_enabledBy->IsOn()));
}

void Field::SetUsable(bool usable) {
    if (m_usable == usable)
        return;
    m_usable = usable;
    NotifyChange();
}

QString Field::PlainCaption() const {
    QString plain = m_spec.caption.trimmed().isEmpty() ? m_spec.accessible : m_spec.caption;
    plain.remove('&');
    while (plain.endsWith(':') || plain.endsWith(' '))
        plain.chop(1);
    return plain;
}

void Field::NotifyChange() {
    emit m_form.Changed(this);
}

void Field::NotifyLeft() {
    emit m_form.Left(this);
}

Field* Form::Find(const QString& name) const {
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

void Form::Load(RequestChannel& channel) {
    for (Field* field : m_fields)
        field->Load(channel);
}

void Form::Clear() {
    for (Field* field : m_fields)
        field->Clear();
}

void Form::Tidy() {
    for (Field* field : m_fields)
        field->Tidy();
}

void Form::Accept() {
    for (Field* field : m_fields)
        field->Accept();
}

void Form::Revert() {
    for (Field* field : m_fields)
        field->Revert();
}

void Form::BecomeNew() {
    for (Field* field : m_fields)
        field->BecomeNew();
}

bool Form::IsChanged() const {
    return std::any_of(m_fields.begin(), m_fields.end(),
                       [](const Field* field) { return field->IsChanged(); });
}

bool Form::IsComplete() const {
    return std::none_of(m_fields.begin(), m_fields.end(), [](const Field* field) {
        return field->Spec().required && field->IsUsable() && field->IsBlank();
    });
}

std::optional<Form::Finding> Form::FirstProblem() const {
    for (Field* field : m_fields) {
        if (!field->IsUsable())
            continue;
        if (const QString problem = field->Problem(); !problem.isEmpty())
            return Finding{field, problem};
    }
    return {};
}

} // namespace sysadmin
