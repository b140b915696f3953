#pragma once

#include <QByteArray>
#include <QString>

class QLineEdit;

namespace sysadmin {

/// Seals passwords to a server: only it can open them, so none ever travels or rests in the plain.
class PasswordEncoder {
public:
    PasswordEncoder() = default;
    /// From the server's public key, 32 bytes.
    explicit PasswordEncoder(const QByteArray& publicKey);

    /// False without a key of the right length: nothing can be sealed.
    bool IsUsable() const { return !m_publicKey.isEmpty(); }
    /// The sealed password in base64; empty when there is no usable key.
    QString Encode(const QString& plain) const;

private:
    QByteArray m_publicKey;
};

/// Overwrites a plain password in its place, in every copy that shares it, and empties it.
void WipeText(QString& text);
/// The same for what an edit field holds.
void WipeEdit(QLineEdit& edit);

} // namespace sysadmin
