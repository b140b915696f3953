#pragma once

#include "comm/CertificateCheck.h"
#include "comm/ServerAddress.h"
#include "comm/Transport.h"
#include "comm/TrustStore.h"
#include "wire/Codec.h"

#include <QCoreApplication>

#include <memory>

class QSslSocket;

namespace sysadmin {

class Prompter;

/// A certificate that was refused because it is not what is trusted at this address, and what accepting it
/// would trust from then on.
struct CertificateOffer {
    Trust trust;
    QByteArray fingerprint;
};

/// The transport to a shared settings server: TLS 1.2 or later. A certificate that an authority of this
/// computer vouches for is accepted; any other one is shown to the operator the first time and kept when
/// trusted. From then on the server must show the same certificate, or one that is vouched for as before.
class NetworkTransport : public Transport {
    Q_DECLARE_TR_FUNCTIONS(NetworkTransport)

public:
    NetworkTransport(const ServerAddress& server, Prompter& prompter);
    ~NetworkTransport() override;

    QString Open() override;
    bool IsOpen() const override;
    std::optional<QByteArray> Exchange(const QByteArray& message,
                                       std::chrono::milliseconds timeLimit) override;
    void Close() override;
    ConnectionInfo Describe() const override;

    /// How long `Open` waits for the server.
    void SetOpenTimeLimit(std::chrono::milliseconds limit) { m_openTimeLimit = limit; }
    /// The certificate that the last `Open` refused because another one, or an authority, is trusted here.
    const std::optional<CertificateOffer>& Offer() const { return m_offer; }

private:
    enum class Verdict { Trusted, Refused, CallAgain };

    bool Connect();
    QString ConnectProblem() const;
    bool IsKeyTooWeak() const;
    Verdict CheckCertificate();
    Verdict Refuse(const QString& problem);
    QString WeakKeyProblem(const QString& weakness) const;
    QString ChangeProblem(const Trust& kept) const;
    bool AskForTrust();
    std::optional<QByteArray> FailAndClose(TransportFailure failure, const QString& problem);

    ServerAddress m_server;
    Prompter& m_prompter;
    TrustStore m_trust;
    std::chrono::milliseconds m_openTimeLimit{10000};
    std::unique_ptr<QSslSocket> m_socket;
    CertificateFindings m_found; // about the certificate of the last connection
    std::optional<CertificateOffer> m_offer;
    wire::FrameScanner m_scanner;
};

} // namespace sysadmin
