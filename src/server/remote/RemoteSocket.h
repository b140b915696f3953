#pragma once

#include "server/remote/RemoteResult.h"

#include <functional>
#include <memory>
#include <optional>

class QSslCertificate;
class QSslSocket;

namespace sysadmin::server {

/// A connection to another system, for a thread that has nothing else to do. Whatever the other side does,
/// calls end when the patience is over, and no more memory is taken than a caller allows.
class RemoteSocket {
public:
    enum class Encryption { None, Tls };

    explicit RemoteSocket(const Patience& patience);
    ~RemoteSocket();

    /// False when that failed.
    bool Connect(const QString& host, quint16 port, Encryption encryption);
    bool Write(const QByteArray& bytes);
    /// How long the message at the beginning of the bytes is; 0 while it goes on, -1 when it is none.
    using Measure = std::function<qint64(const QByteArray& bytes)>;
    /// The next message of up to `most` bytes; none when that failed.
    std::optional<QByteArray> Read(const Measure& measure, qint64 most);

    /// Why something failed.
    Outcome Failure() const { return m_failure; }
    const QString& Detail() const { return m_detail; }
    QSslCertificate Certificate() const;
    /// Whether an authority that this computer knows vouches for it, in every respect.
    bool IsVouchedFor() const { return m_vouchedFor; }

private:
    bool WaitUntil(const std::function<bool()>& done);
    bool Fail(Outcome outcome, const QString& detail = {});
    bool FailBySocket();

    const Patience& m_patience;
    std::unique_ptr<QSslSocket> m_socket;
    QByteArray m_received;
    bool m_failed = false; // an error of the socket's has come
    bool m_vouchedFor = true;
    Outcome m_failure = Outcome::Connected;
    QString m_detail;
};

} // namespace sysadmin::server
