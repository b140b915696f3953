#include "server/Registry.h"

#include "server/SampleLibrary.h"
#include "server/SubjectRequests.h"
#include "server/store/Changes.h"
#include "server/store/History.h"

#include <QRegularExpression>

#include <algorithm>

namespace sysadmin::server {

bool RequestRule::Allows(const Rights& held) const {
    if (rights)
        return rights->IsHeld(held);
    return access == Access::Edit ? held.MayEdit(area) : held.MayView(area);
}

Registry::Registry(std::function<void(Subject&)> alter)
    : m_alter(std::move(alter)) {
    for (const Table& table : HistoryTables())
        AddTable(table);
    AddMigration({2, [this](Database& database) { ConvertFormerHistory(database, m_tables); }});
    AddMigration({3, ConvertSampleParts});
    // Programs from before a register of records that were added together would not look into it.
    AddMigration({4, [](Database&) {}});
    for (const Table& table : Changes::Declare())
        AddTable(table);
    AddTable({.name = "usage",
              .columns = {{.name = "table_name"},
                          {.name = "kind"},
                          {.name = "record_id", .type = ColumnType::Whole, .tableIn = "table_name"},
                          {.name = "used", .type = ColumnType::Whole}},
              .uniqueSets = {{"table_name", "kind", "record_id"}},
              .indexed = {{"record_id"}},
              .content = Content::Usage});
    AddTable({.name = "sample_parts",
              .columns = {{.name = "name"}},
              .uniqueSets = {{"name"}},
              .content = Content::Record});
}

void Registry::AddTable(const Table& table) {
    auto known = m_tables.find(table.name);
    if (known == m_tables.end()) {
        known = m_tables.insert(table.name, {.name = table.name, .columns = {}});
        m_tableOrder << table.name;
    }
    for (const Column& column : table.columns) {
        const auto present = std::find_if(known->columns.begin(), known->columns.end(),
                                          [&](const Column& other) { return other.name == column.name; });
        if (present == known->columns.end()) {
            known->columns << column;
            continue;
        }
        if (present->type != column.type)
            qFatal("The column %s.%s is declared with two types.", qPrintable(table.name),
                   qPrintable(column.name));
        present->showsThere = present->showsThere || column.showsThere;
        present->keeps = present->keeps || column.keeps;
        if (column.rule.isSet)
            present->rule = column.rule;
    }
    for (const UniqueText& unique : table.uniqueTexts)
        if (!known->IsUniqueText(unique.column))
            known->uniqueTexts << unique;
    known->uniqueSets << table.uniqueSets;
    known->indexed << table.indexed;
    known->ordered = known->ordered || table.ordered;
    known->rules << table.rules;
    known->parts << table.parts;
    known->storedRules << table.storedRules;
    known->onlyOne << table.onlyOne;
    if (!table.owner.isEmpty())
        known->owner = table.owner;
    if (table.content != Content::Settings)
        known->content = table.content;
    if (!table.keyText.isEmpty())
        known->keyText = table.keyText;
    if (!table.partOf.isEmpty())
        known->partOf = table.partOf;
}

void Registry::AddSubject(Subject declared) {
    if (m_alter)
        m_alter(declared);
    m_subjects.push_back(std::move(declared));
    const Subject& subject = m_subjects.back();
    Table table{.name = subject.table,
                .columns = subject.columns,
                .rules = subject.rules,
                .onlyOne = subject.onlyOne};
    if (subject.single) {
        table.columns << Column{.name = "only_one", .fallback = "Y", .bookkeeping = true};
        table.uniqueSets << QStringList{"only_one"};
    }
    for (const SubjectField& field : subject.fields) {
        if (field.tag == subject.key && field.kind == SubjectField::Kind::Text && field.duplicateStatus == 0)
            qFatal("The key of %s must be unique.", qPrintable(subject.table));
        if (field.kind != SubjectField::Kind::Joined && field.kind != SubjectField::Kind::Uses)
            table.columns << field.StoredAs();
        if (field.duplicateStatus != 0)
            table.uniqueTexts << UniqueText{field.column, field.uniqueWithin};
        if (field.tag == subject.key && field.kind == SubjectField::Kind::Text)
            table.keyText = field.column;
    }
    AddTable(table);
    for (const Membership& membership : subject.memberships)
        if (const auto own = membership.StoredAs(subject.table))
            AddTable(*own);
        else
            AddTable({.name = membership.memberTable,
                      .columns = {{.name = membership.ownerColumn,
                                   .type = ColumnType::Reference,
                                   .target = subject.table,
                                   .showsThere = true}}});
    for (const Children& children : subject.children)
        for (const Table& rows : children.StoredAs(subject.table))
            AddTable(rows);
    for (const UsedBy& use : subject.usedBy)
        AddTable({.name = use.table,
                  .columns = {{.name = use.column,
                               .type = ColumnType::Reference,
                               .target = subject.table,
                               .keeps = true}}});
    for (RequestRule& rule : RequestsOf(subject))
        AddRequest(std::move(rule));
}

void Registry::AddRequest(RequestRule rule) {
    if (m_requests.contains(rule.name))
        qFatal("The request \"%s\" is declared twice.", qPrintable(rule.name));
    m_requests.insert(rule.name, std::move(rule));
}

void Registry::AddRead(const QString& name, Area area, Handler handler) {
    AddRequest({.name = name, .area = area, .handler = std::move(handler)});
}

void Registry::AddList(const QString& name, Area area, const QList<ColumnList>& lists) {
    AddRead(name, area, [lists](Context& context, const wire::Fields&) {
        Answer answer;
        for (const ColumnList& list : lists)
            PutList(context, list, answer.fields);
        return answer;
    });
}

void Registry::AddChange(const QString& name, Area area, Handler handler) {
    AddRequest(
        {.name = name, .area = area, .access = Access::Edit, .changes = true, .handler = std::move(handler)});
}

void Registry::About(const QString& request, const QStringList& tables, const QStringList& keyTags,
                     const QString& keyColumn, const QString& scope) {
    const auto rule = m_requests.find(request);
    if (rule == m_requests.end())
        qFatal("The request \"%s\" is not declared.", qPrintable(request));
    rule->tables = tables;
    rule->keyTags = keyTags;
    rule->keyColumn = keyColumn;
    rule->scope = scope;
    const Table table = GetTables().value(tables.first());
    rule->single = table.IsSingle();
    const Column* key = table.Find(keyColumn);
    rule->byReference = key && key->type == ColumnType::Reference;
}

void Registry::AboutOwner(const QString& request, const QString& table, const QString& keyTag,
                          const QString& keyQuery, const QString& scope) {
    About(request, {table}, {keyTag}, {}, scope);
    m_requests[request].keyQuery = keyQuery;
}

void Registry::AboutSeveral(const QString& request, const QString& table, const QString& keyTag,
                            const QString& scope) {
    About(request, {table}, keyTag.isEmpty() ? QStringList() : QStringList{keyTag}, {}, scope);
    m_requests[request].several = true;
}

QString RequestRule::Word() const {
    static const QRegularExpression verb("^(Lst|Get|Add|Upd|Del)(?=[A-Z])");
    return QString(name).remove(verb);
}

const Subject* Registry::SubjectOf(const QString& table) const {
    const auto found = std::find_if(m_subjects.begin(), m_subjects.end(),
                                    [&](const Subject& subject) { return subject.table == table; });
    return found == m_subjects.end() ? nullptr : &*found;
}

const RequestRule* Registry::ReadRuleOfWord(const QString& word) const {
    for (const char* verb : {"Get", "Lst"})
        if (const RequestRule* rule = Find(verb + word); rule && !rule->tables.isEmpty())
            return rule;
    return nullptr;
}

const RequestRule* Registry::ReadRuleOf(const QString& table) const {
    if (const Subject* subject = SubjectOf(table))
        for (const QString& name : {subject->requests.get, subject->requests.list})
            if (const RequestRule* rule = Find(name))
                return rule;
    const RequestRule* best = nullptr;
    const auto isBetter = [&](const RequestRule& rule) {
        const bool gets = rule.name.startsWith("Get");
        return !best || (gets && !best->name.startsWith("Get")) ||
               (gets == best->name.startsWith("Get") &&
                std::pair(rule.name.size(), rule.name) < std::pair(best->name.size(), best->name));
    };
    for (const RequestRule& rule : m_requests)
        if (rule.access == Access::View && rule.tables.value(0) == table && rule.keyQuery.isEmpty() &&
            isBetter(rule))
            best = &rule;
    return best;
}

const RequestRule& Registry::KeyRuleOf(const RequestRule& rule) const {
    for (const char* verb : {"Get", "Upd", "Del"})
        if (const RequestRule* other = Find(verb + rule.Word()); other && !other->keyTags.isEmpty())
            return *other;
    return rule;
}

QStringList Registry::WordsOf(const QStringList& tables) const {
    QStringList words;
    for (const RequestRule& rule : m_requests)
        for (const QString& table : rule.tables)
            if (tables.contains(table) && !words.contains(rule.Word()))
                words << rule.Word();
    words.sort();
    return words;
}

void Registry::Prepare(const QString& request, Preparation preparation) {
    m_requests[request].prepare = std::move(preparation);
}

void Registry::AddMigration(Migration migration) {
    if (!m_migrations.isEmpty() && migration.version <= m_migrations.last().version)
        qFatal("The migration to version %d is out of order.", migration.version);
    m_migrations << std::move(migration);
}

const RequestRule* Registry::Find(const QString& name) const {
    const auto found = m_requests.constFind(name);
    return found == m_requests.constEnd() ? nullptr : &*found;
}

Schema Registry::GetSchema() const {
    Schema schema;
    for (const QString& name : m_tableOrder)
        schema.tables << m_tables[name];
    schema.migrations = m_migrations;
    return schema;
}

} // namespace sysadmin::server
