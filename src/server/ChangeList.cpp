#include "server/HistoryKeeper.h"
#include "server/Library.h"
#include "server/NamedRecords.h"
#include "server/SubjectReads.h"
#include "server/store/Database.h"
#include "server/subjects/Registrations.h"

#include <limits>

// All changes of the library, newest first, a page at a time.
namespace sysadmin::server {

namespace {

constexpr int PageOfLines = 100;
constexpr int MostRows = 2000; // of the history that are looked at for a page

/// One line: what a request did to a record.
struct Line {
    qint64 request = 0;
    RecordName record;
    QString kind = "changed";
    auto Key() const { return std::tuple(request, record.table, record.id); }
};

struct Filter {
    QString operatorId = {};
    QString table = {};
    qint64 lowest = 0; ///< row of the history
    qint64 below = std::numeric_limits<qint64>::max();
};

class Page {
public:
    Page(Context& context, const Filter& filter)
        : m_context(context)
        , m_filter(filter) {}

    void Read() {
        if (m_filter.operatorId.isEmpty())
            ReadRows({}, {});
        else
            ReadByOperator();
    }
    const QList<Line>& Lines() const { return m_lines; }
    /// The row of the history below which the next page begins; 0: there is none.
    qint64 Next() const { return m_isWhole ? 0 : m_last; }

private:
    bool IsFull() const { return m_lines.size() >= PageOfLines || m_rows >= MostRows; }

    // An operator may have changed little in a large library: by his requests.
    void ReadByOperator() {
        QVariant from = std::numeric_limits<qint64>::max();
        if (m_filter.below != std::numeric_limits<qint64>::max()) {
            from = m_context.database.FirstValue(
                "SELECT request_id FROM history_records WHERE id<? ORDER BY id DESC LIMIT 1",
                {m_filter.below});
            if (from.isNull())
                return;
        }
        const QVariantList requests = m_context.database.FirstColumn(
            "SELECT id FROM history_requests WHERE operator_id=? AND id<=? ORDER BY id DESC LIMIT ?",
            {m_filter.operatorId, from, MostRows});
        for (const QVariant& request : requests) {
            const qsizetype before = m_rows;
            ReadRows(" AND r.request_id=?", {request});
            m_isWhole = m_isWhole && !IsFull();
            // Without rows of its own the request still is a place at which the next page may begin.
            if (m_rows == before)
                ++m_rows;
            if (IsFull() || (m_last != 0 && m_last <= m_filter.lowest))
                return;
        }
        if (requests.size() == MostRows)
            m_isWhole = false;
    }

    void ReadRows(const QString& condition, const QVariantList& values) {
        QString sql = "SELECT r.id, r.request_id, r.table_name, r.record_id, r.subject_table, r.subject_id, "
                      "r.kind FROM history_records r WHERE r.id<? AND r.id>=?" +
                      condition;
        QVariantList bound = QVariantList{m_filter.below, m_filter.lowest} + values;
        // Of one request there are few rows: no other index is to be taken for them.
        const bool looks = !m_filter.table.isEmpty() && !condition.isEmpty();
        if (!m_filter.table.isEmpty() && !looks) {
            const bool isOwned = !m_context.records.GetTables().value(m_filter.table).owner.isEmpty();
            sql += isOwned ? " AND r.table_name=?" : " AND r.subject_table=?";
            bound << m_filter.table;
        }
        bound << MostRows + 1;
        m_context.database.Each(sql + " ORDER BY r.id DESC LIMIT ?", bound, [&](const ResultRow& row) {
            if (IsFull()) {
                m_isWhole = false;
                return;
            }
            if (looks && row.value(2).toString() != m_filter.table &&
                row.value(4).toString() != m_filter.table)
                return;
            ++m_rows;
            m_last = row.value(0).toLongLong();
            Take(row);
        });
    }

    void Take(const ResultRow& row) {
        Line line{row.value(1).toLongLong(), {row.value(4).toString(), row.value(5).toLongLong()}};
        const RecordName changed{row.value(2).toString(), row.value(3).toLongLong()};
        const Tables& tables = m_context.records.GetTables();
        if (changed.table != line.record.table && !tables.value(changed.table).owner.isEmpty() &&
            m_context.library.GetRegistry().ReadRuleOf(changed.table))
            line.record = changed; // it has a screen of its own
        if (const QString whole = tables.value(line.record.table).partOf; !whole.isEmpty())
            line.record = {whole, m_context.records.IdWhere(whole, "only_one", "Y").value_or(0)};
        const auto known = m_places.constFind(line.Key());
        const qsizetype place = known == m_places.constEnd() ? m_lines.size() : *known;
        if (known == m_places.constEnd()) {
            m_places.insert(line.Key(), place);
            m_lines.append(line);
        }
        if (changed.table == line.record.table && changed.id == line.record.id)
            m_lines[place].kind = row.value(6).toString();
    }

    Context& m_context;
    Filter m_filter;
    QList<Line> m_lines;
    QMap<std::tuple<qint64, QString, qint64>, qsizetype> m_places;
    qsizetype m_rows = 0;
    qint64 m_last = 0;
    bool m_isWhole = true;
};

void PutRecord(Context& context, const RecordName& record, ReplyFields& reply) {
    const Registry& registry = context.library.GetRegistry();
    const RequestRule* rule = registry.ReadRuleOf(record.table);
    const auto row = context.records.Find(record.table, record.id);
    const Table& table = *context.records.GetTables().constFind(record.table);
    Put(reply, "Sbj", rule ? rule->Word() : QString());
    Put(reply, "HX", QString(record.table).replace('_', ' '));
    Put(reply, "HRow", QString::number(record.id));
    Put(reply, "UK", rule && row ? KeyOf(registry, *rule, *row, record.id) : QString());
    Put(reply, "UN",
        table.IsSingle() ? QString() : NameOf(table, row ? *row : RemovedRow(context.database, record)));
    Put(reply, "HG", row ? "N" : "Y");
}

/// The beginning of a day in the library's own time, as it is stored; invalid when that is no day.
QVariant DayBegins(const QString& day, int more) {
    const QDate date = QDate::fromString(day, Qt::ISODate);
    return date.isValid() ? QVariant(StoredTime(date.addDays(more).startOfDay())) : QVariant();
}

/// The first row of the history from a point in time on.
qint64 FirstRowFrom(Context& context, const QVariant& time) {
    const QVariant request = context.database.FirstValue(
        "SELECT id FROM history_requests WHERE at>=? ORDER BY at, id LIMIT 1", {time});
    const QVariant row =
        request.isNull()
            ? QVariant()
            : context.database.FirstValue(
                  "SELECT id FROM history_records WHERE request_id>=? ORDER BY request_id, id LIMIT 1",
                  {request});
    return row.isNull() ? std::numeric_limits<qint64>::max() : row.toLongLong();
}

Answer AnswerChanges(Context& context, const wire::Fields& request) {
    Filter filter{.operatorId = Sent(request, "Op").value_or(QString())};
    if (const QString word = Sent(request, "Sbj").value_or(QString()); !word.isEmpty()) {
        const RequestRule* rule = context.library.GetRegistry().ReadRuleOfWord(word);
        if (!rule)
            return {status::NotFound};
        filter.table = rule->tables.first();
    }
    QString since; // only what was changed then or later; empty: whenever it was
    if (const QString from = Sent(request, "From").value_or(QString()); !from.isEmpty()) {
        const QVariant time = DayBegins(from, 0);
        if (!time.isValid())
            return {status::ColumnError};
        since = time.toString();
        filter.lowest = FirstRowFrom(context, time);
    }
    if (const QString to = Sent(request, "To").value_or(QString()); !to.isEmpty()) {
        const QVariant time = DayBegins(to, 1);
        if (!time.isValid())
            return {status::ColumnError};
        filter.below = FirstRowFrom(context, time);
    }
    if (const auto place = Sent(request, "Cur")) {
        bool isPlace = false;
        filter.below = qMin(filter.below, place->toLongLong(&isPlace));
        if (!isPlace)
            return {status::ColumnError};
    }
    Page page(context, filter);
    page.Read();
    Answer answer;
    for (const Line& line : page.Lines()) {
        context.database.Each(
            "SELECT h.at, h.operator_id, TRIM(COALESCE(o.first_name || ' ' || o.last_name, '')), h.peer, "
            "h.request FROM history_requests h LEFT JOIN operators o ON o.operator_id=h.operator_id "
            "WHERE h.id=?",
            {line.request}, [&](const ResultRow& row) {
                Put(answer.fields, "HN", QString::number(line.request));
                Put(answer.fields, "HT", ShownTime(row.value(0).toString()));
                Put(answer.fields, "HO", row.value(1).toString());
                Put(answer.fields, "HB", row.value(2).toString());
                Put(answer.fields, "HP", row.value(3).toString());
                Put(answer.fields, "HR", row.value(4).toString());
                Put(answer.fields, "HK", line.kind.left(1).toUpper());
                PutRecord(context, line.record, answer.fields);
            });
    }
    if (page.Next() != 0)
        Put(answer.fields, "Cur", QString::number(page.Next()));
    else if (const auto begin = ReadHistoryBegin(context.database); begin && since < begin->from)
        Put(answer.fields, "Kept", ShownTime(begin->from));
    return answer;
}

/// Each value that a column of a table holds, found by steps over its index.
QStringList Distinct(Database& database, const QString& table, const QString& column) {
    QStringList values;
    QVariant next = database.FirstValue("SELECT MIN(" + column + ") FROM " + table);
    while (!next.isNull()) {
        values << next.toString();
        next = database.FirstValue("SELECT MIN(" + column + ") FROM " + table + " WHERE " + column + ">?",
                                   {next});
    }
    return values;
}

/// By what the changes can be narrowed down: who made some, and to what.
Answer AnswerAvailable(Context& context, const wire::Fields&) {
    Answer answer;
    for (const QString& id : Distinct(context.database, "history_requests", "operator_id"))
        Put(answer.fields, "OI", id);
    for (const QString& table : Distinct(context.database, "history_records", "subject_table"))
        if (const RequestRule* rule = context.library.GetRegistry().ReadRuleOf(table)) {
            Put(answer.fields, "Sbj", rule->Word());
            Put(answer.fields, "HX", QString(table).replace('_', ' '));
        }
    return answer;
}

} // namespace

void RegisterChangeList(Registry& registry) {
    registry.AddRead("LstChg", Area::Security, AnswerChanges);
    registry.AddRead("AvlChg", Area::Security, AnswerAvailable);
}

} // namespace sysadmin::server
