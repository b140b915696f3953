#include "attack/RawPeer.h"

#include "server/Passwords.h"
#include "support/TestServer.h"
#include "wire/Codec.h"

#include <QThread>

namespace sysadmin {

namespace {

constexpr int PeerPatience = 20'000; // milliseconds

} // namespace

RawPeer::RawPeer(quint16 port) {
    m_socket.setPeerVerifyMode(QSslSocket::VerifyNone);
    m_socket.connectToHostEncrypted("127.0.0.1", port);
    m_socket.waitForEncrypted(PeerPatience);
}

void RawPeer::Write(const QByteArray& bytes) {
    m_socket.write(bytes);
    // The server may have had enough already.
    while (m_socket.state() == QAbstractSocket::ConnectedState && m_socket.encryptedBytesToWrite() > 0 &&
           m_socket.waitForBytesWritten(PeerPatience)) {
    }
}

std::optional<wire::Reply> RawPeer::Read() {
    wire::FrameScanner scanner;
    QByteArray received;
    do {
        received += m_socket.readAll();
        if (scanner.Scan(received) == wire::FrameScanner::Result::Complete)
            return wire::DecodeReply(received);
    } while (m_socket.waitForReadyRead(PeerPatience));
    return {};
}

bool RawPeer::ReadAll(int replies) {
    wire::FrameScanner scanner;
    QByteArray received;
    for (;;) {
        received += m_socket.readAll();
        while (replies > 0 && scanner.Scan(received) == wire::FrameScanner::Result::Complete) {
            received.remove(0, scanner.Length());
            scanner.Reset();
            --replies;
        }
        if (replies == 0)
            return true;
        if (!m_socket.waitForReadyRead(PeerPatience))
            return false;
    }
}

std::optional<wire::Reply> RawPeer::Ask(quint64 number, const QString& name, const wire::Fields& fields) {
    Write(wire::Encode(wire::Request{number, name, fields}));
    return Read();
}

bool RawPeer::SignOn(const QString& operatorId) {
    const auto hello = Ask(0, "Hello");
    if (!hello)
        return false;
    const QByteArray key = QByteArray::fromBase64(wire::FirstValue(hello->fields, "PK").toLatin1());
    const QString sealed = server::Seal(testing::SamplePassword(operatorId), key,
                                        wire::PasswordPurpose::SignOn, wire::FirstValue(hello->fields, "NC"));
    std::optional<wire::Reply> reply;
    for (int tries = 0; tries < 10; ++tries) {
        reply = Ask(0, "SignOn", {{"OI", operatorId}, {"PW", sealed}});
        // Others at this address have guessed passwords.
        const int wait = reply ? wire::FirstValue(reply->fields, "WAIT").toInt() : 0;
        if (wait <= 0)
            break;
        QThread::sleep(unsigned(wait));
    }
    if (!reply || reply->status != 0)
        return false;
    m_token = wire::FirstValue(reply->fields, "SID");
    return true;
}

} // namespace sysadmin
