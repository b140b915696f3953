#include "wire/PasswordRules.h"

#include <gtest/gtest.h>

namespace sysadmin::wire {

namespace {

const PasswordOwner Anna{"ABERG", "Åberg", "Anna"};

/// Rules of the security options' fields, as "PLM=8 PSC=!#"; "built-in" stands for those that hold without
/// any.
PasswordRules RulesOf(const QString& text) {
    Fields fields;
    for (const QString& field : text.split(' ', Qt::SkipEmptyParts))
        fields.append({field.section('=', 0, 0), field.section('=', 1)});
    return text == "built-in" ? PasswordRules() : PasswordRules::FromFields(fields);
}

/// What is wrong with the password, a word or the initial of a kind of characters for each fault.
QString Faults(const PasswordRules& rules, const QString& password, const PasswordOwner& owner = Anna) {
    const QStringList words{"short", "long", "id", "name", "", "group"};
    QStringList faults;
    for (const PasswordFault& fault : FindPasswordFaults(rules, password, owner))
        faults.append(fault.kind == PasswordFault::Kind::TooFewOfKind
                          ? QString("AULDS").mid(int(fault.characters), 1)
                          : words[int(fault.kind)]);
    return faults.join(' ');
}

TEST(PasswordRulesTest, EveryFaultIsFoundAndNoOther) {
    const QString cased = "PAL=2 PUL=1 PLL=1";
    // Letters stand outside the group; the lowercase ones require nothing, so they are no member.
    const QString grouped = "PAL=3 PUL=1 PUG=Y PNL=1 PNG=Y PSL=1 PSG=Y PLG=Y PSC=!# PGR=";
    const struct {
        QString rules;
        QString password;
        QString faults;
    } cases[] = {
        {"built-in", "ab-45678", ""},
        {"built-in", "ab-4567", "short"},
        {"built-in", "ab-4567890123456789012345", ""}, // 25 characters
        {"built-in", "ab-45678901234567890123456", "long"},
        {"built-in", "a-345678", "A"},
        {"built-in", "abcdefg-", "D"},
        {"built-in", "abcdefg1", "S"},
        {"built-in", "", "short A D S"},
        // Id and names whatever their case.
        {"", "xxaBeRgxx", "id"},
        {"", "xxåBERGxx", "name"},
        {"", "annA", "name"},
        {"", "a n n a", ""},
        {"PCI=Y", "xxabergxx", ""},
        {"PCN=Y", "annaåberg", ""},
        // Characters count for every kind that they are of.
        {cased, "xY", ""},
        {cased, "xy", "U"},
        {cased, "XY", "L"},
        {cased, "ßÉ", ""},
        {"PAL=2", "字典", ""},
        {"PNL=1", "٣", "D"},
        {"PSL=2 PSC=!#", "#!", ""},
        {"PSL=2 PSC=!#", "#?", "S"},
        // A character outside the basic plane is one character.
        {"PLM=2 PSL=1 PSC=🔑", "🔑x", ""},
        {"PLM=2 PSL=1 PSC=🔑", "🔑", "short"},
        {"PLM=2 PSL=1 PSC=🔑", "🔒🔒", "S"},
        // Some of a group are enough. 0 means all of them, and more than there are cannot be asked for.
        {grouped + "2", "xyz1#", ""},
        {grouped + "2", "xyZ1", ""},
        {grouped + "2", "xyzz1", "group"},
        {grouped + "2", "X1#", "A"},
        {grouped + "0", "xyZ1#", ""},
        {grouped + "0", "xyZ1", "S"},
        {grouped + "5", "xyZ1#", ""},
        {grouped + "5", "xyZ1", "group"},
    };
    for (const auto& [rules, password, faults] : cases)
        EXPECT_EQ(Faults(RulesOf(rules), password), faults)
            << rules.toStdString() << ": " << password.toStdString();
    for (const QChar special : PasswordRules().specialCharacters)
        EXPECT_EQ(Faults({}, "abcdef1" + QString(special)), "") << int(special.unicode());
    // What is not there is in no password, and one letter is no name.
    const PasswordRules none = RulesOf("");
    EXPECT_EQ(Faults(none, "anything", {"", " ", ""}), "");
    EXPECT_EQ(Faults(none, "anything", {"Q7", "A", "Y"}), "");
    EXPECT_EQ(Faults(none, "walimo", {"Q7", "Li", ""}), "name");
    EXPECT_EQ(Faults(none, "xq7x", {" Q7 ", "", ""}), "id");
}

TEST(PasswordRulesTest, RulesThatNoPasswordCanFollowAreFound) {
    const QString nine = "PUL=3 PLL=2 PNL=2 PSL=2 PSC=#";
    const QString group = "PAL=8 PAG=Y PNL=6 PNG=Y PSG=Y ";
    const std::pair<QString, bool> cases[] = {
        {"built-in", true},
        {"PLX=8 PAL=4 PUL=2 PLL=2 PNL=2 PSL=2 PSC=#", true}, // the cased letters are the alphabetic ones
        {nine + " PLX=8 PAL=4", false},
        {nine + " PLX=9 PAL=4", true},
        {nine + " PLX=9 PAL=6", false},
        {nine + " PLX=0 PAL=6", true},
        {"PSL=2", false},
        {"PSL=0", true},
        // A group is measured by what can be chosen from it; a requirement of nothing is no member.
        {group + "PSL=2 PSC=# PGR=1 PLX=10", true},
        {group + "PSL=2 PSC=# PGR=2 PLX=10", true},
        {group + "PSL=2 PGR=2 PLX=10", false},
        {group + "PSL=2 PSC=# PGR=3 PLX=10", false},
        {group + "PSL=2 PSC=# PGR=3 PLX=16", true},
        {group + "PSL=2 PSC=# PGR=4 PLX=16", false},
        {group + "PSC=# PGR=2 PLX=16", true},
        {"PAL=8 PAG=Y PNG=Y PGR=2", false},
    };
    for (const auto& [rules, canBeMet] : cases)
        EXPECT_EQ(RulesOf(rules).CanBeMet(), canBeMet) << rules.toStdString();
}

} // namespace

} // namespace sysadmin::wire
