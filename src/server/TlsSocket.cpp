#include "server/TlsSocket.h"

#include "server/SocketNews.h"
#include "wire/Tls.h"

#include <openssl/err.h>
#include <openssl/ssl.h>

#include <csignal>
#include <stdexcept>

namespace sysadmin::server {

namespace {

struct CertificateEnd {
    void operator()(X509* certificate) const { X509_free(certificate); }
};

bool UseCertificate(SSL_CTX* context, const QSslCertificate& certificate, bool isOwn) {
    const QByteArray der = certificate.toDer();
    const auto* bytes = reinterpret_cast<const unsigned char*>(der.constData());
    const std::unique_ptr<X509, CertificateEnd> read(d2i_X509(nullptr, &bytes, long(der.size())));
    if (!read)
        return false;
    return (isOwn ? SSL_CTX_use_certificate(context, read.get())
                  : int(SSL_CTX_add1_chain_cert(context, read.get()))) == 1;
}

bool UseKey(SSL_CTX* context, const QSslKey& key) {
    const QByteArray der = key.toDer();
    const auto* bytes = reinterpret_cast<const unsigned char*>(der.constData());
    const std::unique_ptr<EVP_PKEY, void (*)(EVP_PKEY*)> read(
        d2i_AutoPrivateKey(nullptr, &bytes, long(der.size())), EVP_PKEY_free);
    return read && SSL_CTX_use_PrivateKey(context, read.get()) == 1;
}

} // namespace

void TlsContext::End::operator()(SSL_CTX* context) const {
    SSL_CTX_free(context);
}

TlsContext::TlsContext(const ServerIdentity& identity)
    : m_context(SSL_CTX_new(TLS_server_method())) {
#ifdef SIGPIPE
    std::signal(SIGPIPE, SIG_IGN); // a peer that has gone is told by the write to it
#endif
    SSL_CTX* const context = m_context.get();
    bool isUsable = context && !identity.chain.isEmpty() &&
                    SSL_CTX_set_min_proto_version(context, TLS1_2_VERSION) &&
                    SSL_CTX_set_cipher_list(context, wire::OlderCiphers) == 1;
    for (qsizetype i = 0; isUsable && i < identity.chain.size(); ++i)
        isUsable = UseCertificate(context, identity.chain[i], i == 0);
    isUsable = isUsable && UseKey(context, identity.key) && SSL_CTX_check_private_key(context) == 1;
    if (!isUsable) {
        ERR_clear_error();
        throw std::runtime_error("The server's certificate cannot be used.");
    }
    SSL_CTX_set_options(context, SSL_OP_NO_COMPRESSION | SSL_OP_NO_RENEGOTIATION |
                                     SSL_OP_CIPHER_SERVER_PREFERENCE | SSL_OP_NO_TICKET);
    SSL_CTX_set_num_tickets(context, 0); // sessions are taken up by the program's own means
    SSL_CTX_set_session_cache_mode(context, SSL_SESS_CACHE_OFF);
    SSL_CTX_set_mode(context, SSL_MODE_RELEASE_BUFFERS | SSL_MODE_ENABLE_PARTIAL_WRITE |
                                  SSL_MODE_ACCEPT_MOVING_WRITE_BUFFER);
}

void TlsSocket::End::operator()(SSL* ssl) const {
    SSL_free(ssl);
}

TlsSocket::TlsSocket(qintptr socket, const TlsContext& context)
    : m_socket(socket)
    , m_ssl(SSL_new(context.Get())) {
    PrepareSocket(socket);
    if (m_ssl) {
        SSL_set_fd(m_ssl.get(), int(socket));
        SSL_set_accept_state(m_ssl.get());
    }
}

TlsSocket::~TlsSocket() {
    m_ssl.reset();
    CloseSocket(m_socket);
}

TlsSocket::Result TlsSocket::ResultOf(int answer) const {
    switch (SSL_get_error(m_ssl.get(), answer)) {
    case SSL_ERROR_NONE:
        return Result::Done;
    case SSL_ERROR_WANT_READ:
    case SSL_ERROR_WANT_WRITE:
        return Result::Waiting;
    default:
        return Result::Gone;
    }
}

TlsSocket::Result TlsSocket::Shake() {
    if (!m_ssl)
        return Result::Gone;
    ERR_clear_error();
    const Result result = ResultOf(SSL_do_handshake(m_ssl.get()));
    m_isEncrypted = result == Result::Done;
    return result;
}

TlsSocket::Result TlsSocket::Read(std::span<char> into, qint64* count) {
    ERR_clear_error();
    size_t bytes = 0;
    const Result result = ResultOf(SSL_read_ex(m_ssl.get(), into.data(), into.size(), &bytes));
    *count = qint64(bytes);
    return result;
}

TlsSocket::Result TlsSocket::Write(QByteArrayView bytes, qint64* count) {
    ERR_clear_error();
    size_t written = 0;
    const Result result = ResultOf(SSL_write_ex(m_ssl.get(), bytes.data(), size_t(bytes.size()), &written));
    *count = qint64(written);
    return result;
}

} // namespace sysadmin::server
