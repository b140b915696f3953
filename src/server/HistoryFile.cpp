#include "server/HistoryFile.h"

#include "server/Context.h"
#include "server/NamedRecords.h"
#include "server/files/FileForm.h"
#include "server/store/Database.h"
#include "wire/Csv.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

namespace sysadmin::server {

namespace {

constexpr qsizetype WrittenAtOnce = 64 * 1024;

QString KindInWords(const QString& kind) {
    return kind == u"added" ? "Created" : kind == u"removed" ? "Deleted" : "Changed";
}

/// What records are called now or, of those that are gone, when they were removed.
class RecordNames {
public:
    RecordNames(Database& database, const Tables& tables)
        : m_database(database)
        , m_tables(tables)
        , m_records(database, tables) {}

    QString Of(const RecordName& record) {
        const QPair<QString, qint64> key(record.table, record.id);
        const auto known = m_names.constFind(key);
        return known == m_names.constEnd() ? *m_names.insert(key, Find(record)) : *known;
    }

private:
    QString Find(const RecordName& record) {
        const auto table = m_tables.constFind(record.table);
        if (table == m_tables.constEnd() || table->IsSingle())
            return {};
        const auto row = m_records.Find(record.table, record.id);
        const QString name = NameOf(*table, row ? *row : RemovedRow(m_database, record));
        return name.isEmpty() ? QString::number(record.id) : name;
    }

    Database& m_database;
    const Tables& m_tables;
    Records m_records;
    QHash<QPair<QString, qint64>, QString> m_names;
};

class HistoryLines {
public:
    HistoryLines(Database& database, const Tables& tables)
        : m_tables(tables)
        , m_names(database, tables) {}

    /// Appends the lines of an entry: time, operator, name, peer, request, table, id, subject's table and id,
    /// kind, fields.
    void Append(const ResultRow& row, QString& text) {
        const RecordName record{row.Text(5), row.value(6).toLongLong()};
        const RecordName subject{row.Text(7), row.value(8).toLongLong()};
        QString name = m_names.Of(record);
        if (record.table != subject.table)
            name = m_names.Of(subject) + " / " + name;
        const QStringList begin{ShownTime(row.Text(0)),
                                row.Text(2),
                                row.Text(1),
                                row.Text(3),
                                row.Text(4),
                                QString(record.table).replace('_', ' '),
                                name,
                                KindInWords(row.Text(9))};
        const QJsonObject fields = QJsonDocument::fromJson(row.Text(10).toUtf8()).object();
        bool isAlone = true;
        for (auto field = fields.begin(); field != fields.end(); ++field) {
            const Column* column = m_tables.value(record.table).Find(field.key());
            if (column && column->secret) // since it was noted
                continue;
            isAlone = false;
            wire::AppendCsvLine(text, begin + QStringList{column ? FileHeading(*column) : field.key(),
                                                          InWords(column, (*field)[0].toString()),
                                                          InWords(column, (*field)[1].toString())});
            text += "\r\n";
        }
        if (isAlone)
            wire::AppendCsvLine(text, begin + QStringList{{}, {}, {}});
        if (isAlone)
            text += "\r\n";
    }

private:
    /// References as the names of what they refer to.
    QString InWords(const Column* column, const QString& value) {
        const bool refers = column && column->type == ColumnType::Reference && !value.isEmpty();
        return refers ? m_names.Of({column->target, value.toLongLong()}) : value;
    }

    const Tables& m_tables;
    RecordNames m_names;
};

} // namespace

QString WriteHistoryFile(Database& database, const Tables& tables, const QString& fileName, qint64* records) {
    const auto cannot = [&](const QSaveFile& file) {
        return "The file " + fileName + " cannot be written: " + file.errorString() + '.';
    };
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly))
        return cannot(file);
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner); // who did what is nobody else's business
    QString text = QChar(0xfeff) +
                   wire::CsvLine({"When", "Who", "Operator", "From Where", "Request", "Setting", "Record",
                                  "What", "Field", "Before", "After"}) +
                   "\r\n";
    HistoryLines lines(database, tables);
    *records = 0;
    bool isWritten = true;
    const auto write = [&] {
        const QByteArray bytes = std::exchange(text, QString()).toUtf8();
        isWritten = isWritten && file.write(bytes) == bytes.size();
    };
    RunInTransaction(database, Transaction::Mode::Read, [&] {
        // In pieces: an engine may hand over a whole result at once.
        QVariant below = std::numeric_limits<qint64>::max();
        for (bool isMore = true; isMore && isWritten;) {
            isMore = false;
            database.Each(
                "SELECT h.at, h.operator_id, TRIM(COALESCE(o.first_name || ' ' || o.last_name, '')), "
                "h.peer, h.request, r.table_name, r.record_id, r.subject_table, r.subject_id, r.kind, "
                "r.fields, r.id FROM history_records r JOIN history_requests h ON h.id=r.request_id "
                "LEFT JOIN operators o ON o.operator_id=h.operator_id WHERE r.id<? ORDER BY r.id DESC "
                "LIMIT 1000",
                {below}, [&](const ResultRow& row) {
                    lines.Append(row, text);
                    below = row.value(11);
                    isMore = true;
                    ++*records;
                    if (text.size() > WrittenAtOnce)
                        write();
                });
        }
        return false; // nothing is to be kept
    });
    write();
    return isWritten && file.commit() ? QString() : cannot(file);
}

} // namespace sysadmin::server
