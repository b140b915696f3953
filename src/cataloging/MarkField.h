#pragma once

#include "framework/forms/CheckedText.h"
#include "wire/DuplicateDetection.h"
#include "wire/MarcMark.h"

namespace sysadmin {

/// One character at a place of a record, such as an indicator: a digit or lower-case letter, _ for a blank,
/// or * for any, which it is at first.
class MarkField : public CheckedText {
public:
    MarkField(Form& form, const QString& name, const QString& tag, const QString& caption)
        : CheckedText(form,
                      {.name = name,
                       .tag = tag,
                       .caption = caption,
                       .maxLength = 1,
                       .required = true,
                       .initial = wire::duplicates::Any},
                      wire::IsMarcMark,
                      Form::tr("Enter one digit or lower-case letter, _ for a blank, or * for any.")) {}
};

} // namespace sysadmin
