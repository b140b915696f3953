#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace sysadmin {

enum class CsvQuotes {
    WhereNeeded, ///< only around values that would be misread without
    Always,
};

/// The records as comma-separated values (RFC 4180): lines end in CR LF, a quotation mark in a value is
/// doubled.
QString CsvText(const QList<QStringList>& records, CsvQuotes quotes = CsvQuotes::WhereNeeded);

/// Writes the records into the file, in UTF-8 with a byte order mark, without which spreadsheet programs
/// misread letters beyond ASCII. The file is there whole or not at all. Answers what went wrong, empty for
/// nothing.
QString WriteCsv(const QString& fileName, const QList<QStringList>& records,
                 CsvQuotes quotes = CsvQuotes::WhereNeeded);

} // namespace sysadmin
