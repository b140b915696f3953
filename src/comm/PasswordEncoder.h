#pragma once

#include "wire/SealedPassword.h"

#include <QByteArray>
#include <QString>

class QLineEdit;

namespace sysadmin {

/// Seals passwords to a server: only it can open them, so none ever travels or rests in the plain. What is
/// sealed fits the session that begins with the server's greeting, and one purpose: nobody can use it again
/// elsewhere.
class PasswordEncoder {
public:
    PasswordEncoder() = default;
    /// From the public key (32 bytes) and the nonce of the server's greeting.
    PasswordEncoder(const QByteArray& publicKey, const QString& nonce);

    /// False without a key of the right length and a nonce: nothing can be sealed.
    bool IsUsable() const { return !m_publicKey.isEmpty(); }
    /// The sealed password in base64; empty when there is no usable key.
    QString Encode(const QString& plain, wire::PasswordPurpose purpose) const;

private:
    QByteArray m_publicKey;
    QString m_nonce;
};

/// Overwrites a plain password in its place, in every copy that shares it, and empties it.
void WipeText(QString& text);
/// The same for what an edit field holds.
void WipeEdit(QLineEdit& edit);

} // namespace sysadmin
