#include "core/data/RequestChannel.h"

namespace sysadmin {

void RequestChannel::PutField(const QString& tag, const QString& value) {
    m_pending.append({tag, value});
}

qint16 RequestChannel::SendRequest(const QString& name) {
    const wire::Fields fields = std::exchange(m_pending, {}) + m_withEvery;
    const bool wasBusy = std::exchange(m_busy, true);
    Answer answer = Exchange(name, fields);
    m_busy = wasBusy;
    m_reply = std::move(answer.fields);
    m_places.clear();
    m_recordEnd = -1;
    if (!answer.changed.isEmpty() && m_changeObserver)
        m_changeObserver(answer.changed);
    return answer.status;
}

QString RequestChannel::GetField(const QString& tag) const {
    const qsizetype begin = m_recordEnd < 0 ? 0 : m_recordBegin;
    const qsizetype end = m_recordEnd < 0 ? m_reply.size() : m_recordEnd;
    for (qsizetype i = begin; i < end; ++i)
        if (m_reply[i].tag == tag)
            return m_reply[i].value;
    return {};
}

bool RequestChannel::GetFlag(const QString& tag) const {
    return GetField(tag) == u"Y";
}

bool RequestChannel::NextRecord(const QString& tag) {
    qsizetype& place = m_places[tag];
    while (place < m_reply.size() && m_reply[place].tag != tag)
        ++place;
    if (place >= m_reply.size()) {
        m_recordEnd = -1;
        return false;
    }
    m_recordBegin = place++;
    while (place < m_reply.size() && m_reply[place].tag != tag)
        ++place;
    m_recordEnd = place;
    return true;
}

} // namespace sysadmin
