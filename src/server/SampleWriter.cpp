#include "server/SampleWriter.h"

#include "server/Library.h"
#include "server/OperatorPasswords.h"
#include "server/store/Database.h"

#include <QFile>

namespace sysadmin::server {

SampleWriter::SampleWriter(const Library& library, Database& database)
    : m_library(library)
    , m_records(database, library.GetRegistry().GetTables()) {}

std::optional<qint64> SampleWriter::Find(const QString& table, const QString& column,
                                         const QString& text) const {
    return m_records.IdOfText(table, column, text);
}

void SampleWriter::Use(const QString& table, const QString& kind, qint64 id, int count) {
    Add("usage", {{"table_name", table}, {"kind", kind}, {"record_id", id}, {"used", count}});
}

void SampleWriter::SetPassword(qint64 operatorRow, const QString& password) {
    server::SetPassword(m_records, m_library, operatorRow, Secret::FromText(password));
}

void SampleWriter::WriteSetting(const QString& name, const QString& value) {
    server::WriteSetting(GetDatabase(), name, value);
}

QList<CsvRow> SampleWriter::ReadCsv(const QString& name) const {
    QFile file(":/sample-library/" + name);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("The sample data has no file \"%s\".", qPrintable(name));
    const QList<QStringList> lines = ParseCsv(QString::fromUtf8(file.readAll()));
    QList<CsvRow> rows;
    for (qsizetype line = 1; line < lines.size(); ++line) {
        CsvRow row;
        for (qsizetype column = 0; column < lines[0].size(); ++column)
            row.insert(lines[0][column], lines[line].value(column));
        rows << row;
    }
    return rows;
}

QList<QStringList> ParseCsv(const QString& text) {
    QList<QStringList> lines;
    QStringList line;
    QString field;
    bool quoted = false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (quoted) {
            if (c != '"')
                field += c;
            else if (i + 1 < text.size() && text[i + 1] == '"')
                field += text[i++];
            else
                quoted = false;
        } else if (c == '"') {
            quoted = true;
        } else if (c == ',') {
            line << field;
            field.clear();
        } else if (c == '\n') {
            lines << (line << field);
            line.clear();
            field.clear();
        } else if (c != '\r') {
            field += c;
        }
    }
    if (!field.isEmpty() || !line.isEmpty())
        lines << (line << field);
    return lines;
}

} // namespace sysadmin::server
