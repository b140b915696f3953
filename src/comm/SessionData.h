#pragma once

#include "comm/CommandLine.h"
#include "core/data/Session.h"

#include <QCoreApplication>
#include <QDateTime>

#include <optional>

namespace sysadmin {

/// What the server told when it accepted the operator.
struct SignedOnOperator {
    QString id;
    QString name;
    QString server; ///< where the server is, in words
    QDateTime since;
    bool mustChangePassword = false;
    QString rulesText = {}; ///< the library's text about new passwords; only with `mustChangePassword`
    std::optional<int> passwordDaysLeft; ///< set when the operator is to be reminded of the password's end
};

/// The communication library's session.
class SessionData : public Session {
    Q_DECLARE_TR_FUNCTIONS(SessionData)

public:
    explicit SessionData(const CommandLine& line = {})
        : m_commandLine(line) {}

    void SetCommandLine(const QStringList& arguments) override;
    QString InformationCaption() const override { return tr("Login &Information..."); }
    QString OperatorId() const override { return m_operator.id; }

    const CommandLine& Line() const { return m_commandLine; }

    /// What the next sign-on is tried with: the operator's id and the sealed password.
    void SetCredentials(const QString& operatorId, const QString& sealedPassword);
    bool HasCredentials() const { return !m_sealedPassword.isEmpty(); }
    const QString& CredentialId() const { return m_credentialId; }
    const QString& SealedPassword() const { return m_sealedPassword; }
    void ClearCredentials() { SetCredentials({}, {}); }

    const SignedOnOperator& Operator() const { return m_operator; }
    void SetOperator(const SignedOnOperator& signedOn) { m_operator = signedOn; }
    void PasswordChanged();

private:
    CommandLine m_commandLine;
    QString m_credentialId;
    QString m_sealedPassword;
    SignedOnOperator m_operator;
};

} // namespace sysadmin
