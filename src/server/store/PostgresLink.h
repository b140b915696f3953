#pragma once

#include "server/store/StoreAddress.h"

#include <QByteArray>
#include <QVariant>

#include <deque>
#include <memory>

#include <libpq-fe.h>

namespace sysadmin::server {

struct PostgresResultEnd {
    void operator()(PGresult* result) const { PQclear(result); }
};
using PostgresResult = std::unique_ptr<PGresult, PostgresResultEnd>;

/// A connection to a PostgreSQL server, on which statements may travel together: what is put on it goes with
/// what is asked next. Each question, with all that waited for it, is one journey. Everything throws
/// `StoreError`; of statements that travel together those after a refused one are not carried out.
class PostgresLink {
public:
    explicit PostgresLink(const StoreAddress& address);
    ~PostgresLink();
    PostgresLink(const PostgresLink&) = delete;
    PostgresLink& operator=(const PostgresLink&) = delete;

    /// Prepares a statement, whose values are "$1", "$2", ... in it.
    void Prepare(const QByteArray& name, const QByteArray& sql);
    /// Puts a statement without values, or a prepared one with its values, on the way.
    void Put(const QByteArray& sql);
    void PutPrepared(const QByteArray& name, const QVariantList& values);
    /// Sends what was put on the way and waits; answers the result of the last statement, if there was one.
    PostgresResult Ask();
    /// Undoes the transaction with all that was put on the way, and waits for nothing.
    void PutRollback();

private:
    /// Something sent of which the answer was not read.
    struct Sent {
        bool isEnd = false;  ///< of what travels together
        bool isHeard = true; ///< somebody wants to know that it failed
    };

    void Check(bool sent);
    /// Reads what came of earlier statements before there is too much of it.
    void MakeRoom();
    void PutEnd();
    [[noreturn]] void ThrowLost();
    void Close();

    PGconn* m_connection = nullptr;
    std::deque<Sent> m_sent;
    QByteArray m_values; ///< of the statement that is being sent, one behind the other
};

} // namespace sysadmin::server
