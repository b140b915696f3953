#include "server/store/PostgresLink.h"

#include "server/store/Database.h"
#include "server/store/Engine.h"

#include <array>
#include <optional>
#include <vector>

namespace sysadmin::server {

namespace {

/// So many statements are sent without reading what comes of them: the answers to more might not find room on
/// their way.
constexpr size_t MostSent = 500;

/// The name of the statement that undoes a transaction.
constexpr const char* RollbackName = "rollback";

StoreError::Kind PostgresKindOf(const QByteArray& state) {
    using Kind = StoreError::Kind;
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
    if (state.isEmpty() || state.startsWith("08") || state.startsWith("57P") || state == "25P03")
        return Kind::Lost;
    return Kind::Failure;
}

QString FirstLine(const char* text) {
    return QString::fromUtf8(text).trimmed().section('\n', 0, 0);
}

StoreError ErrorOf(const PGresult* result) {
    const QByteArray state = PQresultErrorField(result, PG_DIAG_SQLSTATE);
    const char* primary = PQresultErrorField(result, PG_DIAG_MESSAGE_PRIMARY);
    return {PostgresKindOf(state), FirstLine(primary ? primary : PQresultErrorMessage(result)),
            state.isEmpty() ? QString("no number") : QString::fromLatin1(state)};
}

/// A value as the server reads it: bytes as they are, all else as a text that ends with a null.
struct Parameter {
    bool isNull = false;
    bool isBinary = false;
    qsizetype begin = 0;
    qsizetype length = 0;
};

Parameter WriteParameter(const QVariant& value, QByteArray& out) {
    Parameter written{.begin = out.size()};
    const int type = value.typeId();
    if (type == QMetaType::QString)
        out += static_cast<const QString*>(value.constData())->toUtf8();
    else if (type == qMetaTypeId<Utf8Text>())
        out += static_cast<const Utf8Text*>(value.constData())->bytes;
    else if (value.isNull())
        written.isNull = true;
    else if (type == QMetaType::QByteArray) {
        written.isBinary = true;
        out += *static_cast<const QByteArray*>(value.constData());
    } else if (type == QMetaType::Bool)
        out += value.toBool() ? '1' : '0';
    else if (type == QMetaType::Double)
        out += QByteArray::number(value.toDouble(), 'g', QLocale::FloatingPointShortest);
    else
        out += value.toString().toUtf8();
    written.length = out.size() - written.begin;
    out += '\0';
    return written;
}

} // namespace

PostgresLink::PostgresLink(const StoreAddress& address) {
    std::vector<std::pair<QByteArray, QByteArray>> options{
        {"dbname", address.database.toUtf8()},      {"host", address.host.toUtf8()},
        {"port", QByteArray::number(address.port)}, {"user", address.user.toUtf8()},
        {"password", address.password.toUtf8()},    {"client_encoding", "UTF8"}};
    for (const QString& option : address.options)
        options.emplace_back(option.section('=', 0, 0).toUtf8(), option.section('=', 1).toUtf8());
    std::vector<const char*> names;
    std::vector<const char*> values;
    for (const auto& [name, value] : options) {
        if (value.isEmpty())
            continue; // the library looks for one in its usual places
        names.push_back(name.constData());
        values.push_back(value.constData());
    }
    names.push_back(nullptr);
    values.push_back(nullptr);
    m_connection = PQconnectdbParams(names.data(), values.data(), 0);
    if (PQstatus(m_connection) != CONNECTION_OK || !PQenterPipelineMode(m_connection)) {
        const QString why = FirstLine(PQerrorMessage(m_connection));
        Close();
        throw StoreError(StoreError::Kind::Lost, why, "no number");
    }
    // Notices may quote statements and values.
    PQsetNoticeReceiver(
        m_connection, [](void*, const PGresult*) {}, nullptr);
    try {
        Prepare(RollbackName, "ROLLBACK");
    } catch (...) {
        Close();
        throw;
    }
}

PostgresLink::~PostgresLink() {
    Close();
}

void PostgresLink::Close() {
    PQfinish(std::exchange(m_connection, nullptr));
}

void PostgresLink::ThrowLost() {
    m_sent.clear();
    const QString why = FirstLine(PQerrorMessage(m_connection));
    throw StoreError(StoreError::Kind::Lost, why.isEmpty() ? QString("The connection is gone.") : why,
                     "no number");
}

void PostgresLink::Check(bool sent) {
    if (!sent)
        ThrowLost();
}

void PostgresLink::MakeRoom() {
    if (m_sent.size() >= MostSent)
        Ask();
}

void PostgresLink::PutEnd() {
    Check(PQpipelineSync(m_connection));
    m_sent.push_back({.isEnd = true});
}

void PostgresLink::Prepare(const QByteArray& name, const QByteArray& sql) {
    Check(PQsendPrepare(m_connection, name, sql, 0, nullptr));
    m_sent.push_back({});
    Ask();
}

void PostgresLink::Put(const QByteArray& sql) {
    MakeRoom();
    Check(PQsendQueryParams(m_connection, sql, 0, nullptr, nullptr, nullptr, nullptr, 0));
    m_sent.push_back({});
}

void PostgresLink::PutPrepared(const QByteArray& name, const QVariantList& values) {
    MakeRoom();
    m_values.resize(0);
    std::vector<Parameter> written;
    written.reserve(values.size());
    for (const QVariant& value : values)
        written.push_back(WriteParameter(value, m_values));
    std::vector<const char*> places;
    std::vector<int> lengths;
    std::vector<int> formats;
    for (const Parameter& value : written) {
        places.push_back(value.isNull ? nullptr : m_values.constData() + value.begin);
        lengths.push_back(int(value.length));
        formats.push_back(value.isBinary);
    }
    Check(PQsendQueryPrepared(m_connection, name, int(values.size()), places.data(), lengths.data(),
                              formats.data(), 0));
    m_sent.push_back({});
}

PostgresResult PostgresLink::Ask() {
    if (!m_sent.empty() && !m_sent.back().isEnd)
        PutEnd();
    PostgresResult last;
    std::optional<StoreError> problem;
    for (; !m_sent.empty(); m_sent.pop_front()) {
        const Sent sent = m_sent.front();
        PostgresResult result(PQgetResult(m_connection));
        const ExecStatusType status = PQresultStatus(result.get());
        if (status == PGRES_FATAL_ERROR && sent.isHeard && !problem)
            problem = ErrorOf(result.get());
        if (!result || PQstatus(m_connection) == CONNECTION_BAD) {
            if (!problem)
                ThrowLost();
            m_sent.clear();
            throw *problem;
        }
        if (sent.isEnd)
            continue;
        last = std::move(result);
        while (PostgresResult(PQgetResult(m_connection)))
            continue; // nothing follows but the end of what came of this statement
    }
    if (problem)
        throw *problem;
    return last;
}

void PostgresLink::PutRollback() {
    // After a statement that fails nothing is carried out before the end of what travels together.
    for (Sent& sent : m_sent)
        sent.isHeard = false;
    if (!m_sent.empty() && !m_sent.back().isEnd)
        PutEnd();
    Check(PQsendQueryPrepared(m_connection, RollbackName, 0, nullptr, nullptr, nullptr, 0));
    m_sent.push_back({.isHeard = false});
    PutEnd();
    PQflush(m_connection);
}

} // namespace sysadmin::server
