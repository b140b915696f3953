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
    m_recordTags.reset();
    m_places.fill(0, m_reply.CountTags());
    m_recordEnd = -1;
    if (!answer.changed.isEmpty() && m_changeObserver)
        m_changeObserver(answer.changed);
    return answer.status;
}

QString RequestChannel::GetField(const QString& tag) const {
    const int number = m_reply.FindTag(tag);
    if (number == wire::ReceivedFields::NoTag)
        return {};
    for (qsizetype i = ReadBegin(), end = ReadEnd(); i < end; ++i)
        if (m_reply.TagAt(i) == number)
            return m_reply.ValueAt(i);
    return {};
}

wire::ReceivedRecord RequestChannel::GetRecord(const QStringList& tags) const {
    if (!m_recordTags || m_recordTags->tags != tags)
        m_recordTags = std::make_shared<wire::RecordTags>(m_reply, tags);
    return {m_recordTags, ReadBegin(), ReadEnd()};
}

bool RequestChannel::GetFlag(const QString& tag) const {
    return GetField(tag) == u"Y";
}

bool RequestChannel::NextRecord(const QString& tag) {
    const int number = m_reply.FindTag(tag);
    qsizetype place = number == wire::ReceivedFields::NoTag ? m_reply.Count() : m_places[number];
    while (place < m_reply.Count() && m_reply.TagAt(place) != number)
        ++place;
    if (place >= m_reply.Count()) {
        m_recordEnd = -1;
        return false;
    }
    m_recordBegin = place++;
    while (place < m_reply.Count() && m_reply.TagAt(place) != number)
        ++place;
    m_places[number] = place;
    m_recordEnd = place;
    return true;
}

} // namespace sysadmin
