#include "security/PasswordCheck.h"

#include "core/Application.h"
#include "core/Prompter.h"
#include "wire/Status.h"

#include <QCoreApplication>

namespace sysadmin {

namespace status = wire::status;

namespace {

struct Words {
    Q_DECLARE_TR_FUNCTIONS(PasswordCheck)

public:
    /// "2 uppercase letters"
    static QString Amount(const wire::CharacterRequirement& requirement) {
        const int least = requirement.least;
        switch (requirement.kind) {
        case wire::CharacterKind::Alphabetic:
            return least == 1 ? tr("1 letter") : tr("%1 letters").arg(least);
        case wire::CharacterKind::Uppercase:
            return least == 1 ? tr("1 uppercase letter") : tr("%1 uppercase letters").arg(least);
        case wire::CharacterKind::Lowercase:
            return least == 1 ? tr("1 lowercase letter") : tr("%1 lowercase letters").arg(least);
        case wire::CharacterKind::Digit:
            return least == 1 ? tr("1 number") : tr("%1 numbers").arg(least);
        case wire::CharacterKind::Special:
            break;
        }
        return least == 1 ? tr("1 special character") : tr("%1 special characters").arg(least);
    }

    static QString OfKind(const wire::PasswordRules& rules, wire::CharacterKind kind) {
        for (const wire::CharacterRequirement& requirement : rules.requirements) {
            if (requirement.kind != kind)
                continue;
            const QString text = tr("It must contain at least %1").arg(Amount(requirement));
            // Replaced in one go: the set may hold a per cent sign.
            return kind == wire::CharacterKind::Special ? QString(text + ":  " + rules.specialCharacters)
                                                        : QString(text + ".");
        }
        return {};
    }

    static QString OfGroup(const wire::PasswordRules& rules) {
        QStringList amounts;
        for (const wire::CharacterRequirement& requirement : rules.Group())
            amounts.append(Amount(requirement));
        return tr("It must meet at least %1 of these requirements: %2.")
            .arg(QString::number(rules.GroupCountInForce()), amounts.join(", "));
    }

    static QString Of(const wire::PasswordRules& rules, const wire::PasswordFault& fault) {
        using Kind = wire::PasswordFault::Kind;
        switch (fault.kind) {
        case Kind::TooShort:
            return tr("It must be at least %1 characters long.").arg(rules.minimumLength);
        case Kind::TooLong:
            return tr("It must be at most %1 characters long.").arg(rules.maximumLength);
        case Kind::ContainsId:
            return tr("It must not contain the user's id.");
        case Kind::ContainsName:
            return tr("It must not contain the user's name.");
        case Kind::TooFewOfKind:
            return OfKind(rules, fault.characters);
        case Kind::TooFewOfGroup:
            break;
        }
        return OfGroup(rules);
    }

    static QString Introduction() { return tr("The password does not follow the password rules:"); }
    static QString Repeated() {
        return tr("Password the same as a previous password(s) -- Please change password again.");
    }
    static QString TooYoung() { return tr("Minimum age violation (can't change password yet)"); }
    static QString Weak() {
        return tr("The password does not follow the password rules.  Please change password again.");
    }
    static QString Published() {
        return tr("This is a password of the sample library, and everybody knows it.  Please change password "
                  "again.");
    }
};

} // namespace

bool CheckPassword(Application& application, QWidget* parent, const QString& screenName,
                   const QString& password, const wire::PasswordOwner& owner) {
    if (const qint16 result = application.channel.SendRequest("GetSecOptions"); result != status::Ok) {
        application.ReportRequestFailure(result, "Load Security Options", screenName);
        return false;
    }
    const wire::PasswordRules rules = wire::PasswordRules::FromFields(application.channel.ReplyFields());
    QStringList lines;
    for (const wire::PasswordFault& fault : wire::FindPasswordFaults(rules, password, owner))
        lines.append("- " + Words::Of(rules, fault));
    if (lines.isEmpty())
        return true;
    application.prompter.ShowBox(parent, {.text = Words::Introduction() + "\r\n\r\n" + lines.join("\r\n")});
    return false;
}

QString PasswordRefusal(qint16 result) {
    switch (result) {
    case status::RepeatedPassword:
        return Words::Repeated();
    case status::MinimumPasswordAge:
        return Words::TooYoung();
    case status::WeakPassword:
        return Words::Weak();
    case status::PublishedPassword:
        return Words::Published();
    default:
        return {};
    }
}

} // namespace sysadmin
