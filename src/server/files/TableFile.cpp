#include "server/files/TableFile.h"

#include "wire/Csv.h"

#include <QStringDecoder>

#include <algorithm>
#include <functional>

namespace sysadmin::server {

QByteArray WriteTableFile(const SettingsTable& settings) {
    QStringList headings;
    for (const Column* column : settings.columns)
        headings << FileHeading(*column);
    QString text;
    wire::AppendCsvLine(text, headings);
    text += "\r\n";
    for (const SettingsRecord& record : settings.records) {
        wire::AppendCsvLine(text, record.cells);
        text += "\r\n";
    }
    return text.toUtf8();
}

namespace {

/// The columns that the headings name.
QList<const Column*> ReadHeadings(const Table& table, const wire::CsvRecord& headings,
                                  const std::function<void(int, const QString&)>& wrong) {
    QList<const Column*> columns;
    const QList<const Column*> known = FileColumns(table);
    for (const QString& heading : headings.fields) {
        const auto column = std::find_if(known.begin(), known.end(), [&](const Column* candidate) {
            return FileHeading(*candidate) == heading.trimmed();
        });
        if (column == known.end()) {
            const Column* kept = table.Find(heading.trimmed());
            wrong(headings.line, kept && kept->secret
                                     ? "The column \"" + heading + "\" is a secret, which no file brings."
                                     : "The column \"" + heading + "\" is not known.");
        } else if (columns.contains(*column)) {
            wrong(headings.line, "The column \"" + heading + "\" stands there twice.");
        }
        columns << (column == known.end() ? nullptr : *column);
    }
    return columns;
}

} // namespace

SettingsTable ReadTableFile(FileForm& form, const QString& name, const QByteArray& file,
                            QList<FileProblem>& problems) {
    SettingsTable settings{.name = name, .columns = {}, .records = {}};
    const qsizetype before = problems.size();
    const auto wrong = [&](int line, const QString& text) { problems.append({name, line, text}); };
    QStringDecoder decode(QStringDecoder::Utf8); // leaves a byte order mark out
    const QString text = decode(file);
    if (decode.hasError()) {
        wrong(1, "The file is not UTF-8.");
        return settings;
    }
    int openLine = 0;
    const QList<wire::CsvRecord> records = wire::ParseCsv(text, &openLine);
    if (openLine > 0) {
        wrong(openLine, "A quotation mark is opened and not closed.");
        return settings;
    }
    if (records.isEmpty()) {
        wrong(1, "There are no headings.");
        return settings;
    }
    const Table& table = form.Named(name);
    settings.columns = ReadHeadings(table, records.first(), wrong);
    RecordKeys keys(form, table, settings.columns.contains(nullptr) ? FileColumns(table) : settings.columns);
    for (const QString& missing : keys.Missing())
        wrong(1, "The column \"" + missing + "\" is missing; it tells which record a line is about.");
    if (problems.size() > before)
        return settings;
    QHash<QString, int> lines;
    settings.records.reserve(records.size() - 1);
    for (qsizetype i = 1; i < records.size(); ++i) {
        SettingsRecord record{.cells = records[i].fields, .key = {}, .line = records[i].line, .id = 0};
        if (record.cells == QStringList{QString()} && settings.columns.size() > 1)
            continue; // an empty line
        if (record.cells.size() != settings.columns.size()) {
            wrong(record.line, QString("There are %1 values for %2 columns.")
                                   .arg(record.cells.size())
                                   .arg(settings.columns.size()));
            continue;
        }
        for (qsizetype cell = 0; cell < record.cells.size(); ++cell) {
            QString& value = record.cells[cell];
            const ColumnType type = settings.columns[cell]->type;
            bool isNumber = false;
            if (type == ColumnType::Flag && value.isEmpty())
                value = "N";
            else if (const qint64 number = type == ColumnType::Whole ? value.toLongLong(&isNumber) : 0;
                     isNumber && settings.columns[cell]->tableIn.isEmpty())
                value = QString::number(number);
        }
        record.key = keys.Next(record.cells);
        if (const int other = lines.value(record.key)) {
            wrong(record.line, table.IsSingle() ? QString("There can be one record only.")
                                                : QString("The same record stands on line %1.").arg(other));
            continue;
        }
        lines.insert(record.key, record.line);
        settings.records << std::move(record);
    }
    return settings;
}

} // namespace sysadmin::server
