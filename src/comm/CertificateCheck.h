#pragma once

#include <QByteArray>
#include <QList>
#include <QStringList>

class QSslCertificate;
class QSslError;

namespace sysadmin {

/// What is to be said about the certificate that a server shows.
struct CertificateFindings {
    QByteArray fingerprint;  ///< SHA-256; empty when there is no certificate
    bool vouchedFor = false; ///< an authority that this computer knows vouches for it, in every respect
    QString issuer;          ///< the authority's name, or whoever made it
    bool selfMade = false;   ///< nobody but the server itself vouches for it
    QStringList faults;      ///< sentences: expired, made for another name, ...
    QString weakness;        ///< not empty: nobody may rely on its key, which this describes
};

/// Judges a certificate by the errors that were found with it when `host` was called.
CertificateFindings ExamineCertificate(const QSslCertificate& certificate, const QList<QSslError>& errors,
                                       const QString& host);

} // namespace sysadmin
