#include "server/RecordHistory.h"

#include "server/HistoryKeeper.h"
#include "server/Library.h"
#include "server/NamedRecords.h"
#include "server/SubjectReads.h"
#include "server/store/Database.h"
#include "server/store/Undo.h"

#include <QJsonDocument>

#include <limits>

namespace sysadmin::server {

namespace {

constexpr int PageOfEntries = 100;

/// A request that changed the record.
struct Entry {
    qint64 number = 0;
    QString kind = "changed"; ///< what it did to the record itself
};

/// The requests that changed the record, newest first, from the one before `before` on; one more than a page
/// where there are more.
QList<Entry> ReadEntries(Context& context, const RecordName& record, qint64 before) {
    QList<Entry> entries;
    const Tables& tables = context.records.GetTables();
    const HistoryOf about = EntriesOf(tables, record);
    // By the rows of a page at a time: a request may have many.
    qint64 last = before;
    while (entries.size() <= PageOfEntries) {
        int rows = 0;
        qint64 lowest = last;
        QList<QPair<qint64, QString>> found;
        context.database.Each(
            "SELECT request_id, table_name, record_id, subject_table, subject_id, kind, fields FROM "
            "history_records WHERE " +
                about.condition + " AND request_id<? ORDER BY request_id DESC, id DESC LIMIT 1000",
            about.values + QVariantList{last}, [&](const ResultRow& row) {
                ++rows;
                const RecordName changed{row.value(1).toString(), row.value(2).toLongLong()};
                const RecordName subject{row.value(3).toString(), row.value(4).toLongLong()};
                lowest = row.value(0).toLongLong();
                if (!IsAbout(tables, record, changed, subject,
                             QJsonDocument::fromJson(row.value(6).toString().toUtf8()).object()))
                    return;
                const bool isItself = changed.table == record.table && changed.id == record.id;
                found.append({lowest, isItself ? row.value(5).toString() : QString()});
            });
        for (const auto& [number, kind] : found) {
            if (entries.isEmpty() || entries.last().number != number)
                entries.append(Entry{number});
            if (!kind.isEmpty())
                entries.last().kind = kind;
        }
        if (rows < 1000)
            break;
        last = lowest; // what is left of that request tells nothing new
    }
    return entries;
}

Answer AnswerHistory(Context& context, const wire::Fields& request) {
    const RequestRule* rule =
        context.library.GetRegistry().ReadRuleOfWord(Sent(request, "Sbj").value_or(QString()));
    if (!rule)
        return {status::NotFound};
    if (!rule->Allows(context.rights))
        return {status::NotAuthorised};
    bool isNumber = true;
    std::optional<qint64> id;
    if (const auto number = Sent(request, "HRow"))
        id = number->toLongLong(&isNumber);
    else
        id = IdOfKey(context, *rule, Sent(request, "ID").value_or(QString()));
    const auto sent = Sent(request, "Bef");
    bool isPlace = true;
    const qint64 before = sent ? sent->toLongLong(&isPlace) : std::numeric_limits<qint64>::max();
    if (!isNumber || !isPlace)
        return {status::ColumnError};
    if (!id)
        return rule->single ? Answer() : Answer{status::NotFound};
    const RecordName record{rule->tables.first(), *id};
    Answer answer;
    const auto row = context.records.Find(record.table, record.id);
    Put(answer.fields, "HRow", QString::number(record.id));
    Put(answer.fields, "UK",
        KeyOf(context.library.GetRegistry(), *rule, row ? *row : RemovedRow(context.database, record),
              record.id));
    const QList<Entry> entries = ReadEntries(context, record, before);
    for (const Entry& entry : entries.first(qMin(entries.size(), qsizetype(PageOfEntries))))
        context.database.Each("SELECT h.at, h.operator_id, TRIM(COALESCE(o.first_name || ' ' || o.last_name, "
                              "'')), h.peer, h.request "
                              "FROM history_requests h "
                              "LEFT JOIN operators o ON o.operator_id=h.operator_id WHERE h.id=?",
                              {entry.number}, [&](const ResultRow& each) {
                                  Put(answer.fields, "HN", QString::number(entry.number));
                                  Put(answer.fields, "HT", ShownTime(each.value(0).toString()));
                                  Put(answer.fields, "HO", each.value(1).toString());
                                  Put(answer.fields, "HB", each.value(2).toString());
                                  Put(answer.fields, "HP", each.value(3).toString());
                                  Put(answer.fields, "HR", each.value(4).toString());
                                  Put(answer.fields, "HK", entry.kind.left(1).toUpper());
                              });
    if (entries.size() > PageOfEntries)
        Put(answer.fields, "More", "Y");
    else if (const auto begin = ReadHistoryBegin(context.database);
             begin && (entries.isEmpty() || entries.last().kind != u"added"))
        Put(answer.fields, "Kept", ShownTime(begin->from));
    return answer;
}

/// The request without what it says about the time, and with the key that the record had then.
wire::Fields AsItWas(const RequestRule& rule, const QString& table, const QString& key,
                     const wire::Fields& request) {
    static const QStringList about{"AsOf", "AsSbj", "AsRow"};
    const bool hasOwnKey = rule.tables.value(0) == table && !rule.keyColumn.isEmpty();
    wire::Fields fields;
    for (wire::Field field : request) {
        if (about.contains(field.tag))
            continue;
        if (hasOwnKey && !key.isEmpty() && rule.keyTags.contains(field.tag))
            field.value = key;
        fields.append(field);
    }
    return fields;
}

} // namespace

bool IsAsOf(const wire::Fields& request) {
    return Sent(request, "AsOf").has_value();
}

Answer AnswerAsOf(Context& context, const RequestRule& rule, const wire::Fields& request) {
    const Registry& registry = context.library.GetRegistry();
    const RequestRule* about = registry.ReadRuleOfWord(Sent(request, "AsSbj").value_or(QString()));
    bool isNumber = false;
    bool isRow = false;
    const qint64 number = Sent(request, "AsOf").value_or(QString()).toLongLong(&isNumber);
    const qint64 id = Sent(request, "AsRow").value_or(QString()).toLongLong(&isRow);
    if (!about || !isNumber || !isRow || rule.access != Access::View)
        return {status::ColumnError};
    if (!about->Allows(context.rights))
        return {status::NotAuthorised};
    if (const auto begin = ReadHistoryBegin(context.database); begin && number < begin->removed)
        return {status::HistoryRemoved};
    const QString table = about->tables.first();
    context.database.Run("SAVEPOINT as_of");
    Undo(context.database, context.records.GetTables()).ChangesAfter({table, id}, number);
    const auto row = context.records.Find(table, id);
    const QString key = row ? KeyOf(registry, *about, *row, id) : QString();
    Answer answer = rule.handler(context, AsItWas(rule, table, key, request));
    Put(answer.fields, "AsKey", key);
    context.database.Run("ROLLBACK TO SAVEPOINT as_of");
    context.database.Run("RELEASE SAVEPOINT as_of");
    return answer;
}

void RegisterRecordHistory(Registry& registry) {
    registry.AddRead("LstHst", Area::AnyOperator, AnswerHistory);
}

} // namespace sysadmin::server
