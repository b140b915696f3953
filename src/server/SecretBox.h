#pragma once

#include "server/Passwords.h"

#include <mutex>

namespace sysadmin::server {

struct StoreAddress;

/// Closes passwords for other systems so that who has a copy of the database cannot read them: the key lies
/// in a file of its own, beside the library's file or in the server's folder of data. It is made when the
/// first password is kept. May be used from several threads.
class SecretBox {
public:
    explicit SecretBox(const QString& keyFile)
        : m_keyFile(keyFile) {}

    /// The closed form, as text for a column. Throws `StoreError` when the key cannot be read or made.
    QString Close(const Secret& secret) const;
    /// The secret; none when the key is missing, or another than the one with which it was closed.
    std::optional<Secret> Open(const QString& closed) const;

    const QString& KeyFile() const { return m_keyFile; }

private:
    QByteArray ReadKey() const;
    QByteArray MakeKey() const;

    QString m_keyFile;
    mutable std::mutex m_mutex; // making the key
};

/// Where the key of a library lies.
QString SecretKeyFile(const StoreAddress& address);

} // namespace sysadmin::server
