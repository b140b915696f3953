#include "support/ScriptedChannel.h"

#include <gtest/gtest.h>

namespace sysadmin {

QStringList ScriptedChannel::Sent::Values(const QString& tag) const {
    QStringList values;
    for (const wire::Field& field : fields)
        if (field.tag == tag)
            values.append(field.value);
    return values;
}

void ScriptedChannel::Answer(const QString& request, qint16 status, wire::Fields fields) {
    m_answers[request].append({status, std::move(fields)});
}

bool ScriptedChannel::AllAnswered() const {
    bool all = true;
    for (auto queue = m_answers.begin(); queue != m_answers.end(); ++queue) {
        if (queue->isEmpty())
            continue;
        all = false;
        qWarning("%s: %d answer(s) never asked for", qUtf8Printable(queue.key()), int(queue->size()));
    }
    return all;
}

QStringList ScriptedChannel::SentNames() const {
    QStringList names;
    for (const Sent& request : sent)
        names.append(request.name);
    return names;
}

ScriptedChannel::Sent ScriptedChannel::LastSent(const QString& request) const {
    for (auto place = sent.rbegin(); place != sent.rend(); ++place)
        if (place->name == request)
            return *place;
    ADD_FAILURE() << "never sent: " << request.toStdString();
    return {};
}

bool ScriptedChannel::SignOn(Session&) {
    ++signOns;
    return signOnResult;
}

RequestChannel::Answer ScriptedChannel::Exchange(const QString& name, const wire::Fields& fields) {
    sent.append({name, fields});
    QList<RequestChannel::Answer>& queue = m_answers[name];
    if (queue.isEmpty()) {
        ADD_FAILURE() << "request without an answer in the script: " << name.toStdString();
        return {6, {}};
    }
    return queue.takeFirst();
}

} // namespace sysadmin
