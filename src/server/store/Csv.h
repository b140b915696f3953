#pragma once

#include <QList>
#include <QStringList>

namespace sysadmin::server {

/// A record of comma-separated text, and the line on which it begins (from 1).
struct CsvRecord {
    QStringList fields;
    int line = 0;
};

/// The records of comma-separated text (RFC 4180). Lines may also end with a line feed alone.
QList<CsvRecord> ParseCsv(const QString& text);

/// A record as comma-separated text, without the end of its line. Fields are quoted where they must be.
QString CsvLine(const QStringList& fields);

} // namespace sysadmin::server
