#include "wire/PasswordRules.h"

#include <algorithm>
#include <bit>

namespace sysadmin::wire {

namespace {

struct RequirementTags {
    const char* least;
    const char* inGroup;
};

/// In the order of `PasswordRules::requirements`.
constexpr std::array<RequirementTags, 5> TagsOfRequirements{
    {{"PAL", "PAG"}, {"PUL", "PUG"}, {"PLL", "PLG"}, {"PNL", "PNG"}, {"PSL", "PSG"}}};

/// The characters of the text one by one, without copying it: it may be a password.
template <class Visit>
void EachCharacter(QStringView text, Visit visit) {
    for (qsizetype i = 0; i < text.size(); ++i) {
        char32_t character = text[i].unicode();
        if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            character = QChar::surrogateToUcs4(text[i], text[i + 1]);
            ++i;
        }
        visit(character);
    }
}

bool Holds(QStringView set, char32_t wanted) {
    bool found = false;
    EachCharacter(set, [&](char32_t character) { found = found || character == wanted; });
    return found;
}

/// How many characters of each kind a text holds.
struct Census {
    std::array<int, 5> counts{};
    int length = 0;

    int Of(CharacterKind kind) const { return counts[size_t(kind)]; }
};

Census Count(QStringView text, QStringView specialCharacters) {
    Census census;
    EachCharacter(text, [&](char32_t character) {
        ++census.length;
        const auto add = [&](CharacterKind kind, bool belongs) { census.counts[size_t(kind)] += belongs; };
        add(CharacterKind::Alphabetic, QChar::isLetter(character));
        add(CharacterKind::Uppercase, QChar::isUpper(character));
        add(CharacterKind::Lowercase, QChar::isLower(character));
        add(CharacterKind::Digit, character >= U'0' && character <= U'9');
        add(CharacterKind::Special, Holds(specialCharacters, character));
    });
    return census;
}

bool IsIn(QStringView password, const QString& text, qsizetype shortest) {
    const QStringView wanted = QStringView(text).trimmed();
    return wanted.size() >= shortest && password.contains(wanted, Qt::CaseInsensitive);
}

/// The length of the shortest text that meets all of the requirements.
int ShortestText(const QList<CharacterRequirement>& requirements) {
    std::array<int, 5> least{};
    for (const CharacterRequirement& requirement : requirements)
        least[size_t(requirement.kind)] = requirement.least;
    const auto of = [&](CharacterKind kind) { return least[size_t(kind)]; };
    return std::max(of(CharacterKind::Alphabetic),
                    of(CharacterKind::Uppercase) + of(CharacterKind::Lowercase)) +
           of(CharacterKind::Digit) + of(CharacterKind::Special);
}

} // namespace

PasswordRules PasswordRules::FromFields(const Fields& fields) {
    const auto number = [&](const char* tag) { return FirstValue(fields, tag).toInt(); };
    const auto flag = [&](const char* tag) { return FirstValue(fields, tag) == u"Y"; };
    PasswordRules rules;
    rules.minimumLength = number("PLM");
    rules.maximumLength = number("PLX");
    rules.mayContainId = flag("PCI");
    rules.mayContainName = flag("PCN");
    for (size_t i = 0; i < rules.requirements.size(); ++i) {
        rules.requirements[i].least = number(TagsOfRequirements[i].least);
        rules.requirements[i].inGroup = flag(TagsOfRequirements[i].inGroup);
    }
    rules.specialCharacters = FirstValue(fields, "PSC");
    rules.groupCount = number("PGR");
    return rules;
}

QList<CharacterRequirement> PasswordRules::Group() const {
    QList<CharacterRequirement> group;
    for (const CharacterRequirement& requirement : requirements)
        if (groupCount > 0 && requirement.inGroup && requirement.least > 0)
            group.append(requirement);
    return group;
}

QList<CharacterRequirement> PasswordRules::AlwaysRequired() const {
    QList<CharacterRequirement> always;
    for (const CharacterRequirement& requirement : requirements)
        if (requirement.least > 0 && !(groupCount > 0 && requirement.inGroup))
            always.append(requirement);
    return always;
}

int PasswordRules::GroupCountInForce() const {
    return std::min(groupCount, int(Group().size()));
}

bool PasswordRules::CanBeMet() const {
    const QList<CharacterRequirement> group = Group();
    if (groupCount > group.size())
        return false;
    // There are five requirements at the most: every choice among those of the group is looked at.
    for (unsigned choice = 0; choice < 1u << group.size(); ++choice) {
        if (std::popcount(choice) != groupCount)
            continue;
        QList<CharacterRequirement> chosen = AlwaysRequired();
        for (qsizetype i = 0; i < group.size(); ++i)
            if (choice >> i & 1)
                chosen.append(group[i]);
        const bool lacksCharacters = specialCharacters.isEmpty() &&
                                     std::any_of(chosen.begin(), chosen.end(), [](const auto& requirement) {
                                         return requirement.kind == CharacterKind::Special;
                                     });
        if (!lacksCharacters && (maximumLength <= 0 || ShortestText(chosen) <= maximumLength))
            return true;
    }
    return false;
}

QList<PasswordFault> FindPasswordFaults(const PasswordRules& rules, QStringView password,
                                        const PasswordOwner& owner) {
    using Kind = PasswordFault::Kind;
    QList<PasswordFault> faults;
    const Census census = Count(password, rules.specialCharacters);
    if (census.length < rules.minimumLength)
        faults.append({Kind::TooShort});
    if (rules.maximumLength > 0 && census.length > rules.maximumLength)
        faults.append({Kind::TooLong});
    if (!rules.mayContainId && IsIn(password, owner.id, 1))
        faults.append({Kind::ContainsId});
    constexpr qsizetype ShortestName = 2;
    if (!rules.mayContainName &&
        (IsIn(password, owner.lastName, ShortestName) || IsIn(password, owner.firstName, ShortestName)))
        faults.append({Kind::ContainsName});
    for (const CharacterRequirement& requirement : rules.AlwaysRequired())
        if (census.Of(requirement.kind) < requirement.least)
            faults.append({Kind::TooFewOfKind, requirement.kind});
    const QList<CharacterRequirement> group = rules.Group();
    const auto met = std::count_if(group.begin(), group.end(), [&](const CharacterRequirement& requirement) {
        return census.Of(requirement.kind) >= requirement.least;
    });
    if (met < rules.GroupCountInForce())
        faults.append({Kind::TooFewOfGroup});
    return faults;
}

} // namespace sysadmin::wire
