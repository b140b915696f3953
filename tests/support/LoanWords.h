#pragma once

#include "loan/Loan.h"

#include <functional>

namespace sysadmin::testing {

/// Reads what happens to a loan into the request: the moment of the loan, then renew=, recall=, return=, held
/// and always. `at` reads a moment.
inline void ReadHappenings(const QString& text, const std::function<QDateTime(const QString&)>& at,
                           loan::Request& request) {
    for (const QString& part : text.split(' ', Qt::SkipEmptyParts)) {
        const QString value = part.section('=', 1);
        if (part.startsWith("renew="))
            request.renewals << at(value);
        else if (part.startsWith("recall="))
            request.recalled = at(value);
        else if (part.startsWith("return="))
            request.returned = at(value);
        else if (part == "held")
            request.hasHold = true;
        else if (part == "always")
            request.renewsAlways = true;
        else
            request.charged = at(part);
    }
}

} // namespace sysadmin::testing
