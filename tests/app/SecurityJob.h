#pragma once

#include "app/JobTest.h"

namespace sysadmin {

/// Jobs of a security administrator and of CLARA, an operator who is made for them.
class SecurityJob : public JobTest {
protected:
    const QString operators = "Security_OperatorProfile";
    const QString profiles = "Security_MasterProfile";
    const QString options = "Security_Options";
    const QString firstPassword = Secret("winter-2041");
    const QString secondPassword = Secret("spring-2042");
    const QString thirdPassword = Secret("summer-2043");
    /// What is told to whoever is not let in, whatever the reason.
    const QString notLetIn =
        "The operator id or the password is not right, or the operator is locked or disabled.";
    const QString repeated = "Password the same as a previous password(s) -- Please change password again.";
    const QString tooYoung = "Minimum age violation (can't change password yet)";
    const QString lastHolder = "At least one operator must keep the right to change security settings.";

    /// Makes the operator CLARA on the operators' screen, with the first password.
    void MakeClara();
    /// Opens an operator's record for editing.
    Screen& Edit(const QString& operatorId);

    /// The sign-on dialog: tries the passwords one after the other. The last one lets the operator in, unless
    /// `givesUp`; the others are refused.
    void ExpectSignOn(const QString& operatorId, const QStringList& passwords, bool givesUp = false);
    bool StartAs(const QString& operatorId, const QString& password);
    /// The dialog for one's own password: tries new passwords one after the other, each with the problem that
    /// is told then. An empty problem is success; without one the operator gives up.
    void ExpectOwnPassword(const QString& old, const QList<QPair<QString, QString>>& attempts);

    /// Moves rows of a profile's list to the other list.
    void Move(Screen& screen, const QString& button, const QString& grid, const QStringList& rows);
    void ExpectDeleteQuestion(const QString& subject, const QString& item);
};

} // namespace sysadmin
