#include "server/store/Database.h"
#include "server/store/Engine.h"
#include "server/store/PostgresLink.h"

#include <unordered_map>

namespace sysadmin::server {

namespace {

/// The server's numbers for the types of its values.
namespace valuetype {
constexpr Oid Bool = 16;
constexpr Oid Bytes = 17;
constexpr Oid Int8 = 20;
constexpr Oid Int2 = 21;
constexpr Oid Int4 = 23;
constexpr Oid Id = 26;
constexpr Oid Float4 = 700;
constexpr Oid Float8 = 701;
constexpr Oid Numeric = 1700;
} // namespace valuetype

/// A statement with "$1", "$2", ... in the place of each "?".
QByteArray Numbered(const QString& sql) {
    QByteArray text;
    int count = 0;
    bool isQuoted = false;
    for (const char character : sql.toUtf8()) {
        isQuoted = isQuoted != (character == '\'');
        if (character == '?' && !isQuoted)
            text += '$' + QByteArray::number(++count);
        else
            text += character;
    }
    return text;
}

/// A connection, and the statements that are prepared on it.
struct Statements {
    PostgresLink link;
    quint64 last = 0;         ///< the number in the name of the newest one
    QList<QByteArray> unused; ///< names; they go when the next one could be prepared, and nothing had failed

    explicit Statements(const StoreAddress& address)
        : link(address) {}
};

class PostgresStatement : public EngineStatement {
public:
    PostgresStatement(std::shared_ptr<Statements> statements, const QString& sql)
        : m_statements(std::move(statements))
        , m_name('s' + QByteArray::number(++m_statements->last)) {
        m_statements->link.Prepare(m_name, Numbered(sql));
        for (const QByteArray& name : std::exchange(m_statements->unused, {}))
            m_statements->link.Put("DEALLOCATE " + name);
    }
    ~PostgresStatement() override { m_statements->unused.append(m_name); }
    PostgresStatement(const PostgresStatement&) = delete;
    PostgresStatement& operator=(const PostgresStatement&) = delete;

    void Execute(const QVariantList& values) override {
        ExecuteLater(values);
        m_result = m_statements->link.Ask();
    }

    void ExecuteLater(const QVariantList& values) override {
        Finish();
        m_statements->link.PutPrepared(m_name, values);
    }

    bool Next() override { return ++m_row < PQntuples(m_result.get()); }
    int CountTouched() const override { return QByteArray(PQcmdTuples(m_result.get())).toInt(); }

    void Finish() override {
        m_result.reset();
        m_row = -1;
    }

    int CountColumns() const override { return PQnfields(m_result.get()); }

    QVariant Value(int column) const override {
        if (PQgetisnull(m_result.get(), m_row, column))
            return {};
        const QByteArrayView text = Bytes(column);
        switch (PQftype(m_result.get(), column)) {
        case valuetype::Int2:
        case valuetype::Int4:
        case valuetype::Int8:
        case valuetype::Id:
            return text.toLongLong();
        case valuetype::Float4:
        case valuetype::Float8:
            return text.toDouble();
        case valuetype::Numeric: { // what sums of whole numbers are
            bool isWhole = false;
            const qint64 whole = text.toLongLong(&isWhole);
            return isWhole ? QVariant(whole) : QVariant(text.toDouble());
        }
        case valuetype::Bool:
            return text == "t";
        case valuetype::Bytes: // "\x" and two digits a byte
            return QByteArray::fromHex(text.sliced(2).toByteArray());
        default:
            return QString::fromUtf8(text);
        }
    }

    QString Text(int column) const override {
        return IsWritten(column) ? QString::fromUtf8(Bytes(column)) : Value(column).toString();
    }

    QByteArrayView Utf8(int column) const override {
        if (IsWritten(column)) // (what would lose a byte order mark as a text loses it here, too)
            if (const QByteArrayView text = Bytes(column); !text.startsWith("\xef\xbb\xbf"))
                return text;
        return m_utf8 = Text(column).toUtf8();
    }

private:
    QByteArrayView Bytes(int column) const {
        return {PQgetvalue(m_result.get(), m_row, column), PQgetlength(m_result.get(), m_row, column)};
    }

    /// Whether the server's text of a value is the text of it.
    bool IsWritten(int column) const {
        switch (PQftype(m_result.get(), column)) {
        case valuetype::Bool:
        case valuetype::Bytes:
        case valuetype::Float4:
        case valuetype::Float8:
        case valuetype::Numeric:
            return false;
        default:
            return !PQgetisnull(m_result.get(), m_row, column);
        }
    }

    std::shared_ptr<Statements> m_statements;
    QByteArray m_name;
    PostgresResult m_result;
    int m_row = -1;
    mutable QByteArray m_utf8;
};

class PostgresConnection : public EngineConnection {
public:
    explicit PostgresConnection(const StoreAddress& address)
        : m_statements(std::make_shared<Statements>(address)) {}

    std::unique_ptr<EngineStatement> Prepare(const QString& sql) override {
        return std::make_unique<PostgresStatement>(m_statements, sql);
    }

    int RunOnce(const QString& sql) override {
        m_statements->link.Put(sql.toUtf8());
        return QByteArray(PQcmdTuples(m_statements->link.Ask().get())).toInt();
    }

    void RunLater(const QString& sql) override {
        auto& statement = m_repeated[sql];
        if (!statement)
            statement = std::make_unique<PostgresStatement>(m_statements, sql);
        statement->ExecuteLater({});
    }
    void Settle() override { m_statements->link.Ask(); }
    void SetBusyWait(int) override {}
    void Commit() override {
        RunLater("COMMIT");
        // A transaction in which something failed is undone by it, and nothing is refused.
        if (qstrcmp(PQcmdStatus(m_statements->link.Ask().get()), "COMMIT") != 0)
            throw StoreError(StoreError::Kind::Failure, "The transaction had failed.");
    }
    void Rollback() override { m_statements->link.PutRollback(); }

    qint64 Insert(EngineStatement& statement, const QVariantList& values) override {
        statement.Execute(values);
        return statement.Next() ? statement.Value(0).toLongLong() : 0;
    }

    QString EndOfInsert() const override { return " RETURNING id"; }

    QString TableNamesQuery() const override {
        return "SELECT relname FROM pg_class WHERE relkind IN ('r', 'p') AND pg_table_is_visible(oid) "
               "AND relnamespace<>'pg_catalog'::regnamespace";
    }
    QString ColumnNamesQuery() const override {
        return "SELECT attname FROM pg_attribute JOIN pg_class ON pg_class.oid=attrelid WHERE relname=? "
               "AND pg_table_is_visible(pg_class.oid) AND attnum>0 AND NOT attisdropped ORDER BY attnum";
    }

private:
    std::shared_ptr<Statements> m_statements;
    std::unordered_map<QString, std::unique_ptr<PostgresStatement>> m_repeated; ///< by their texts
};

} // namespace

std::unique_ptr<EngineConnection> OpenPostgreSql(const StoreAddress& address) {
    return std::make_unique<PostgresConnection>(address);
}

QString PostgreSqlVersion() {
    const int version = PQlibVersion();
    return QString("%1.%2").arg(version / 10000).arg(version % 10000);
}

} // namespace sysadmin::server
