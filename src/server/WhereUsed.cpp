#include "server/WhereUsed.h"

#include "server/Library.h"
#include "server/NamedRecords.h"
#include "server/SubjectReads.h"
#include "server/store/Database.h"

#include <algorithm>
#include <utility>

namespace sysadmin::server {

namespace {

constexpr int MostRecords = 500; // of each field that refers

class Search {
public:
    Search(Context& context, const RecordName& record, int mostRecords)
        : m_context(context)
        , m_tables(context.library.GetRegistry().GetTables())
        , m_record(record)
        , m_mostRecords(mostRecords) {}

    QList<Use> Run() {
        const Registry& registry = m_context.library.GetRegistry();
        const Subject* subject = registry.SubjectOf(m_record.table);
        for (const Table& table : m_tables)
            for (const Column& column : table.columns)
                if (column.type == ColumnType::Reference && column.target == m_record.table &&
                    table.content == Content::Settings)
                    AddRows(table, column, Keeps(table, column));
        if (subject && subject->findUses)
            if (const auto row = m_context.records.Find(m_record.table, m_record.id))
                subject->findUses(m_context, m_record.id, *row,
                                  [this](const RecordName& user, const QString& column) {
                                      Add({OwnerOf(user), user.table, column, 1, true});
                                  });
        return m_uses;
    }

private:
    static bool Keeps(const Table& table, const Column& column) {
        return column.keeps || (column.onRemoval == OnRemoval::Refuse && column.name != table.owner);
    }

    void AddRows(const Table& table, const Column& column, bool keeps) {
        const QString ownedBy = OwnerColumn(table);
        const QString owner = ownedBy.isEmpty() ? QString("id") : ownedBy;
        m_context.database.Each("SELECT " + owner + ", COUNT(*) FROM " + table.name + " WHERE " +
                                    column.name + "=? GROUP BY " + owner + " ORDER BY " + owner + " LIMIT ?",
                                {m_record.id, m_mostRecords}, [&](const ResultRow& row) {
                                    m_found.append({row.value(0).toLongLong(), row.value(1).toLongLong()});
                                });
        const QString ownerTable = ownedBy.isEmpty() ? table.name : table.Find(ownedBy)->target;
        for (const auto& [id, rows] : std::exchange(m_found, {}))
            Add({OwnerOf({ownerTable, id}), table.name, column.name, rows, keeps});
    }

    /// The column that names the record in which people see the rows; empty where they see them by
    /// themselves.
    QString OwnerColumn(const Table& table) const {
        if (!table.owner.isEmpty())
            return table.owner;
        const Subject* subject = m_context.library.GetRegistry().SubjectOf(table.name);
        return subject && subject->within && subject->requests.list.isEmpty() ? subject->within->column
                                                                              : QString();
    }

    RecordName OwnerOf(RecordName record) const {
        for (;;) {
            const Table& table = m_tables.find(record.table).value();
            const QString column = OwnerColumn(table);
            if (column.isEmpty())
                return record;
            const QVariant owner = m_context.database.FirstValue(
                "SELECT " + column + " FROM " + table.name + " WHERE id=?", {record.id});
            record = {table.Find(column)->target, owner.toLongLong()};
        }
    }

    void Add(const Use& use) {
        if (use.record.table == m_record.table && use.record.id == m_record.id && !use.keeps)
            return; // its own parts
        // Of the parts of a record it does not matter in which column they refer.
        const bool isPart = use.table != use.record.table;
        const auto known = std::find_if(m_uses.begin(), m_uses.end(), [&](const Use& other) {
            return other.record.table == use.record.table && other.record.id == use.record.id &&
                   (isPart ? other.table != other.record.table : other.column == use.column);
        });
        if (known == m_uses.end()) {
            m_uses.append(use);
            return;
        }
        known->rows += use.rows;
        known->keeps = known->keeps || use.keeps;
    }

    Context& m_context;
    const Tables& m_tables;
    RecordName m_record;
    int m_mostRecords;
    QList<QPair<qint64, qint64>> m_found;
    QList<Use> m_uses;
};

/// The tag under which the subject's own requests carry the column; empty for columns of its parts.
QString TagOf(const Subject* subject, const QString& table, const QString& column) {
    if (subject && subject->table == table)
        for (const SubjectField& field : subject->fields)
            if (field.column == column && field.kind != SubjectField::Kind::Joined)
                return field.tag;
    return {};
}

void PutUses(Context& context, const RecordName& record, ReplyFields& reply) {
    const Registry& registry = context.library.GetRegistry();
    qint64 hidden = 0;
    QMap<QString, qint64> elsewhere; // by table: what other clients maintain
    for (const Use& use : UsesOf(context, record, MostRecords)) {
        const RequestRule* rule = registry.ReadRuleOf(use.record.table);
        if (!rule) {
            elsewhere[use.record.table] += use.keeps ? 1 : 0;
            continue;
        }
        if (!rule->Allows(context.rights)) {
            ++hidden;
            continue;
        }
        const Row row = context.records.Find(use.record.table, use.record.id).value_or(Row());
        Put(reply, "Sbj", rule->Word());
        Put(reply, "UK", KeyOf(registry, *rule, row, use.record.id));
        Put(reply, "UN", NameOf(registry.GetTables()[use.record.table], row));
        Put(reply, "UT", TagOf(registry.SubjectOf(use.record.table), use.table, use.column));
        Put(reply, "UC", QString::number(use.rows));
        Put(reply, "UR", use.keeps ? "Y" : "N");
    }
    if (hidden > 0)
        Put(reply, "UH", QString::number(hidden));
    for (auto other = elsewhere.cbegin(); other != elsewhere.cend(); ++other) {
        if (other.value() == 0)
            continue;
        Put(reply, "UX", QString(other.key()).replace('_', ' '));
        Put(reply, "UQ", QString::number(other.value()));
    }
    context.database.Each(
        "SELECT kind, used FROM usage WHERE table_name=? AND record_id=? AND used>0 ORDER BY kind",
        {record.table, record.id}, [&](const ResultRow& row) {
            Put(reply, "UX", row.value(0).toString());
            Put(reply, "UQ", row.value(1).toString());
        });
}

Answer AnswerUses(Context& context, const wire::Fields& request) {
    const Registry& registry = context.library.GetRegistry();
    const QString word = Sent(request, "Sbj").value_or(QString());
    const RequestRule* rule = registry.ReadRuleOfWord(word);
    if (!rule)
        return {status::NotFound};
    if (!rule->Allows(context.rights))
        return {status::NotAuthorised};
    const auto id = IdOfKey(context, *rule, Sent(request, "ID").value_or(QString()));
    if (!id)
        return {status::NotFound};
    Answer answer;
    PutUses(context, {rule->tables.first(), *id}, answer.fields);
    return answer;
}

} // namespace

QList<Use> UsesOf(Context& context, const RecordName& record, int mostRecords) {
    return Search(context, record, mostRecords).Run();
}

void RegisterWhereUsed(Registry& registry) {
    registry.AddRead("LstUse", Area::AnyOperator, AnswerUses);
}

} // namespace sysadmin::server
