#pragma once

#include "server/Context.h"
#include "server/SeenRecords.h"
#include "server/store/Changes.h"

#include <optional>

namespace sysadmin::server {

class Registry;
struct RequestRule;

/// What one request of a session may not overwrite, and what it lets the session know. Made inside the
/// request's transaction; what looks at the data throws `StoreError`.
class SessionView {
public:
    /// `number` is that of the last change that the transaction sees.
    SessionView(Database& database, const SessionStart& session, qint64 number, const RequestRule& rule,
                const wire::Fields& request);

    /// The refusal of a change to a record that somebody else changed after this session read it: its fields
    /// say who that was and when; of a request that changes several records for each of those, behind its
    /// key.
    std::optional<Answer> Refusal(SeenRecords& seen);
    /// Adds who removed the record to an answer that it was not found.
    void ExplainMissing(Answer& answer);
    /// The words of the subjects that other sessions changed since this session's last request.
    QStringList ChangedWords(SeenRecords& seen, const Registry& registry);
    /// Remembers what an answered request has let the session read. Only for one that changed nothing: it may
    /// run out of memory, and then the request fails.
    void KeepRead(SeenRecords& seen, qint16 answered) const;
    /// Remembers up to where the session was told of others' changes.
    void KeepTold(SeenRecords& seen) const noexcept;

private:
    QString MarkOf(const QString& table) const;
    struct Named {
        QString key;              ///< as it was sent
        QString text;             ///< folded, when the key is a text
        std::optional<qint64> id; ///< none: there is no such record
    };

    void FindRecords(const wire::Fields& request);
    Named Find(const QString& key) const;

    Database& m_database;
    SessionStart m_session;
    const RequestRule& m_rule;
    Changes m_changes;
    qint64 m_number = 0; // the last change that the request sees
    QString m_keyTag;
    QList<Named> m_records; // those that it names
    bool m_readsAll = false;
    bool m_onlyLooks = false; // what it reads is not what an edit begins with
};

} // namespace sysadmin::server
