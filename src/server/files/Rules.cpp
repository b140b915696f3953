#include "server/files/Rules.h"

#include "server/store/Database.h"

namespace sysadmin::server {

WrittenRecords::WrittenRecords(Records& records, FileForm& form, const QStringList& tables)
    : m_records(records)
    , m_form(form)
    , m_changed(tables.begin(), tables.end()) {
    EachStoredRule([&](const Table&, const StoredRule& rule) {
        m_brokenBefore.insert(&rule, rule.broken(m_records.GetDatabase()));
    });
}

void WrittenRecords::EachStoredRule(const std::function<void(const Table&, const StoredRule&)>& visit) const {
    for (const QString& name : m_form.Order()) {
        const Table& table = m_form.Named(name);
        for (const StoredRule& rule : table.storedRules)
            if (m_changed.contains(name) || m_changed.intersects({rule.others.begin(), rule.others.end()}))
                visit(table, rule);
    }
}

void WrittenRecords::CheckStored() {
    EachStoredRule([&](const Table& table, const StoredRule& rule) {
        const QList<qint64> before = m_brokenBefore.value(&rule);
        const QList<qint64> after = rule.broken(m_records.GetDatabase());
        const auto wrong = [&](int line) { m_problems.append({table.name, line, rule.otherwise}); };
        for (const qint64 id : after)
            if (id >= 0 && !before.contains(id))
                wrong(LineOf(table.name, id));
        for (const qint64 id : before) // a negative one is a row that must stay
            if (id < 0 && !after.contains(id))
                wrong(0);
    });
}

void WrittenRecords::Note(const Difference& difference, qint64 id) {
    m_lines[difference.table].insert(id, difference.line);
}

void WrittenRecords::NoteRemoval(const Difference& difference) {
    const Table& table = m_form.Named(difference.table);
    if (!table.parts.isEmpty())
        if (const auto row = m_records.Find(table.name, difference.id))
            m_owners[table.name].insert(row->value(table.owner).toLongLong());
}

void WrittenRecords::CheckRows(const Table& table) {
    if (table.rules.isEmpty())
        return;
    const QHash<qint64, int> lines = m_lines.value(table.name);
    for (auto line = lines.begin(); line != lines.end(); ++line) {
        const auto row = m_records.Find(table.name, line.key());
        for (const RowRule& rule : table.rules)
            if (row && !rule.holds(*row)) {
                m_problems.append({table.name, *line, rule.otherwise});
                break;
            }
    }
}

void WrittenRecords::CheckOnlyOne(const Table& table) {
    for (const QString& column : table.onlyOne) {
        QList<qint64> ids;
        qint64 rows = 0;
        m_records.GetDatabase().Each("SELECT id, " + column + " FROM " + table.name + " ORDER BY id", {},
                                     [&](const ResultRow& row) {
                                         ++rows;
                                         if (row.value(1).toString() == u"Y")
                                             ids << row.value(0).toLongLong();
                                     });
        if (ids.size() == 1 || rows == 0)
            continue;
        int line = 0;
        for (const qint64 id : ids)
            line = qMax(line, LineOf(table.name, id));
        m_problems.append({table.name, line,
                           QString("%1 is Y in %2 records, and it must be in one.")
                               .arg(FileHeading(*table.Find(column)))
                               .arg(ids.size())});
    }
}

void WrittenRecords::CheckPartsOf(const Table& table, const Table& owners, qint64 owner) {
    const auto record = m_records.Find(owners.name, owner);
    if (!record)
        return;
    QList<qint64> ids;
    QList<Row> rows;
    for (const QVariant& id : m_records.GetDatabase().FirstColumn(
             "SELECT id FROM " + table.name + " WHERE " + table.owner + "=? ORDER BY id", {owner})) {
        ids << id.toLongLong();
        rows << *m_records.Find(table.name, ids.last());
    }
    int line = 0;
    for (const qint64 id : ids)
        line = qMax(line, LineOf(table.name, id));
    bool isAllowed = false;
    for (const PartsRule& rule : table.parts) {
        if (!rule.column.isEmpty() && record->value(rule.column).toString() != rule.value)
            continue;
        isAllowed = true;
        for (qsizetype i = 0; i < rows.size(); ++i)
            for (auto cell = rule.cells.begin(); cell != rule.cells.end(); ++cell) {
                const Column& column = *table.Find(cell.key());
                const QString wrong = cell->WrongWith(column.type, rows[i].value(column.name).toString());
                if (!wrong.isEmpty())
                    m_problems.append(
                        {table.name, LineOf(table.name, ids[i]), FileHeading(column) + ' ' + wrong + '.'});
            }
        if (rule.most > 0 && rows.size() > rule.most)
            m_problems.append({table.name, line,
                               QString("There are %1 for one record, and %2 are the most.")
                                   .arg(rows.size())
                                   .arg(rule.most)});
        if (rule.check && !rule.check(rows))
            m_problems.append({table.name, line, "This does not fit the other lines of its record."});
    }
    if (!isAllowed && !rows.isEmpty())
        m_problems.append({table.name, line, "The record to which this belongs can have no such lines."});
}

void WrittenRecords::CheckParts(const Table& table) {
    const Table& owners = m_form.Named(table.Find(table.owner)->target);
    QSet<qint64> touched = m_owners.value(table.name);
    for (const qint64 id : m_lines.value(table.name).keys())
        if (const auto row = m_records.Find(table.name, id))
            touched.insert(row->value(table.owner).toLongLong());
    for (const qint64 id : m_lines.value(owners.name).keys())
        touched.insert(id);
    for (const qint64 owner : touched)
        CheckPartsOf(table, owners, owner);
}

QList<FileProblem> WrittenRecords::Check() {
    for (const QString& name : m_form.Order()) {
        const Table& table = m_form.Named(name);
        const Column* owner = table.Find(table.owner);
        if (!table.parts.isEmpty() && owner &&
            (m_changed.contains(name) || m_changed.contains(owner->target)))
            CheckParts(table);
        if (!m_changed.contains(name))
            continue;
        CheckRows(table);
        CheckOnlyOne(table);
    }
    CheckStored();
    return m_problems;
}

} // namespace sysadmin::server
