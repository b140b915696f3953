#include "server/store/Database.h"
#include "server/store/Engine.h"

#include "wire/Utf8.h"

#include <QStringEncoder>

#include <array>
#include <charconv>
#include <limits>
#include <sqlite3.h>
#include <unordered_map>

namespace sysadmin::server {

namespace {

StoreError::Kind SqliteKindOf(int code) {
    switch (code) {
    case SQLITE_CONSTRAINT_UNIQUE:
    case SQLITE_CONSTRAINT_PRIMARYKEY:
    case SQLITE_CONSTRAINT_ROWID:
        return StoreError::Kind::Duplicate;
    case SQLITE_CONSTRAINT_FOREIGNKEY:
        return StoreError::Kind::Referenced;
    default:
        break;
    }
    const int primary = code & 0xff;
    return primary == SQLITE_BUSY || primary == SQLITE_LOCKED ? StoreError::Kind::Transient
                                                              : StoreError::Kind::Failure;
}

[[noreturn]] void Throw(sqlite3* connection, bool isOpen = true) {
    const int code = sqlite3_extended_errcode(connection);
    throw StoreError(isOpen ? SqliteKindOf(code) : StoreError::Kind::Lost,
                     QString::fromUtf8(sqlite3_errmsg(connection)), QString::number(code));
}

class SqliteStatement : public EngineStatement {
public:
    SqliteStatement(sqlite3* connection, const QString& sql)
        : m_connection(connection) {
        const QByteArray text = sql.toUtf8();
        if (sqlite3_prepare_v3(connection, text.constData(), int(text.size()), SQLITE_PREPARE_PERSISTENT,
                               &m_statement, nullptr) != SQLITE_OK)
            Throw(connection);
    }
    ~SqliteStatement() override { sqlite3_finalize(m_statement); }
    SqliteStatement(const SqliteStatement&) = delete;
    SqliteStatement& operator=(const SqliteStatement&) = delete;

    void Execute(const QVariantList& values) override {
        Finish();
        Bind(values);
        Step();
        m_isAtFirst = m_hasRow;
    }

    void ExecuteLater(const QVariantList& values) override {
        Execute(values);
        Finish();
    }

    bool Next() override {
        if (m_isAtFirst) {
            m_isAtFirst = false;
            return true;
        }
        if (m_hasRow)
            Step();
        return m_hasRow;
    }

    int CountTouched() const override { return sqlite3_changes(m_connection); }

    void Finish() override {
        sqlite3_reset(m_statement); // tells again what the last step told
        m_hasRow = false;
        m_isAtFirst = false;
    }

    int CountColumns() const override { return sqlite3_column_count(m_statement); }

    QVariant Value(int column) const override {
        switch (sqlite3_column_type(m_statement, column)) {
        case SQLITE_INTEGER:
            return QVariant(qint64(sqlite3_column_int64(m_statement, column)));
        case SQLITE_FLOAT:
            return QVariant(sqlite3_column_double(m_statement, column));
        case SQLITE_BLOB:
            return QVariant(QByteArray(static_cast<const char*>(sqlite3_column_blob(m_statement, column)),
                                       sqlite3_column_bytes(m_statement, column)));
        case SQLITE_TEXT:
            return QVariant(StoredText(column));
        default:
            return {};
        }
    }

    QString Text(int column) const override {
        switch (sqlite3_column_type(m_statement, column)) {
        case SQLITE_TEXT:
            return StoredText(column);
        case SQLITE_INTEGER:
            return QString::number(sqlite3_column_int64(m_statement, column));
        case SQLITE_NULL:
            return {};
        default:
            return Value(column).toString();
        }
    }

    QByteArrayView Utf8(int column) const override {
        switch (sqlite3_column_type(m_statement, column)) {
        case SQLITE_TEXT:
            // What is no UTF-8, or would lose a byte order mark as a text, goes the way of `Text`.
            if (const QByteArrayView text = StoredUtf8(column);
                wire::IsAscii(text) || (text.isValidUtf8() && !text.startsWith("\xef\xbb\xbf")))
                return text;
            break;
        case SQLITE_INTEGER: {
            const auto written = std::to_chars(m_number.data(), m_number.data() + m_number.size(),
                                               sqlite3_column_int64(m_statement, column));
            return {m_number.data(), written.ptr - m_number.data()};
        }
        case SQLITE_NULL:
            return {};
        default:
            break;
        }
        return m_utf8 = Text(column).toUtf8();
    }

private:
    QByteArrayView StoredUtf8(int column) const {
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(m_statement, column));
        return {text, sqlite3_column_bytes(m_statement, column)};
    }
    QString StoredText(int column) const { return QString::fromUtf8(StoredUtf8(column)); }

    void Step() {
        const int result = sqlite3_step(m_statement);
        m_hasRow = result == SQLITE_ROW;
        if (result != SQLITE_ROW && result != SQLITE_DONE)
            Throw(m_connection);
    }

    /// The texts are encoded one behind the other, and stay there until the statement is bound anew.
    void Bind(const QVariantList& values) {
        qsizetype most = 0;
        for (const QVariant& value : values)
            if (value.typeId() == QMetaType::QString)
                most += 3 * static_cast<const QString*>(value.constData())->size();
        if (most > m_texts.size())
            m_texts.resize(most);
        char* end = m_texts.data();
        for (int i = 0; i < int(values.size()); ++i)
            if (BindOne(i + 1, values[i], end) != SQLITE_OK)
                Throw(m_connection);
    }

    int BindOne(int place, const QVariant& value, char*& end) {
        const int type = value.typeId();
        if (type != QMetaType::QString && value.isNull())
            return sqlite3_bind_null(m_statement, place);
        switch (type) {
        case QMetaType::QString: {
            char* const begin = end;
            // (Without texts there may be no place for them; a null address would be NULL.)
            end = begin ? m_encoder.appendToBuffer(begin, *static_cast<const QString*>(value.constData()))
                        : begin;
            return sqlite3_bind_text(m_statement, place, begin ? begin : "", int(end - begin), SQLITE_STATIC);
        }
        case QMetaType::Bool:
        case QMetaType::Int:
        case QMetaType::UInt:
        case QMetaType::LongLong:
            return sqlite3_bind_int64(m_statement, place, value.toLongLong());
        case QMetaType::Double:
            return sqlite3_bind_double(m_statement, place, value.toDouble());
        case QMetaType::QByteArray: {
            const QByteArray bytes = value.toByteArray();
            return sqlite3_bind_blob(m_statement, place, bytes.constData(), int(bytes.size()),
                                     SQLITE_TRANSIENT);
        }
        default: {
            const auto* utf8 =
                type == qMetaTypeId<Utf8Text>() ? static_cast<const Utf8Text*>(value.constData()) : nullptr;
            const QByteArray text = utf8 ? utf8->bytes : value.toString().toUtf8();
            return sqlite3_bind_text(m_statement, place, text.constData(), int(text.size()),
                                     SQLITE_TRANSIENT);
        }
        }
    }

    sqlite3* m_connection;
    sqlite3_stmt* m_statement = nullptr;
    bool m_hasRow = false;
    bool m_isAtFirst = false; ///< the row was read before it was asked for
    QByteArray m_texts;       ///< that are bound
    mutable std::array<char, std::numeric_limits<qint64>::digits10 + 3> m_number; ///< the last one as a text
    mutable QByteArray m_utf8;                                                    ///< likewise
    QStringEncoder m_encoder{QStringEncoder::Utf8};
};

class SqliteConnection : public EngineConnection {
public:
    explicit SqliteConnection(const QString& file) {
        // Each connection is used by one thread at a time.
        const int opened =
            sqlite3_open_v2(file.toUtf8().constData(), &m_connection,
                            SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr);
        if (opened != SQLITE_OK) {
            const std::unique_ptr<sqlite3, int (*)(sqlite3*)> closing(m_connection, sqlite3_close);
            Throw(m_connection, false);
        }
        sqlite3_extended_result_codes(m_connection, 1);
    }
    ~SqliteConnection() override {
        m_repeated.clear();
        sqlite3_close_v2(m_connection);
    }
    SqliteConnection(const SqliteConnection&) = delete;
    SqliteConnection& operator=(const SqliteConnection&) = delete;

    std::unique_ptr<EngineStatement> Prepare(const QString& sql) override {
        return std::make_unique<SqliteStatement>(m_connection, sql);
    }

    int RunOnce(const QString& sql) override {
        SqliteStatement statement(m_connection, sql);
        statement.Execute({});
        while (statement.Next())
            continue;
        return statement.CountTouched();
    }

    void RunLater(const QString& sql) override {
        auto& statement = m_repeated[sql];
        if (!statement)
            statement = std::make_unique<SqliteStatement>(m_connection, sql);
        statement->ExecuteLater({});
    }

    void Settle() override {}
    void SetBusyWait(int milliseconds) override { sqlite3_busy_timeout(m_connection, milliseconds); }
    void Commit() override { RunLater("COMMIT"); }
    void Rollback() override { RunLater("ROLLBACK"); }

    qint64 Insert(EngineStatement& statement, const QVariantList& values) override {
        statement.Execute(values);
        return sqlite3_last_insert_rowid(m_connection);
    }

    QString EndOfInsert() const override { return {}; }

    QString TableNamesQuery() const override { return "SELECT name FROM sqlite_master WHERE type='table'"; }
    QString ColumnNamesQuery() const override { return "SELECT name FROM pragma_table_info(?) ORDER BY cid"; }

private:
    sqlite3* m_connection = nullptr;
    std::unordered_map<QString, std::unique_ptr<SqliteStatement>> m_repeated; ///< by their texts
};

} // namespace

std::unique_ptr<EngineConnection> OpenSqlite(const StoreAddress& address) {
    return std::make_unique<SqliteConnection>(address.file);
}

QString SqliteVersion() {
    return QString::fromLatin1(sqlite3_libversion());
}

} // namespace sysadmin::server
