#include "server/store/Records.h"

#include "server/store/Database.h"
#include "server/store/History.h"

#include <algorithm>
#include <utility>

namespace sysadmin::server {

namespace {

/// The value as the column stores it: an empty text is a text and no null, an empty number or reference is
/// null.
QVariant Stored(const Column& column, const QVariant& value) {
    switch (column.type) {
    case ColumnType::Text:
    case ColumnType::Flag: {
        if (value.typeId() == QMetaType::QString && !static_cast<const QString*>(value.constData())->isNull())
            return value;
        const QString text = value.toString();
        return text.isNull() ? QString("") : text;
    }
    case ColumnType::Whole:
    case ColumnType::Reference: {
        if (value.typeId() == QMetaType::LongLong)
            return value;
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

/// What adds rows that name the same columns as the values.
Records::Inserter& Records::InserterOf(const Table& table, const Row& values) {
    std::shared_ptr<Inserter>& inserter = m_inserters[table.name];
    const auto isNamed = [](const Column* column, const QString& name) { return column->name == name; };
    if (inserter && std::equal(inserter->Columns().begin(), inserter->Columns().end(), values.keyBegin(),
                               values.keyEnd(), isNamed))
        return *inserter;
    QList<const Column*> columns;
    for (auto value = values.begin(); value != values.end(); ++value) {
        columns << table.Find(value.key());
        if (!columns.last())
            qFatal("The table \"%s\" has no column \"%s\".", qPrintable(table.name), qPrintable(value.key()));
    }
    inserter = std::make_shared<Inserter>(*this, table.name, columns);
    return *inserter;
}

qint64 Records::Insert(const QString& table, const Row& values) {
    return InserterOf(Named(table), values).Add(values.values());
}

Records::Inserter::Inserter(Records& records, const QString& table, const QList<const Column*>& columns)
    : m_records(records)
    , m_table(records.Named(table))
    , m_columns(columns) {
    for (qsizetype place = 0; place < m_table.columns.size(); ++place) {
        const Column& column = m_table.columns[place];
        m_row << Stored(column, column.fallback);
        if (column.name == m_table.owner || column.showsThere)
            m_owners.append({place, &records.Named(column.target)});
    }
    QStringList names;
    for (const Column* column : columns) {
        names << column->name;
        m_isUnique << m_table.IsUniqueText(column->name);
        if (m_isUnique.last())
            names << FoldedName(column->name);
    }
    m_sql = "INSERT INTO " + table +
            (names.isEmpty() ? QString(" DEFAULT VALUES")
                             : " (" + names.join(", ") + ") VALUES (" +
                                   QString("?, ").repeated(names.size()).chopped(2) + ')');
}

qint64 Records::Inserter::Add(const QVariantList& values) {
    m_bound.clear();
    for (qsizetype i = 0; i < values.size(); ++i) {
        QVariant& value = m_row[m_columns[i] - m_table.columns.constData()];
        value = Stored(*m_columns[i], values[i]);
        m_bound << value;
        if (!m_isUnique[i])
            continue;
        const QString folded = Fold(values[i].toString());
        m_bound << (folded.isEmpty() ? QVariant() : QVariant(folded));
    }
    const qint64 id = m_records.m_database.RunInsert(m_sql, m_bound);
    if (!m_records.m_history)
        return id;
    m_records.m_history->NoteAdded(m_table, id, m_row);
    m_records.EnterAdded(m_table, id);
    for (const Owner& owner : m_owners)
        if (const QVariant& its = m_row[owner.place]; !its.isNull())
            m_records.EnterOwner(*owner.table, its.toLongLong());
    if (!m_table.partOf.isEmpty())
        m_records.Enter(m_records.Named(m_table.partOf), 0);
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
    m_database.RunLater("UPDATE " + table.name + " SET " + names.join("=?, ") + "=? WHERE id=?", bound);
    if (m_history) {
        m_history->NoteChanged(table, id, replaced, changed);
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
    m_database.RunLater("DELETE FROM " + table.name + " WHERE id=?", {id});
    if (m_history) {
        m_history->NoteRemoved(table, id, *before);
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
    QString& sql = m_finds[tableName];
    if (sql.isEmpty()) {
        QStringList names;
        for (const Column& column : table.columns)
            names << column.name;
        sql = "SELECT " + (names.isEmpty() ? QString("id") : names.join(", ")) + " FROM " + table.name +
              " WHERE id=?";
    }
    const auto values = m_database.FirstRow(sql, {id});
    if (!values)
        return std::nullopt;
    Row row;
    for (qsizetype i = 0; i < table.columns.size(); ++i)
        row.insert(table.columns[i].name, Stored(table.columns[i], (*values)[i]));
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
    if (!m_history)
        return;
    m_history->Finish();
    QList<Changes::Added> together;
    for (const QList<Changes::Added>& ofTable : std::exchange(m_added, {}))
        for (const Changes::Added& added : ofTable)
            if (added.last - added.first + 1 >= Changes::LeastTogether)
                together << added;
            else
                for (qint64 id = added.first; id <= added.last; ++id)
                    Enter(Named(added.table), id);
    Changes(m_database)
        .Enter(m_changes, ChangeNumber(), {m_author->session, m_author->name, m_author->time}, together);
    m_changes.clear();
    m_entered.clear();
    m_owners.clear();
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
    const QPair<QString, qint64> record{table.name, id};
    if (m_owners.contains(record))
        return;
    m_owners.insert(record);
    Enter(table, id);
    if (table.owner.isEmpty())
        return;
    const QVariant owner =
        m_database.FirstValue("SELECT " + table.owner + " FROM " + table.name + " WHERE id=?", {id});
    if (!owner.isNull())
        EnterOwner(Named(table.Find(table.owner)->target), owner.toLongLong());
}

void Records::Enter(const Table& table, qint64 id, const std::optional<QString>& removedKey) {
    if (table.IsPart() || (!removedKey && IsEnteredAsAdded(table, id)))
        return;
    const qint64 entered = table.IsSingle() ? 0 : id;
    const QPair<QString, qint64> record{table.name, entered};
    const auto place = m_entered.constFind(record);
    if (place == m_entered.constEnd()) {
        m_entered.insert(record, m_changes.size());
        m_changes.append({table.name, entered, removedKey});
    } else if (removedKey) {
        m_changes[*place].removedKey = removedKey;
    }
}

void Records::EnterAdded(const Table& table, qint64 id) {
    if (table.IsPart() || table.IsSingle()) {
        Enter(table, id);
        return;
    }
    QList<Changes::Added>& added = m_added[table.name];
    if (!added.isEmpty() && added.last().last == id - 1)
        added.last().last = id;
    else
        added.append({table.name, id, id});
}

bool Records::IsEnteredAsAdded(const Table& table, qint64 id) const {
    const QList<Changes::Added> added = m_added.value(table.name);
    return std::any_of(added.begin(), added.end(),
                       [id](const Changes::Added& some) { return some.first <= id && id <= some.last; });
}

void Records::Touch(const QString& table, qint64 id) {
    if (ChangeNumber() != 0)
        Enter(Named(table), id);
}

} // namespace sysadmin::server
