#include "server/store/Undo.h"

#include "server/store/Database.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

namespace sysadmin::server {

namespace {

/// The value of a column as the history keeps it.
QVariant FromHistory(const Column& column, const QJsonValue& value) {
    switch (column.type) {
    case ColumnType::Text:
        return value.toString("");
    case ColumnType::Flag:
        return value.toString("N");
    case ColumnType::Whole:
    case ColumnType::Reference:
        return value.isNull() ? QVariant() : QVariant(value.toString().toLongLong());
    case ColumnType::Bytes:
        break;
    }
    return {};
}

/// The row before the change; of a changed one what was changed.
Row Before(const Table& table, const QJsonObject& fields, bool whole) {
    Row row;
    for (const Column& column : table.columns) {
        const auto field = fields.constFind(column.name);
        if (column.secret || column.type == ColumnType::Bytes || (!whole && field == fields.constEnd()))
            continue;
        row.insert(column.name, FromHistory(column, field == fields.constEnd() ? QJsonValue() : (*field)[0]));
    }
    return row;
}

} // namespace

HistoryOf EntriesOf(const Tables& tables, const RecordName& record) {
    HistoryOf entries{"((subject_table=? AND subject_id=?)", {record.table, record.id}};
    if (!tables.value(record.table).owner.isEmpty()) { // noted under its owner
        entries.condition += " OR (table_name=? AND record_id=?)";
        entries.values << record.table << record.id;
    }
    for (const Table& table : tables) {
        if (table.partOf == record.table) {
            entries.condition += " OR subject_table=?";
            entries.values << table.name;
        }
        for (const Column& column : table.columns) {
            if (!column.showsThere || column.target != record.table)
                continue;
            entries.condition += " OR (subject_table=? AND fields LIKE ?)";
            entries.values << table.name
                           << "%\"" + column.name + "\":%\"" + QString::number(record.id) + "\"%";
        }
    }
    entries.condition += ')';
    return entries;
}

bool IsOwn(const Tables& tables, const RecordName& record, const RecordName& row, const RecordName& subject) {
    return (subject.table == record.table && subject.id == record.id) ||
           (row.table == record.table && row.id == record.id) ||
           tables.value(row.table).partOf == record.table;
}

bool IsAbout(const Tables& tables, const RecordName& record, const RecordName& row, const RecordName& subject,
             const QJsonObject& fields) {
    if (IsOwn(tables, record, row, subject))
        return true;
    const Table table = tables.value(row.table);
    return std::any_of(table.columns.begin(), table.columns.end(), [&](const Column& column) {
        const QJsonArray values = fields[column.name].toArray();
        return column.showsThere && column.target == record.table &&
               values.contains(QJsonValue(QString::number(record.id)));
    });
}

void Undo::ChangesAfter(const RecordName& record, qint64 number) {
    struct Entry {
        QString table;
        qint64 id = 0;
        RecordName subject;
        QString kind;
        QJsonObject fields;
    };
    QList<Entry> entries;
    const HistoryOf about = EntriesOf(m_tables, record);
    m_database.Each("SELECT table_name, record_id, subject_table, subject_id, kind, fields FROM "
                    "history_records WHERE " +
                        about.condition + " AND request_id>? ORDER BY id DESC",
                    about.values + QVariantList{number}, [&](const ResultRow& row) {
                        entries.append({row.value(0).toString(),
                                        row.value(1).toLongLong(),
                                        {row.value(2).toString(), row.value(3).toLongLong()},
                                        row.value(4).toString(),
                                        QJsonDocument::fromJson(row.value(5).toString().toUtf8()).object()});
                    });
    for (const Entry& entry : entries) {
        const auto table = m_tables.constFind(entry.table);
        if (table == m_tables.constEnd() ||
            !IsAbout(m_tables, record, {entry.table, entry.id}, entry.subject, entry.fields))
            continue;
        if (IsOwn(m_tables, record, {entry.table, entry.id}, entry.subject)) {
            TakeBack(*table, entry.id, entry.kind, entry.fields);
            continue;
        }
        // Of a member it matters only whether it was one.
        for (const Column& column : table->columns)
            if (column.showsThere && column.target == record.table && entry.fields.contains(column.name))
                Write(*table, entry.id, {{column.name, FromHistory(column, entry.fields[column.name][0])}},
                      false);
    }
    SetReferences();
}

void Undo::TakeBack(const Table& table, qint64 id, const QString& kind, const QJsonObject& fields) {
    if (kind == u"added")
        Delete(table, id);
    else
        Write(table, id, Before(table, fields, kind == u"removed"), kind == u"removed");
}

void Undo::Write(const Table& table, qint64 id, const Row& row, bool isNew) {
    MakeRoom(table, id, row);
    QStringList names;
    QVariantList values;
    for (auto value = row.begin(); value != row.end(); ++value) {
        const Column& column = *table.Find(value.key());
        names << column.name;
        values << value.value();
        if (table.IsUniqueText(column.name)) {
            const QString folded = Fold(value->toString());
            names << FoldedName(column.name);
            values << (folded.isEmpty() ? QVariant() : QVariant(folded));
        }
        if (column.type != ColumnType::Reference)
            continue;
        const Reference reference{table.name, id, column.name};
        m_waiting.remove(reference);
        if (value->isNull() ||
            m_database.FirstRow("SELECT 1 FROM " + column.target + " WHERE id=?", {*value}))
            continue;
        m_waiting.insert(reference, value->toLongLong());
        values.last() = QVariant();
    }
    if (names.isEmpty())
        return;
    values << id;
    if (isNew)
        m_database.Run("INSERT INTO " + table.name + " (" + names.join(", ") + ", id) VALUES (" +
                           QString("?, ").repeated(names.size()) + "?)",
                       values);
    else
        m_database.Run("UPDATE " + table.name + " SET " + names.join("=?, ") + "=? WHERE id=?", values);
}

void Undo::Delete(const Table& table, qint64 id) {
    for (const Table& other : m_tables)
        for (const Column& column : other.columns)
            if (column.type == ColumnType::Reference && column.target == table.name)
                m_database.Run("UPDATE " + other.name + " SET " + column.name + "=NULL WHERE " + column.name +
                                   "=?",
                               {id});
    m_database.Run("DELETE FROM " + table.name + " WHERE id=?", {id});
}

/// Frees what must be unique of the values that are about to be written.
void Undo::MakeRoom(const Table& table, qint64 id, const Row& row) {
    for (const UniqueText& unique : table.uniqueTexts)
        if (row.contains(unique.column))
            Park(table, FoldedName(unique.column), FoldedName(unique.column) + "=? AND id<>?",
                 {Fold(row[unique.column].toString()), id});
    for (const QStringList& set : table.uniqueSets) {
        if (std::none_of(set.begin(), set.end(), [&](const QString& name) { return row.contains(name); }))
            continue;
        QString condition;
        QVariantList values;
        for (const QString& name : set) {
            const QVariant value =
                row.contains(name)
                    ? row[name]
                    : m_database.FirstValue("SELECT " + name + " FROM " + table.name + " WHERE id=?", {id});
            if (value.isNull())
                break; // differs from everything
            condition += name + "=? AND ";
            values << value;
        }
        Park(table, set.last(), condition + "id<>?", values << id);
    }
}

void Undo::Park(const Table& table, const QString& column, const QString& condition,
                const QVariantList& values) {
    const Column* stored = table.Find(column);
    const bool isText = stored && (stored->type == ColumnType::Text || stored->type == ColumnType::Flag);
    m_database.Run("UPDATE " + table.name + " SET " + column + '=' +
                       (isText ? "'#' || CAST(id AS TEXT)" : "NULL") + " WHERE " + condition,
                   values);
}

/// What refers to rows that came back after it.
void Undo::SetReferences() {
    for (auto waiting = m_waiting.cbegin(); waiting != m_waiting.cend(); ++waiting) {
        const auto& [name, id, column] = waiting.key();
        const Table& table = *m_tables.constFind(name);
        if (!m_database.FirstRow("SELECT 1 FROM " + table.Find(column)->target + " WHERE id=?",
                                 {waiting.value()}))
            continue;
        MakeRoom(table, id, {{column, waiting.value()}});
        m_database.Run("UPDATE " + name + " SET " + column + "=? WHERE id=?", {waiting.value(), id});
    }
    m_waiting.clear();
}

} // namespace sysadmin::server
