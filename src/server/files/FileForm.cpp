#include "server/files/FileForm.h"

#include "wire/Csv.h"

#include <QSet>

#include <algorithm>
#include <functional>

namespace sysadmin::server {

QString FileProblem::Sentence() const {
    return line > 0 ? QString("%1.csv, line %2: %3").arg(table).arg(line).arg(text) : table + ".csv: " + text;
}

QString keyparts::OfPlace(int place) {
    constexpr int Digits = 6;
    return QString::number(place).rightJustified(Digits, '0');
}

std::optional<QStringList> NaturalKey(const Table& table) {
    if (!table.uniqueTexts.isEmpty()) {
        const UniqueText& unique = table.uniqueTexts.first();
        return unique.within.isEmpty() ? QStringList{unique.column}
                                       : QStringList{unique.within, unique.column};
    }
    if (table.IsSingle())
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

FileForm::FileForm(const Tables& tables)
    : m_tables(tables) {
    QSet<QString> seen;
    const std::function<void(const Table&)> visit = [&](const Table& table) {
        if (seen.contains(table.name) || table.content != Content::Settings)
            return;
        seen.insert(table.name);
        for (const Column& column : table.columns)
            if (column.type == ColumnType::Reference)
                visit(Named(column.target));
        m_order << table.name;
    };
    for (const Table& table : m_tables)
        visit(table);
}

QStringList FileForm::SampleOrder() const {
    QStringList order = m_order;
    for (const Table& table : m_tables)
        if (table.content == Content::Usage)
            order << table.name;
    return order;
}

QStringList FileForm::WithParts(const QString& whole) const {
    QStringList tables{whole};
    for (qsizetype i = 0; i < tables.size(); ++i)
        for (const Table& table : m_tables) {
            const Column* owner = table.Find(table.owner);
            const bool isPart = (owner && owner->target == tables[i]) || table.partOf == tables[i];
            if (isPart && table.content == Content::Settings && !tables.contains(table.name))
                tables << table.name;
        }
    return tables;
}

QString FileForm::TargetOf(const QList<const Column*>& columns, qsizetype column, const QStringList& cells) {
    const Column& asked = *columns[column];
    if (asked.type == ColumnType::Reference)
        return asked.target;
    if (asked.tableIn.isEmpty())
        return {};
    for (qsizetype i = 0; i < columns.size(); ++i)
        if (columns[i]->name == asked.tableIn)
            return cells[i];
    return {};
}

/// Whether a single text names a record: that of its only key column, or of the record to which it points.
bool FileForm::IsOneText(const Table& table) const {
    const QStringList key = NaturalKey(table).value_or(QStringList());
    if (key.size() != 1 || key.first().isEmpty())
        return false;
    const Column& column = *table.Find(key.first());
    return column.type != ColumnType::Reference || IsOneText(Named(column.target));
}

QString FileForm::KeyOf(const QString& name, const QString& cell) {
    QHash<QString, QString>& known = m_keys[name];
    if (const auto key = known.constFind(cell); key != known.constEnd())
        return *key;
    const auto table = m_tables.constFind(name);
    QString key = Fold(cell);
    if (!cell.isEmpty() && table != m_tables.constEnd() && !IsOneText(*table)) {
        const QList<wire::CsvRecord> records = wire::ParseCsv(cell);
        QStringList parts = records.isEmpty() ? QStringList() : records.first().fields;
        const QStringList columns = NaturalKey(*table).value_or(QStringList());
        // Places stand without leading zeros.
        if (!columns.isEmpty() && columns.last().isEmpty() && !parts.isEmpty())
            parts.last() = keyparts::OfPlace(parts.last().toInt());
        for (QString& part : parts)
            part = Fold(part);
        key = parts.join(keyparts::Separator);
    }
    known.insert(cell, key);
    return key;
}

bool FileForm::IsSame(const QList<const Column*>& columns, qsizetype column, const QStringList& one,
                      const QStringList& other) {
    if (one[column] == other[column])
        return true;
    const QString target = TargetOf(columns, column, one);
    return !target.isEmpty() && !one[column].isEmpty() && !other[column].isEmpty() &&
           KeyOf(target, one[column]) == KeyOf(target, other[column]);
}

QString FileForm::NameOf(const SettingsTable& settings, const SettingsRecord& record) const {
    QStringList parts;
    for (const QString& name : NaturalKey(Named(settings.name)).value_or(QStringList())) {
        if (name.isEmpty()) {
            parts << '#' + QString::number(record.key.section(keyparts::Separator, -1).toInt());
            continue;
        }
        for (qsizetype i = 0; i < settings.columns.size(); ++i)
            if (settings.columns[i]->name == name)
                parts << record.cells[i];
    }
    return parts.join(" / ");
}

RecordKeys::RecordKeys(FileForm& form, const Table& table, const QList<const Column*>& columns)
    : m_form(form)
    , m_columns(columns) {
    for (const QString& name : NaturalKey(table).value_or(QStringList())) {
        m_byPlace = name.isEmpty();
        if (m_byPlace)
            break;
        const auto found = std::find_if(columns.begin(), columns.end(),
                                        [&](const Column* column) { return column->name == name; });
        if (found == columns.end())
            m_missing << FileHeading(*table.Find(name));
        m_cells << found - columns.begin();
    }
}

QString RecordKeys::Next(const QStringList& cells) {
    QString key;
    for (const qsizetype cell : m_cells) {
        if (cell != m_cells.first())
            key += keyparts::Separator;
        const QString target = FileForm::TargetOf(m_columns, cell, cells);
        key += target.isEmpty() ? Fold(cells[cell]) : m_form.KeyOf(target, cells[cell]);
    }
    return m_byPlace ? key + keyparts::Separator + keyparts::OfPlace(++m_places[key]) : key;
}

} // namespace sysadmin::server
