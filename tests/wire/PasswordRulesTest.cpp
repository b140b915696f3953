#include "wire/PasswordRules.h"

#include <gtest/gtest.h>

namespace sysadmin::wire {

namespace {

using Kind = PasswordFault::Kind;
using Faults = QList<PasswordFault>;

const PasswordOwner Anna{"ABERG", "Åberg", "Anna"};

/// Rules that require nothing.
PasswordRules Nothing() {
    PasswordRules rules = PasswordRules::FromFields({});
    rules.specialCharacters = "!#";
    return rules;
}

CharacterRequirement& Of(PasswordRules& rules, CharacterKind kind) {
    return rules.requirements[size_t(kind)];
}

void Require(PasswordRules& rules, CharacterKind kind, int least, bool inGroup = false) {
    Of(rules, kind).least = least;
    Of(rules, kind).inGroup = inGroup;
}

Faults Check(const PasswordRules& rules, const QString& password) {
    return FindPasswordFaults(rules, password, Anna);
}

TEST(PasswordRulesTest, BuiltInRulesAreThoseOfTheBuiltInText) {
    const PasswordRules rules;
    EXPECT_EQ(Check(rules, "ab-45678"), Faults());
    EXPECT_EQ(Check(rules, "ab-4567"), (Faults{{Kind::TooShort}}));
    EXPECT_EQ(Check(rules, "ab-45678901234567890123456"), (Faults{{Kind::TooLong}}));
    EXPECT_EQ(Check(rules, "ab-4567890123456789012345"), Faults()) << "25 characters";
    EXPECT_EQ(Check(rules, "a-345678"), (Faults{{Kind::TooFewOfKind, CharacterKind::Alphabetic}}));
    EXPECT_EQ(Check(rules, "abcdefg-"), (Faults{{Kind::TooFewOfKind, CharacterKind::Digit}}));
    EXPECT_EQ(Check(rules, "abcdefg1"), (Faults{{Kind::TooFewOfKind, CharacterKind::Special}}));
    for (const QChar special : rules.specialCharacters)
        EXPECT_EQ(Check(rules, "abcdef1" + QString(special)), Faults()) << int(special.unicode());
    EXPECT_EQ(Check(rules, ""), (Faults{{Kind::TooShort},
                                        {Kind::TooFewOfKind, CharacterKind::Alphabetic},
                                        {Kind::TooFewOfKind, CharacterKind::Digit},
                                        {Kind::TooFewOfKind, CharacterKind::Special}}));
}

TEST(PasswordRulesTest, FieldsAreReadAsTheOptionsCarryThem) {
    const PasswordRules rules = PasswordRules::FromFields({{"PLM", "10"},
                                                           {"PLX", "20"},
                                                           {"PCI", "Y"},
                                                           {"PCN", "N"},
                                                           {"PAL", "1"},
                                                           {"PAG", "Y"},
                                                           {"PUL", "2"},
                                                           {"PUG", "N"},
                                                           {"PLL", "3"},
                                                           {"PLG", "Y"},
                                                           {"PNL", "4"},
                                                           {"PNG", "N"},
                                                           {"PSL", "5"},
                                                           {"PSG", "Y"},
                                                           {"PSC", "+/"},
                                                           {"PGR", "2"}});
    EXPECT_EQ(rules.minimumLength, 10);
    EXPECT_EQ(rules.maximumLength, 20);
    EXPECT_TRUE(rules.mayContainId);
    EXPECT_FALSE(rules.mayContainName);
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(int(rules.requirements[i].kind), i);
        EXPECT_EQ(rules.requirements[i].least, i + 1);
        EXPECT_EQ(rules.requirements[i].inGroup, i % 2 == 0);
    }
    EXPECT_EQ(rules.specialCharacters, "+/");
    EXPECT_EQ(rules.groupCount, 2);
}

TEST(PasswordRulesTest, IdAndNamesAreFoundWhateverTheirCase) {
    PasswordRules rules = Nothing();
    EXPECT_EQ(Check(rules, "xxaBeRgxx"), (Faults{{Kind::ContainsId}}));
    EXPECT_EQ(Check(rules, "xxåBERGxx"), (Faults{{Kind::ContainsName}})) << "letters beyond ASCII, too";
    EXPECT_EQ(Check(rules, "annA"), (Faults{{Kind::ContainsName}}));
    EXPECT_EQ(Check(rules, "a n n a"), Faults());
    rules.mayContainId = true;
    EXPECT_EQ(Check(rules, "xxabergxx"), Faults());
    rules.mayContainName = true;
    EXPECT_EQ(Check(rules, "annaåberg"), Faults());

    // What is not there is in no password, and one letter is no name.
    rules = Nothing();
    EXPECT_EQ(FindPasswordFaults(rules, u"anything", {"", " ", ""}), Faults());
    EXPECT_EQ(FindPasswordFaults(rules, u"anything", {"Q7", "A", "Y"}), Faults());
    EXPECT_EQ(FindPasswordFaults(rules, u"walimo", {"Q7", "Li", ""}), (Faults{{Kind::ContainsName}}));
    EXPECT_EQ(FindPasswordFaults(rules, u"xq7x", {" Q7 ", "", ""}), (Faults{{Kind::ContainsId}}));
}

TEST(PasswordRulesTest, CharactersCountForEveryKindThatTheyAreOf) {
    PasswordRules rules = Nothing();
    Require(rules, CharacterKind::Alphabetic, 2);
    Require(rules, CharacterKind::Uppercase, 1);
    Require(rules, CharacterKind::Lowercase, 1);
    EXPECT_EQ(Check(rules, "xY"), Faults()) << "cased letters are alphabetic, too";
    EXPECT_EQ(Check(rules, "xy"), (Faults{{Kind::TooFewOfKind, CharacterKind::Uppercase}}));
    EXPECT_EQ(Check(rules, "XY"), (Faults{{Kind::TooFewOfKind, CharacterKind::Lowercase}}));
    EXPECT_EQ(Check(rules, "ßÉ"), Faults());

    rules = Nothing();
    Require(rules, CharacterKind::Alphabetic, 2);
    EXPECT_EQ(Check(rules, QString("字典")), Faults()) << "letters without case";
    Require(rules, CharacterKind::Alphabetic, 0);
    Require(rules, CharacterKind::Digit, 1);
    EXPECT_NE(Check(rules, QString("٣")), Faults()) << "only 0 to 9 are digits";
    Require(rules, CharacterKind::Digit, 0);
    Require(rules, CharacterKind::Special, 2);
    EXPECT_EQ(Check(rules, "#!"), Faults());
    EXPECT_NE(Check(rules, "#?"), Faults()) << "the question mark is not in the set";

    // A character outside the basic plane is one character.
    rules = Nothing();
    rules.minimumLength = 2;
    rules.specialCharacters = QString("🔑");
    Require(rules, CharacterKind::Special, 1);
    EXPECT_EQ(Check(rules, QString("🔑x")), Faults());
    EXPECT_EQ(Check(rules, QString("🔑")), (Faults{{Kind::TooShort}}));
    EXPECT_EQ(Check(rules, QString("🔒🔒")), (Faults{{Kind::TooFewOfKind, CharacterKind::Special}}));
}

TEST(PasswordRulesTest, SomeOfAGroupAreEnough) {
    PasswordRules rules = Nothing();
    Require(rules, CharacterKind::Alphabetic, 3); // stands outside the group
    Require(rules, CharacterKind::Uppercase, 1, true);
    Require(rules, CharacterKind::Digit, 1, true);
    Require(rules, CharacterKind::Special, 1, true);
    Require(rules, CharacterKind::Lowercase, 0, true); // requires nothing, so it is no member
    rules.groupCount = 2;
    EXPECT_EQ(rules.Group().size(), 3);
    EXPECT_EQ(Check(rules, "xyz1#"), Faults());
    EXPECT_EQ(Check(rules, "xyZ1"), Faults());
    EXPECT_EQ(Check(rules, "xyzz1"), (Faults{{Kind::TooFewOfGroup}}));
    EXPECT_EQ(Check(rules, "X1#"), (Faults{{Kind::TooFewOfKind, CharacterKind::Alphabetic}}));

    // 0 means all of them and the boxes mean nothing; never "none".
    rules.groupCount = 0;
    EXPECT_EQ(Check(rules, "xyZ1#"), Faults());
    EXPECT_EQ(Check(rules, "xyZ1"), (Faults{{Kind::TooFewOfKind, CharacterKind::Special}}));

    // More than there are cannot be asked for.
    rules.groupCount = 5;
    EXPECT_EQ(rules.GroupCountInForce(), 3);
    EXPECT_EQ(Check(rules, "xyZ1#"), Faults());
    EXPECT_EQ(Check(rules, "xyZ1"), (Faults{{Kind::TooFewOfGroup}}));
}

TEST(PasswordRulesTest, RulesThatNoPasswordCanFollowAreFound) {
    EXPECT_TRUE(PasswordRules().CanBeMet());
    PasswordRules rules = Nothing();
    rules.maximumLength = 8;
    Require(rules, CharacterKind::Alphabetic, 4);
    Require(rules, CharacterKind::Uppercase, 2);
    Require(rules, CharacterKind::Lowercase, 2);
    Require(rules, CharacterKind::Digit, 2);
    Require(rules, CharacterKind::Special, 2);
    EXPECT_TRUE(rules.CanBeMet()) << "the cased letters are the alphabetic ones";
    Require(rules, CharacterKind::Uppercase, 3);
    EXPECT_FALSE(rules.CanBeMet()) << "nine characters in eight places";
    rules.maximumLength = 9;
    EXPECT_TRUE(rules.CanBeMet());
    Require(rules, CharacterKind::Alphabetic, 6);
    EXPECT_FALSE(rules.CanBeMet());
    rules.maximumLength = 0;
    EXPECT_TRUE(rules.CanBeMet());
    rules.specialCharacters.clear();
    EXPECT_FALSE(rules.CanBeMet());
    Require(rules, CharacterKind::Special, 0);
    EXPECT_TRUE(rules.CanBeMet());
}

TEST(PasswordRulesTest, AGroupIsMeasuredByWhatCanBeChosenFromIt) {
    PasswordRules rules = Nothing();
    rules.maximumLength = 10;
    Require(rules, CharacterKind::Alphabetic, 8, true);
    Require(rules, CharacterKind::Digit, 6, true);
    Require(rules, CharacterKind::Special, 2, true);
    rules.groupCount = 1;
    EXPECT_TRUE(rules.CanBeMet());
    rules.groupCount = 2;
    EXPECT_TRUE(rules.CanBeMet()) << "eight letters and two special characters";
    rules.specialCharacters.clear();
    EXPECT_FALSE(rules.CanBeMet());
    rules.specialCharacters = "#";
    rules.groupCount = 3;
    EXPECT_FALSE(rules.CanBeMet());
    rules.maximumLength = 16;
    EXPECT_TRUE(rules.CanBeMet());
    rules.groupCount = 4;
    EXPECT_FALSE(rules.CanBeMet()) << "the group has three";
    rules.groupCount = 2;
    Require(rules, CharacterKind::Special, 0, true);
    EXPECT_TRUE(rules.CanBeMet());
    Require(rules, CharacterKind::Digit, 0, true);
    EXPECT_FALSE(rules.CanBeMet()) << "a requirement of nothing is no member";
}

} // namespace

} // namespace sysadmin::wire
