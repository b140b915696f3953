#include "server/Sessions.h"

#include "server/Passwords.h"
#include "server/store/Changes.h"
#include "server/store/Database.h"

namespace sysadmin::server {

Table Sessions::Declare() {
    return {.name = "sessions",
            .columns = {{.name = "token_hash"},
                        {.name = "nonce"},
                        {.name = "operator_row",
                         .type = ColumnType::Reference,
                         .target = "operators",
                         .onRemoval = OnRemoval::RemoveToo},
                        {.name = "peer"},
                        {.name = "number", .type = ColumnType::Whole, .fallback = "0"},
                        {.name = "reply", .type = ColumnType::Bytes},
                        {.name = "epoch", .type = ColumnType::Whole, .fallback = "0"},
                        {.name = "must_change", .type = ColumnType::Flag},
                        {.name = "started_at"},
                        {.name = "used_at"},
                        {.name = "start_change", .type = ColumnType::Whole, .fallback = "0"},
                        {.name = "cursor_request"},
                        {.name = "cursor_after", .type = ColumnType::Whole, .fallback = "0"}},
            .uniqueSets = {{"token_hash"}},
            .indexed = {{"used_at"}, {"start_change"}},
            .content = Content::Record};
}

qint64 Sessions::Start(const QString& token, const QString& nonce, qint64 operatorRow, const QString& peer,
                       bool mustChange, const QDateTime& now, int most) {
    // Sessions that nobody ended go when somebody signs on.
    m_database.Run("DELETE FROM sessions WHERE used_at<?", {StoredTime(now.addSecs(-IdleSeconds))});
    const qint64 count = m_database.FirstValue("SELECT COUNT(*) FROM sessions").toLongLong();
    if (count >= most)
        m_database.Run("DELETE FROM sessions WHERE id IN (SELECT s.id FROM sessions s JOIN (SELECT "
                       "operator_row, COUNT(*) AS held FROM sessions GROUP BY operator_row) h ON "
                       "h.operator_row=s.operator_row ORDER BY h.held DESC, s.used_at, s.id LIMIT ?)",
                       {count - most + 1});
    Changes changes(m_database);
    changes.Prune();
    return m_database.RunInsert(
        "INSERT INTO sessions (token_hash, nonce, operator_row, peer, must_change, started_at, used_at, "
        "start_change) VALUES (?, ?, ?, ?, ?, ?, ?, ?)",
        {TokenHash(token), nonce, operatorRow, peer, mustChange ? "Y" : "N", StoredTime(now), StoredTime(now),
         changes.Last()});
}

std::optional<StoredSession> Sessions::Resume(const QString& token, const QDateTime& now) {
    const QVariant row =
        m_database.FirstValue("SELECT id FROM sessions WHERE token_hash=?", {TokenHash(token)});
    if (!row.isValid() || !Load(row.toLongLong(), now))
        return std::nullopt;
    m_database.Run("UPDATE sessions SET epoch=epoch+1, used_at=? WHERE id=?", {StoredTime(now), row});
    return Load(row.toLongLong(), now);
}

std::optional<StoredSession> Sessions::Load(qint64 row, const QDateTime& now,
                                            const std::optional<StoredSession>& known) const {
    const auto values =
        m_database.FirstRow("SELECT number, epoch, must_change, used_at, cursor_request, cursor_after, "
                            "(SELECT MAX(id) FROM history_requests) FROM sessions WHERE id=?",
                            {row});
    if (!values)
        return std::nullopt;
    const auto text = [&](int column) { return (*values)[column].toString(); };
    const qint64 lastChange = (*values)[6].toLongLong();
    StoredSession session;
    if (known && known->row == row && known->lastChange == lastChange)
        session = *known;
    session.number = (*values)[0].toULongLong();
    session.epoch = (*values)[1].toLongLong();
    session.usedAt = TimeFromStore(text(3));
    session.cursor = {text(4), (*values)[5].toLongLong()};
    if (session.usedAt.secsTo(now) > IdleSeconds)
        return std::nullopt;
    if (session.row == 0) {
        session.row = row;
        session.lastChange = lastChange;
        if (!LoadOperator(session))
            return std::nullopt;
    }
    session.mustChangePassword = text(2) == "Y" || session.isExpired;
    return session;
}

bool Sessions::LoadOperator(StoredSession& session) const {
    const auto values = m_database.FirstRow(
        "SELECT o.id, o.operator_id, o.first_name, o.last_name, o.expired, o.restrict_change, s.peer, "
        "s.nonce, s.start_change FROM sessions s JOIN operators o ON o.id=s.operator_row WHERE s.id=?",
        {session.row});
    if (!values)
        return false;
    const auto text = [&](int column) { return (*values)[column].toString(); };
    session.requester = {(*values)[0].toLongLong(),
                         text(1),
                         QString(text(2) + ' ' + text(3)).trimmed(),
                         text(6),
                         session.row,
                         text(7)};
    session.rights = Rights::Of(m_database, session.requester.row);
    session.isExpired = text(4) == "Y" && text(5) != "Y";
    session.startChange = (*values)[8].toLongLong();
    return true;
}

QByteArray Sessions::ReplyOf(qint64 row) const {
    return m_database.FirstValue("SELECT reply FROM sessions WHERE id=?", {row}).toByteArray();
}

void Sessions::Keep(qint64 row, quint64 number, const QByteArray& reply, const ListCursor& cursor,
                    const QDateTime& now) {
    m_database.RunLater(
        "UPDATE sessions SET number=?, reply=?, cursor_request=?, cursor_after=?, used_at=? WHERE id=?",
        {qint64(number), reply, cursor.request, cursor.after, StoredTime(now), row});
}

void Sessions::Touch(qint64 row, const QDateTime& now) {
    m_database.Run("UPDATE sessions SET used_at=? WHERE id=?", {StoredTime(now), row});
}

void Sessions::PasswordChanged(qint64 row) {
    m_database.Run("UPDATE sessions SET must_change='N' WHERE id=?", {row});
}

void Sessions::End(qint64 row) {
    m_database.Run("DELETE FROM sessions WHERE id=?", {row});
}

void Sessions::EndAllOf(qint64 operatorRow) {
    m_database.Run("DELETE FROM sessions WHERE operator_row=?", {operatorRow});
}

void Sessions::EndOthersOf(qint64 operatorRow, qint64 row) {
    m_database.Run("DELETE FROM sessions WHERE operator_row=? AND id<>?", {operatorRow, row});
}

} // namespace sysadmin::server
