#include "server/files/Compare.h"

#include <QSet>

#include <algorithm>

namespace sysadmin::server {

namespace {

/// For each column before its place among the columns after; -1 where it is not there.
QList<qsizetype> PlacesOf(const SettingsTable& before, const SettingsTable& after) {
    QList<qsizetype> places;
    for (const Column* column : before.columns)
        places << after.columns.indexOf(column);
    return places;
}

/// Looks for values that two records after the change would share and may not. What the name of the records
/// consists of is compared when a file is read.
void FindShared(FileForm& form, const SettingsTable& before, const SettingsTable& after,
                const QHash<QString, const SettingsRecord*>& wasThere, Comparison& comparison) {
    const Table& table = form.Named(after.name);
    const QStringList name = NaturalKey(table).value_or(QStringList());
    QList<QStringList> sets = table.uniqueSets;
    for (const UniqueText& unique : table.uniqueTexts)
        sets << (unique.within.isEmpty() ? QStringList{unique.column}
                                         : QStringList{unique.within, unique.column});
    const QList<qsizetype> places = PlacesOf(before, after);
    for (const QStringList& set : sets) {
        QList<qsizetype> columns; // among those before
        for (const QString& column : set)
            columns << std::find_if(before.columns.begin(), before.columns.end(), [&](const Column* other) {
                           return other->name == column;
                       }) - before.columns.begin();
        const bool isInFile = std::any_of(columns.begin(), columns.end(), [&](qsizetype column) {
            return column < before.columns.size() && places[column] >= 0;
        });
        if (set == name || !isInFile || columns.contains(before.columns.size()))
            continue;
        QHash<QString, const SettingsRecord*> holders;
        for (const SettingsRecord& record : after.records) {
            const SettingsRecord* was = wasThere.value(record.key);
            QStringList values;
            bool isEmpty = false;
            for (const qsizetype column : columns) {
                const Column& declared = *before.columns[column];
                const QString value = places[column] >= 0 ? record.cells[places[column]]
                                      : was               ? was->cells[column]
                                                          : declared.fallback;
                const bool isReference = declared.type == ColumnType::Reference;
                isEmpty = isEmpty || (value.isEmpty() && (isReference || table.IsUniqueText(declared.name)));
                values << (isReference ? form.KeyOf(declared.target, value) : Fold(value));
            }
            const QString shared = values.join(QChar(2));
            if (isEmpty)
                continue;
            if (const SettingsRecord* other = holders.value(shared)) {
                QStringList headings;
                for (const qsizetype column : columns)
                    headings << FileHeading(*before.columns[column]);
                const bool isOtherTold = record.line == 0; // records that stay as they are have no line
                const SettingsRecord& first = isOtherTold ? record : *other;
                comparison.problems.append(
                    {after.name, isOtherTold ? other->line : record.line,
                     QString("%1 has the same %2.")
                         .arg(first.line > 0 ? QString("The record on line %1").arg(first.line)
                                             : '"' + form.NameOf(after, first) + '"',
                              headings.join(" and "))});
                continue;
            }
            holders.insert(shared, &record);
        }
    }
}

} // namespace

qsizetype Comparison::Count(Difference::Kind kind) const {
    return std::count_if(differences.begin(), differences.end(),
                         [&](const Difference& difference) { return difference.kind == kind; });
}

void CompareTable(FileForm& form, const SettingsTable& before, const SettingsTable& after,
                  Comparison& comparison) {
    const qsizetype first = comparison.differences.size();
    comparison.tables << after.name;
    QHash<QString, const SettingsRecord*> wasThere;
    wasThere.reserve(before.records.size());
    for (const SettingsRecord& record : before.records)
        wasThere.insert(record.key, &record);
    QSet<QString> stays;
    stays.reserve(after.records.size());
    QList<qsizetype> places; // of the columns after among those before
    for (const Column* column : after.columns)
        places << before.columns.indexOf(column);
    const Column* owner = form.Named(after.name).Find(form.Named(after.name).owner);
    const auto ownerOf = [&](const SettingsTable& table, const SettingsRecord& record) {
        return owner ? record.cells.value(table.columns.indexOf(owner)) : QString();
    };
    for (const SettingsRecord& record : after.records) {
        stays.insert(record.key);
        const SettingsRecord* was = wasThere.value(record.key);
        Difference difference{.kind = was ? Difference::Kind::Changed : Difference::Kind::Added,
                              .table = after.name,
                              .name = {},
                              .key = record.key,
                              .line = record.line,
                              .id = was ? was->id : 0};
        QStringList cells; // as they were, in the order of those after
        for (qsizetype i = 0; was && i < places.size(); ++i)
            cells << was->cells[places[i]];
        for (qsizetype i = 0; i < after.columns.size(); ++i)
            if (!was || !form.IsSame(after.columns, i, cells, record.cells))
                difference.cells.append({after.columns[i], was ? cells[i] : QString(), record.cells[i]});
        if (was && difference.cells.isEmpty())
            continue;
        difference.name = form.NameOf(after, record);
        difference.owner = after.columns.contains(owner) ? ownerOf(after, record)
                           : was                         ? ownerOf(before, *was)
                                                         : QString();
        comparison.differences << std::move(difference);
    }
    for (const SettingsRecord& record : before.records)
        if (!stays.contains(record.key)) {
            Difference difference{.kind = Difference::Kind::Removed,
                                  .table = before.name,
                                  .name = form.NameOf(before, record),
                                  .key = record.key,
                                  .line = 0,
                                  .id = record.id};
            difference.owner = ownerOf(before, record);
            for (const qsizetype place : places)
                difference.cells.append({before.columns[place], record.cells[place], {}});
            comparison.differences << std::move(difference);
        }
    if (comparison.differences.size() > first)
        FindShared(form, before, after, wasThere, comparison);
}

} // namespace sysadmin::server
