#include "comm/CertificateCheck.h"

#include "core/data/Tr.h"
#include "wire/Tls.h"

#include <QCryptographicHash>
#include <QLocale>
#include <QSslCertificate>
#include <QSslError>
#include <QSslKey>

#include <algorithm>

namespace sysadmin {

namespace {

QString Day(const QDateTime& time) {
    return QLocale().toString(time.toLocalTime().date(), QLocale::LongFormat);
}

QString NameIn(const QStringList& commonNames, const QStringList& organizations) {
    return commonNames.isEmpty() ? organizations.value(0) : commonNames.first();
}

// The names of computers for which the certificate was made.
QString NamesOf(const QSslCertificate& certificate) {
    QStringList names = certificate.subjectAlternativeNames().values();
    if (names.isEmpty())
        names = certificate.subjectInfo(QSslCertificate::CommonName);
    names.removeDuplicates();
    names.sort();
    return names.isEmpty() ? Tr("no computer") : names.join(", ");
}

// Qt calls only those self-signed whose key may sign certificates.
bool IsSelfMade(const QSslCertificate& certificate) {
    const QList<QByteArray> attributes = certificate.subjectInfoAttributes();
    return attributes == certificate.issuerInfoAttributes() &&
           std::all_of(attributes.begin(), attributes.end(), [&](const QByteArray& attribute) {
               return certificate.subjectInfo(attribute) == certificate.issuerInfo(attribute);
           });
}

// A settings server that makes its own certificate knows no name of its computer that others use.
bool IsMadeByASettingsServer(const QSslCertificate& certificate) {
    return certificate.subjectInfo(QSslCertificate::CommonName).contains("sysadmin-server");
}

} // namespace

CertificateFindings ExamineCertificate(const QSslCertificate& certificate, const QList<QSslError>& errors,
                                       const QString& host) {
    CertificateFindings found;
    if (certificate.isNull())
        return found;
    found.fingerprint = certificate.digest(QCryptographicHash::Sha256);
    found.vouchedFor = errors.isEmpty();
    found.issuer = NameIn(certificate.issuerInfo(QSslCertificate::CommonName),
                          certificate.issuerInfo(QSslCertificate::Organization));
    found.selfMade = IsSelfMade(certificate);
    if (wire::HasWeakKey(certificate))
        found.weakness = Tr("%1 bits").arg(certificate.publicKey().length());
    for (const QSslError& error : errors) {
        QString fault;
        switch (error.error()) {
        case QSslError::CertificateExpired:
            fault = error.certificate() == certificate
                        ? Tr("It expired on %1.").arg(Day(certificate.expiryDate()))
                        : Tr("The certificate of its authority has expired.");
            break;
        case QSslError::CertificateNotYetValid:
            fault = Tr("It is not valid before %1; the clock of one of the two computers may be wrong.")
                        .arg(Day(certificate.effectiveDate()));
            break;
        case QSslError::HostNameMismatch:
            if (!found.selfMade || !IsMadeByASettingsServer(certificate))
                fault =
                    Tr("It was made for another name: for %1, not for %2.").arg(NamesOf(certificate), host);
            break;
        case QSslError::SelfSignedCertificate:
        case QSslError::SelfSignedCertificateInChain:
        case QSslError::UnableToGetLocalIssuerCertificate:
        case QSslError::UnableToGetIssuerCertificate:
        case QSslError::UnableToVerifyFirstCertificate:
        case QSslError::CertificateUntrusted:
            if (!found.selfMade)
                fault = Tr("This computer does not know the authority that vouches for it (%1).")
                            .arg(found.issuer);
            break;
        case QSslError::CertificateRevoked:
        case QSslError::CertificateBlacklisted:
            fault = Tr("It was revoked.");
            break;
        case QSslError::InvalidPurpose:
            fault = Tr("It was not made for a server.");
            break;
        default:
            if (found.weakness.isEmpty())
                fault = error.errorString();
            break;
        }
        if (!fault.isEmpty() && !found.faults.contains(fault))
            found.faults.append(fault);
    }
    return found;
}

} // namespace sysadmin
