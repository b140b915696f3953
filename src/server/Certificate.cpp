#include "server/Certificate.h"

#include "server/Library.h"
#include "server/store/Database.h"
#include "wire/Tls.h"

#include <QFile>

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rand.h>
#include <openssl/x509v3.h>

#include <memory>

namespace sysadmin::server {

namespace {

template <auto Free>
struct Freer {
    template <class T>
    void operator()(T* object) const {
        Free(object);
    }
};
using KeyPointer = std::unique_ptr<EVP_PKEY, Freer<EVP_PKEY_free>>;
using CertificatePointer = std::unique_ptr<X509, Freer<X509_free>>;
using BioPointer = std::unique_ptr<BIO, Freer<BIO_free_all>>;

QByteArray Contents(BIO* bio) {
    char* data = nullptr;
    const long size = BIO_get_mem_data(bio, &data);
    return {data, qsizetype(size)};
}

bool AddExtension(X509* certificate, int kind, const char* value) {
    X509V3_CTX context;
    X509V3_set_ctx_nodb(&context);
    X509V3_set_ctx(&context, certificate, certificate, nullptr, nullptr, 0);
    X509_EXTENSION* extension = X509V3_EXT_conf_nid(nullptr, &context, kind, value);
    if (!extension)
        return false;
    const bool added = X509_add_ext(certificate, extension, -1) == 1;
    X509_EXTENSION_free(extension);
    return added;
}

struct Pems {
    QByteArray certificate;
    QByteArray key;
};

/// A key and a certificate that it signs itself. Clients know it by its fingerprint, so it may be valid for
/// long.
std::optional<Pems> MakeCertificate() {
    const KeyPointer key(EVP_EC_gen("P-256"));
    const CertificatePointer certificate(X509_new());
    if (!key || !certificate)
        return std::nullopt;
    constexpr long TwentyYears = 20L * 365 * 24 * 3600;
    unsigned char serial[16];
    if (RAND_bytes(serial, sizeof serial) != 1)
        return std::nullopt;
    serial[0] &= 0x7f;
    std::unique_ptr<BIGNUM, Freer<BN_free>> number(BN_bin2bn(serial, sizeof serial, nullptr));
    X509* x = certificate.get();
    X509_set_version(x, X509_VERSION_3);
    BN_to_ASN1_INTEGER(number.get(), X509_get_serialNumber(x));
    X509_gmtime_adj(X509_getm_notBefore(x), -24 * 3600); // clocks differ
    X509_gmtime_adj(X509_getm_notAfter(x), TwentyYears);
    X509_set_pubkey(x, key.get());
    X509_NAME* name = X509_get_subject_name(x);
    X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_UTF8,
                               reinterpret_cast<const unsigned char*>("sysadmin-server"), -1, -1, 0);
    X509_set_issuer_name(x, name);
    if (!AddExtension(x, NID_basic_constraints, "critical,CA:FALSE") ||
        !AddExtension(x, NID_key_usage, "critical,digitalSignature") ||
        !AddExtension(x, NID_ext_key_usage, "serverAuth") ||
        !AddExtension(x, NID_subject_alt_name, "DNS:localhost,IP:127.0.0.1,IP:::1") ||
        X509_sign(x, key.get(), EVP_sha256()) == 0)
        return std::nullopt;
    const BioPointer certificateBio(BIO_new(BIO_s_mem()));
    const BioPointer keyBio(BIO_new(BIO_s_mem()));
    if (PEM_write_bio_X509(certificateBio.get(), x) != 1 ||
        PEM_write_bio_PrivateKey(keyBio.get(), key.get(), nullptr, nullptr, 0, nullptr, nullptr) != 1)
        return std::nullopt;
    return Pems{Contents(certificateBio.get()), Contents(keyBio.get())};
}

std::optional<ServerIdentity> FromPem(const QByteArray& certificate, const QByteArray& key) {
    ServerIdentity identity;
    identity.chain = QSslCertificate::fromData(certificate, QSsl::Pem);
    for (const auto algorithm : {QSsl::Ec, QSsl::Rsa}) {
        identity.key = QSslKey(key, algorithm);
        if (!identity.key.isNull())
            break;
    }
    if (identity.chain.isEmpty() || identity.key.isNull())
        return std::nullopt;
    return identity;
}

/// Whether the private key belongs to the certificate.
bool Match(const QByteArray& certificatePem, const QByteArray& keyPem) {
    const BioPointer certificateBio(BIO_new_mem_buf(certificatePem.constData(), int(certificatePem.size())));
    const BioPointer keyBio(BIO_new_mem_buf(keyPem.constData(), int(keyPem.size())));
    const CertificatePointer certificate(PEM_read_bio_X509(certificateBio.get(), nullptr, nullptr, nullptr));
    const KeyPointer key(PEM_read_bio_PrivateKey(keyBio.get(), nullptr, nullptr, nullptr));
    return certificate && key && X509_check_private_key(certificate.get(), key.get()) == 1;
}

} // namespace

QString ServerIdentity::Fingerprint() const {
    return QString::fromLatin1(chain.first().digest(QCryptographicHash::Sha256).toHex(':')).toUpper();
}

std::optional<ServerIdentity> OwnIdentity(const Library& library, QString* error) {
    QByteArray certificate;
    QByteArray key;
    try {
        const auto database = library.Connect();
        RunInTransaction(*database, [&] {
            certificate = ReadSetting(*database, "tls_certificate").toLatin1();
            key = ReadSetting(*database, "tls_key").toLatin1();
            if (!certificate.isEmpty())
                return;
            if (const auto made = MakeCertificate()) {
                certificate = made->certificate;
                key = made->key;
                WriteSetting(*database, "tls_certificate", QString::fromLatin1(certificate));
                WriteSetting(*database, "tls_key", QString::fromLatin1(key));
            }
        });
    } catch (const StoreError& failure) {
        *error = "The server's certificate cannot be kept: " + failure.Text();
        return std::nullopt;
    }
    auto identity = FromPem(certificate, key);
    if (!identity)
        *error = "The server's own certificate cannot be made.";
    return identity;
}

std::optional<ServerIdentity> ReadIdentity(const QString& certificateFile, const QString& keyFile,
                                           QString* error) {
    QByteArray contents[2];
    const QString names[2] = {certificateFile, keyFile};
    for (int i = 0; i < 2; ++i) {
        QFile file(names[i]);
        if (!file.open(QIODevice::ReadOnly)) {
            *error = "The file " + names[i] + " cannot be read: " + file.errorString() + '.';
            return std::nullopt;
        }
        contents[i] = file.readAll();
    }
    auto identity = FromPem(contents[0], contents[1]);
    if (!identity || !Match(contents[0], contents[1])) {
        *error =
            certificateFile + " and " + keyFile + " are not a certificate and its private key in PEM form.";
        return std::nullopt;
    }
    if (wire::HasWeakKey(identity->chain.first())) {
        *error = "The key of the certificate " + certificateFile +
                 " is too weak; make one with RSA of at least 2048 bits or with the elliptic curve P-256.";
        return std::nullopt;
    }
    return identity;
}

std::optional<ServerIdentity> KeptIdentity(Database& database, QString* error) {
    const QByteArray certificate = ReadSetting(database, "tls_certificate").toLatin1();
    const QByteArray key = ReadSetting(database, "tls_key").toLatin1();
    auto identity = FromPem(certificate, key);
    if (identity && Match(certificate, key))
        return identity;
    *error = "The certificate that the library keeps and its key do not fit together.";
    return std::nullopt;
}

} // namespace sysadmin::server
