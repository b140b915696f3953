#pragma once

#include <QList>
#include <QStringList>

namespace sysadmin::wire {

/// A record of comma-separated text, and the line on which it begins (from 1).
struct CsvRecord {
    QStringList fields;
    int line = 0;
};

/// The records of comma-separated text (RFC 4180), or of text with another separator. Lines may also end with
/// a line feed alone. `openLine` gets the line on which a quotation mark is opened that nothing closes, else
/// 0.
QList<CsvRecord> ParseCsv(const QString& text, int* openLine = nullptr, QChar separator = u',');

/// A record as comma-separated text, without the end of its line. Fields are quoted where they must be.
QString CsvLine(const QStringList& fields);
void AppendCsvLine(QString& text, const QStringList& fields);

} // namespace sysadmin::wire
