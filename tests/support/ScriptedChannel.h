#pragma once

#include "core/data/RequestChannel.h"

#include <QHash>
#include <QList>

namespace sysadmin {

/// The request channel of tests: records what is sent and answers from a script. Answers are queued per
/// request name and given in order. A request without one fails the test and gets status 6; what is left in
/// the queues at the end can be asked for with `AllAnswered`.
class ScriptedChannel : public RequestChannel {
public:
    struct Sent {
        QString name;
        wire::Fields fields;
        bool operator==(const Sent&) const = default;

        /// The value of the first field with this tag; empty when there is none.
        QString Value(const QString& tag) const { return wire::FirstValue(fields, tag); }
        /// The values of all fields with this tag, in order.
        QStringList Values(const QString& tag) const;
    };

    /// Every request so far, in order.
    QList<Sent> sent;
    /// What the next `SignOn` answers.
    bool signOnResult = true;
    /// Why the last request failed.
    QString problem;
    const QString& LastProblem() const override { return problem; }
    /// How often `SignOn` was called.
    int signOns = 0;

    /// Queues an answer for the next request of this name that has none yet.
    void Answer(const QString& request, qint16 status, wire::Fields fields = {});
    /// Whether every queued answer was given.
    bool AllAnswered() const;
    /// The names of the requests sent so far, in order.
    QStringList SentNames() const;
    /// The last request of this name; fails the test when there is none.
    Sent LastSent(const QString& request) const;

    bool SignOn(Session& session) override;

protected:
    RequestChannel::Answer Exchange(const QString& name, const wire::Fields& fields) override;

private:
    QHash<QString, QList<RequestChannel::Answer>> m_answers;
};

} // namespace sysadmin
