#include "server/Passwords.h"

#include <sodium.h>

namespace sysadmin::server {

Secret Secret::FromText(const QString& text) {
    QByteArray bytes = text.toUtf8();
    Secret secret(std::vector<unsigned char>(bytes.begin(), bytes.end()));
    sodium_memzero(bytes.data(), size_t(bytes.size()));
    return secret;
}

Secret::~Secret() {
    if (!m_bytes.empty())
        sodium_memzero(m_bytes.data(), m_bytes.size());
}

HashCost HashCost::Least() {
    return {.operations = crypto_pwhash_OPSLIMIT_MIN, .memory = crypto_pwhash_MEMLIMIT_MIN};
}

SealingKeys SealingKeys::Make() {
    SealingKeys keys{QByteArray(crypto_box_PUBLICKEYBYTES, 0), QByteArray(crypto_box_SECRETKEYBYTES, 0)};
    crypto_box_keypair(reinterpret_cast<unsigned char*>(keys.publicKey.data()),
                       reinterpret_cast<unsigned char*>(keys.secretKey.data()));
    return keys;
}

bool PrepareCryptography() {
    return sodium_init() >= 0;
}

QString HashPassword(const Secret& password, const HashCost& cost) {
    char hash[crypto_pwhash_STRBYTES];
    if (crypto_pwhash_str_alg(hash, password.Data(), size_t(password.Size()), cost.operations, cost.memory,
                              crypto_pwhash_ALG_ARGON2ID13) != 0)
        throw std::bad_alloc();
    return QString::fromLatin1(hash);
}

bool VerifyPassword(const QString& hash, const Secret& password) {
    const QByteArray text = hash.toLatin1();
    return crypto_pwhash_str_verify(text.constData(), password.Data(), size_t(password.Size())) == 0;
}

std::optional<Secret> OpenSealed(const QString& sealed, const SealingKeys& keys,
                                 wire::PasswordPurpose purpose, const QString& nonce) {
    constexpr qsizetype LongestPassword = 1024;
    if (nonce.isEmpty())
        return std::nullopt;
    const auto decoded =
        QByteArray::fromBase64Encoding(sealed.toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded || decoded.decoded.size() < qsizetype(crypto_box_SEALBYTES) ||
        decoded.decoded.size() > LongestPassword + qsizetype(crypto_box_SEALBYTES))
        return std::nullopt;
    const QByteArray& box = decoded.decoded;
    std::vector<unsigned char> plain(size_t(box.size()) - crypto_box_SEALBYTES);
    if (crypto_box_seal_open(plain.data(), reinterpret_cast<const unsigned char*>(box.constData()),
                             static_cast<unsigned long long>(box.size()),
                             reinterpret_cast<const unsigned char*>(keys.publicKey.constData()),
                             reinterpret_cast<const unsigned char*>(keys.secretKey.constData())) != 0)
        return std::nullopt;
    const Secret whole(std::move(plain));
    const QByteArray prefix = wire::PasswordPrefix(purpose, nonce);
    if (whole.Size() < prefix.size() ||
        sodium_memcmp(whole.Data(), prefix.constData(), size_t(prefix.size())) != 0)
        return std::nullopt;
    return Secret(std::vector<unsigned char>(whole.Data() + prefix.size(), whole.Data() + whole.Size()));
}

QString Seal(const QString& text, const QByteArray& publicKey, wire::PasswordPurpose purpose,
             const QString& nonce) {
    const Secret plain = Secret::FromText(QString::fromUtf8(wire::PasswordPrefix(purpose, nonce)) + text);
    QByteArray box(plain.Size() + qsizetype(crypto_box_SEALBYTES), 0);
    crypto_box_seal(reinterpret_cast<unsigned char*>(box.data()),
                    reinterpret_cast<const unsigned char*>(plain.Data()),
                    static_cast<unsigned long long>(plain.Size()),
                    reinterpret_cast<const unsigned char*>(publicKey.constData()));
    return QString::fromLatin1(box.toBase64());
}

QString RandomToken() {
    QByteArray bytes(32, 0);
    randombytes_buf(bytes.data(), size_t(bytes.size()));
    return QString::fromLatin1(
        bytes.toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals));
}

QString TokenHash(const QString& token) {
    const QByteArray text = token.toUtf8();
    QByteArray hash(crypto_generichash_BYTES, 0);
    crypto_generichash(reinterpret_cast<unsigned char*>(hash.data()), size_t(hash.size()),
                       reinterpret_cast<const unsigned char*>(text.constData()),
                       static_cast<unsigned long long>(text.size()), nullptr, 0);
    return QString::fromLatin1(hash.toHex());
}

QString RandomPassword() {
    // Without letters and digits that look alike; 16 of them are about 90 bits.
    static constexpr char Alphabet[] = "abcdefghijkmnpqrstuvwxyzABCDEFGHJKLMNPQRSTUVWXYZ23456789";
    QString password;
    for (int i = 0; i < 16; ++i) {
        if (i > 0 && i % 4 == 0)
            password += '-';
        password += QLatin1Char(Alphabet[randombytes_uniform(sizeof Alphabet - 1)]);
    }
    return password;
}

} // namespace sysadmin::server
