#include "cataloging/FieldOrder.h"

#include "core/data/RequestChannel.h"
#include "marc/Record.h"
#include "wire/FieldOrder.h"

#include <QCoreApplication>

#include <algorithm>

namespace sysadmin {

namespace fieldorder = wire::fieldorder;

namespace {

constexpr int StoredLength = marc::TagLength + 2;

} // namespace

QString FieldOrderRule::Key() const {
    return QString("%1|%2").arg(position).arg(ruleId);
}

QString FieldOrderRule::Text(const OrderingRules& catalogue) const {
    const OrderingRule* rule = catalogue.Find(ruleId);
    if (!rule)
        return {};
    return parameter.isEmpty() ? rule->name : rule->name + " [" + displayParameter + "]";
}

QString ShownParameter(const OrderingRule* rule, const QString& stored) {
    if (!rule || stored.size() != StoredLength)
        return stored;
    if (rule->IsSpecificField())
        return stored.left(marc::TagLength);
    if (rule->IsIndicator1())
        return stored.mid(marc::TagLength, 1);
    return rule->IsIndicator2() ? stored.mid(marc::TagLength + 1, 1) : stored;
}

QString StoredParameter(const OrderingRule& rule, const QString& pattern, const QString& shown) {
    const QChar any(fieldorder::AnyIndicator);
    if (rule.IsSpecificField())
        return shown + any + any;
    if (rule.IsIndicator1())
        return fieldorder::TagPrefix(pattern) + shown + any;
    return rule.IsIndicator2() ? fieldorder::TagPrefix(pattern) + any + shown : shown;
}

FieldPattern FieldPattern::Parse(const QString& pattern) {
    if (pattern == "*")
        return {.kind = Kind::Any};
    if (pattern.contains('-'))
        return {.kind = Kind::Range, .first = pattern.section('-', 0, 0), .last = pattern.section('-', 1)};
    if (pattern.endsWith("XX"))
        return {.kind = Kind::OneDigit, .first = pattern.chopped(2)};
    if (pattern.endsWith('X'))
        return {.kind = Kind::TwoDigits, .first = pattern.chopped(1)};
    return {.kind = Kind::Tag, .first = pattern};
}

int DigitsOf(FieldPattern::Kind kind) {
    switch (kind) {
    case FieldPattern::Kind::Any:
        return 0;
    case FieldPattern::Kind::OneDigit:
        return 1;
    case FieldPattern::Kind::TwoDigits:
        return 2;
    default:
        return marc::TagLength;
    }
}

bool FieldPattern::IsComplete() const {
    return first.size() == DigitsOf(kind) && (kind != Kind::Range || last.size() == marc::TagLength);
}

QString FieldPattern::Text() const {
    switch (kind) {
    case Kind::Any:
        return "*";
    case Kind::Range:
        return first + '-' + last;
    case Kind::TwoDigits:
        return first + 'X';
    case Kind::OneDigit:
        return first + "XX";
    case Kind::Tag:
        break;
    }
    return first;
}

QString FieldOrderGroup::Key(OrderingRules& catalogue) {
    if (id == 0 && m_temporaryId == 0)
        m_temporaryId = catalogue.NextTemporaryId();
    return QString::number(id != 0 ? id : m_temporaryId);
}

void FieldOrderGroup::RenumberRules() {
    for (qsizetype i = 0; i < rules.size(); ++i)
        rules[i].position = int(i) + 1;
}

void FieldOrderGroup::Retarget(const OrderingRules& catalogue) {
    for (FieldOrderRule& rule : rules)
        if (const OrderingRule* option = catalogue.Find(rule.ruleId); option && option->takesParameter)
            rule.parameter = StoredParameter(*option, match, rule.displayParameter);
}

QString FieldOrderGroup::RuleText(const OrderingRules& catalogue) const {
    if (rules.isEmpty())
        return {};
    return rules.size() == 1 ? rules.first().Text(catalogue)
                             : QCoreApplication::translate("FieldOrder", "<multiple>");
}

void FieldOrderConfig::Read(RequestChannel& channel) {
    name = channel.GetField("MFONAME");
    description = channel.GetField("MFODESC");
    pairing880 = channel.GetFlag("MFO880");
    while (channel.NextRecord("MFOGID")) {
        FieldOrderGroup group;
        group.id = channel.GetField("MFOGID").toInt();
        group.priority = channel.GetField("MFOGRP").toInt();
        group.match = channel.GetField("MFOMAT");
        groups.append(group);
    }
}

qint16 FieldOrderConfig::ReadRules(RequestChannel& channel, const OrderingRules& catalogue) {
    for (FieldOrderGroup& group : groups) {
        channel.PutField("MFOGID", QString::number(group.id));
        if (const qint16 status = channel.SendRequest("GetMarcFieldOrderSortRule"); status != 0)
            return status;
        while (channel.NextRecord("MFORID")) {
            FieldOrderRule rule{.ruleId = channel.GetField("MFORID").toInt(),
                                .position = channel.GetField("MFORPS").toInt(),
                                .parameter = channel.GetField("MFORPM")};
            rule.displayParameter = ShownParameter(catalogue.Find(rule.ruleId), rule.parameter);
            group.rules.append(rule);
        }
        std::stable_sort(group.rules.begin(), group.rules.end(),
                         [](const FieldOrderRule& left, const FieldOrderRule& right) {
                             return left.position < right.position;
                         });
    }
    return 0;
}

void FieldOrderConfig::Renumber() {
    for (qsizetype i = 0; i < groups.size(); ++i)
        groups[i].priority = int(i) + 1;
}

void PutGroup(RequestChannel& channel, const QString& configuration, const FieldOrderGroup& group) {
    channel.PutField("MFOCID", configuration);
    channel.PutField("MFOGRP", QString::number(group.priority));
    channel.PutField("MFOMAT", group.match);
    for (const FieldOrderRule& rule : group.rules) {
        channel.PutField("MFORID", QString::number(rule.ruleId));
        channel.PutField("MFORPS", QString::number(rule.position));
        channel.PutField("MFORPM", rule.parameter);
    }
}

} // namespace sysadmin
