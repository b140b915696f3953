#include "server/SessionView.h"

#include "server/Registry.h"
#include "server/store/Database.h"

#include <algorithm>

namespace sysadmin::server {

namespace {

void PutChange(ReplyFields& reply, const Change& change) {
    Put(reply, "ChBy", change.by);
    Put(reply, "ChAt", ShownTime(change.at));
}

bool Has(const wire::Fields& request, const QString& tag) {
    return std::any_of(request.begin(), request.end(),
                       [&](const wire::Field& field) { return field.tag == tag; });
}

} // namespace

SessionView::SessionView(Database& database, const SessionStart& session, qint64 number,
                         const RequestRule& rule, const wire::Fields& request)
    : m_database(database)
    , m_session(session)
    , m_rule(rule)
    , m_changes(database)
    , m_number(number) {
    if (rule.tables.isEmpty())
        return;
    m_onlyLooks = Has(request, "Look") || Has(request, "AsOf");
    FindRecords(request);
    // Of a list that goes out in parts, the first part says how old it is.
    m_readsAll = rule.access == Access::View && rule.keyTags.isEmpty() && !rule.single &&
                 !Has(request, "55") &&
                 std::none_of(rule.narrowing.begin(), rule.narrowing.end(),
                              [&](const QString& tag) { return Has(request, tag); });
}

void SessionView::FindRecords(const wire::Fields& request) {
    if (m_rule.single) {
        m_records = {{.key = {}, .text = {}, .id = 0}};
        return;
    }
    const auto tag = std::find_if(m_rule.keyTags.begin(), m_rule.keyTags.end(),
                                  [&](const QString& candidate) { return Has(request, candidate); });
    if (tag == m_rule.keyTags.end())
        return;
    m_keyTag = *tag;
    for (const wire::Field& field : request) {
        if (field.tag == m_keyTag)
            m_records.append(Find(field.value));
        if (!m_rule.several && !m_records.isEmpty())
            return;
    }
}

SessionView::Named SessionView::Find(const QString& key) const {
    if (!IsStorable(key))
        return {}; // no record has such a key
    Named named{.key = key, .text = {}, .id = {}};
    QVariant id;
    if (m_rule.keyColumn.isEmpty() || m_rule.byReference) {
        bool isNumber = false;
        const qint64 number = key.toLongLong(&isNumber);
        const QString column = m_rule.byReference ? m_rule.keyColumn : QString("id");
        const QString query = "SELECT id FROM " + m_rule.tables.first() + " WHERE " + column + "=?";
        if (isNumber)
            id = m_database.FirstValue(m_rule.keyQuery.isEmpty() ? query : m_rule.keyQuery, {number});
    } else {
        named.text = Fold(key);
        id = m_database.FirstValue("SELECT id FROM " + m_rule.tables.first() + " WHERE " +
                                       FoldedName(m_rule.keyColumn) + "=?",
                                   {named.text});
    }
    if (id.isValid())
        named.id = id.toLongLong();
    return named;
}

QString SessionView::MarkOf(const QString& table) const {
    return m_rule.scope.isEmpty() ? table : QString(table + '/' + m_rule.scope);
}

std::optional<Answer> SessionView::Refusal(SeenRecords& seen) {
    if (m_rule.access != Access::Edit)
        return std::nullopt;
    // A row is removed by what its list shows, and so are several rows changed; one alone is changed by what
    // an edit has read.
    const bool byList = m_rule.several || m_rule.name.startsWith("Del");
    Answer refusal{status::RecordChanged};
    if (m_rule.several && m_rule.keyTags.isEmpty()) { // the table as a whole: the order of its records
        const QString table = m_rule.tables.first();
        const auto known = seen.Known(m_session, MarkOf(table), 0, {}, true);
        if (const auto change = known ? m_changes.LastByOthers(table, *known, m_session.row) : std::nullopt)
            PutChange(refusal.fields, *change);
    }
    for (const Named& record : m_records) {
        if (!record.id)
            continue;
        const QString table = m_rule.tables.first();
        const auto change = m_changes.ByOthers(table, *record.id, m_session.row);
        if (!change)
            continue;
        const auto known = seen.Known(m_session, MarkOf(table), *record.id, record.text, byList);
        if (!known || change->number <= *known)
            continue;
        if (m_rule.several)
            Put(refusal.fields, m_keyTag, record.key);
        PutChange(refusal.fields, *change);
    }
    return refusal.fields.IsEmpty() ? std::nullopt : std::optional(refusal);
}

void SessionView::ExplainMissing(Answer& answer) {
    const auto missing = std::find_if(m_records.begin(), m_records.end(), [](const Named& record) {
        return !record.id && !record.key.isEmpty();
    });
    if (answer.status != status::NotFound || missing == m_records.end())
        return;
    const QString table = m_rule.tables.first();
    const auto removal = m_rule.keyColumn.isEmpty()
                             ? m_changes.RemovalOf(table, missing->key.toLongLong(), m_session.row)
                             : m_changes.RemovalOf(table, missing->key, m_session.row);
    if (!removal)
        return;
    answer.fields.Clear();
    PutChange(answer.fields, *removal);
}

QStringList SessionView::ChangedWords(SeenRecords& seen, const Registry& registry) {
    const qint64 told = seen.Told(m_session);
    return told >= m_number ? QStringList()
                            : registry.WordsOf(m_changes.TablesChangedSince(told, m_session.row));
}

void SessionView::KeepTold(SeenRecords& seen) const noexcept {
    seen.Tell(m_session.row, m_number);
}

void SessionView::KeepRead(SeenRecords& seen, qint16 answered) const {
    if (m_onlyLooks || m_rule.access != Access::View ||
        (answered != status::Ok && answered != status::Continues))
        return;
    if (m_readsAll)
        for (const QString& table : m_rule.tables)
            seen.ReadAll(m_session, MarkOf(table), m_number);
    else if (!m_records.isEmpty() && m_records.first().id)
        seen.ReadOne(m_session, MarkOf(m_rule.tables.first()), *m_records.first().id, m_records.first().text,
                     m_number);
}

} // namespace sysadmin::server
