#pragma once

#include "server/store/StoreAddress.h"

#include <QStringList>
#include <QVariant>

#include <memory>

namespace sysadmin::server {

/// A value that is a text in UTF-8 already, and one that can be stored.
struct Utf8Text {
    QByteArray bytes;
};

/// A statement of one connection, prepared once and carried out as often as wanted. Everything throws
/// `StoreError`.
class EngineStatement {
public:
    virtual ~EngineStatement() = default;

    /// Carries it out with values for its "?": texts, `Utf8Text`s, numbers, bytes; an invalid one is NULL.
    virtual void Execute(const QVariantList& values) = 0;
    /// The same for who does not need its result: the engine may carry it out together with what is asked
    /// next, which then throws what this would.
    virtual void ExecuteLater(const QVariantList& values) = 0;
    /// Goes to the next row of the result, at first to its first one; false when there is none.
    virtual bool Next() = 0;
    /// How many rows the last execution touched.
    virtual int CountTouched() const = 0;
    /// Lets go of the result; the statement may be carried out again.
    virtual void Finish() = 0;

    virtual int CountColumns() const = 0;
    /// A value of the row at which the result stands; invalid for NULL.
    virtual QVariant Value(int column) const = 0;
    /// The same as a text; empty for NULL.
    virtual QString Text(int column) const = 0;
    /// The same text as valid UTF-8, which is there until the next one is asked for.
    virtual QByteArrayView Utf8(int column) const = 0;
};

/// A connection to a database, for one thread at a time. Everything throws `StoreError`.
class EngineConnection {
public:
    virtual ~EngineConnection() = default;

    virtual std::unique_ptr<EngineStatement> Prepare(const QString& sql) = 0;
    /// Carries out what needs neither values nor results, also what cannot be prepared; answers how many rows
    /// it touched.
    virtual int RunOnce(const QString& sql) = 0;
    /// The same for who does not need the answer, and often: see `EngineStatement::ExecuteLater`.
    virtual void RunLater(const QString& sql) = 0;
    /// Carries out what was put off.
    virtual void Settle() = 0;
    /// How long the engine waits by itself for other connections, where it does.
    virtual void SetBusyWait(int milliseconds) = 0;
    virtual void Commit() = 0;
    /// Undoes the transaction, with what was to be carried out later.
    virtual void Rollback() = 0;
    /// Carries out a statement that adds a row, and answers its id.
    virtual qint64 Insert(EngineStatement& statement, const QVariantList& values) = 0;
    /// What an INSERT needs at its end for `Insert`.
    virtual QString EndOfInsert() const = 0;
    /// What answers the names of all tables.
    virtual QString TableNamesQuery() const = 0;
    /// What answers the names of the columns of a table, which is its value, in their order.
    virtual QString ColumnNamesQuery() const = 0;
};

/// Opens a library's file, which is made when it is missing.
std::unique_ptr<EngineConnection> OpenSqlite(const StoreAddress& address);
/// Connects to a PostgreSQL server.
std::unique_ptr<EngineConnection> OpenPostgreSql(const StoreAddress& address);

/// The versions of the engines' libraries that are in use; "-" for one that is left out.
QString SqliteVersion();
QString PostgreSqlVersion();

} // namespace sysadmin::server

Q_DECLARE_METATYPE(sysadmin::server::Utf8Text)
