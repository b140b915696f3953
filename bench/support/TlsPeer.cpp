#include "support/TlsPeer.h"

#include "server/Passwords.h"
#include "wire/Codec.h"

#include <arpa/inet.h>
#include <netinet/tcp.h>
#include <openssl/ssl.h>
#include <unistd.h>

#include <vector>

namespace sysadmin {

namespace {

sockaddr_in Local(quint16 port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

void SendAtOnce(int socket) {
    const int on = 1;
    setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

void Must(bool done, const char* what) {
    if (!done)
        qFatal("%s failed.", what);
}

} // namespace

TlsPeer::TlsPeer(quint16 port)
    : m_context(SSL_CTX_new(TLS_client_method()))
    , m_ssl(SSL_new(m_context))
    , m_socket(socket(AF_INET, SOCK_STREAM, 0)) {
    const sockaddr_in address = Local(port);
    Must(connect(m_socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0, "connect");
    SendAtOnce(m_socket);
    SSL_set_fd(m_ssl, m_socket);
    Must(SSL_connect(m_ssl) == 1, "SSL_connect");
}

TlsPeer::~TlsPeer() {
    SSL_shutdown(m_ssl);
    SSL_free(m_ssl);
    SSL_CTX_free(m_context);
    close(m_socket);
}

QByteArray TlsPeer::Ask(const QByteArray& request) {
    Must(SSL_write(m_ssl, request.constData(), int(request.size())) == request.size(), "SSL_write");
    wire::FrameScanner scanner;
    QByteArray received;
    do {
        char bytes[16 * 1024];
        const int count = SSL_read(m_ssl, bytes, sizeof bytes);
        Must(count > 0, "SSL_read");
        received.append(bytes, count);
    } while (scanner.Scan(received) != wire::FrameScanner::Result::Complete);
    return received;
}

wire::Reply TlsPeer::Ask(quint64 number, const QString& name, const wire::Fields& fields) {
    const auto reply = wire::DecodeReply(Ask(wire::Encode(wire::Request{number, name, fields})));
    Must(reply.has_value(), "The reply");
    return *reply;
}

void TlsPeer::SignOn() {
    const wire::Reply hello = Ask(0, "Hello");
    const QByteArray key = QByteArray::fromBase64(wire::FirstValue(hello.fields, "PK").toLatin1());
    const QString sealed = server::Seal("sample-admin-1", key, wire::PasswordPurpose::SignOn,
                                        wire::FirstValue(hello.fields, "NC"));
    Must(Ask(0, "SignOn", {{"OI", "SYSADMIN"}, {"PW", sealed}}).status == 0, "Signing on");
}

TlsEcho::TlsEcho(const server::ServerIdentity& identity)
    : m_context(SSL_CTX_new(TLS_server_method()))
    , m_socket(socket(AF_INET, SOCK_STREAM, 0)) {
    const QByteArray certificate = identity.chain.first().toDer();
    SSL_CTX_use_certificate_ASN1(m_context, int(certificate.size()),
                                 reinterpret_cast<const unsigned char*>(certificate.constData()));
    const QByteArray key = identity.key.toDer();
    Must(SSL_CTX_use_PrivateKey_ASN1(identity.key.algorithm() == QSsl::Ec ? EVP_PKEY_EC : EVP_PKEY_RSA,
                                     m_context, reinterpret_cast<const unsigned char*>(key.constData()),
                                     key.size()) == 1,
         "The key");
    sockaddr_in address = Local(0);
    socklen_t size = sizeof address;
    Must(bind(m_socket, reinterpret_cast<const sockaddr*>(&address), size) == 0 &&
             listen(m_socket, 200) == 0 &&
             getsockname(m_socket, reinterpret_cast<sockaddr*>(&address), &size) == 0,
         "Listening");
    m_port = ntohs(address.sin_port);
    m_accepting = std::thread([this] { Accept(); });
}

TlsEcho::~TlsEcho() {
    shutdown(m_socket, SHUT_RDWR);
    m_accepting.join();
    close(m_socket);
    SSL_CTX_free(m_context);
}

void TlsEcho::Accept() {
    std::vector<std::thread> threads;
    for (int peer = 0; (peer = accept(m_socket, nullptr, nullptr)) >= 0;) {
        SendAtOnce(peer);
        threads.emplace_back([this, peer] {
            SSL* const ssl = SSL_new(m_context);
            SSL_set_fd(ssl, peer);
            char bytes[16 * 1024];
            if (SSL_accept(ssl) == 1)
                for (int count = 0; (count = SSL_read(ssl, bytes, sizeof bytes)) > 0;)
                    SSL_write(ssl, bytes, count);
            SSL_free(ssl);
            close(peer);
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace sysadmin
