#include "server/store/Records.h"

#include "server/store/Changes.h"
#include "server/store/Database.h"
#include "server/store/History.h"

namespace sysadmin::server {

namespace {

/// The value as the column stores it: an empty text is a text and no null, an empty number or reference is
/// null.
QVariant Stored(const Column& column, const QVariant& value) {
    switch (column.type) {
    case ColumnType::Text:
    case ColumnType::Flag: {
        const QString text = value.toString();
        return text.isNull() ? QString("") : text;
    }
    case ColumnType::Whole:
    case ColumnType::Reference: {
        const bool empty = value.isNull() || value.toString().isEmpty();
        return empty ? QVariant() : QVariant(value.toLongLong());
    }
    case ColumnType::Bytes:
        return value.isNull() ? QVariant() : QVariant(value.toByteArray());
    }
    Q_UNREACHABLE();
}

} // namespace

Records::Records(Database& database, const Tables& tables, const std::optional<Author>& author)
    : m_database(database)
    , m_tables(tables)
    , m_author(author)
    , m_history(author ? std::make_unique<HistoryWriter>(database, tables, *author) : nullptr) {}

Records::~Records() = default;
Records::Records(Records&&) noexcept = default;

const Table& Records::Named(const QString& table) const {
    const auto found = m_tables.constFind(table);
    if (found == m_tables.constEnd())
        qFatal("No table \"%s\" is declared.", qPrintable(table));
    return *found;
}

void Records::Append(const Table& table, const Row& values, QStringList& names, QVariantList& bound) const {
    for (auto value = values.begin(); value != values.end(); ++value) {
        const Column* column = table.Find(value.key());
        if (!column)
            qFatal("The table \"%s\" has no column \"%s\".", qPrintable(table.name), qPrintable(value.key()));
        names << column->name;
        bound << Stored(*column, value.value());
        if (table.IsUniqueText(column->name)) {
            const QString folded = Fold(value.value().toString());
            names << FoldedName(column->name);
            bound << (folded.isEmpty() ? QVariant() : QVariant(folded));
        }
    }
}

qint64 Records::Insert(const QString& tableName, const Row& values) {
    const Table& table = Named(tableName);
    QStringList names;
    QVariantList bound;
    Append(table, values, names, bound);
    const QString places = QString("?, ").repeated(names.size()).chopped(names.isEmpty() ? 0 : 2);
    const qint64 id = m_database.RunInsert(
        names.isEmpty() ? "INSERT INTO " + table.name + " DEFAULT VALUES"
                        : "INSERT INTO " + table.name + " (" + names.join(", ") + ") VALUES (" + places + ')',
        bound);
    if (m_history) {
        const Row row = *Find(tableName, id);
        m_history->Note(HistoryWriter::Kind::Added, table, id, {}, row);
        EnterChange(table, id, row, row, false);
    }
    return id;
}

Records::Inserter::Inserter(Records& records, const QString& table, const QList<const Column*>& columns)
    : m_records(records)
    , m_table(table)
    , m_columns(columns) {
    for (const Column& column : records.Named(table).columns)
        m_fallbacks.insert(column.name, Stored(column, column.fallback));
    QStringList names;
    for (const Column* column : columns) {
        names << column->name;
        m_isUnique << records.Named(table).IsUniqueText(column->name);
        if (m_isUnique.last())
            names << FoldedName(column->name);
    }
    m_sql = "INSERT INTO " + table + " (" + names.join(", ") + ") VALUES (" +
            QString("?, ").repeated(names.size()).chopped(2) + ')';
}

qint64 Records::Inserter::Add(const QVariantList& values) const {
    QVariantList bound;
    bound.reserve(values.size() + 1);
    for (qsizetype i = 0; i < values.size(); ++i) {
        bound << Stored(*m_columns[i], values[i]);
        if (!m_isUnique[i])
            continue;
        const QString folded = Fold(values[i].toString());
        bound << (folded.isEmpty() ? QVariant() : QVariant(folded));
    }
    const qint64 id = m_records.m_database.RunInsert(m_sql, bound);
    if (!m_records.m_history)
        return id;
    const Table& table = m_records.Named(m_table);
    Row row = m_fallbacks;
    for (qsizetype i = 0; i < values.size(); ++i)
        row.insert(m_columns[i]->name, Stored(*m_columns[i], values[i]));
    m_records.m_history->Note(HistoryWriter::Kind::Added, table, id, {}, row);
    m_records.EnterChange(table, id, row, row, false);
    return id;
}

bool Records::Update(const QString& tableName, qint64 id, const Row& values) {
    const std::optional<Row> before = Find(tableName, id);
    if (before)
        Update(tableName, id, values, *before);
    return before.has_value();
}

void Records::Update(const QString& tableName, qint64 id, const Row& values, const Row& before) {
    const Table& table = Named(tableName);
    Row changed;
    Row replaced;
    for (auto value = values.begin(); value != values.end(); ++value) {
        const Column* column = table.Find(value.key());
        const QVariant held = column ? Stored(*column, before.value(value.key())) : QVariant();
        if (column && Stored(*column, value.value()) == held)
            continue;
        changed.insert(value.key(), column ? Stored(*column, value.value()) : value.value());
        replaced.insert(value.key(), held);
    }
    if (changed.isEmpty())
        return;
    QStringList names;
    QVariantList bound;
    Append(table, changed, names, bound);
    bound << id;
    m_database.Run("UPDATE " + table.name + " SET " + names.join("=?, ") + "=? WHERE id=?", bound);
    if (m_history) {
        m_history->Note(HistoryWriter::Kind::Changed, table, id, replaced, changed);
        EnterChange(table, id, before, changed, false);
    }
}

bool Records::Remove(const QString& tableName, qint64 id) {
    const Table& table = Named(tableName);
    const std::optional<Row> before = Find(tableName, id);
    if (!before)
        return false;
    // The database would see to these rows itself, but they would be missing from the history.
    for (const Table& other : m_tables) {
        for (const Column& column : other.columns) {
            if (column.type != ColumnType::Reference || column.target != tableName ||
                column.onRemoval == OnRemoval::Refuse)
                continue;
            const auto ids = m_database.FirstColumn(
                "SELECT id FROM " + other.name + " WHERE " + column.name + "=? ORDER BY id", {id});
            for (const QVariant& row : ids) {
                if (column.onRemoval == OnRemoval::RemoveToo)
                    Remove(other.name, row.toLongLong());
                else
                    Update(other.name, row.toLongLong(), {{column.name, QVariant()}});
            }
        }
    }
    m_database.Run("DELETE FROM " + table.name + " WHERE id=?", {id});
    if (m_history) {
        m_history->Note(HistoryWriter::Kind::Removed, table, id, *before, {});
        EnterChange(table, id, *before, *before, true);
    }
    return true;
}

void Records::RemoveWhere(const QString& table, const QString& column, const QVariant& value) {
    const auto ids = m_database.FirstColumn(
        "SELECT id FROM " + Named(table).name + " WHERE " + column + "=? ORDER BY id", {value});
    for (const QVariant& id : ids)
        Remove(table, id.toLongLong());
}

std::optional<Row> Records::Find(const QString& tableName, qint64 id) const {
    const Table& table = Named(tableName);
    QStringList names;
    for (const Column& column : table.columns)
        names << column.name;
    const auto values = m_database.FirstRow("SELECT " + (names.isEmpty() ? QString("id") : names.join(", ")) +
                                                " FROM " + table.name + " WHERE id=?",
                                            {id});
    if (!values)
        return std::nullopt;
    Row row;
    for (qsizetype i = 0; i < names.size(); ++i)
        row.insert(names[i], Stored(table.columns[i], (*values)[i]));
    return row;
}

std::optional<qint64> Records::IdWhere(const QString& table, const QString& column,
                                       const QVariant& value) const {
    if (value.typeId() == QMetaType::QString && !IsStorable(value.toString()))
        return std::nullopt; // so nothing holds it
    const QVariant id = m_database.FirstValue(
        "SELECT id FROM " + Named(table).name + " WHERE " + column + "=? ORDER BY id", {value});
    return id.isValid() ? std::optional(id.toLongLong()) : std::nullopt;
}

std::optional<qint64> Records::IdOfText(const QString& table, const QString& column,
                                        const QString& text) const {
    return IdWhere(table, FoldedName(column), Fold(text));
}

bool Records::IsTaken(const QString& table, const UniqueText& unique, const QString& text,
                      const QVariant& within, qint64 except) const {
    const QString folded = Fold(text);
    if (folded.isEmpty())
        return false;
    QString sql =
        "SELECT 1 FROM " + Named(table).name + " WHERE " + FoldedName(unique.column) + "=? AND id<>?";
    QVariantList values{folded, except};
    if (!unique.within.isEmpty()) {
        if (within.isNull())
            return false;
        sql += " AND " + unique.within + "=?";
        values << within;
    }
    return m_database.FirstRow(sql, values).has_value();
}

qint64 Records::Count(const QString& table, const QString& column, const QVariant& value) const {
    return m_database
        .FirstValue("SELECT COUNT(*) FROM " + Named(table).name + " WHERE " + column + "=?", {value})
        .toLongLong();
}

void Records::Finish() {
    if (m_history)
        m_history->Finish();
}

qint64 Records::ChangeNumber() const {
    return m_history ? m_history->Number() : 0;
}

QList<RecordName> Records::Changed() const {
    return m_history ? m_history->Changed() : QList<RecordName>();
}

void Records::EnterChange(const Table& table, qint64 id, const Row& row, const Row& changed, bool removed) {
    if (removed)
        Enter(table, id, Fold(row.value(table.keyText).toString()));
    else
        Enter(table, id);
    for (const Column& column : table.columns) {
        const bool isOwner = column.name == table.owner;
        if (!isOwner && !(column.showsThere && changed.contains(column.name)))
            continue;
        for (const QVariant& owner : {row.value(column.name), changed.value(column.name)})
            if (!owner.isNull())
                EnterOwner(Named(column.target), owner.toLongLong());
    }
    if (!table.partOf.isEmpty())
        Enter(Named(table.partOf), 0);
}

void Records::EnterOwner(const Table& table, qint64 id) {
    Enter(table, id);
    if (table.owner.isEmpty())
        return;
    const auto row = Find(table.name, id);
    if (row && !row->value(table.owner).isNull())
        EnterOwner(Named(table.Find(table.owner)->target), row->value(table.owner).toLongLong());
}

void Records::Enter(const Table& table, qint64 id, const std::optional<QString>& removedKey) {
    if (table.IsPart())
        return;
    const qint64 entered = table.IsSingle() ? 0 : id;
    const QPair<QString, qint64> record{table.name, entered};
    if (!removedKey && m_entered.contains(record))
        return;
    m_entered.insert(record);
    Changes(m_database)
        .Enter(table.name, entered, ChangeNumber(), {m_author->session, m_author->name, m_author->time},
               removedKey);
}

void Records::Touch(const QString& table, qint64 id) {
    if (ChangeNumber() != 0)
        Enter(Named(table), id);
}

} // namespace sysadmin::server
