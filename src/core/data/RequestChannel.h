#pragma once

#include "wire/ReceivedFields.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <utility>

namespace sysadmin {

class Session;

/// The one way to the settings server: put tagged fields, send a named request, read the reply.
///
/// The reply is an ordered list of fields; a list of records is a run of fields per record that begins with
/// the record's first tag. `NextRecord` walks such runs.
class RequestChannel {
public:
    virtual ~RequestChannel() = default;
    RequestChannel(const RequestChannel&) = delete;
    RequestChannel& operator=(const RequestChannel&) = delete;

    /// Connects with the operator's credentials of the session; true when the operator is signed on.
    virtual bool SignOn(Session& session) = 0;

    /// Appends a field to the next request. The same tag may be put many times.
    void PutField(const QString& tag, const QString& value);

    /// From now on every request carries these fields, too, until there are others.
    void PutWithEvery(const wire::Fields& fields) { m_withEvery = fields; }

    /// The fields put since the last request; they are not sent then. For a request that carries others.
    wire::Fields TakeFields() { return std::exchange(m_pending, {}); }

    /// Sends the request with the fields put since the last one, waits, makes the reply current, and answers
    /// its status: 0 success, 55 the list continues, 1 no connection or no answer in time, else a refusal.
    qint16 SendRequest(const QString& name);

    /// Why the last request or sign-on failed, in words for the operator; empty when it did not or when its
    /// status says all.
    virtual const QString& LastProblem() const = 0;

    /// The first field with this tag in the record under the cursor, or in the whole reply while there is
    /// none. A missing tag is an empty text.
    QString GetField(const QString& tag) const;

    /// What the record under the cursor (or while there is none, the whole reply) has under these tags. For
    /// lists: rows made of it stay in the reply's memory.
    wire::ReceivedRecord GetRecord(const QStringList& tags) const;

    /// True when the field is "Y".
    bool GetFlag(const QString& tag) const;

    /// Moves the cursor to the next record that begins with this tag; false when there is none. Each tag has
    /// a place of its own; the first call finds the first record.
    bool NextRecord(const QString& tag);

    /// The current reply as it has arrived.
    const wire::ReceivedFields& Reply() const { return m_reply; }
    /// Its fields, in order; all of them are made into texts for it.
    wire::Fields ReplyFields() const { return m_reply.All(); }

    /// Is told the words of the subjects ("VenTp") that other sessions changed, as replies bring them. It is
    /// called while the requesting code still reads its reply: act later.
    void SetChangeObserver(std::function<void(const QStringList&)> observer) {
        m_changeObserver = std::move(observer);
    }
    /// Whether a request is on its way.
    bool IsBusy() const { return m_busy; }

protected:
    struct Answer {
        qint16 status = 0;
        wire::ReceivedFields fields;
        QStringList changed = {}; ///< subjects that others changed
    };

    RequestChannel() = default;
    /// Carries one request to the server and back. Never throws; a lost connection is status 1.
    virtual Answer Exchange(const QString& name, const wire::Fields& fields) = 0;

private:
    // Where among the fields reading begins and ends.
    qsizetype ReadBegin() const { return m_recordEnd < 0 ? 0 : m_recordBegin; }
    qsizetype ReadEnd() const { return m_recordEnd < 0 ? m_reply.Count() : m_recordEnd; }

    std::function<void(const QStringList&)> m_changeObserver;
    bool m_busy = false;
    wire::Fields m_pending;
    wire::Fields m_withEvery;
    wire::ReceivedFields m_reply;
    mutable std::shared_ptr<const wire::RecordTags> m_recordTags; // that were asked for last
    QList<qsizetype> m_places; // where the next search for a tag begins, by the tag's number
    qsizetype m_recordBegin = 0;
    qsizetype m_recordEnd = -1; // -1: no record under the cursor
};

} // namespace sysadmin
