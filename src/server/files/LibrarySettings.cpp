#include "server/files/LibrarySettings.h"

#include "server/store/Database.h"
#include "wire/Csv.h"

#include <algorithm>
#include <numeric>

namespace sysadmin::server {

namespace {

constexpr QChar BetweenSorted = QChar(1);

QString Sorted(const Column& column, const QString& text) {
    constexpr int Digits = 19;
    return column.type == ColumnType::Whole ? text.rightJustified(Digits, '0') : text;
}

/// A value as its cell has it.
QString CellOf(const Column& column, const QString& text) {
    return column.type == ColumnType::Flag && text.isEmpty() ? QString("N") : text;
}

} // namespace

/// Names the records of a table, one after the other in the order of their ids.
class LibrarySettings::Namer {
public:
    Namer(LibrarySettings& settings, const Table& table)
        : m_settings(settings) {
        for (const QString& name : NaturalKey(table).value_or(QStringList())) {
            m_byPlace = name.isEmpty();
            if (!m_byPlace)
                m_columns << table.Find(name);
        }
    }

    const QList<const Column*>& Columns() const { return m_columns; }

    /// `values` and `targets` are those of the key's columns.
    Name Next(const QVariantList& values, const QStringList& targets) {
        Name name;
        QStringList sorted;
        QStringList keys;
        for (qsizetype i = 0; i < m_columns.size(); ++i) {
            if (targets[i].isEmpty() || values[i].isNull()) {
                const QString text = values[i].toString();
                name.parts << text;
                keys << Fold(text);
                sorted << Sorted(*m_columns[i], text);
                continue;
            }
            const Name other = m_settings.NamesOf(targets[i]).value(values[i].toLongLong());
            name.parts << other.parts;
            keys << other.key;
            sorted << other.sorted;
        }
        name.key = keys.join(keyparts::Separator);
        QStringList shown = name.parts;
        if (m_byPlace) {
            const int place = ++m_places[name.key];
            name.parts << keyparts::OfPlace(place);
            shown << QString::number(place);
            name.key += keyparts::Separator + keyparts::OfPlace(place);
            sorted << keyparts::OfPlace(place);
        }
        name.cell = shown.size() == 1 ? shown.first() : wire::CsvLine(shown);
        name.sorted = sorted.join(BetweenSorted);
        return name;
    }

private:
    LibrarySettings& m_settings;
    QList<const Column*> m_columns;
    bool m_byPlace = false;
    QHash<QString, int> m_places;
};

LibrarySettings::LibrarySettings(Database& database, FileForm& form)
    : m_database(database)
    , m_form(form) {}

const QHash<qint64, LibrarySettings::Name>& LibrarySettings::NamesOf(const QString& name) {
    if (const auto known = m_names.constFind(name); known != m_names.constEnd())
        return **known;
    const auto names = std::make_shared<QHash<qint64, Name>>();
    const auto table = m_form.GetTables().constFind(name);
    if (table != m_form.GetTables().constEnd()) {
        Namer namer(*this, *table);
        QStringList columns{"id"};
        QStringList targets;
        for (const Column* column : namer.Columns()) {
            columns << column->name;
            targets << column->target;
        }
        // The rows are read before the names of other tables' records are, which takes queries of their own.
        QList<QVariantList> rows;
        m_database.Each("SELECT " + columns.join(", ") + " FROM " + name + " ORDER BY id", {},
                        [&](const ResultRow& row) {
                            QVariantList values;
                            for (qsizetype i = 0; i < columns.size(); ++i)
                                values << row.value(int(i));
                            rows << values;
                        });
        for (QVariantList& row : rows) {
            const qint64 id = row.takeFirst().toLongLong();
            names->insert(id, namer.Next(row, targets));
        }
    }
    m_names.insert(name, names);
    return *names;
}

const QHash<QString, qint64>& LibrarySettings::IdsOf(const QString& table) {
    std::shared_ptr<QHash<QString, qint64>>& ids = m_ids[table];
    if (!ids) {
        const auto read = std::make_shared<QHash<QString, qint64>>();
        const QHash<qint64, Name>& names = NamesOf(table);
        for (auto name = names.begin(); name != names.end(); ++name)
            read->insert(name->key, name.key());
        m_ids[table] = read;
        return *read;
    }
    return *ids;
}

SettingsTable LibrarySettings::Read(const QString& name) {
    const Table& table = m_form.Named(name);
    SettingsTable settings{.name = name, .columns = FileColumns(table), .records = {}};
    Namer namer(*this, table);
    QStringList selected{"id"};
    for (const Column* column : settings.columns) {
        selected << column->name;
        if (column->type == ColumnType::Reference)
            NamesOf(column->target); // read before the rows are
    }
    struct Read {
        qint64 id;
        QStringList cells;
        QVariantList key;
        QList<std::pair<qsizetype, qint64>> ofAnyTable; // columns whose table a cell names
    };
    const qsizetype keyColumns = namer.Columns().size(); // they come first
    QList<Read> rows;
    m_database.Each(
        "SELECT " + selected.join(", ") + " FROM " + name + " ORDER BY id", {}, [&](const ResultRow& row) {
            Read read{.id = row.value(0).toLongLong(), .cells = {}, .key = {}, .ofAnyTable = {}};
            read.cells.reserve(settings.columns.size());
            for (qsizetype i = 0; i < settings.columns.size(); ++i) {
                const Column& column = *settings.columns[i];
                const bool isPlain =
                    column.type != ColumnType::Reference && column.tableIn.isEmpty() && i >= keyColumns;
                if (isPlain) {
                    read.cells << CellOf(column, row.Text(int(i) + 1));
                    continue;
                }
                const QVariant value = row.value(int(i) + 1);
                if (i < keyColumns)
                    read.key << value;
                if (!column.tableIn.isEmpty() && !value.isNull())
                    read.ofAnyTable.append({i, value.toLongLong()});
                if (column.type == ColumnType::Reference)
                    read.cells << (value.isNull()
                                       ? QString()
                                       : (*m_names.constFind(column.target))->value(value.toLongLong()).cell);
                else
                    read.cells << CellOf(column, value.toString());
            }
            rows << std::move(read);
        });
    QStringList sorted;
    settings.records.reserve(rows.size());
    for (Read& row : rows) {
        for (const auto& [column, id] : row.ofAnyTable)
            row.cells[column] =
                NamesOf(FileForm::TargetOf(settings.columns, column, row.cells)).value(id).cell;
        QStringList targets;
        for (qsizetype i = 0; i < keyColumns; ++i)
            targets << FileForm::TargetOf(settings.columns, i, row.cells);
        const Name own = namer.Next(row.key, targets);
        sorted << own.sorted;
        settings.records.append({.cells = row.cells, .key = own.key, .line = 0, .id = row.id});
    }
    if (table.ordered)
        return settings;
    QList<qsizetype> order(sorted.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(),
                     [&](qsizetype one, qsizetype other) { return sorted[one] < sorted[other]; });
    QList<SettingsRecord> records;
    records.reserve(order.size());
    for (const qsizetype place : order)
        records << std::move(settings.records[place]);
    settings.records = std::move(records);
    return settings;
}

} // namespace sysadmin::server
