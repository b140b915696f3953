#include "server/store/TableFiles.h"

#include "server/store/Csv.h"
#include "server/store/Database.h"

#include <QSet>

#include <algorithm>
#include <numeric>

namespace sysadmin::server {

namespace {

/// Texts that are the same key apart from letter case and surrounding blanks.
QString Joined(const QStringList& parts) {
    QStringList folded;
    for (const QString& part : parts)
        folded << Fold(part);
    return folded.join(QChar(0x1f));
}

/// Keys sort part by part; a place sorts as a number.
QString SortText(const QStringList& parts) {
    return parts.join(QChar(1));
}

constexpr int PlaceDigits = 6;

QString PlaceText(int place) {
    return QString::number(place).rightJustified(PlaceDigits, '0');
}

QString WithoutZeros(const QString& place) {
    return QString::number(place.toInt());
}

} // namespace

/// The natural keys of a table's records.
struct TableFiles::Keys {
    QStringList columns;
    QHash<qint64, QStringList> partsOf;
    QHash<QString, qint64> idOf;
    QHash<QString, std::optional<qint64>> idOfCell; ///< of cells that were looked for

    bool ByPlace() const { return !columns.isEmpty() && columns.last().isEmpty(); }
    void Add(qint64 id, const QStringList& parts) {
        partsOf.insert(id, parts);
        idOf.insert(Joined(parts), id);
        idOfCell.clear();
    }
};

std::optional<QStringList> NaturalKey(const Table& table) {
    if (!table.uniqueTexts.isEmpty()) {
        const UniqueText& unique = table.uniqueTexts.first();
        return unique.within.isEmpty() ? QStringList{unique.column}
                                       : QStringList{unique.within, unique.column};
    }
    if (table.Find("only_one"))
        return QStringList();
    if (!table.uniqueSets.isEmpty())
        return table.uniqueSets.first();
    // While an order changes two records may have the same rank, so no unique set says this.
    if (table.Find("rank"))
        return QStringList{"rank"};
    if (!table.owner.isEmpty())
        return QStringList{table.owner, QString()};
    return std::nullopt;
}

QList<const Column*> FileColumns(const Table& table) {
    QList<const Column*> columns;
    for (const QString& name : NaturalKey(table).value_or(QStringList()))
        if (!name.isEmpty())
            columns << table.Find(name);
    for (const Column& column : table.columns)
        if (!columns.contains(&column) && !column.secret && !column.bookkeeping)
            columns << &column;
    return columns;
}

QString FileHeading(const Column& column) {
    const bool isReference = column.type == ColumnType::Reference || !column.tableIn.isEmpty();
    return isReference && column.name.endsWith("_id") ? column.name.chopped(3) : column.name;
}

TableFiles::TableFiles(Records& records, const Tables& tables)
    : m_records(records)
    , m_tables(tables) {}

TableFiles::~TableFiles() = default;

QStringList TableFiles::Names() const {
    QStringList names;
    QStringList last; // their records may be of any table
    QSet<QString> seen;
    const std::function<void(const Table&)> visit = [&](const Table& table) {
        if (seen.contains(table.name) || table.content != Content::Settings)
            return;
        seen.insert(table.name);
        for (const Column& column : table.columns)
            if (column.type == ColumnType::Reference)
                visit(*m_tables.constFind(column.target));
        const bool refersToAny = std::any_of(table.columns.begin(), table.columns.end(),
                                             [](const Column& column) { return !column.tableIn.isEmpty(); });
        (refersToAny ? last : names) << table.name;
    };
    for (const Table& table : m_tables)
        visit(table);
    return names + last;
}

QString TableFiles::TargetOf(const Column& column, const Row& row) const {
    if (column.type == ColumnType::Reference)
        return column.target;
    return column.tableIn.isEmpty() ? QString() : row.value(column.tableIn).toString();
}

QStringList TableFiles::Named(const QString& table, qint64 id) {
    return m_tables.contains(table) ? KeysOf(table).partsOf.value(id) : QStringList();
}

/// The parts of a record's key. A record that is known by its place comes after those of its owner that are
/// known already.
QStringList TableFiles::PartsOf(const Table& table, const Row& row, const Keys& keys) {
    QStringList parts;
    for (const QString& name : keys.columns) {
        if (name.isEmpty()) {
            int place = 1;
            while (keys.idOf.contains(Joined(parts + QStringList{PlaceText(place)})))
                ++place;
            parts << PlaceText(place);
            continue;
        }
        const Column& column = *table.Find(name);
        const QString target = TargetOf(column, row);
        parts += target.isEmpty() ? QStringList{row.value(name).toString()}
                                  : Named(target, row.value(name).toLongLong());
    }
    return parts;
}

TableFiles::Keys& TableFiles::KeysOf(const QString& name) {
    if (const auto known = m_keys.constFind(name); known != m_keys.constEnd())
        return **known;
    const Table& table = *m_tables.constFind(name);
    const auto keys = std::make_shared<Keys>();
    keys->columns = NaturalKey(table).value_or(QStringList());
    m_keys.insert(name, keys);
    QStringList columns{"id"};
    for (const QString& column : keys->columns)
        if (!column.isEmpty())
            columns << column;
    // The values of a row are read before the keys of other tables are, which takes queries of their own.
    QList<QPair<qint64, Row>> rows;
    m_records.GetDatabase().Each("SELECT " + columns.join(", ") + " FROM " + name + " ORDER BY id", {},
                                 [&](const ResultRow& result) {
                                     Row row;
                                     for (qsizetype i = 1; i < columns.size(); ++i)
                                         row.insert(columns[i], result.value(int(i)));
                                     rows.append({result.value(0).toLongLong(), row});
                                 });
    for (const auto& [id, row] : rows)
        keys->Add(id, PartsOf(table, row, *keys));
    return *keys;
}

/// Whether a single text names a record: that of its only key column, or of the record to which it points.
bool TableFiles::IsOneText(const Table& table) const {
    const QStringList key = NaturalKey(table).value_or(QStringList());
    if (key.size() != 1 || key.first().isEmpty())
        return false;
    const Column& column = *table.Find(key.first());
    return column.type != ColumnType::Reference || IsOneText(*m_tables.constFind(column.target));
}

std::optional<qint64> TableFiles::Find(const QString& table, const QString& cell) {
    Keys& keys = KeysOf(table);
    if (const auto known = keys.idOfCell.constFind(cell); known != keys.idOfCell.constEnd())
        return *known;
    QStringList parts{cell};
    if (!IsOneText(*m_tables.constFind(table))) {
        const QList<CsvRecord> records = ParseCsv(cell);
        parts = records.isEmpty() ? QStringList() : records.first().fields;
        // Places stand without leading zeros.
        if (keys.ByPlace() && !parts.isEmpty())
            parts.last() = PlaceText(parts.last().toInt());
    }
    const auto found = keys.idOf.constFind(Joined(parts));
    const std::optional<qint64> id = found == keys.idOf.constEnd() ? std::nullopt : std::optional(*found);
    keys.idOfCell.insert(cell, id);
    return id;
}

QByteArray TableFiles::Write(const QString& name) {
    const Table& table = *m_tables.constFind(name);
    const Columns columns = FileColumns(table);
    QStringList headings;
    QStringList selected{"id"};
    for (const Column* column : columns) {
        headings << FileHeading(*column);
        selected << column->name;
    }
    Keys& keys = KeysOf(name);
    QList<QPair<QString, QString>> lines; // with what they are sorted by
    QList<QPair<qint64, Row>> rows;
    m_records.GetDatabase().Each("SELECT " + selected.join(", ") + " FROM " + name + " ORDER BY id", {},
                                 [&](const ResultRow& result) {
                                     Row row;
                                     for (qsizetype i = 1; i < selected.size(); ++i)
                                         row.insert(selected[i], result.value(int(i)));
                                     rows.append({result.value(0).toLongLong(), row});
                                 });
    for (const auto& [id, row] : rows) {
        QStringList cells;
        for (const Column* column : columns) {
            const QVariant value = row.value(column->name);
            const QString target = TargetOf(*column, row);
            if (target.isEmpty() || value.isNull()) {
                cells << value.toString();
                continue;
            }
            QStringList parts = Named(target, value.toLongLong());
            if (KeysOf(target).ByPlace() && !parts.isEmpty())
                parts.last() = WithoutZeros(parts.last());
            cells << (parts.size() == 1 ? parts.first() : CsvLine(parts));
        }
        lines.append({table.ordered ? QString() : SortText(keys.partsOf.value(id)), CsvLine(cells)});
    }
    std::stable_sort(lines.begin(), lines.end(),
                     [](const auto& one, const auto& other) { return one.first < other.first; });
    QString text = CsvLine(headings) + "\r\n";
    for (const auto& [key, line] : lines)
        text += line + "\r\n";
    return text.toUtf8();
}

/// Reads a cell; `target` is the table of the record that it names, if it names one. Answers what is wrong
/// with it.
QString TableFiles::ReadCell(const Column& column, const QString& target, const QString& cell,
                             QVariant& value, bool* isUnknown) {
    if (!target.isEmpty()) {
        const auto single = m_tables.constFind(target);
        const bool isSingle = single != m_tables.constEnd() && single->IsSingle(); // which nothing names
        if (cell.isEmpty() && !isSingle)
            return {};
        const auto id = m_tables.contains(target) ? Find(target, cell) : std::nullopt;
        *isUnknown = !id;
        if (!id)
            return "There is no record \"" + cell + "\" of the table " + target + '.';
        value = *id;
        return {};
    }
    if (column.type == ColumnType::Flag && cell != u"Y" && cell != u"N")
        return FileHeading(column) + " is neither Y nor N.";
    bool isNumber = cell.isEmpty() || column.type != ColumnType::Whole;
    if (!isNumber)
        cell.toLongLong(&isNumber);
    if (!isNumber)
        return FileHeading(column) + " is no number.";
    if (!IsStorable(cell))
        return FileHeading(column) + " holds a character that no text may hold.";
    value = cell;
    return {};
}

/// Whether lines can be added without looking for records that are there: the table is empty, and the ids of
/// other records are all that names its own.
bool TableFiles::MayAppend(const Table& table) const {
    const QStringList key = NaturalKey(table).value_or(QStringList());
    return !key.isEmpty() &&
           std::all_of(table.columns.begin(), table.columns.end(),
                       [](const Column& column) { return column.tableIn.isEmpty(); }) &&
           std::all_of(key.begin(), key.end(),
                       [&](const QString& column) {
                           return !column.isEmpty() && table.Find(column)->type == ColumnType::Reference;
                       }) &&
           !m_records.GetDatabase().FirstRow("SELECT 1 FROM " + table.name + " LIMIT 1");
}

/// Adds the lines of a file to an empty table. Of lines with the same key the last one counts.
QString TableFiles::Append(const Table& table, const Columns& columns, const QList<CsvRecord>& records,
                           Unknown unknown) {
    const QStringList key = NaturalKey(table).value_or(QStringList());
    const Records::Inserter inserter(m_records, table.name, columns);
    QHash<QString, qint64> added;
    m_keys.remove(table.name); // they are read anew when they are needed
    for (qsizetype line = 1; line < records.size(); ++line) {
        const CsvRecord& record = records[line];
        const auto wrong = [&](const QString& what) {
            return QString("%1.csv, line %2: %3").arg(table.name).arg(record.line).arg(what);
        };
        if (record.fields.size() != columns.size())
            return wrong(
                QString("There are %1 fields in place of %2.").arg(record.fields.size()).arg(columns.size()));
        QVariantList values(columns.size());
        QString ids;
        bool isUnknown = false;
        for (qsizetype i = 0; i < columns.size() && !isUnknown; ++i) {
            const QString what =
                ReadCell(*columns[i], columns[i]->target, record.fields[i], values[i], &isUnknown);
            if (!what.isEmpty() && !(isUnknown && unknown == Unknown::Skip))
                return wrong(what);
            if (key.contains(columns[i]->name))
                ids += values[i].toString() + ' ';
        }
        if (isUnknown)
            continue;
        if (const auto present = added.constFind(ids); present == added.constEnd()) {
            added.insert(ids, inserter.Add(values));
        } else {
            Row row;
            for (qsizetype i = 0; i < columns.size(); ++i)
                row.insert(columns[i]->name, values[i]);
            m_records.Update(table.name, *present, row);
        }
    }
    return {};
}

QString TableFiles::ReadRecord(const Table& table, const Columns& columns, const CsvRecord& record,
                               Unknown unknown, const std::function<bool(const Row&)>& takes,
                               QHash<qint64, int>& places) {
    if (record.fields.size() != columns.size())
        return QString("There are %1 fields in place of %2.").arg(record.fields.size()).arg(columns.size());
    Row row;
    QList<qsizetype> order(columns.size());
    std::iota(order.begin(), order.end(), 0);
    // A record of any table is looked for when its table is known.
    std::stable_partition(order.begin(), order.end(),
                          [&](qsizetype i) { return columns[i]->tableIn.isEmpty(); });
    for (const qsizetype i : order) {
        bool isUnknown = false;
        const QString wrong = ReadCell(*columns[i], TargetOf(*columns[i], row), record.fields[i],
                                       row[columns[i]->name], &isUnknown);
        if (isUnknown && unknown == Unknown::Skip)
            return {};
        if (!wrong.isEmpty())
            return wrong;
    }
    if (takes && !takes(row))
        return {};
    Keys& keys = KeysOf(table.name);
    QStringList parts;
    if (keys.ByPlace()) {
        const qint64 owner = row.value(table.owner).toLongLong();
        parts = Named(table.Find(table.owner)->target, owner) + QStringList{PlaceText(++places[owner])};
    } else {
        parts = PartsOf(table, row, keys);
    }
    if (const auto present = keys.idOf.constFind(Joined(parts)); present != keys.idOf.constEnd()) {
        m_records.Update(table.name, *present, row);
        return {};
    }
    keys.Add(m_records.Insert(table.name, row), parts);
    return {};
}

QString TableFiles::Read(const QString& name, const QByteArray& file, Unknown unknown,
                         const std::function<bool(const Row&)>& takes) {
    const Table& table = *m_tables.constFind(name);
    const QList<CsvRecord> records = ParseCsv(QString::fromUtf8(file));
    const auto wrongAt = [&](int line, const QString& what) {
        return QString("%1.csv, line %2: %3").arg(name).arg(line).arg(what);
    };
    if (records.isEmpty())
        return wrongAt(1, "There are no headings.");
    Columns columns;
    const Columns known = FileColumns(table);
    for (const QString& heading : records.first().fields) {
        const auto column = std::find_if(known.begin(), known.end(), [&](const Column* candidate) {
            return FileHeading(*candidate) == heading && !columns.contains(candidate);
        });
        if (column == known.end())
            return wrongAt(1, "The heading \"" + heading + "\" means nothing here.");
        columns << *column;
    }
    for (const QString& key : KeysOf(name).columns)
        if (!key.isEmpty() && !columns.contains(table.Find(key)))
            return wrongAt(1, "The heading \"" + FileHeading(*table.Find(key)) + "\" is missing.");
    if (!takes && MayAppend(table))
        return Append(table, columns, records, unknown);
    QHash<qint64, int> places;
    for (qsizetype i = 1; i < records.size(); ++i)
        if (const QString wrong = ReadRecord(table, columns, records[i], unknown, takes, places);
            !wrong.isEmpty())
            return wrongAt(records[i].line, wrong);
    return {};
}

} // namespace sysadmin::server
