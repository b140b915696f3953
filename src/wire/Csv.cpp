#include "wire/Csv.h"

#include <algorithm>

namespace sysadmin::wire {

QList<CsvRecord> ParseCsv(const QString& text, int* openLine, QChar separator) {
    QList<CsvRecord> records;
    CsvRecord record;
    QString field;
    int line = 1;
    bool quoted = false;
    int quotedFrom = 0;
    bool any = false; // of the record has been read
    const auto endField = [&] {
        record.fields << field;
        field.clear();
    };
    const auto isSpecial = [separator](QChar c) {
        return c == separator || c == u'"' || c == u'\n' || c == u'\r';
    };
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (!any) {
            record.line = line;
            any = true;
        }
        if (c == u'\n')
            ++line;
        // What means nothing by itself is taken over in one piece.
        qsizetype end = i;
        while (end < text.size() && !isSpecial(text[end]))
            ++end;
        if (end > i) {
            field += QStringView(text).mid(i, end - i);
            i = end - 1;
        } else if (quoted) {
            if (c != u'"')
                field += c;
            else if (i + 1 < text.size() && text[i + 1] == u'"')
                field += text[i++];
            else
                quoted = false;
        } else if (c == u'"') {
            quoted = true;
            quotedFrom = line;
        } else if (c == separator) {
            endField();
        } else if (c == u'\n') {
            endField();
            records << record;
            record.fields.clear();
            any = false;
        } else if (c != u'\r' || i + 1 >= text.size() || text[i + 1] != u'\n') {
            field += c;
        }
    }
    if (any) {
        endField();
        records << record;
    }
    if (openLine)
        *openLine = quoted ? quotedFrom : 0;
    return records;
}

void AppendCsvLine(QString& text, const QStringList& fields) {
    bool isFirst = true;
    for (const QString& field : fields) {
        if (!isFirst)
            text += ',';
        isFirst = false;
        const bool isPlain = std::none_of(field.begin(), field.end(), [](QChar c) {
            return c == u',' || c == u'"' || c == u'\r' || c == u'\n';
        });
        if (isPlain)
            text += field;
        else
            text += '"' + QString(field).replace('"', "\"\"") + '"';
    }
}

QString CsvLine(const QStringList& fields) {
    QString line;
    AppendCsvLine(line, fields);
    return line;
}

} // namespace sysadmin::wire
