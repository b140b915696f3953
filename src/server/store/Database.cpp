#include "server/store/Database.h"

#include "server/store/Engine.h"
#include "server/store/LibraryFolder.h"
#include "server/store/Table.h"

#include <QFile>

namespace sysadmin::server {

namespace {

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

} // namespace

StoreError::StoreError(Kind kind, const QString& text, const QString& code)
    : m_kind(kind)
    , m_text(text)
    , m_what(code.isEmpty() ? text.toUtf8() : Words(kind) + " (" + code.toUtf8() + ')') {}

QVariant ResultRow::value(int column) const {
    return m_statement.Value(column);
}

QString ResultRow::Text(int column) const {
    return m_statement.Text(column);
}

QByteArrayView ResultRow::Utf8(int column) const {
    return m_statement.Utf8(column);
}

int ResultRow::Count() const {
    return m_statement.CountColumns();
}

/// A prepared statement while it runs. It is out of the store meanwhile: a nested use of the same text
/// prepares another.
class Database::Use {
public:
    Use(Database& database, const QString& sql) {
        // Many rows are written with the same text, and looking for a long one takes long.
        auto& [latest, place] = database.m_latest;
        if (!place || latest.constData() != sql.constData() || latest.size() != sql.size()) {
            if (database.m_prepared.size() >= MostKept && !database.m_prepared.contains(sql))
                std::erase_if(database.m_prepared, [](const auto& kept) { return kept.second != nullptr; });
            latest = sql;
            place = &database.m_prepared[sql];
        }
        m_place = place;
        m_statement = std::move(*m_place);
        if (!m_statement)
            m_statement = database.m_connection->Prepare(sql);
    }
    // What failed goes back as well: PostgreSQL frees nothing before the transaction is undone.
    ~Use() {
        m_statement->Finish();
        *m_place = std::move(m_statement);
    }
    Use(const Use&) = delete;
    Use& operator=(const Use&) = delete;

    EngineStatement* operator->() const { return m_statement.get(); }
    EngineStatement& operator*() const { return *m_statement; }
    static void Check(const Values& values) {
        for (const QVariant& value : values)
            if (value.typeId() == QMetaType::QString &&
                !IsStorable(*static_cast<const QString*>(value.constData())))
                throw StoreError(StoreError::Kind::Unstorable,
                                 "A text holds characters that cannot be stored.");
    }
    void Execute(const Values& values) const {
        Check(values);
        m_statement->Execute(values);
    }

private:
    std::unique_ptr<EngineStatement>* m_place;
    std::unique_ptr<EngineStatement> m_statement;
};

Database::Database(const StoreAddress& address, std::shared_ptr<WriterQueue> writers,
                   std::chrono::milliseconds patience)
    : m_address(address)
    , m_writers(writers ? std::move(writers) : std::make_shared<WriterQueue>())
    , m_patience(patience) {
    if (address.engine == StoreAddress::Engine::Sqlite) {
        // The file is made here and not by the engine: nobody else may read it, and its companions take over
        // its permissions.
        if (QFile file(address.file); !file.exists() && file.open(QIODevice::NewOnly))
            file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
        m_connection = OpenSqlite(address);
        m_connection->SetBusyWait(BusyMilliseconds);
        // With a log the disk is waited for after the writer's turn: see Commit.
        m_syncsLog =
            FirstValue("PRAGMA journal_mode=WAL").toString() == "wal" && LogSync::IsAvailable(address.engine);
        RunOnce(m_syncsLog ? "PRAGMA synchronous=NORMAL" : "PRAGMA synchronous=FULL");
        RunOnce("PRAGMA foreign_keys=ON");
        m_file = IdentityOf(address.file);
        return;
    }
    m_connection = OpenPostgreSql(address);
    RunOnce("SET client_min_messages=warning");
    RunOnce("SET synchronous_commit=on");
    m_syncsLog = true;
    RunOnce("SET lock_timeout=" + QString::number(m_patience.count()));
    // A machine that vanished in the middle of a change does not keep all others waiting.
    RunOnce("SET idle_in_transaction_session_timeout='60s'");
}

Database::~Database() = default;

// SQLite goes on writing to a file that nobody finds any more: such a change is not to be acknowledged.
void Database::CheckFile() const {
    if (IdentityOf(m_address.file) != m_file)
        throw StoreError(StoreError::Kind::Lost, FileIsGone(m_address.file));
}

void Database::WhenOnDisk(LogSync::Told told) {
    if (const quint64 way = std::exchange(m_committed, 0))
        m_writers->Log().Then(way, std::move(told));
    else
        told(true);
}

void Database::WaitForDisk() {
    if (const quint64 way = std::exchange(m_committed, 0))
        m_writers->Log().Wait(way);
}

bool Database::TryImmediate() {
    try {
        m_connection->RunLater("BEGIN IMMEDIATE");
        return true;
    } catch (const StoreError& error) {
        if (error.GetKind() != StoreError::Kind::Transient)
            throw;
        return false;
    }
}

int Database::RunOnce(const QString& sql) {
    return m_connection->RunOnce(sql);
}

int Database::Run(const QString& sql, const Values& values) {
    if (values.isEmpty()) // changes of the schema cannot be prepared
        return RunOnce(sql);
    const Use statement(*this, sql);
    statement.Execute(values);
    return statement->CountTouched();
}

void Database::RunLater(const QString& sql, const Values& values) {
    const Use statement(*this, sql);
    statement.Check(values);
    statement->ExecuteLater(values);
}

void Database::Settle() {
    m_connection->Settle();
}

qint64 Database::RunInsert(const QString& sql, const Values& values) {
    const QString end = m_connection->EndOfInsert();
    const Use statement(*this, end.isEmpty() ? sql : sql + end);
    statement.Check(values);
    return m_connection->Insert(*statement, values);
}

void Database::InsertMany(const QString& table, const QStringList& columns, qsizetype count,
                          const std::function<void(qsizetype row, Values& values)>& fill,
                          const QString& conflict) {
    // How many rows a statement adds: for PostgreSQL each is a journey, SQLite is as quick with single ones.
    const qsizetype most = m_address.engine == StoreAddress::Engine::Sqlite ? 1 : 100;
    const QString places = '(' + QString("?, ").repeated(columns.size()).chopped(2) + ')';
    Values values;
    for (qsizetype row = 0; row < count;) {
        const qsizetype together = count - row >= most ? most : 1;
        const Use statement(*this, "INSERT INTO " + table + " (" + columns.join(", ") + ") VALUES " + places +
                                       (", " + places).repeated(together - 1) + conflict);
        while (row + together <= count) {
            values.clear();
            for (const qsizetype end = row + together; row < end; ++row)
                fill(row, values);
            statement.Check(values);
            statement->ExecuteLater(values);
        }
    }
}

void Database::Each(const QString& sql, const Values& values,
                    const std::function<void(const ResultRow&)>& visit) {
    const Use statement(*this, sql);
    statement.Execute(values);
    const ResultRow row(*statement);
    while (statement->Next())
        visit(row);
}

std::optional<Database::Values> Database::FirstRow(const QString& sql, const Values& values) {
    const Use statement(*this, sql);
    statement.Execute(values);
    if (!statement->Next())
        return std::nullopt;
    Values row;
    for (int column = 0, count = statement->CountColumns(); column < count; ++column)
        row.append(statement->Value(column));
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

QStringList Database::TextsOf(const QString& sql, const Values& values) {
    QStringList texts;
    Each(sql, values, [&](const ResultRow& row) { texts << row.Text(0); });
    return texts;
}

QStringList Database::TableNames() {
    return TextsOf(m_connection->TableNamesQuery(), {});
}

QStringList Database::ColumnsOf(const QString& table) {
    return TextsOf(m_connection->ColumnNamesQuery(), {table});
}

} // namespace sysadmin::server
