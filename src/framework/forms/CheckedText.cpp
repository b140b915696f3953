#include "framework/forms/CheckedText.h"

namespace sysadmin {

QString CheckedText::Problem() const {
    if (const QString problem = TextField::Problem(); !problem.isEmpty())
        return problem;
    const QString text = Draft().trimmed();
    return !IsChanged() || text.isEmpty() || m_isRight(text) ? QString() : m_problem;
}

} // namespace sysadmin
