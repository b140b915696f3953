#pragma once

#include "framework/forms/RowsField.h"

#include <QDate>

namespace sysadmin {

/// The cells of an exception date; dates as "yyyyMMdd", times as "HH:mm".
namespace ExceptionColumn {
constexpr int Date = 0;
constexpr int Open = 1;
constexpr int Close = 2;
constexpr int InEffect = 3;
constexpr int Due = 4;
constexpr int IsOpen = 5;   ///< Y or N
constexpr int LastDate = 6; ///< of a range that was entered; each of its dates becomes a row
} // namespace ExceptionColumn

QList<GridColumn> ExceptionColumns();
QList<GridColumn> TermColumns();

/// Answers the first and the last date of a calendar; one that is not valid is no bound.
using DateRange = std::function<std::pair<QDate, QDate>()>;

/// Asks for the hours of a date or a range of dates in "frmCirculation_CalendarExceptionSettings".
/// A new one begins with the suggested date, where that is valid.
RowAsker AskException(const DateRange& calendar, const std::shared_ptr<QDate>& suggested);
/// A row for each date of the range that was entered.
QList<GridRow> SpreadException(const GridRow& entered);
/// Asks for the end of a term in "frmCirculation_CalendarTermSettings".
RowAsker AskTerm(const DateRange& calendar);

} // namespace sysadmin
