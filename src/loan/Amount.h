#pragma once

#include <QString>

#include <optional>

namespace sysadmin::loan {

/// An amount of money or of demerits, in ten-thousandths.
using Amount = qint64;
inline constexpr Amount AmountUnit = 10000;

/// Reads "1250.5"; none for a text that is no amount, an empty one included.
std::optional<Amount> AmountFromText(const QString& text);
/// "1250.50" with the given number of decimal places.
QString AmountText(Amount amount, int decimals);

} // namespace sysadmin::loan
