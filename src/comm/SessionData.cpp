#include "comm/SessionData.h"

namespace sysadmin {

void SessionData::SetCommandLine(const QStringList& arguments) {
    // The program has refused a command line with an error before it gets here.
    m_commandLine = ParseCommandLine(arguments).commandLine;
}

void SessionData::SetCredentials(const QString& operatorId, const QString& sealedPassword) {
    m_credentialId = operatorId;
    m_sealedPassword = sealedPassword;
}

void SessionData::PasswordChanged() {
    m_operator.mustChangePassword = false;
    m_operator.passwordDaysLeft.reset();
}

} // namespace sysadmin
