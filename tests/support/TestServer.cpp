#include "support/TestServer.h"

#include "server/OperatorPasswords.h"
#include "wire/Codec.h"

#include <QDir>

#include <stdexcept>

namespace sysadmin::testing {

using namespace server;

TestClient::TestClient(std::shared_ptr<const Library> library, const QString& peer)
    : m_connection(std::move(library), peer) {}

std::optional<wire::Reply> TestClient::SendNumbered(quint64 number, const QString& name,
                                                    const wire::Fields& fields) {
    const auto reply = m_connection.Handle(wire::Encode(wire::Request{number, name, fields}));
    return reply ? wire::DecodeReply(*reply) : std::nullopt;
}

std::optional<wire::Reply> TestClient::Ask(const QString& name, const wire::Fields& fields) {
    return SendNumbered(0, name, fields);
}

wire::Reply TestClient::Send(const QString& name, const wire::Fields& fields) {
    const auto reply = SendNumbered(++m_number, name, fields);
    return reply ? *reply : wire::Reply{m_number, wire::status::CommunicationsFailure, {}};
}

QString TestClient::Seal(const QString& password, wire::PasswordPurpose purpose) {
    const auto hello = Ask("Hello");
    const bool inSession = !m_nonce.isEmpty() && purpose != wire::PasswordPurpose::SignOn;
    return server::Seal(password, QByteArray::fromBase64(wire::FirstValue(hello->fields, "PK").toLatin1()),
                        purpose, inSession ? m_nonce : wire::FirstValue(hello->fields, "NC"));
}

std::optional<wire::Reply> TestClient::TrySignOn(const QString& operatorId, const QString& password) {
    const QString nonce = wire::FirstValue(Ask("Hello")->fields, "NC");
    auto reply = Ask("SignOn", {{"OI", operatorId}, {"PW", Seal(password, wire::PasswordPurpose::SignOn)}});
    m_nonce = nonce;
    m_token = reply ? wire::FirstValue(reply->fields, "SID") : QString();
    m_number = 0;
    return reply;
}

qint16 TestClient::SignOn(const QString& operatorId, const QString& password) {
    const auto reply = TrySignOn(operatorId, password);
    return reply ? reply->status : wire::status::CommunicationsFailure;
}

qint16 TestClient::Resume(const QString& token, quint64 lastNumber) {
    const auto reply = Ask("Resume", {{"SID", token}});
    m_token = token;
    m_number = lastNumber;
    return reply ? reply->status : wire::status::CommunicationsFailure;
}

TestServer::TestServer()
    : TestServer(Options{}) {}

TestServer::TestServer(const Options& options)
    : m_options(options)
    , m_now(std::make_shared<QDateTime>(QDate(2026, 3, 2), QTime(9, 0), Qt::UTC)) {
    if (!m_options.address)
        CopySample(m_directory.path());
    Open();
    if (m_library && !m_options.signOnAs.isEmpty())
        SignOnAs(m_options.signOnAs);
}

void TestServer::Open() {
    LibraryOptions opening;
    opening.address = m_options.address.value_or(StoreAddress::InDirectory(m_directory.path()));
    opening.whenMissing = LibraryOptions::WhenMissing::MakeSample;
    opening.hashCost = HashCost::Least();
    opening.now = [now = m_now] { return *now; };
    opening.registry = m_options.registry;
    opening.servesOthers = m_options.servesOthers;
    QString error;
    m_library = Library::Open(opening, &error);
    if (!m_library)
        throw std::runtime_error("no library: " + error.toStdString());
    m_client = Connect();
}

void TestServer::Restart() {
    m_client.reset();
    m_database.reset();
    m_library.reset();
    Open();
    if (!m_signedOn.isEmpty())
        SignOnAs(m_signedOn);
}

std::unique_ptr<TestClient> TestServer::Connect(const QString& peer) const {
    return std::make_unique<TestClient>(m_library, peer);
}

void TestServer::SignOnAs(const QString& operatorId) {
    m_client = Connect();
    if (const qint16 status = m_client->SignOn(operatorId, SamplePassword(operatorId)))
        throw std::runtime_error(operatorId.toStdString() + " cannot sign on: " + std::to_string(status));
    m_signedOn = operatorId;
}

Database& TestServer::GetDatabase() {
    if (!m_database)
        m_database = m_library->Connect();
    return *m_database;
}

QString TestServer::Value(const QString& sql, const QVariantList& values) {
    return GetDatabase().FirstValue(sql, values).toString();
}

void CopySample(const QString& folder) {
    static const QTemporaryDir sample;
    [[maybe_unused]] static const bool made = [] {
        TestServer({.address = StoreAddress::InDirectory(sample.path()), .signOnAs = ""});
        return true;
    }();
    for (const QString& file : QDir(sample.path()).entryList(QDir::Files))
        QFile::copy(sample.filePath(file), folder + "/" + file);
}

QString SamplePassword(const QString& operatorId) {
    for (const SampleOperator& sample : SampleOperators())
        if (sample.id == operatorId) // a copy of its own: the client wipes passwords where they lie
            return QString(sample.password.constData(), sample.password.size());
    return {};
}

QStringList ValuesOf(const wire::Fields& fields, const QString& tag) {
    QStringList values;
    for (const wire::Field& field : fields)
        if (field.tag == tag)
            values << field.value;
    return values;
}

QString InRecord(const wire::Fields& fields, const QString& tag, const QString& value,
                 const QString& wanted) {
    bool inside = false;
    for (const wire::Field& field : fields) {
        if (field.tag == tag)
            inside = field.value == value;
        if (inside && field.tag == wanted)
            return field.value;
    }
    return {};
}

} // namespace sysadmin::testing
