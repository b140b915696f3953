#include "server/SeenRecords.h"

#include <algorithm>

namespace sysadmin::server {

SeenRecords::Marks& SeenRecords::Of(const SessionStart& session) {
    auto found = m_sessions.find(session.row);
    if (found != m_sessions.end()) {
        m_order.splice(m_order.end(), m_order, found->place);
        return *found;
    }
    if (m_sessions.size() >= MostSessions)
        ForgetOldest();
    Marks marks{.records = 0, .floor = session.change, .told = session.change, .tables = {}, .place = {}};
    marks.place = m_order.insert(m_order.end(), session.row);
    return *m_sessions.insert(session.row, marks);
}

void SeenRecords::ForgetOldest() {
    m_records -= m_sessions.take(m_order.front()).records;
    m_order.pop_front();
}

void SeenRecords::Begin(qint64 session) {
    const QMutexLocker lock(&m_mutex);
    Marks& marks = Of({session, 0});
    marks.floor.reset();
    m_records -= std::exchange(marks.records, 0);
    marks.tables.clear();
}

void SeenRecords::ReadAll(const SessionStart& session, const QString& table, qint64 number) {
    const QMutexLocker lock(&m_mutex);
    Of(session).tables[table].list = number;
}

void SeenRecords::ReadOne(const SessionStart& session, const QString& table, qint64 id, const QString& text,
                          qint64 number) {
    const QMutexLocker lock(&m_mutex);
    Marks& all = Of(session);
    TableMarks& marks = all.tables[table];
    const auto count = [&] { return marks.byId.size() + marks.byText.size(); };
    const qsizetype before = count();
    if (before >= MostRecordsOfTable) {
        qint64 oldest = marks.forgotten.value_or(number);
        for (const qint64 mark : marks.byId)
            oldest = qMin(oldest, mark);
        marks.forgotten = oldest;
        marks.byId.clear();
        marks.byText.clear();
    }
    marks.byId.insert(id, number);
    if (!text.isEmpty())
        marks.byText.insert(text, number);
    all.records += count() - before;
    m_records += count() - before;
    while (m_records > MostRecords && m_order.front() != session.row)
        ForgetOldest();
}

std::optional<qint64> SeenRecords::Known(const SessionStart& session, const QString& table, qint64 id,
                                         const QString& text, bool latest) {
    const QMutexLocker lock(&m_mutex);
    const Marks& marks = Of(session);
    const auto found = marks.tables.find(table);
    if (found == marks.tables.end())
        return marks.floor;
    const TableMarks& known = found->second;
    std::optional<qint64> one;
    if (const auto byId = known.byId.constFind(id); byId != known.byId.constEnd())
        one = *byId;
    else if (const auto byText = known.byText.constFind(text);
             !text.isEmpty() && byText != known.byText.constEnd())
        one = *byText;
    else
        one = known.forgotten;
    if (latest && one && known.list)
        return qMax(*one, *known.list);
    return one ? one : known.list ? known.list : marks.floor;
}

qint64 SeenRecords::Told(const SessionStart& session) {
    const QMutexLocker lock(&m_mutex);
    return Of(session).told;
}

void SeenRecords::Tell(qint64 session, qint64 number) noexcept {
    const QMutexLocker lock(&m_mutex);
    if (const auto known = m_sessions.find(session); known != m_sessions.end())
        known->told = number;
}

} // namespace sysadmin::server
