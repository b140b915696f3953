#pragma once

#include "framework/forms/ValueFields.h"

namespace sysadmin {

/// A line of text of which something is demanded. What was there before is not the operator's to mend: only
/// an edited text is looked at.
class CheckedText : public TextField {
public:
    using Check = bool (*)(const QString& text);

    /// `problem`: what is said of a text that the check refuses.
    CheckedText(Form& form, const FieldSpec& spec, Check isRight, const QString& problem)
        : TextField(form, spec)
        , m_isRight(isRight)
        , m_problem(problem) {}
    QString Problem() const override;

private:
    Check m_isRight;
    QString m_problem;
};

} // namespace sysadmin
