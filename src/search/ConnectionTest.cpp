#include "search/ConnectionTest.h"

#include "core/data/RemoteOutcome.h"
#include "core/data/RequestChannel.h"
#include "core/data/Tr.h"
#include "wire/Status.h"

namespace sysadmin {

namespace {

/// Pairs of capital hexadecimal digits, as people compare fingerprints.
QString Pairs(const QString& fingerprint) {
    return QString::fromLatin1(QByteArray::fromHex(fingerprint.toLatin1()).toHex(':').toUpper());
}

QString WithDetail(const QString& sentence, const QString& detail) {
    return detail.isEmpty() ? sentence : sentence + ' ' + Tr("It says: %1").arg(detail);
}

} // namespace

QString ConnectionResult::Sentence() const {
    if (outcome == u"connected")
        return hits.isEmpty() ? Tr("%1 accepts the connection.").arg(place)
                              : Tr("%1 accepts the connection and answers the search.").arg(place);
    if (outcome == u"no-address")
        return Tr("No address and port are entered for this database.");
    if (const QString sentence = RemoteOutcome{outcome, detail, place, timeout}.Sentence();
        !sentence.isEmpty())
        return sentence;
    if (outcome == u"other-protocol")
        return Tr("What answers at %1 is not a server of this type.").arg(place);
    if (outcome == u"sign-on-refused")
        return Tr("%1 refuses the user ID or the password.").arg(place);
    if (outcome == u"password-expired")
        return Tr("%1 wants the password of this user changed before anything else.").arg(place);
    if (outcome == u"new-certificate")
        return Tr("The certificate of %1 has not been accepted yet. Nothing was sent to it.").arg(place);
    if (outcome == u"other-certificate")
        return Tr("%1 shows another certificate than the one that was accepted. Nothing was sent to it.")
            .arg(place);
    if (outcome == u"weak-certificate")
        return Tr("The key in the certificate of %1 is too weak. Nothing was sent to it.").arg(place);
    if (outcome == u"search-refused")
        return WithDetail(Tr("%1 was reached, but refused what was asked.").arg(place), detail);
    if (outcome == u"record-refused")
        return WithDetail(Tr("%1 answers the search, but sent no record that can be shown.").arg(place),
                          detail);
    return outcome;
}

QString ConnectionResult::TrustQuestion() const {
    const QString first =
        outcome == u"new-certificate"
            ? Tr("This is the first connection to %1.").arg(place)
            : Tr("%1 shows another certificate than before. Either the server was set up anew, or something "
                 "else pretends to be it.")
                  .arg(place);
    return first + "\r\n\r\n" + Tr("The fingerprint of its certificate (SHA-256) is") + "\r\n\r\n" +
           Pairs(fingerprint) + "\r\n\r\n" +
           Tr("The administrator of that server can tell whether that is right.") + "\r\n\r\n" +
           Tr("Do you trust this server, now and in future?");
}

ConnectionResult ConnectionResult::Read(const RequestChannel& channel) {
    return {.outcome = channel.GetField("RES"),
            .detail = channel.GetField("DT"),
            .place = channel.GetField("AT"),
            .timeout = channel.GetField("TO"),
            .milliseconds = channel.GetField("MS"),
            .fingerprint = channel.GetField("FP"),
            .name = channel.GetField("TNM"),
            .version = channel.GetField("TVR"),
            .hits = channel.GetField("HIT"),
            .record = channel.GetField("REC")};
}

ConnectionTest::ConnectionTest(RequestChannel& channel, const QString& code, const QString& searchCode,
                               const QString& term)
    : m_channel(channel)
    , m_code(code)
    , m_searchCode(searchCode)
    , m_term(term) {}

void ConnectionTest::Put(const QString& goesOn) {
    m_channel.PutField("C", m_code);
    m_channel.PutField("ASC", m_searchCode);
    m_channel.PutField("TRM", m_term);
    if (!goesOn.isEmpty())
        m_channel.PutField("55", goesOn);
}

std::optional<ConnectionResult> ConnectionTest::Poll() {
    Put(m_running ? "Y" : "");
    m_status = m_channel.SendRequest("TstDB");
    m_running = m_status == wire::status::Continues;
    if (m_running) {
        m_status = wire::status::Ok;
        return {};
    }
    return ConnectionResult::Read(m_channel);
}

void ConnectionTest::Cancel() {
    if (!m_running)
        return;
    Put("N");
    m_channel.SendRequest("TstDB");
    m_running = false;
}

qint16 SendTrust(RequestChannel& channel, const QString& code, const QString& fingerprint) {
    channel.PutField("C", code);
    channel.PutField("FP", fingerprint);
    return channel.SendRequest("TrustDB");
}

} // namespace sysadmin
