#pragma once

#include <QHash>
#include <QMutex>
#include <QString>

#include <list>
#include <map>
#include <optional>

namespace sysadmin::server {

/// A session and the number of the last change before it began.
struct SessionStart {
    qint64 row = 0;
    qint64 change = 0;
};

/// What each session has read of the library's records, as numbers of the last change that the reading saw.
/// Kept in memory, within bounds. Of a session that is not known here (the server was started again) it is
/// assumed that it read everything when it began: a change since then counts as not seen until the record is
/// read again. May be used by several threads.
class SeenRecords {
public:
    /// The session begins and has read nothing.
    void Begin(qint64 session);
    void ReadAll(const SessionStart& session, const QString& table, qint64 number);
    /// `text` is the folded key under which the record was asked for; empty when it was its id.
    void ReadOne(const SessionStart& session, const QString& table, qint64 id, const QString& text,
                 qint64 number);
    /// The number up to which the session knows the record; none when it never read it. A list counts where
    /// the record was not read by itself; `latest` takes whichever was later.
    std::optional<qint64> Known(const SessionStart& session, const QString& table, qint64 id,
                                const QString& text, bool latest);
    /// The number up to which the session was told which subjects changed.
    qint64 Told(const SessionStart& session);
    /// Never fails: a session that is not known here is told once more.
    void Tell(qint64 session, qint64 number) noexcept;

private:
    static constexpr int MostSessions = 20'000;
    static constexpr qsizetype MostRecords = 500'000; ///< of all sessions
    static constexpr qsizetype MostRecordsOfTable = 2000;

    struct TableMarks {
        std::optional<qint64> list;
        std::optional<qint64> forgotten; ///< the oldest of the marks that were dropped to save memory
        QHash<qint64, qint64> byId;
        QHash<QString, qint64> byText;
    };
    struct Marks {
        qsizetype records = 0;       ///< how many marks of records there are
        std::optional<qint64> floor; ///< for whatever has no mark
        qint64 told = 0;
        std::map<QString, TableMarks> tables; // a few; a hash would take more
        std::list<qint64>::iterator place;
    };

    Marks& Of(const SessionStart& session);
    /// Forgets the session that was not used for the longest time.
    void ForgetOldest();

    QMutex m_mutex;
    QHash<qint64, Marks> m_sessions;
    qsizetype m_records = 0;
    std::list<qint64> m_order; // the session used last stands last
};

} // namespace sysadmin::server
