#pragma once

#include "server/ReplyFields.h"
#include "server/Rights.h"
#include "server/store/Records.h"
#include "wire/Message.h"
#include "wire/Status.h"

#include <QDateTime>

namespace sysadmin::server {

class Library;
class Prepared;
namespace status = wire::status;

/// The operator who sent a request.
struct Requester {
    qint64 row = 0;     ///< id in the table of operators
    QString id;         ///< the sign-on name
    QString name;       ///< for people
    QString peer;       ///< the address from which the operator works
    qint64 session = 0; ///< row of the session; 0 for none
    QString nonce = {}; ///< under which the session's passwords are sealed
};

/// How far a list that goes out in batches has been sent in this session.
struct ListCursor {
    QString request;
    qint64 after = 0; ///< id of the last record that went out
};

/// What a request's handler works with. The handler runs inside a transaction, which is kept when it answers
/// 0 or 55 and undone otherwise.
struct Context {
    const Library& library;
    Database& database;
    Records records;
    const Requester& requester;
    const Rights& rights;
    QDateTime now; ///< UTC
    ListCursor cursor;
    Prepared* prepared = nullptr; ///< whatever the rule of the request prepares
};

/// What a handler answers. Fields go out with status 0 and 55 only.
struct Answer {
    qint16 status = wire::status::Ok;
    ReplyFields fields = {};
};

/// The form in which points in time are stored.
inline QString StoredTime(const QDateTime& time) {
    return time.toUTC().toString(Qt::ISODateWithMs);
}

/// A stored point in time; invalid for an empty text.
inline QDateTime TimeFromStore(const QString& text) {
    return QDateTime::fromString(text, Qt::ISODateWithMs);
}

/// A stored point in time as people read it, in the library's own time; empty when there is none.
inline QString ShownTime(const QString& stored) {
    const QDateTime time = TimeFromStore(stored);
    return time.isValid() ? time.toLocalTime().toString("yyyy-MM-dd HH:mm:ss") : QString();
}

} // namespace sysadmin::server
