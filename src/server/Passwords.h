#pragma once

#include "wire/SealedPassword.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

namespace sysadmin::server {

/// A password in the plain. It lives as short as possible, is never copied, and is wiped when it goes.
class Secret {
public:
    explicit Secret(std::vector<unsigned char> bytes)
        : m_bytes(std::move(bytes)) {}
    static Secret FromText(const QString& text);
    Secret(Secret&& other) noexcept
        : m_bytes(std::move(other.m_bytes)) {}
    Secret& operator=(Secret&&) = delete;
    Secret(const Secret&) = delete;
    ~Secret();

    /// Never null, also of an empty password.
    const char* Data() const { return m_bytes.empty() ? "" : reinterpret_cast<const char*>(m_bytes.data()); }
    qsizetype Size() const { return qsizetype(m_bytes.size()); }

private:
    std::vector<unsigned char> m_bytes;
};

/// What hashing a password costs.
struct HashCost {
    unsigned long long operations = 2;
    size_t memory = 64 * 1024 * 1024; ///< bytes

    /// As little as the algorithm allows: for tests only.
    static HashCost Least();
};

/// The key pair to whose public half the clients seal passwords.
struct SealingKeys {
    QByteArray publicKey;
    QByteArray secretKey;

    static SealingKeys Make();
};

/// Prepares the cryptography library; call it once before anything else here. False when it cannot work.
bool PrepareCryptography();

/// Argon2id hash of a password, with its salt and cost, as text.
QString HashPassword(const Secret& password, const HashCost& cost);
/// Whether the password is the one that was hashed. Takes the same work whether it is or not.
bool VerifyPassword(const QString& hash, const Secret& password);
/// Opens a password sealed by a client (base64); none when it was not sealed to these keys, for this purpose
/// and under this nonce.
std::optional<Secret> OpenSealed(const QString& sealed, const SealingKeys& keys,
                                 wire::PasswordPurpose purpose, const QString& nonce);
/// Seals a text as clients do.
QString Seal(const QString& text, const QByteArray& publicKey, wire::PasswordPurpose purpose,
             const QString& nonce);

/// Fresh random bytes as text without special characters, for session tokens.
QString RandomToken();
/// What is kept of a session token.
QString TokenHash(const QString& token);
/// A password that people can type, for the first administrator of a new library.
QString RandomPassword();

} // namespace sysadmin::server
