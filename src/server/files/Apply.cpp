#include "server/files/Apply.h"

#include "server/files/Rules.h"
#include "server/store/Database.h"

#include <QSet>

#include <algorithm>

namespace sysadmin::server {

namespace {

using Kind = Difference::Kind;

class Applier {
public:
    Applier(Records& records, FileForm& form, LibrarySettings& library, const Comparison& comparison,
            Unknown unknown)
        : m_records(records)
        , m_database(records.GetDatabase())
        , m_form(form)
        , m_library(library)
        , m_unknown(unknown)
        , m_compared(comparison.tables.begin(), comparison.tables.end()) {
        for (const Difference& difference : comparison.differences)
            m_differences[difference.table] << &difference;
        m_written = std::make_unique<WrittenRecords>(
            records, form, unknown == Unknown::Refuse ? m_differences.keys() : QStringList());
    }

    QList<FileProblem> Run();

private:
    using Differences = QList<const Difference*>;

    void Wrong(const Difference& difference, const QString& text) {
        m_problems.append({difference.table, difference.line, text});
    }
    Differences Of(const QString& table, Kind kind) const;
    void ReadIds();
    QString WrongWith(const Column& column, const QString& value);
    void CheckCells();
    void FreeTexts();
    void HoldTexts();
    void LetGo();
    void RemoveAll();
    bool IsKept(const Difference& difference);
    void AddAll();
    void ChangeAll();
    void SetLateReferences();
    std::optional<qint64> Find(const QString& table, const QString& cell);
    QVariant ToStore(const Difference& difference, const ChangedCell& cell, bool* isUnknown);

    /// A reference to a record that comes after the one that refers to it.
    struct Late {
        const Difference* difference;
        const ChangedCell* cell;
        qint64 id;
    };
    /// Unique texts that a record is about to give up.
    struct Freed {
        const Difference* difference;
        QString column;
    };

    Records& m_records;
    Database& m_database;
    FileForm& m_form;
    LibrarySettings& m_library;
    Unknown m_unknown;
    QSet<QString> m_compared;
    std::unique_ptr<WrittenRecords> m_written;
    QHash<QString, Differences> m_differences;
    QHash<QString, QHash<QString, qint64>> m_ids;
    QList<Late> m_late;
    QList<Freed> m_freed;
    QHash<const Column*, QSet<QString>> m_right; ///< values that columns take
    QList<FileProblem> m_problems;
};

Applier::Differences Applier::Of(const QString& table, Kind kind) const {
    Differences some;
    for (const Difference* difference : m_differences.value(table))
        if (difference->kind == kind)
            some << difference;
    return some;
}

/// Reads the ids of all records to which changed ones may refer, before anything changes.
void Applier::ReadIds() {
    const auto read = [&](const QString& table) {
        if (!m_ids.contains(table))
            m_ids.insert(table, m_library.IdsOf(table));
    };
    for (auto changed = m_differences.begin(); changed != m_differences.end(); ++changed)
        for (const Column& column : m_form.Named(changed.key()).columns) {
            if (column.type == ColumnType::Reference)
                read(column.target);
            if (!column.tableIn.isEmpty())
                for (const QString& table : m_form.Order())
                    read(table);
        }
}

/// What is wrong with a value, as the end of a sentence. Most values stand in many records.
QString Applier::WrongWith(const Column& column, const QString& value) {
    QSet<QString>& right = m_right[&column];
    if (right.contains(value))
        return {};
    QString wrong = column.rule.WrongWith(column.type, value);
    const auto target = m_form.GetTables().constFind(column.target);
    const bool isNamed = target == m_form.GetTables().constEnd() || !target->IsSingle();
    if (wrong.isEmpty() && isNamed && column.rule.required && value.trimmed().isEmpty())
        wrong = "must not be empty";
    if (wrong.isEmpty())
        right.insert(value);
    return wrong;
}

/// Looks at what is said of each record by itself.
void Applier::CheckCells() {
    for (auto changed = m_differences.begin(); changed != m_differences.end(); ++changed) {
        QList<const Column*> needed; // by new records
        for (const Column* column : FileColumns(m_form.Named(changed.key())))
            if (column->rule.required && column->fallback.isEmpty())
                needed << column;
        for (const Difference* difference : *changed) {
            QList<const Column*> missing = needed;
            if (difference->kind == Kind::Removed)
                continue;
            for (const ChangedCell& cell : difference->cells) {
                missing.removeOne(cell.column);
                if (const QString wrong = WrongWith(*cell.column, cell.after); !wrong.isEmpty())
                    Wrong(*difference, FileHeading(*cell.column) + ' ' + wrong + '.');
            }
            if (difference->kind == Kind::Added)
                for (const Column* column : missing)
                    Wrong(*difference, "The column \"" + FileHeading(*column) +
                                           "\" is missing, and a new record needs it.");
        }
    }
}

/// Two records may exchange a unique text, and a new one may take that of one that goes.
void Applier::FreeTexts() {
    for (auto changed = m_differences.begin(); changed != m_differences.end(); ++changed)
        for (const UniqueText& unique : m_form.Named(changed.key()).uniqueTexts)
            for (const Difference* difference : *changed) {
                const bool frees = std::any_of(
                    difference->cells.begin(), difference->cells.end(), [&](const ChangedCell& cell) {
                        return cell.column->name == unique.column || cell.column->name == unique.within;
                    });
                if (difference->kind == Kind::Added || (difference->kind == Kind::Changed && !frees))
                    continue;
                m_database.Run("UPDATE " + changed.key() + " SET " + FoldedName(unique.column) +
                                   "=NULL WHERE id=?",
                               {difference->id});
                if (difference->kind == Kind::Changed)
                    m_freed.append({difference, unique.column});
            }
}

void Applier::HoldTexts() {
    for (const Freed& freed : m_freed) {
        const auto text = m_database.FirstValue("SELECT " + freed.column + " FROM " +
                                                    freed.difference->table + " WHERE id=?",
                                                {freed.difference->id});
        const QString folded = Fold(text.toString());
        m_database.Run("UPDATE " + freed.difference->table + " SET " + FoldedName(freed.column) +
                           "=? WHERE id=?",
                       {folded.isEmpty() ? QVariant() : QVariant(folded), freed.difference->id});
    }
}

/// Records that change let go of those that are removed.
void Applier::LetGo() {
    QSet<QPair<QString, QString>> removed;
    for (const Differences& differences : m_differences)
        for (const Difference* difference : differences)
            if (difference->kind == Kind::Removed)
                removed.insert({difference->table, difference->key});
    if (removed.isEmpty())
        return;
    for (const Differences& differences : m_differences)
        for (const Difference* difference : differences)
            if (difference->kind == Kind::Changed)
                for (const ChangedCell& cell : difference->cells)
                    if (cell.column->type == ColumnType::Reference && !cell.before.isEmpty() &&
                        removed.contains(
                            {cell.column->target, m_form.KeyOf(cell.column->target, cell.before)}))
                        m_records.Update(difference->table, difference->id,
                                         {{cell.column->name, QVariant()}});
}

/// Whether something keeps the record from being removed; then that is told.
bool Applier::IsKept(const Difference& difference) {
    const auto keep = [&](const QString& by) {
        Wrong(difference, '"' + difference.name + "\" is missing and cannot be removed: " + by + '.');
        return true;
    };
    for (const Table& other : m_form.GetTables()) {
        if (other.content != Content::Settings)
            continue;
        for (const Column& column : other.columns) {
            // Where files say all records, none of those that are left goes with this one or lets go of it.
            const bool keeps =
                column.keeps || column.onRemoval == OnRemoval::Refuse || m_compared.contains(other.name);
            if (column.type != ColumnType::Reference || column.target != difference.table || !keeps)
                continue;
            const qint64 count = m_records.Count(other.name, column.name, difference.id);
            if (count > 0)
                return keep(
                    QString(count == 1 ? "%1 record of %2 refers to it" : "%1 records of %2 refer to it")
                        .arg(count)
                        .arg(other.name));
        }
    }
    const auto usage = m_database.FirstRow(
        "SELECT used, kind FROM usage WHERE table_name=? AND record_id=? AND used>0 ORDER BY kind",
        {difference.table, difference.id});
    return usage && keep((*usage)[0].toString() + ' ' + (*usage)[1].toString() + " use it");
}

void Applier::RemoveAll() {
    for (auto table = m_form.Order().crbegin(); table != m_form.Order().crend(); ++table)
        for (const Difference* difference : Of(*table, Kind::Removed)) {
            if (IsKept(*difference))
                continue;
            m_written->NoteRemoval(*difference);
            m_database.Run("DELETE FROM usage WHERE table_name=? AND record_id=?", {*table, difference->id});
            m_records.Remove(*table, difference->id);
            if (const auto ids = m_ids.find(*table); ids != m_ids.end())
                ids->remove(difference->key);
        }
}

std::optional<qint64> Applier::Find(const QString& table, const QString& cell) {
    const auto ids = m_ids.constFind(table);
    if (ids == m_ids.constEnd())
        return std::nullopt;
    const auto id = ids->constFind(m_form.KeyOf(table, cell));
    return id == ids->constEnd() ? std::nullopt : std::optional(*id);
}

QVariant Applier::ToStore(const Difference& difference, const ChangedCell& cell, bool* isUnknown) {
    *isUnknown = false;
    QString target = cell.column->target;
    if (!cell.column->tableIn.isEmpty())
        for (const ChangedCell& other : difference.cells)
            if (other.column->name == cell.column->tableIn)
                target = other.after;
    if (target.isEmpty())
        return cell.after;
    const auto table = m_form.GetTables().constFind(target);
    const bool isOnlyOne = table != m_form.GetTables().constEnd() && table->IsSingle(); // nothing names it
    if (cell.after.isEmpty() && !isOnlyOne)
        return {};
    const auto id = Find(target, cell.after);
    *isUnknown = !id;
    return id ? QVariant(*id) : QVariant();
}

void Applier::AddAll() {
    for (const QString& table : m_form.SampleOrder()) {
        const Differences added = Of(table, Kind::Added);
        if (added.isEmpty())
            continue;
        QList<const Column*> columns; // the same for all of them
        for (const ChangedCell& cell : added.first()->cells)
            columns << cell.column;
        Records::Inserter inserter(m_records, table, columns);
        const auto ids = m_ids.find(table);
        for (const Difference* difference : added) {
            QVariantList values;
            QList<Late> late;
            for (const ChangedCell& cell : difference->cells) {
                bool isUnknown = false;
                values << ToStore(*difference, cell, &isUnknown);
                if (isUnknown)
                    late.append({difference, &cell, 0});
            }
            if (!late.isEmpty() && m_unknown == Unknown::Skip)
                continue;
            const qint64 id = inserter.Add(values);
            for (Late& one : late) {
                one.id = id;
                m_late << one;
            }
            if (ids != m_ids.end())
                ids->insert(difference->key, id);
            m_written->Note(*difference, id);
        }
    }
}

void Applier::ChangeAll() {
    for (const QString& table : m_form.SampleOrder())
        for (const Difference* difference : Of(table, Kind::Changed)) {
            Row row;
            bool isLeftOut = false;
            for (const ChangedCell& cell : difference->cells) {
                bool isUnknown = false;
                row.insert(cell.column->name, ToStore(*difference, cell, &isUnknown));
                if (isUnknown)
                    m_late.append({difference, &cell, difference->id});
                isLeftOut = isLeftOut || isUnknown;
            }
            if (isLeftOut && m_unknown == Unknown::Skip)
                continue;
            m_records.Update(table, difference->id, row);
            m_written->Note(*difference, difference->id);
        }
}

void Applier::SetLateReferences() {
    for (const Late& late : m_late) {
        const QString target = late.cell->column->target;
        const auto id = Find(target, late.cell->after);
        if (id)
            m_records.Update(late.difference->table, late.id, {{late.cell->column->name, *id}});
        else
            Wrong(*late.difference, QString("%1: there is no \"%2\" in %3.")
                                        .arg(FileHeading(*late.cell->column), late.cell->after, target));
    }
}

QList<FileProblem> Applier::Run() {
    if (m_differences.isEmpty())
        return {};
    if (m_unknown == Unknown::Refuse)
        CheckCells();
    if (!m_problems.isEmpty())
        return m_problems;
    ReadIds();
    FreeTexts();
    LetGo();
    RemoveAll();
    if (!m_problems.isEmpty())
        return m_problems;
    AddAll();
    ChangeAll();
    if (m_unknown == Unknown::Skip)
        m_late.clear();
    SetLateReferences();
    HoldTexts();
    if (m_unknown == Unknown::Refuse && m_problems.isEmpty())
        m_problems = m_written->Check();
    return m_problems;
}

} // namespace

QList<FileProblem> Apply(Records& records, FileForm& form, LibrarySettings& library,
                         const Comparison& comparison, Unknown unknown) {
    return Applier(records, form, library, comparison, unknown).Run();
}

} // namespace sysadmin::server
