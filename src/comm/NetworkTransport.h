#pragma once

#include "comm/ServerAddress.h"
#include "comm/Transport.h"
#include "comm/TrustStore.h"
#include "wire/Codec.h"

#include <QCoreApplication>

#include <memory>

class QSslSocket;

namespace sysadmin {

class Prompter;

/// The transport to a shared settings server: TLS 1.2 or later. A certificate that an authority of this
/// computer vouches for is accepted; any other one is shown to the operator the first time, kept when
/// trusted, and must stay the same from then on.
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
    /// Whether the last `Open` failed because the server's certificate is not the one that is kept.
    bool CertificateChanged() const { return m_certificateChanged; }

private:
    enum class Trust { Given, Refused, AskAgain };

    bool Connect();
    QString ConnectProblem() const;
    Trust CheckCertificate();
    bool AskForTrust(const QByteArray& fingerprint);
    std::optional<QByteArray> FailAndClose(TransportFailure failure, const QString& problem);

    ServerAddress m_server;
    Prompter& m_prompter;
    TrustStore m_trust;
    std::chrono::milliseconds m_openTimeLimit{10000};
    std::unique_ptr<QSslSocket> m_socket;
    bool m_vouchedFor = false; // no fault was found with the certificate
    bool m_certificateChanged = false;
    wire::FrameScanner m_scanner;
};

} // namespace sysadmin
