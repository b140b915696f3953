#pragma once

#include <QSslCertificate>
#include <QSslKey>

#include <optional>

namespace sysadmin::server {

class Database;
class Library;

/// What the server shows to clients.
struct ServerIdentity {
    QList<QSslCertificate> chain;
    QSslKey key = {};

    /// SHA-256 of the certificate as pairs of hexadecimal digits with ":" between them: what clients show and
    /// administrators compare.
    QString Fingerprint() const;
};

/// The identity that the library keeps for its server; made at the first call. None, with one line, when that
/// fails.
std::optional<ServerIdentity> OwnIdentity(const Library& library, QString* error);

/// The same as it is kept, without making one. Throws `StoreError`.
std::optional<ServerIdentity> KeptIdentity(Database& database, QString* error);

/// An identity from PEM files. None, with one line, when they cannot be used.
std::optional<ServerIdentity> ReadIdentity(const QString& certificateFile, const QString& keyFile,
                                           QString* error);

} // namespace sysadmin::server
