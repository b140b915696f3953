#include "server/files/Copy.h"

#include <QMultiHash>
#include <QSet>

#include <algorithm>
#include <functional>

namespace sysadmin::server {

namespace {

using Kind = Difference::Kind;

/// Finds out what has to come along with chosen differences.
class Along {
public:
    Along(FileForm& form, const QList<Difference>& differences)
        : m_form(form) {
        for (const Difference& difference : differences) {
            m_byKey.insert({difference.table, difference.key}, &difference);
            if (const auto list = ListOf(difference))
                m_lists.insert(*list, &difference);
            for (const QString& mark : form.Named(difference.table).onlyOne)
                if (Moves(difference, mark))
                    m_marks.insert({difference.table, mark}, &difference);
            EachReference(difference, false,
                          [&](const RecordKey& target) { m_lettingGo.insert(target, &difference); });
        }
    }

    void Choose(const RecordKey& record) {
        if (const Difference* difference = m_byKey.value(record))
            Take(*difference, {});
    }

    void Complete() {
        for (qsizetype i = 0; i < m_taken.size(); ++i)
            Follow(*m_taken[i]);
    }

    bool Has(const RecordKey& record) const { return m_because.contains(record); }
    /// Of what was not chosen.
    QHash<RecordKey, QString> Reasons() const {
        QHash<RecordKey, QString> reasons;
        for (auto reason = m_because.begin(); reason != m_because.end(); ++reason)
            if (!reason->isEmpty())
                reasons.insert(reason.key(), *reason);
        return reasons;
    }

private:
    static RecordKey KeyOf(const Difference& difference) { return {difference.table, difference.key}; }

    QString Called(const Difference& difference) const {
        return '"' +
               (difference.name.isEmpty() ? QString(difference.table).replace('_', ' ') : difference.name) +
               '"';
    }

    void Take(const Difference& difference, const QString& because) {
        if (Has(KeyOf(difference)))
            return;
        m_because.insert(KeyOf(difference), because);
        m_taken << &difference;
    }

    /// Visits the records to which the difference's values refer, before the change or after it.
    void EachReference(const Difference& difference, bool after,
                       const std::function<void(const RecordKey&)>& visit) const {
        for (const ChangedCell& cell : difference.cells) {
            QString target = cell.column->target;
            if (!cell.column->tableIn.isEmpty())
                for (const ChangedCell& other : difference.cells)
                    if (other.column->name == cell.column->tableIn)
                        target = after ? other.after : other.before;
            const QString& text = after ? cell.after : cell.before;
            const auto table = m_form.GetTables().constFind(target);
            if (table != m_form.GetTables().constEnd() && (!text.isEmpty() || table->IsSingle()))
                visit({target, m_form.KeyOf(target, text)});
        }
    }

    /// The list of which the record is a part that is known by its place; none where it has a name.
    std::optional<RecordKey> ListOf(const Difference& difference) const {
        const QStringList columns = NaturalKey(m_form.Named(difference.table)).value_or(QStringList());
        if (columns.isEmpty() || (!columns.last().isEmpty() && columns.last() != u"rank"))
            return std::nullopt;
        return RecordKey{difference.table,
                         difference.key.left(difference.key.lastIndexOf(keyparts::Separator) + 1)};
    }

    static bool Moves(const Difference& difference, const QString& mark) {
        return std::any_of(difference.cells.begin(), difference.cells.end(), [&](const ChangedCell& cell) {
            return cell.column->name == mark && (cell.before == u"Y" || cell.after == u"Y");
        });
    }

    void Follow(const Difference& difference) {
        const auto takeAll = [this](const QList<const Difference*>& others, const QString& because) {
            for (const Difference* other : others)
                Take(*other, because);
        };
        if (difference.kind == Kind::Removed)
            takeAll(m_lettingGo.values(KeyOf(difference)),
                    Called(difference) + " goes, and this belongs or refers to it.");
        else
            EachReference(difference, true, [&](const RecordKey& target) {
                const Difference* other = m_byKey.value(target);
                if (other && other->kind == Kind::Added)
                    Take(*other, Called(difference) + " belongs or refers to it.");
            });
        if (const auto list = ListOf(difference))
            takeAll(m_lists.values(*list), "It is a part of the same list as " + Called(difference) + '.');
        for (const QString& mark : m_form.Named(difference.table).onlyOne)
            if (Moves(difference, mark))
                takeAll(m_marks.values({difference.table, mark}),
                        "Only one record can have what " + Called(difference) + " has or gives up.");
    }

    FileForm& m_form;
    QHash<RecordKey, const Difference*> m_byKey;
    QMultiHash<RecordKey, const Difference*> m_lettingGo; ///< by the record to which they refer until now
    QMultiHash<RecordKey, const Difference*> m_lists;
    QMultiHash<RecordKey, const Difference*> m_marks; ///< by table and mark
    QHash<RecordKey, QString> m_because;
    QList<const Difference*> m_taken;
};

/// A table as it is once these of its records are taken over.
SettingsTable TakeOver(const SettingsTable& before, const SettingsTable& settings, const Along& along) {
    SettingsTable after{.name = settings.name, .columns = settings.columns, .records = {}};
    QList<qsizetype> places; // of the columns after among those before
    for (const Column* column : after.columns)
        places << before.columns.indexOf(column);
    QHash<QString, const SettingsRecord*> known;
    for (const SettingsRecord& record : settings.records)
        known.insert(record.key, &record);
    for (const SettingsRecord& record : before.records) {
        const SettingsRecord* other = known.take(record.key);
        if (along.Has({after.name, record.key})) {
            if (other)
                after.records << *other;
            continue;
        }
        SettingsRecord same{.cells = {}, .key = record.key, .line = 0, .id = record.id};
        for (const qsizetype place : places)
            same.cells << record.cells[place];
        after.records << std::move(same);
    }
    for (const SettingsRecord& record : settings.records)
        if (known.contains(record.key) && along.Has({after.name, record.key}))
            after.records << record;
    return after;
}

} // namespace

size_t qHash(const RecordKey& record, size_t seed) {
    return qHashMulti(seed, record.table, record.key);
}

CopyPlan PlanCopy(FileForm& form, const Settings& before, const Settings& settings,
                  const QList<RecordKey>& chosen) {
    Comparison whole;
    for (const QString& table : form.Order())
        if (const auto after = settings.constFind(table); after != settings.constEnd())
            CompareTable(form, before[table], *after, whole);
    Along along(form, whole.differences);
    for (const RecordKey& record : chosen)
        along.Choose(record);
    along.Complete();
    QSet<QString> touched;
    for (const Difference& difference : whole.differences)
        if (along.Has({difference.table, difference.key}))
            touched.insert(difference.table);
    CopyPlan plan{.comparison = {}, .because = along.Reasons()};
    for (const QString& table : form.Order())
        if (touched.contains(table))
            CompareTable(form, before[table], TakeOver(before[table], settings[table], along),
                         plan.comparison);
    plan.comparison.tables = form.Order();
    return plan;
}

} // namespace sysadmin::server
