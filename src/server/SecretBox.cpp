#include "server/SecretBox.h"

#include "server/store/Database.h"
#include "server/store/StoreAddress.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

#include <sodium.h>

namespace sysadmin::server {

namespace {

/// Passwords are padded to multiples of so many bytes: their length says something about them.
constexpr size_t Block = 64;

unsigned char* Bytes(QByteArray& array) {
    return reinterpret_cast<unsigned char*>(array.data());
}

const unsigned char* Bytes(const QByteArray& array) {
    return reinterpret_cast<const unsigned char*>(array.constData());
}

} // namespace

QByteArray SecretBox::ReadKey() const {
    QFile file(m_keyFile);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray key = QByteArray::fromBase64(file.read(256).trimmed());
    return key.size() == qsizetype(crypto_secretbox_KEYBYTES) ? key : QByteArray();
}

QByteArray SecretBox::MakeKey() const {
    // A key that is there but cannot be read is not replaced: all that was closed with it would be lost.
    const std::lock_guard lock(m_mutex);
    if (QByteArray key = ReadKey(); !key.isEmpty())
        return key;
    const auto fail = [this](const QString& why) {
        return StoreError(StoreError::Kind::Failure,
                          "The key for passwords in " + m_keyFile + " cannot be used: " + why);
    };
    if (QFileInfo::exists(m_keyFile))
        throw fail("it is damaged or cannot be read.");
    QByteArray key(crypto_secretbox_KEYBYTES, 0);
    crypto_secretbox_keygen(Bytes(key));
    QDir().mkpath(QFileInfo(m_keyFile).path());
    // Whole and on the disk, or not there; and of two programs that make one at once the first one's holds.
    const QString made = m_keyFile + '.' + RandomToken().left(8);
    QSaveFile file(made);
    if (!file.open(QIODevice::WriteOnly) ||
        !file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner) ||
        file.write(key.toBase64() + '\n') < 0 || !file.commit())
        throw fail(file.errorString() + '.');
    if (!QFile::rename(made, m_keyFile)) {
        QFile::remove(made);
        key = ReadKey();
        if (key.isEmpty())
            throw fail("it cannot be written.");
    }
    return key;
}

QString SecretBox::Close(const Secret& secret) const {
    QByteArray key = ReadKey();
    if (key.isEmpty())
        key = MakeKey();
    size_t padded = 0;
    QByteArray plain(secret.Size() + qsizetype(Block), 0);
    std::copy_n(secret.Data(), secret.Size(), plain.data());
    sodium_pad(&padded, Bytes(plain), size_t(secret.Size()), Block, size_t(plain.size()));
    QByteArray box(qsizetype(crypto_secretbox_NONCEBYTES + crypto_secretbox_MACBYTES + padded), 0);
    randombytes_buf(box.data(), crypto_secretbox_NONCEBYTES);
    crypto_secretbox_easy(Bytes(box) + crypto_secretbox_NONCEBYTES, Bytes(std::as_const(plain)), padded,
                          Bytes(std::as_const(box)), Bytes(std::as_const(key)));
    sodium_memzero(plain.data(), size_t(plain.size()));
    sodium_memzero(key.data(), size_t(key.size()));
    return QString::fromLatin1(box.toBase64());
}

std::optional<Secret> SecretBox::Open(const QString& closed) const {
    const QByteArray box = QByteArray::fromBase64(closed.toLatin1());
    QByteArray key = ReadKey();
    constexpr size_t Overhead = crypto_secretbox_NONCEBYTES + crypto_secretbox_MACBYTES;
    if (key.isEmpty() || size_t(box.size()) <= Overhead)
        return std::nullopt;
    std::vector<unsigned char> plain(size_t(box.size()) - Overhead);
    const int result =
        crypto_secretbox_open_easy(plain.data(), Bytes(box) + crypto_secretbox_NONCEBYTES,
                                   static_cast<unsigned long long>(box.size()) - crypto_secretbox_NONCEBYTES,
                                   Bytes(box), Bytes(std::as_const(key)));
    sodium_memzero(key.data(), size_t(key.size()));
    const Secret whole(std::move(plain));
    size_t length = 0;
    if (result != 0 || sodium_unpad(&length, reinterpret_cast<const unsigned char*>(whole.Data()),
                                    size_t(whole.Size()), Block) != 0)
        return std::nullopt;
    return Secret(std::vector<unsigned char>(whole.Data(), whole.Data() + length));
}

QString SecretKeyFile(const StoreAddress& address) {
    if (address.engine == StoreAddress::Engine::Sqlite)
        return QFileInfo(address.file).dir().filePath("secrets.key");
    // The folder that a service manager provides, else the user's.
    QString folder = qEnvironmentVariable("STATE_DIRECTORY").section(':', 0, 0);
    if (folder.isEmpty())
        folder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + "/sysadmin-server";
    return QDir(folder).filePath("secrets.key");
}

} // namespace sysadmin::server
