#include "system/PostalForm.h"

namespace sysadmin {

PostalForm::PostalForm(const QString& contactTag, const QString& stateCaption)
    : txtContact(
          *this,
          {.name = "txtContact", .tag = contactTag, .caption = tr("Contact Name:"), .maxLength = NameLength})
    , txtState(*this, {.name = "txtState", .tag = "St", .caption = stateCaption, .maxLength = StateLength}) {}

QList<Field*> PostalForm::PostalFields() {
    return {&txtContact,  &txtEmail, &txtAddress1, &txtAddress2, &txtAddress3, &txtAddress4,
            &txtAddress5, &txtCity,  &txtState,    &txtZip,      &txtCountry,  &txtSAN};
}

QList<Layout> PostalForm::PostalLayout() {
    QList<Layout> layout;
    for (Field* field : PostalFields())
        layout.append(*field);
    return layout;
}

void PostalForm::EmptyDrafts() {
    for (Field* field : Fields()) {
        if (field->GetKind() == Field::Kind::Text)
            static_cast<TextField*>(field)->SetDraft({});
        else if (field->GetKind() == Field::Kind::Flag)
            static_cast<FlagField*>(field)->SetOn(false);
    }
}

} // namespace sysadmin
