#include "server/store/Database.h"

#include "server/store/LibraryFolder.h"
#include "server/store/Table.h"

#include <QFile>
#include <QSqlError>
#include <QSqlRecord>
#include <QUuid>

namespace sysadmin::server {

namespace {

StoreError::Kind KindOf(StoreAddress::Engine engine, const QSqlError& error) {
    using Kind = StoreError::Kind;
    if (engine == StoreAddress::Engine::Sqlite) {
        const QString text = error.databaseText();
        if (text.contains("UNIQUE constraint"))
            return Kind::Duplicate;
        if (text.contains("FOREIGN KEY constraint"))
            return Kind::Referenced;
        if (text.contains("is locked"))
            return Kind::Transient;
        return Kind::Failure;
    }
    const QString state = error.nativeErrorCode();
    if (state == "23505")
        return Kind::Duplicate;
    if (state == "23503")
        return Kind::Referenced;
    if (state == "40001" || state == "40P01")
        return Kind::Transient;
    if (state == "55P03")
        return Kind::Busy;
    // A server that went down in the middle of a statement leaves no state: whether it was a COMMIT that
    // still happened is not known.
    if (state.isEmpty() || error.type() == QSqlError::ConnectionError || state.startsWith("08") ||
        state.startsWith("57P") || state == "25P03")
        return Kind::Lost;
    return Kind::Failure;
}

QByteArray Words(StoreError::Kind kind) {
    switch (kind) {
    case StoreError::Kind::Duplicate:
        return "a unique value is there already";
    case StoreError::Kind::Referenced:
        return "a reference is in the way";
    case StoreError::Kind::Transient:
        return "other transactions were in the way";
    case StoreError::Kind::Busy:
        return "others were in the way for too long";
    case StoreError::Kind::Lost:
        return "the connection to the database is lost";
    case StoreError::Kind::Unstorable:
        return "a text holds characters that cannot be stored";
    case StoreError::Kind::Failure:
        break;
    }
    return "the database has refused the work";
}

QtMessageHandler otherMessages = nullptr;

void PassOnOtherMessages(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    for (const char* driver : {"QSql", "QPSQL", "QSQLite", "Unable to free statement"})
        if (text.startsWith(QLatin1String(driver)))
            return;
    otherMessages(type, context, text);
}

} // namespace

StoreError::StoreError(Kind kind, const QString& text, const QString& code)
    : m_kind(kind)
    , m_text(text)
    , m_what(code.isEmpty() ? text.toUtf8() : Words(kind) + " (" + code.toUtf8() + ')') {}

void SilenceDatabaseDrivers() {
    if (!otherMessages)
        otherMessages = qInstallMessageHandler(PassOnOtherMessages);
}

QVariant ResultRow::value(int column) const {
    const QVariant value = m_query.value(column);
    return value.isNull() ? QVariant() : value;
}

int ResultRow::Count() const {
    return m_query.record().count();
}

Database::Database(const StoreAddress& address, std::shared_ptr<WriterQueue> writers,
                   std::chrono::milliseconds patience)
    : m_address(address)
    , m_writers(writers ? std::move(writers) : std::make_shared<WriterQueue>())
    , m_patience(patience)
    , m_connection(QUuid::createUuid().toString(QUuid::WithoutBraces)) {
    const bool sqlite = address.engine == StoreAddress::Engine::Sqlite;
    m_database = QSqlDatabase::addDatabase(sqlite ? "QSQLITE" : "QPSQL", m_connection);
    try {
        if (sqlite) {
            // The file is made here and not by the engine: nobody else may read it, and its companions take
            // over its permissions.
            if (QFile file(address.file); !file.exists() && file.open(QIODevice::NewOnly))
                file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
            m_database.setDatabaseName(address.file);
            m_database.setConnectOptions("QSQLITE_BUSY_TIMEOUT=" + QString::number(BusyMilliseconds));
        } else {
            m_database.setHostName(address.host);
            m_database.setPort(address.port);
            m_database.setDatabaseName(address.database);
            m_database.setUserName(address.user);
            m_database.setPassword(address.password);
            m_database.setConnectOptions(address.options);
        }
        if (!m_database.open())
            Throw(m_database.lastError());
        if (sqlite) {
            // With a log the disk is waited for after the writer's turn: see Commit.
            m_syncsLog = FirstValue("PRAGMA journal_mode=WAL").toString() == "wal" && LogSync::IsAvailable();
            RunOnce(m_syncsLog ? "PRAGMA synchronous=NORMAL" : "PRAGMA synchronous=FULL");
            RunOnce("PRAGMA foreign_keys=ON");
            m_file = IdentityOf(address.file);
        } else {
            RunOnce("SET client_min_messages=warning");
            RunOnce("SET synchronous_commit=on");
            RunOnce("SET lock_timeout=" + QString::number(m_patience.count()));
            // A machine that vanished in the middle of a change does not keep all others waiting.
            RunOnce("SET idle_in_transaction_session_timeout='60s'");
        }
    } catch (...) {
        m_database = QSqlDatabase();
        QSqlDatabase::removeDatabase(m_connection);
        throw;
    }
}

Database::~Database() {
    m_prepared.clear();
    m_database.close();
    m_database = QSqlDatabase();
    QSqlDatabase::removeDatabase(m_connection);
}

void Database::Throw(const QSqlError& error) {
    const StoreError::Kind kind = KindOf(m_address.engine, error);
    QString text = error.databaseText().trimmed();
    if (text.isEmpty())
        text = error.driverText().trimmed();
    throw StoreError(m_database.isOpen() ? kind : StoreError::Kind::Lost, text.section('\n', 0, 0),
                     error.nativeErrorCode().isEmpty() ? QString("no number") : error.nativeErrorCode());
}

// SQLite goes on writing to a file that nobody finds any more: such a change is not to be acknowledged.
void Database::CheckFile() const {
    if (IdentityOf(m_address.file) != m_file)
        throw StoreError(StoreError::Kind::Lost, FileIsGone(m_address.file));
}

bool Database::TryImmediate() {
    try {
        RunOnce("BEGIN IMMEDIATE");
        return true;
    } catch (const StoreError& error) {
        if (error.GetKind() != StoreError::Kind::Transient)
            throw;
        return false;
    }
}

int Database::RunOnce(const QString& sql) {
    QSqlQuery query(m_database);
    if (!query.exec(sql))
        Throw(query.lastError());
    return query.numRowsAffected();
}

std::unique_ptr<QSqlQuery> Database::Execute(const QString& sql, const Values& values) {
    for (const QVariant& value : values)
        if (value.typeId() == QMetaType::QString && !IsStorable(value.toString()))
            throw StoreError(StoreError::Kind::Unstorable, "A text holds characters that cannot be stored.");
    // A statement is taken out of the store while it runs: a nested use of the same text then prepares
    // another.
    std::unique_ptr<QSqlQuery> query;
    if (const auto kept = m_prepared.find(sql); kept != m_prepared.end()) {
        query = std::move(kept->second);
        m_prepared.erase(kept);
    } else {
        query = std::make_unique<QSqlQuery>(m_database);
        // PostgreSQL's driver would take single rows off the connection, which then serves nothing else.
        query->setForwardOnly(m_address.engine == StoreAddress::Engine::Sqlite);
        if (!query->prepare(sql))
            Throw(query->lastError());
    }
    for (qsizetype i = 0; i < values.size(); ++i) {
        if (values[i].typeId() != QMetaType::QString) {
            query->bindValue(int(i), values[i]);
            continue;
        }
        // The drivers take a null text for NULL; here only an invalid value is. (A variant that holds a null
        // text is not null itself.)
        const QString text = values[i].toString();
        query->bindValue(int(i), text.isNull() ? QString("") : text);
    }
    if (!query->exec()) {
        const QSqlError error = query->lastError();
        Keep(sql, std::move(query)); // it cannot be freed before the transaction is undone
        Throw(error);
    }
    return query;
}

void Database::Keep(const QString& sql, std::unique_ptr<QSqlQuery> query) {
    query->finish();
    m_prepared[sql] = std::move(query);
}

int Database::Run(const QString& sql, const Values& values) {
    if (values.isEmpty()) // changes of the schema cannot be prepared
        return RunOnce(sql);
    auto query = Execute(sql, values);
    const int rows = query->numRowsAffected();
    Keep(sql, std::move(query));
    return rows;
}

qint64 Database::RunInsert(const QString& sql, const Values& values) {
    const QString returning = sql + " RETURNING id";
    auto query = Execute(returning, values);
    if (!query->next())
        Throw(query->lastError());
    const qint64 id = query->value(0).toLongLong();
    Keep(returning, std::move(query));
    return id;
}

void Database::Each(const QString& sql, const Values& values,
                    const std::function<void(const ResultRow&)>& visit) {
    auto query = Execute(sql, values);
    const ResultRow row(*query);
    while (query->next())
        visit(row);
    if (query->lastError().isValid())
        Throw(query->lastError());
    Keep(sql, std::move(query));
}

std::optional<Database::Values> Database::FirstRow(const QString& sql, const Values& values) {
    auto query = Execute(sql, values);
    std::optional<Values> row;
    if (query->next()) {
        const ResultRow result(*query);
        row.emplace();
        for (int column = 0, count = result.Count(); column < count; ++column)
            row->append(result.value(column));
    } else if (query->lastError().isValid()) {
        Throw(query->lastError());
    }
    Keep(sql, std::move(query));
    return row;
}

QVariant Database::FirstValue(const QString& sql, const Values& values) {
    const auto row = FirstRow(sql, values);
    return row && !row->isEmpty() ? row->first() : QVariant();
}

Database::Values Database::FirstColumn(const QString& sql, const Values& values) {
    Values column;
    Each(sql, values, [&](const ResultRow& row) { column.append(row.value(0)); });
    return column;
}

QStringList Database::TableNames() const {
    return m_database.tables();
}

QStringList Database::ColumnsOf(const QString& table) const {
    const QSqlRecord record = m_database.record(table);
    QStringList names;
    for (int column = 0; column < record.count(); ++column)
        names << record.fieldName(column);
    return names;
}

} // namespace sysadmin::server
