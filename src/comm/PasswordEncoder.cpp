#include "comm/PasswordEncoder.h"

#include <QLineEdit>

#include <sodium.h>

namespace sysadmin {

namespace {

// Through the constant pointer: a writable one would first make a copy and leave the original behind.
template <typename Text>
void Overwrite(Text& text) {
    if (!text.isEmpty())
        sodium_memzero(const_cast<void*>(static_cast<const void*>(text.constData())),
                       size_t(text.size()) * sizeof(*text.constData()));
    text.clear();
}

} // namespace

PasswordEncoder::PasswordEncoder(const QByteArray& publicKey, const QString& nonce)
    : m_nonce(nonce) {
    if (sodium_init() >= 0 && publicKey.size() == crypto_box_PUBLICKEYBYTES && !nonce.isEmpty())
        m_publicKey = publicKey;
}

QString PasswordEncoder::Encode(const QString& plain, wire::PasswordPurpose purpose) const {
    if (!IsUsable())
        return {};
    QByteArray password = plain.toUtf8();
    QByteArray text = wire::PasswordPrefix(purpose, m_nonce);
    text.reserve(text.size() + password.size()); // growing would leave copies behind
    text += password;
    Overwrite(password);
    QByteArray sealed(text.size() + qsizetype(crypto_box_SEALBYTES), Qt::Uninitialized);
    const auto bytes = [](QByteArray& array) { return reinterpret_cast<unsigned char*>(array.data()); };
    const int result =
        crypto_box_seal(bytes(sealed), reinterpret_cast<const unsigned char*>(text.constData()),
                        size_t(text.size()), reinterpret_cast<const unsigned char*>(m_publicKey.constData()));
    Overwrite(text);
    return result == 0 ? QString::fromLatin1(sealed.toBase64()) : QString();
}

void WipeText(QString& text) {
    Overwrite(text);
}

void WipeEdit(QLineEdit& edit) {
    // The edit's text shares its memory with the copy that it hands out.
    QString text = edit.text();
    Overwrite(text);
    // Setting the text also forgets what could be undone.
    edit.setText({});
}

} // namespace sysadmin
