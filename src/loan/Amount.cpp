#include "loan/Amount.h"

#include <cmath>

namespace sysadmin::loan {

std::optional<Amount> AmountFromText(const QString& text) {
    const QString trimmed = text.trimmed();
    bool isNumber = false;
    const double value = trimmed.toDouble(&isNumber);
    if (trimmed.isEmpty() || !isNumber)
        return std::nullopt;
    return Amount(std::llround(value * AmountUnit));
}

QString AmountText(Amount amount, int decimals) {
    return QString::number(double(amount) / AmountUnit, 'f', decimals);
}

} // namespace sysadmin::loan
