#include "server/store/Database.h"
#include "server/store/Engine.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QUuid>

namespace sysadmin::server {

namespace {

StoreError::Kind KindOf(const QSqlError& error) {
    using Kind = StoreError::Kind;
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

[[noreturn]] void Throw(const QSqlDatabase& database, const QSqlError& error) {
    QString text = error.databaseText().trimmed();
    if (text.isEmpty())
        text = error.driverText().trimmed();
    throw StoreError(database.isOpen() ? KindOf(error) : StoreError::Kind::Lost, text.section('\n', 0, 0),
                     error.nativeErrorCode().isEmpty() ? QString("no number") : error.nativeErrorCode());
}

class PostgresStatement : public EngineStatement {
public:
    PostgresStatement(const QSqlDatabase& database, const QString& sql)
        : m_database(database)
        , m_query(database) {
        // Forward only, the driver would take single rows off the connection, which then serves nothing else.
        if (!m_query.prepare(sql))
            Throw(database, m_query.lastError());
    }

    void Execute(const QVariantList& values) override {
        for (qsizetype i = 0; i < values.size(); ++i) {
            // The driver takes a null text for NULL; here only an invalid value is. (A variant that holds a
            // null text is not null itself.)
            const bool isNull = values[i].typeId() == QMetaType::QString && values[i].toString().isNull();
            const bool isUtf8 = values[i].typeId() == qMetaTypeId<Utf8Text>();
            m_query.bindValue(int(i), isNull ? QVariant(QString(""))
                                      : isUtf8
                                          ? QVariant(QString::fromUtf8(values[i].value<Utf8Text>().bytes))
                                          : values[i]);
        }
        if (!m_query.exec())
            Throw(m_database, m_query.lastError());
    }

    bool Next() override {
        const bool hasRow = m_query.next();
        if (!hasRow && m_query.lastError().isValid())
            Throw(m_database, m_query.lastError());
        return hasRow;
    }

    int CountTouched() const override { return m_query.numRowsAffected(); }
    void Finish() override { m_query.finish(); }
    int CountColumns() const override { return m_query.record().count(); }

    QVariant Value(int column) const override {
        const QVariant value = m_query.value(column);
        return value.isNull() ? QVariant() : value;
    }
    QString Text(int column) const override { return Value(column).toString(); }
    QByteArrayView Utf8(int column) const override { return m_utf8 = Text(column).toUtf8(); }

private:
    QSqlDatabase m_database;
    QSqlQuery m_query;
    mutable QByteArray m_utf8;
};

class PostgresConnection : public EngineConnection {
public:
    explicit PostgresConnection(const StoreAddress& address)
        : m_name(QUuid::createUuid().toString(QUuid::WithoutBraces))
        , m_database(QSqlDatabase::addDatabase("QPSQL", m_name)) {
        m_database.setHostName(address.host);
        m_database.setPort(address.port);
        m_database.setDatabaseName(address.database);
        m_database.setUserName(address.user);
        m_database.setPassword(address.password);
        m_database.setConnectOptions(address.options);
        if (m_database.open())
            return;
        const QSqlError error = m_database.lastError();
        const QSqlDatabase closed; // what is told of
        Forget();
        Throw(closed, error);
    }
    ~PostgresConnection() override {
        m_database.close();
        Forget();
    }
    PostgresConnection(const PostgresConnection&) = delete;
    PostgresConnection& operator=(const PostgresConnection&) = delete;

    std::unique_ptr<EngineStatement> Prepare(const QString& sql) override {
        return std::make_unique<PostgresStatement>(m_database, sql);
    }

    int RunOnce(const QString& sql) override {
        QSqlQuery query(m_database);
        if (!query.exec(sql))
            Throw(m_database, query.lastError());
        return query.numRowsAffected();
    }

    qint64 Insert(EngineStatement& statement, const QVariantList& values) override {
        statement.Execute(values);
        return statement.Next() ? statement.Value(0).toLongLong() : 0;
    }

    QString EndOfInsert() const override { return " RETURNING id"; }

    QStringList TableNames() override { return m_database.tables(); }

    QStringList ColumnsOf(const QString& table) override {
        const QSqlRecord record = m_database.record(table);
        QStringList names;
        for (int column = 0; column < record.count(); ++column)
            names << record.fieldName(column);
        return names;
    }

private:
    /// Nobody may hold the database when its name is forgotten.
    void Forget() {
        m_database = QSqlDatabase();
        QSqlDatabase::removeDatabase(m_name);
    }

    QString m_name;
    QSqlDatabase m_database;
};

} // namespace

std::unique_ptr<EngineConnection> OpenPostgreSql(const StoreAddress& address) {
    return std::make_unique<PostgresConnection>(address);
}

} // namespace sysadmin::server
