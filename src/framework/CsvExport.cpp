#include "framework/CsvExport.h"

#include <QSaveFile>

#include <algorithm>

namespace sysadmin {

namespace {

bool NeedsQuotes(const QString& value) {
    return std::any_of(value.begin(), value.end(),
                       [](QChar c) { return c == u',' || c == u'"' || c == u'\r' || c == u'\n'; });
}

void AppendValue(QString& text, const QString& value, CsvQuotes quotes) {
    if (quotes == CsvQuotes::WhereNeeded && !NeedsQuotes(value)) {
        text += value;
        return;
    }
    text += u'"';
    text += QString(value).replace("\"", "\"\"");
    text += u'"';
}

} // namespace

QString CsvText(const QList<QStringList>& records, CsvQuotes quotes) {
    QString text;
    for (const QStringList& record : records) {
        for (qsizetype i = 0; i < record.size(); ++i) {
            if (i > 0)
                text += u',';
            AppendValue(text, record[i], quotes);
        }
        text += "\r\n";
    }
    return text;
}

QString WriteCsv(const QString& fileName, const QList<QStringList>& records, CsvQuotes quotes) {
    QSaveFile file(fileName);
    const QByteArray bytes = "\xEF\xBB\xBF" + CsvText(records, quotes).toUtf8();
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        return file.errorString();
    return {};
}

} // namespace sysadmin
