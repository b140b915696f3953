#include "cataloging/MarcPartField.h"

#include "wire/BulkImport.h"

namespace sysadmin {

namespace bulkimport = wire::bulkimport;

namespace {

FieldSpec Limited(FieldSpec spec, MarcPartField::Part part) {
    spec.maxLength = part == MarcPartField::Part::Field ? 3 : 1;
    return spec;
}

} // namespace

MarcPartField::MarcPartField(Form& form, FieldSpec spec, Part part, const MarcPartField* of)
    : TextField(form, Limited(std::move(spec), part))
    , m_part(part)
    , m_of(of) {}

void MarcPartField::Tidy() {
    TextField::Tidy();
    if (Draft() != Draft().toLower())
        SetDraft(Draft().toLower());
}

QString MarcPartField::Problem() const {
    const QString value = Draft().trimmed();
    if (value.isEmpty())
        return TextField::Problem();
    if (m_part == Part::Field && !bulkimport::IsField(value))
        return Form::tr("\"%1\": a MARC field has three digits.").arg(PlainCaption());
    if (m_part == Part::Subfield && !bulkimport::IsSubfield(value))
        return Form::tr("\"%1\": a subfield is one digit or letter.").arg(PlainCaption());
    if (m_part == Part::Indicator && !bulkimport::IsIndicator(value))
        return Form::tr("\"%1\": an indicator is one digit or letter, or blank.").arg(PlainCaption());
    if (m_of && m_of->IsBlank())
        return Form::tr("\"%1\" is missing.").arg(m_of->PlainCaption());
    return TextField::Problem();
}

} // namespace sysadmin
