#pragma once

#include "wire/Message.h"

#include <array>

namespace sysadmin::wire {

/// The kinds of characters of which a password can be asked to hold some. A character may be of several
/// kinds.
enum class CharacterKind {
    Alphabetic, ///< letters of any alphabet
    Uppercase,
    Lowercase,
    Digit,   ///< 0 to 9
    Special, ///< one of the library's set of special characters
};

/// How many characters of a kind a password must hold.
struct CharacterRequirement {
    CharacterKind kind = CharacterKind::Alphabetic;
    int least = 0;        ///< 0: nothing is required
    bool inGroup = false; ///< one of the requirements of which only some must be met
};

/// Whose password it is.
struct PasswordOwner {
    QString id;
    QString lastName;
    QString firstName;
};

/// The library's rules for the length and the characters of operators' passwords. The client tells the
/// operator what is wrong with a password, the server refuses it: both go by these.
struct PasswordRules {
    int minimumLength = 8;
    int maximumLength = 25; ///< 0: none
    bool mayContainId = false;
    bool mayContainName = false;
    std::array<CharacterRequirement, 5> requirements{{{CharacterKind::Alphabetic, 2, false},
                                                      {CharacterKind::Uppercase, 0, false},
                                                      {CharacterKind::Lowercase, 0, false},
                                                      {CharacterKind::Digit, 1, false},
                                                      {CharacterKind::Special, 1, false}}};
    QString specialCharacters = "!@#$%^&*?~\":;|=-.,";
    /// How many of the grouped requirements must be met; requirements outside the group hold in any case. 0:
    /// all requirements hold, whether grouped or not.
    int groupCount = 0;

    /// The rules as the security options' fields carry them; missing numbers are 0.
    static PasswordRules FromFields(const Fields& fields);

    /// The grouped requirements that require anything. Empty while all requirements hold.
    QList<CharacterRequirement> Group() const;
    /// The requirements that hold in any case and require anything.
    QList<CharacterRequirement> AlwaysRequired() const;
    /// How many of `Group` a password must meet.
    int GroupCountInForce() const;
    /// Whether a password can follow the rules at all: what they require of its characters fits into the
    /// maximum length (uppercase and lowercase letters count as alphabetic ones, too), special characters are
    /// not required of an empty set, and no more requirements of the group must be met than it has.
    bool CanBeMet() const;
};

/// Something that is wrong with a password.
struct PasswordFault {
    enum class Kind { TooShort, TooLong, ContainsId, ContainsName, TooFewOfKind, TooFewOfGroup };

    Kind kind = Kind::TooShort;
    CharacterKind characters = CharacterKind::Alphabetic; ///< TooFewOfKind only
    bool operator==(const PasswordFault&) const = default;
};

/// What is wrong with the password; empty when nothing is. Letter case does not count where id and names are
/// looked for; names of a single letter are not looked for.
QList<PasswordFault> FindPasswordFaults(const PasswordRules& rules, QStringView password,
                                        const PasswordOwner& owner);

} // namespace sysadmin::wire
