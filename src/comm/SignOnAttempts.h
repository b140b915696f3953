#pragma once

#include "comm/ServerAddress.h"

#include <QString>

#include <optional>

namespace sysadmin {

struct Greeting;

/// Where to sign on: a shared server, or the library in a folder on this computer.
struct ServerChoice {
    std::optional<ServerAddress> server;
    QString library;
    bool operator==(const ServerChoice&) const = default;
};

/// What the sign-on dialog does with what the operator enters.
class SignOnAttempts {
public:
    virtual ~SignOnAttempts() = default;

    /// Connects and asks the server what it tells of itself.
    virtual Greeting Greet(const ServerChoice& choice) = 0;
    virtual const Greeting& LastGreeting() const = 0;
    /// Tries to sign on; an empty text, or why it did not work in words for the operator. The password is
    /// wiped.
    virtual QString TrySignOn(const ServerChoice& choice, const QString& operatorId, QString& password) = 0;
    /// Whether the last attempt failed because the server's certificate is not what is trusted there.
    virtual bool CertificateChanged() const = 0;
    /// Trusts the certificate that the last attempt refused, if the operator is sure; true when it did.
    virtual bool AcceptCertificate() = 0;
    /// Lets the operator choose the folder of a library, beginning at one; empty when he gave up.
    virtual QString ChooseFolder(QWidget* /*parent*/, const QString& /*start*/) { return {}; }
};

} // namespace sysadmin
