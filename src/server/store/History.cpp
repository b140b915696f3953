#include "server/store/History.h"

#include "server/store/Database.h"
#include "server/store/Engine.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <utility>

namespace sysadmin::server {

namespace {

bool HoldsNothing(const Column& column, const QVariant& value) {
    if (value.typeId() == QMetaType::LongLong)
        return false;
    const auto isNothing = [&](const QString& text) {
        return text.isEmpty() || (column.type == ColumnType::Flag && text == u"N");
    };
    return value.typeId() == QMetaType::QString ? isNothing(*static_cast<const QString*>(value.constData()))
                                                : isNothing(value.toString());
}

/// How `history_records` names what was done to a record.
const QString WasAdded = "added";
const QString WasChanged = "changed";
const QString WasRemoved = "removed";

/// What was done to a record of the former history. Texts are never null in a record: where one is, there was
/// none before or is none after.
QString FormerKind(const Table& table, const QJsonObject& fields) {
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
        return WasChanged;
    return wasThere ? WasRemoved : WasAdded;
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
                {number, row.value(4), row.value(5), row.value(4), row.value(5), kind, row.value(6)});
        });
    finish();
    database.Run("DROP TABLE history");
}

HistoryWriter::HistoryWriter(Database& database, const Tables& tables, const Author& author)
    : m_database(database)
    , m_tables(tables)
    , m_author(author) {}

RecordName HistoryWriter::SubjectOf(const Table& table, qint64 id, const QVariant& owner) {
    if (table.owner.isEmpty() || owner.isNull())
        return {table.name, id};
    const RecordName above{table.Find(table.owner)->target, owner.toLongLong()};
    const QPair<QString, qint64> name(above.table, above.id);
    if (const auto known = m_subjects.constFind(name); known != m_subjects.constEnd())
        return *known;
    const Table& its = *m_tables.constFind(above.table);
    const QVariant next =
        its.owner.isEmpty()
            ? QVariant()
            : m_database.FirstValue("SELECT " + its.owner + " FROM " + its.name + " WHERE id=?", {above.id});
    return *m_subjects.insert(name, SubjectOf(its, above.id, next));
}

const HistoryWriter::Fields& HistoryWriter::FieldsOf(const Table& table) {
    const auto known = m_fields.constFind(table.name);
    if (known != m_fields.constEnd())
        return *known;
    Fields fields;
    for (const Column& column : table.columns)
        if (!column.secret)
            fields.append({&column, table.PlaceOf(column.name), FieldsText::KeyOf(column.name)});
    std::sort(fields.begin(), fields.end(), [](const NotedColumn& one, const NotedColumn& other) {
        return one.column->name < other.column->name;
    });
    return *m_fields.insert(table.name, fields);
}

HistoryWriter::Entry* HistoryWriter::Waiting(const Table& table, qint64 id) {
    const auto place = m_places.constFind({table.name, id});
    const bool waits = place != m_places.constEnd() && !m_entries[*place].isWritten;
    return waits ? &m_entries[*place] : nullptr;
}

HistoryWriter::Entry& HistoryWriter::Begin(const Table& table, qint64 id, const QVariant& owner, Kind kind) {
    if (m_request == 0)
        m_request = m_database.RunInsert(
            "INSERT INTO history_requests (at, operator_id, peer, request, records) VALUES (?, ?, ?, ?, 1)",
            {m_author.time, m_author.operatorId, m_author.peer, m_author.request});
    m_places[{table.name, id}] = m_entries.size();
    m_entries.append({.record = {table.name, id}, .subject = SubjectOf(table, id, owner), .kind = kind});
    return m_entries.last();
}

void HistoryWriter::NoteAdded(const Table& table, qint64 id, const QVariantList& values) {
    const QVariant owner = table.owner.isEmpty() ? QVariant() : values[table.PlaceOf(table.owner)];
    for (const NotedColumn& noted : FieldsOf(table))
        if (const QVariant& value = values[noted.place]; !HoldsNothing(*noted.column, value))
            m_text.Append(noted.key, {}, value);
    Begin(table, id, owner, Kind::Added).fields = m_text.Take(); // its id was never given before
}

void HistoryWriter::NoteChanged(const Table& table, qint64 id, const Row& before, const Row& after) {
    const bool moves = !table.owner.isEmpty() && after.contains(table.owner);
    if (moves)
        m_subjects.clear(); // and with it what belongs to it
    if (Entry* entry = Waiting(table, id)) {
        // What an added record holds was put into writing.
        const QJsonObject fields = QJsonDocument::fromJson(std::exchange(entry->fields, {})).object();
        for (auto field = fields.begin(); field != fields.end(); ++field)
            entry->after.insert(field.key(), (*field)[1].toVariant());
        if (entry->kind == Kind::Changed)
            for (auto value = before.begin(); value != before.end(); ++value)
                if (!entry->before.contains(value.key()))
                    entry->before.insert(value.key(), value.value());
        entry->after.insert(after);
        return;
    }
    QVariant owner = after.value(table.owner);
    if (!table.owner.isEmpty() && !moves)
        owner = m_database.FirstValue("SELECT " + table.owner + " FROM " + table.name + " WHERE id=?", {id});
    Entry& entry = Begin(table, id, owner, Kind::Changed);
    entry.before = before;
    entry.after = after;
}

void HistoryWriter::NoteRemoved(const Table& table, qint64 id, const Row& before) {
    Entry* entry = Waiting(table, id);
    if (!entry) {
        Begin(table, id, before.value(table.owner), Kind::Removed).before = before;
        return;
    }
    Row was = before;
    was.insert(entry->before);
    entry->before = entry->kind == Kind::Added ? Row() : was;
    entry->after = {};
    entry->fields.clear();
    entry->kind = Kind::Removed;
}

QByteArray HistoryWriter::Written(const Entry& entry) {
    if (!entry.fields.isEmpty())
        return entry.fields;
    for (const auto& [column, place, key] : FieldsOf(*m_tables.constFind(entry.record.table))) {
        if (entry.kind == Kind::Changed && !entry.after.contains(column->name) &&
            !entry.before.contains(column->name))
            continue;
        const QVariant was = entry.before.value(column->name);
        const QVariant is = entry.after.value(column->name);
        const bool says = entry.kind == Kind::Changed
                              ? was != is
                              : !HoldsNothing(*column, was) || !HoldsNothing(*column, is);
        if (says)
            m_text.Append(key, was, is);
    }
    return m_text.Take();
}

void HistoryWriter::Finish() {
    QList<Entry*> waiting;
    for (Entry& entry : m_entries)
        if (!entry.isWritten)
            waiting << &entry;
    static const QStringList columns{"request_id", "table_name", "record_id", "subject_table",
                                     "subject_id", "kind",       "fields"};
    m_database.InsertMany("history_records", columns, waiting.size(),
                          [&](qsizetype place, QVariantList& values) {
                              Entry& entry = *waiting[place];
                              values << m_request << entry.record.table << entry.record.id
                                     << entry.subject.table << entry.subject.id
                                     << (entry.kind == Kind::Added     ? WasAdded
                                         : entry.kind == Kind::Removed ? WasRemoved
                                                                       : WasChanged)
                                     << QVariant::fromValue(Utf8Text{Written(entry)});
                              entry.fields.clear();
                              entry.isWritten = true;
                          });
    if (!waiting.isEmpty() && m_entries.size() > 1)
        m_database.RunLater("UPDATE history_requests SET records=? WHERE id=?",
                            {m_entries.size(), m_request});
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
