#pragma once

#include "core/data/OrderingRules.h"

namespace sysadmin {

/// A sort option chosen for a group of fields.
struct FieldOrderRule {
    int ruleId = 0;
    int position = 0;           ///< within the group, from 1
    QString parameter{};        ///< as it is stored; empty when the option takes none
    QString displayParameter{}; ///< what the operator types and sees of it

    /// "2|14": the same option may stand twice in a group.
    QString Key() const;
    /// "Specific Field [650]"; empty when the catalogue does not have the option.
    QString Text(const OrderingRules& catalogue) const;
    bool operator==(const FieldOrderRule&) const = default;
};

/// The part of a stored parameter that the operator typed. `rule` may be null.
QString ShownParameter(const OrderingRule* rule, const QString& stored);
/// The stored parameter of what the operator typed, in a group of this pattern.
QString StoredParameter(const OrderingRule& rule, const QString& pattern, const QString& shown);

/// Which fields a group takes: one of five kinds of pattern with its digits.
struct FieldPattern {
    enum class Kind { Any, Range, Tag, TwoDigits, OneDigit };
    Kind kind = Kind::Tag;
    QString first{}; ///< digits
    QString last{};  ///< of a range

    static FieldPattern Parse(const QString& pattern);
    /// Whether all digits are there.
    bool IsComplete() const;
    /// As it is stored ("*", "100-199", "245", "65X", "6XX").
    QString Text() const;
};

/// How many digits each kind takes: of a range in each of its two tags.
int DigitsOf(FieldPattern::Kind kind);

/// Some fields of a record and the order among them.
struct FieldOrderGroup {
    int id = 0;       ///< 0: the server has not numbered it yet
    int priority = 0; ///< in its configuration, from 1
    QString match{};
    QList<FieldOrderRule> rules{};

    /// Its id as text; a group without one takes a temporary id the first time that it is asked.
    QString Key(OrderingRules& catalogue);
    /// Gives the rules the positions 1, 2, 3 and so on.
    void RenumberRules();
    /// Makes the stored parameters anew for the pattern as it is now.
    void Retarget(const OrderingRules& catalogue);
    /// Its only rule, "<multiple>", or nothing.
    QString RuleText(const OrderingRules& catalogue) const;

private:
    int m_temporaryId = 0;
};

/// The order in which the fields of a record are to stand.
struct FieldOrderConfig {
    int id = 0; ///< 0: not stored yet
    QString name{};
    QString description{};
    bool pairing880 = false; ///< 880 fields stand with the fields whose other writing they are
    QList<FieldOrderGroup> groups{};

    /// Reads the reply to the request for a configuration: what it is called, and its groups without rules.
    void Read(RequestChannel& channel);
    /// Asks for the rules of each group in turn; the status of the first request that failed, or 0.
    qint16 ReadRules(RequestChannel& channel, const OrderingRules& catalogue);
    /// Gives the groups the priorities 1, 2, 3 and so on.
    void Renumber();
};

/// Puts a group into the request that stores it.
void PutGroup(RequestChannel& channel, const QString& configuration, const FieldOrderGroup& group);

} // namespace sysadmin
