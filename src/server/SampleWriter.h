#pragma once

#include "server/store/Records.h"

namespace sysadmin::server {

class Library;

/// A row of a table in the sample data, by column name.
using CsvRow = QHash<QString, QString>;

/// Fills the sample library. Nothing of it goes into the history of changes.
class SampleWriter {
public:
    SampleWriter(const Library& library, Database& database);

    /// Adds a row and answers its id.
    qint64 Add(const QString& table, const Row& row) { return m_records.Insert(table, row); }
    /// The id of the row that holds this text in a unique column: a part that comes with a later version
    /// finds whatever people have left of the earlier ones.
    std::optional<qint64> Find(const QString& table, const QString& column, const QString& text) const;
    /// Says that the library's other clients hold so many records that use this one.
    void Use(const QString& table, const QString& kind, qint64 id, int count);
    /// The rows of a file of the sample data ("locations.csv").
    QList<CsvRow> ReadCsv(const QString& file) const;
    void SetPassword(qint64 operatorRow, const QString& password);
    void WriteSetting(const QString& name, const QString& value);

    const Library& GetLibrary() const { return m_library; }
    Records& GetRecords() { return m_records; }
    Database& GetDatabase() const { return m_records.GetDatabase(); }

private:
    const Library& m_library;
    Records m_records;
};

/// The fields of comma-separated text (RFC 4180), line by line.
QList<QStringList> ParseCsv(const QString& text);

} // namespace sysadmin::server
