#include "comm/ModelServer.h"

#include "wire/Codec.h"

#include <sodium.h>

namespace sysadmin {

namespace {

class ModelEndpoint : public wire::Endpoint {
public:
    explicit ModelEndpoint(ModelServer& server)
        : m_server(server) {}

    std::optional<QByteArray> Handle(const QByteArray& message) override {
        const std::optional<wire::Request> request = wire::DecodeRequest(message);
        const std::optional<wire::Reply> reply =
            request ? m_server.Handle(m_connection, *request) : std::nullopt;
        return reply ? std::optional(wire::Encode(*reply)) : std::nullopt;
    }
    QString Account() const override { return "MODEL"; }
    bool Writes(const QByteArray&) const override { return false; }
    qint64 MessageLimit() const override { return wire::Limits().message; }

private:
    ModelServer& m_server;
    ModelServer::Connection m_connection;
};

unsigned char* Bytes(const QByteArray& bytes) {
    return reinterpret_cast<unsigned char*>(const_cast<char*>(bytes.constData()));
}

} // namespace

ModelServer::ModelServer()
    : m_publicKey(crypto_box_PUBLICKEYBYTES, 0)
    , m_secretKey(crypto_box_SECRETKEYBYTES, 0) {
    if (sodium_init() < 0)
        qFatal("libsodium does not start");
    crypto_box_keypair(Bytes(m_publicKey), Bytes(m_secretKey));
}

QString ModelServer::Open(const QString& sealed, wire::PasswordPurpose purpose, const QString& nonce) const {
    const QByteArray bytes = QByteArray::fromBase64(sealed.toLatin1());
    QByteArray plain(qMax<qsizetype>(0, bytes.size() - qsizetype(crypto_box_SEALBYTES)), 0);
    if (crypto_box_seal_open(Bytes(plain), Bytes(bytes), size_t(bytes.size()), Bytes(m_publicKey),
                             Bytes(m_secretKey)) != 0)
        return "(not for this server)";
    const QByteArray prefix = wire::PasswordPrefix(purpose, nonce);
    return plain.startsWith(prefix) ? QString::fromUtf8(plain.mid(prefix.size())) : QString("(not for this)");
}

wire::EndpointFactory ModelServer::Endpoints() {
    return [this](const QString&) { return std::make_unique<ModelEndpoint>(*this); };
}

std::optional<wire::Reply> ModelServer::Handle(Connection& connection, const wire::Request& request) {
    const QMutexLocker locker(&m_mutex);
    m_received.append(QString::number(request.number) + " " + request.name);
    if (request.number == 0)
        return HandleOutsideSession(connection, request);
    const auto session = m_sessions.find(connection.token);
    if (session == m_sessions.end())
        return {};
    if (request.number == session->number)
        return session->reply;
    if (request.number != session->number + 1)
        return {};
    session->number = request.number;
    session->reply = {request.number, qint16(request.name == "Get" ? 0 : 6), request.fields};
    if (request.name == "Add") {
        m_added.append(wire::FirstValue(request.fields, "V"));
        session->reply = {request.number, 0, {{"Count", QString::number(m_added.size())}}};
    }
    return session->reply;
}

wire::Reply ModelServer::HandleOutsideSession(Connection& connection, const wire::Request& request) {
    const auto value = [&](const char* tag) { return wire::FirstValue(request.fields, tag); };
    if (request.name == "Hello") {
        if (connection.nonce.isEmpty())
            connection.nonce = QString("nonce%1").arg(++m_nonces);
        const wire::Fields key{{"PK", QString::fromLatin1(m_publicKey.toBase64())}, {"NC", connection.nonce}};
        return {0, 0, key + hello};
    }
    using Purpose = wire::PasswordPurpose;
    if (request.name == "SignOn" && value("OI").toUpper() == "OPER" &&
        Open(value("PW"), Purpose::SignOn, connection.nonce) == "secret") {
        connection.token = QString("token%1").arg(m_sessions.size() + 1);
        m_sessions.insert(connection.token, {});
        return {0, 0,
                wire::Fields{{"SID", connection.token}, {"OI", "OPER"}, {"ONM", "O. Perator"}} + signOn};
    }
    if (request.name == "Resume" && m_sessions.contains(value("SID"))) {
        connection.token = value("SID");
        return {0, 0, {}};
    }
    if (request.name == "SignOff") {
        m_sessions.remove(connection.token);
        return {0, 0, {}};
    }
    return {0, 11, {}};
}

QStringList ModelServer::Added() const {
    const QMutexLocker locker(&m_mutex);
    return m_added;
}

QStringList ModelServer::Received() const {
    const QMutexLocker locker(&m_mutex);
    return m_received;
}

void ModelServer::ForgetSessions() {
    const QMutexLocker locker(&m_mutex);
    m_sessions.clear();
}

} // namespace sysadmin
