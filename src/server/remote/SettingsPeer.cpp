#include "server/remote/SettingsPeer.h"

#include "server/remote/RemoteSocket.h"
#include "wire/Codec.h"
#include "wire/Status.h"
#include "wire/Tls.h"

#include <QCryptographicHash>
#include <QElapsedTimer>
#include <QSslCertificate>

namespace sysadmin::server {

namespace {

constexpr qint64 MostReplyBytes = 4 * 1024 * 1024; ///< of one reply
constexpr int KeyBytes = 32;
constexpr qsizetype MostClusters = 1000;
constexpr qsizetype MostGroups = 10'000;
/// Names and versions of others are shown, and so bounded.
constexpr qsizetype MostOfPeerName = 200;

class Call {
public:
    Call(const PeerCall& call, const Patience& patience)
        : m_call(call)
        , m_socket(patience) {}

    RemoteResult Run() {
        if (!m_socket.Connect(m_call.host, m_call.port, RemoteSocket::Encryption::Tls)) {
            FailBySocket();
            return m_result;
        }
        if (!CheckCertificate() || !SignOn())
            return m_result;
        if (m_call.readsClusters && !ReadClusters())
            m_result.clusters.clear();
        SignOff();
        return m_result;
    }

private:
    bool Fail(Outcome outcome, const QString& detail = {}) {
        m_result.outcome = outcome;
        m_result.detail = detail.left(MostOfPeerName);
        return false;
    }
    bool FailBySocket() { return Fail(m_socket.Failure(), m_socket.Detail()); }

    bool CheckCertificate() {
        const QSslCertificate certificate = m_socket.Certificate();
        m_result.fingerprint = QString::fromLatin1(certificate.digest(QCryptographicHash::Sha256).toHex());
        m_result.vouchedFor = m_socket.IsVouchedFor();
        if (certificate.isNull())
            return Fail(Outcome::OtherProtocol);
        if (wire::HasWeakKey(certificate))
            return Fail(Outcome::WeakCertificate);
        if (m_call.trusted.isEmpty())
            return m_result.vouchedFor || Fail(Outcome::NewCertificate);
        const bool same = m_call.trusted == m_result.fingerprint ||
                          (m_call.trusted == TrustedByAuthority && m_result.vouchedFor);
        return same || Fail(Outcome::OtherCertificate);
    }

    std::optional<wire::Reply> Ask(const wire::Request& request, const wire::Limits& limits = {}) {
        wire::FrameScanner scanner(limits);
        std::optional<QByteArray> bytes;
        if (m_socket.Write(wire::Encode(request)))
            bytes = m_socket.Read(
                [&](const QByteArray& received) -> qint64 {
                    switch (scanner.Scan(received)) {
                    case wire::FrameScanner::Result::Complete:
                        return scanner.Length();
                    case wire::FrameScanner::Result::Broken:
                        return -1;
                    case wire::FrameScanner::Result::Incomplete:
                        break;
                    }
                    return 0;
                },
                MostReplyBytes);
        if (!bytes) {
            FailBySocket();
            return {};
        }
        auto reply = wire::DecodeReply(*bytes, limits);
        if (!reply || reply->number != request.number) {
            Fail(Outcome::OtherProtocol);
            return {};
        }
        return reply;
    }

    bool SignOn() {
        const auto hello = Ask({0, "Hello", {}}, wire::Limits::BeforeSignOn());
        if (!hello)
            return false;
        const QByteArray key = QByteArray::fromBase64(wire::FirstValue(hello->fields, "PK").toLatin1());
        const QString nonce = wire::FirstValue(hello->fields, "NC");
        if (hello->status != wire::status::Ok || key.size() != KeyBytes || nonce.isEmpty())
            return Fail(Outcome::OtherProtocol);
        m_result.name = wire::FirstValue(hello->fields, "LIB").left(MostOfPeerName);
        m_result.version = wire::FirstValue(hello->fields, "VER").left(MostOfPeerName);
        QString password =
            m_call.password ? QString::fromUtf8(m_call.password->Data(), m_call.password->Size()) : QString();
        const QString sealed = Seal(password, key, wire::PasswordPurpose::SignOn, nonce);
        password.fill(QChar(0));
        const auto reply =
            Ask({0, "SignOn", {{"OI", m_call.user}, {"PW", sealed}}}, wire::Limits::BeforeSignOn());
        if (!reply)
            return false;
        if (reply->status == wire::status::InvalidSignOn)
            return Fail(Outcome::SignOnRefused);
        if (reply->status != wire::status::Ok)
            return Fail(Outcome::OtherProtocol);
        if (wire::FirstValue(reply->fields, "CHG") == u"Y") {
            SignOff();
            return Fail(Outcome::PasswordExpired);
        }
        m_user = wire::FirstValue(reply->fields, "OI");
        return true;
    }

    void SignOff() {
        const RemoteResult result = m_result; // what became of the call is settled
        Ask({0, "SignOff", {}});
        m_result = result;
    }

    bool ReadClusters() {
        auto reply = Ask({++m_number, "GetClusterList", {{"OI", m_user}}});
        if (!reply)
            return false;
        if (reply->status == wire::status::NoClusterLocation)
            return true;
        if (reply->status != wire::status::Ok)
            return Fail(Outcome::SearchRefused, QString::number(reply->status));
        for (const wire::Field& field : reply->fields) {
            if (field.tag == u"CID")
                m_result.clusters.append(RemoteCluster{field.value.toLongLong(), {}, {}, {}});
            else if (m_result.clusters.isEmpty())
                continue;
            else if (field.tag == u"CCD")
                m_result.clusters.last().code = field.value;
            else if (field.tag == u"CNM")
                m_result.clusters.last().name = field.value;
        }
        if (m_result.clusters.size() > MostClusters)
            return Fail(Outcome::TooLong);
        for (RemoteCluster& cluster : m_result.clusters)
            if (!ReadGroups(cluster))
                return false;
        return true;
    }

    bool ReadGroups(RemoteCluster& cluster) {
        const auto reply = Ask({++m_number, "LstPatGp", {{"CID", QString::number(cluster.id)}}});
        if (!reply)
            return false;
        if (reply->status != wire::status::Ok)
            return Fail(Outcome::SearchRefused, QString::number(reply->status));
        for (const wire::Field& field : reply->fields) {
            if (field.tag == u"ID")
                cluster.groups.append(RemotePatronGroup{field.value.toLongLong(), {}, {}});
            else if (cluster.groups.isEmpty())
                continue;
            else if (field.tag == u"Cd")
                cluster.groups.last().code = field.value;
            else if (field.tag == u"Nm")
                cluster.groups.last().name = field.value;
        }
        return cluster.groups.size() <= MostGroups || Fail(Outcome::TooLong);
    }

    const PeerCall& m_call;
    RemoteSocket m_socket;
    RemoteResult m_result;
    QString m_user;
    quint64 m_number = 0;
};

} // namespace

RemoteResult CallPeer(const PeerCall& call, const Patience& patience) {
    QElapsedTimer timer;
    timer.start();
    RemoteResult result = Call(call, patience).Run();
    result.milliseconds = timer.elapsed();
    return result;
}

bool IsReachable(const QString& host, quint16 port, const Patience& patience) {
    return RemoteSocket(patience).Connect(host, port, RemoteSocket::Encryption::Tls);
}

} // namespace sysadmin::server
