#include "server/store/History.h"

#include "server/store/Database.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace sysadmin::server {

namespace {

QJsonValue AsJson(const QVariant& value) {
    return value.isNull() ? QJsonValue() : QJsonValue(value.toString());
}

bool HoldsNothing(const Column& column, const QVariant& value) {
    const QString text = value.toString();
    return text.isEmpty() || (column.type == ColumnType::Flag && text == u"N");
}

QString NameOf(HistoryWriter::Kind kind) {
    switch (kind) {
    case HistoryWriter::Kind::Added:
        return "added";
    case HistoryWriter::Kind::Changed:
        return "changed";
    case HistoryWriter::Kind::Removed:
        return "removed";
    }
    Q_UNREACHABLE();
}

/// What was done to a record of the former history. Texts are never null in a record: where one is, there was
/// none before or is none after.
HistoryWriter::Kind FormerKind(const Table& table, const QJsonObject& fields) {
    const auto isText = [](const Column& column) {
        return column.type == ColumnType::Text || column.type == ColumnType::Flag;
    };
    const bool hasTexts = std::any_of(table.columns.begin(), table.columns.end(), isText);
    bool wasThere = false;
    bool isThere = false;
    bool decided = false;
    for (auto field = fields.begin(); field != fields.end(); ++field) {
        const Column* column = table.Find(field.key());
        if (hasTexts && !(column && isText(*column)))
            continue;
        decided = true;
        wasThere = wasThere || !field->toArray().at(0).isNull();
        isThere = isThere || !field->toArray().at(1).isNull();
    }
    if (!decided || wasThere == isThere)
        return HistoryWriter::Kind::Changed;
    return wasThere ? HistoryWriter::Kind::Removed : HistoryWriter::Kind::Added;
}

} // namespace

QList<Table> HistoryTables() {
    return {{.name = "history_requests",
             .columns = {{.name = "at"},
                         {.name = "operator_id"},
                         {.name = "peer"},
                         {.name = "request"},
                         {.name = "records", .type = ColumnType::Whole, .fallback = "0"}},
             .indexed = {{"at"}, {"operator_id", "id"}},
             .content = Content::Record},
            {.name = "history_records",
             .columns = {{.name = "request_id",
                          .type = ColumnType::Reference,
                          .target = "history_requests",
                          .onRemoval = OnRemoval::RemoveToo},
                         {.name = "table_name"},
                         {.name = "record_id", .type = ColumnType::Whole},
                         {.name = "subject_table"},
                         {.name = "subject_id", .type = ColumnType::Whole},
                         {.name = "kind"},
                         {.name = "fields"}},
             .indexed = {{"table_name", "record_id"},
                         {"subject_table", "subject_id", "request_id"},
                         {"subject_table", "id"}},
             .content = Content::Record}};
}

void ConvertFormerHistory(Database& database, const Tables& tables) {
    if (!database.HasTable("history"))
        return;
    Database::Values request; // of the rows that are being read
    qint64 number = 0;
    int records = 0;
    const auto finish = [&] {
        if (number != 0)
            database.Run("UPDATE history_requests SET records=? WHERE id=?", {records, number});
        records = 0;
    };
    database.Each(
        "SELECT at, operator_id, peer, request, table_name, record_id, changes FROM history ORDER BY id", {},
        [&](const ResultRow& row) {
            const Database::Values of{row.value(0), row.value(1), row.value(2), row.value(3)};
            if (number == 0 || of != request) {
                finish();
                request = of;
                number = database.RunInsert(
                    "INSERT INTO history_requests (at, operator_id, peer, request) VALUES (?, ?, ?, ?)", of);
            }
            ++records;
            const auto kind = FormerKind(*tables.constFind(row.value(4).toString()),
                                         QJsonDocument::fromJson(row.value(6).toString().toUtf8()).object());
            database.Run(
                "INSERT INTO history_records (request_id, table_name, record_id, subject_table, "
                "subject_id, kind, fields) VALUES (?, ?, ?, ?, ?, ?, ?)",
                {number, row.value(4), row.value(5), row.value(4), row.value(5), NameOf(kind), row.value(6)});
        });
    finish();
    database.Run("DROP TABLE history");
}

HistoryWriter::HistoryWriter(Database& database, const Tables& tables, const Author& author)
    : m_database(database)
    , m_tables(tables)
    , m_author(author) {}

RecordName HistoryWriter::SubjectOf(const Table& table, qint64 id, const Row& row) const {
    RecordName subject{table.name, id};
    const Table* at = &table;
    QVariant owner = row.value(table.owner);
    while (!at->owner.isEmpty()) {
        if (!owner.isValid())
            owner = m_database.FirstValue("SELECT " + at->owner + " FROM " + at->name + " WHERE id=?",
                                          {subject.id});
        if (owner.isNull())
            break;
        subject = {at->Find(at->owner)->target, owner.toLongLong()};
        at = &*m_tables.constFind(subject.table);
        owner = QVariant();
    }
    return subject;
}

void HistoryWriter::Note(Kind kind, const Table& table, qint64 id, const Row& before, const Row& after) {
    if (m_request == 0)
        m_request = m_database.RunInsert(
            "INSERT INTO history_requests (at, operator_id, peer, request, records) VALUES (?, ?, ?, ?, 1)",
            {m_author.time, m_author.operatorId, m_author.peer, m_author.request});
    const QPair<QString, qint64> name(table.name, id);
    const auto place = m_places.constFind(name);
    if (place == m_places.constEnd() || m_entries[*place].isWritten) {
        m_places[name] = m_entries.size();
        m_entries.append({.record = {table.name, id},
                          .subject = SubjectOf(table, id, kind == Kind::Removed ? before : after),
                          .kind = kind,
                          .before = before,
                          .after = after});
        return;
    }
    Entry& entry = m_entries[*place];
    if (kind != Kind::Removed) {
        if (entry.kind == Kind::Changed)
            for (auto value = before.begin(); value != before.end(); ++value)
                if (!entry.before.contains(value.key()))
                    entry.before.insert(value.key(), value.value());
        entry.after.insert(after);
        return;
    }
    Row was = before;
    was.insert(entry.before);
    entry.before = entry.kind == Kind::Added ? Row() : was;
    entry.after = {};
    entry.kind = Kind::Removed;
}

void HistoryWriter::Finish() {
    int records = 0;
    for (Entry& entry : m_entries) {
        const Table& table = *m_tables.constFind(entry.record.table);
        QJsonObject fields;
        for (const Column& column : table.columns) {
            if (entry.kind == Kind::Changed && !entry.after.contains(column.name) &&
                !entry.before.contains(column.name))
                continue;
            const QVariant was = entry.before.value(column.name);
            const QVariant is = entry.after.value(column.name);
            const bool says = entry.kind == Kind::Changed
                                  ? was != is
                                  : !HoldsNothing(column, was) || !HoldsNothing(column, is);
            if (says && !column.secret)
                fields.insert(column.name, QJsonArray{AsJson(was), AsJson(is)});
        }
        ++records;
        if (entry.isWritten)
            continue;
        m_database.Run("INSERT INTO history_records (request_id, table_name, record_id, subject_table, "
                       "subject_id, kind, fields) VALUES (?, ?, ?, ?, ?, ?, ?)",
                       {m_request, entry.record.table, entry.record.id, entry.subject.table, entry.subject.id,
                        NameOf(entry.kind),
                        QString::fromUtf8(QJsonDocument(fields).toJson(QJsonDocument::Compact))});
        entry.isWritten = true;
    }
    if (records > 1)
        m_database.Run("UPDATE history_requests SET records=? WHERE id=?", {records, m_request});
}

QList<RecordName> HistoryWriter::Changed() const {
    QList<RecordName> records;
    for (const Entry& entry : m_entries)
        records << entry.record;
    return records;
}

qint64 LastChangeOf(Database& database, const RecordName& record) {
    return database
        .FirstValue("SELECT MAX(request_id) FROM history_records WHERE subject_table=? AND subject_id=?",
                    {record.table, record.id})
        .toLongLong();
}

} // namespace sysadmin::server
