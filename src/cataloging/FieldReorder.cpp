#include "cataloging/FieldReorder.h"

#include "wire/FieldOrder.h"

#include <algorithm>

namespace sysadmin {

namespace fieldorder = wire::fieldorder;
using fieldorder::Sorts;

namespace {

const QString OtherWriting = "880";
const QString NoField = "00"; ///< the occurrence of an 880 that belongs to no field

/// A field with the 880s that follow it.
struct Unit {
    const marc::Field* field = nullptr;
    QString tag{}; ///< by which it is sorted
    QList<qsizetype> places{};
    int group = PlacedField::NoGroup;
};

/// What $6 of a field points to: "245-02/(N" is tag 245, occurrence 02.
struct Link {
    QString tag;
    QString occurrence;
};

std::optional<Link> LinkOf(const marc::Field& field) {
    const QString link = field.First('6');
    if (link.size() < marc::TagLength + 3 || link[marc::TagLength] != '-')
        return std::nullopt;
    return Link{link.left(marc::TagLength), link.mid(marc::TagLength + 1, 2)};
}

/// The text of a field as people sort it.
QString SortText(const marc::Field& field) {
    QString text = field.value;
    for (const marc::Subfield& subfield : field.subfields)
        if (subfield.code != '6' && subfield.code != '8')
            text += ' ' + subfield.value;
    qsizetype start = 0;
    while (start < text.size() && !text[start].isLetterOrNumber())
        ++start;
    return text.mid(start).toCaseFolded();
}

bool HasIndicator(QChar indicator, QChar wanted) {
    return indicator == (wanted == QChar(fieldorder::BlankIndicator) ? QChar(' ') : wanted);
}

/// Whether an option that brings some fields to the front brings this one.
bool IsWanted(const FieldOrderRule& rule, Sorts sorts, const Unit& unit) {
    const QString& parameter = rule.parameter;
    const auto isTag = [&] {
        const QString tag = parameter.left(marc::TagLength);
        return tag == fieldorder::AnyTag || fieldorder::Takes(tag, unit.tag);
    };
    const auto at = [&](int place) { return place < parameter.size() ? parameter[place] : QChar(); };
    switch (sorts) {
    case Sorts::Field:
        return isTag();
    case Sorts::Indicator1:
        return isTag() && HasIndicator(unit.field->indicator1, at(marc::TagLength));
    case Sorts::Indicator2:
        return isTag() && HasIndicator(unit.field->indicator2, at(marc::TagLength + 1));
    case Sorts::Source:
        return unit.field->All('2').contains(parameter, Qt::CaseInsensitive);
    case Sorts::Contains:
        return SortText(*unit.field).contains(parameter.toCaseFolded());
    default:
        return false;
    }
}

/// Below, at or above 0: whether the first unit stands before, with or behind the second one.
int Compare(const FieldOrderRule& rule, const Unit& left, const Unit& right) {
    const fieldorder::Option* option = fieldorder::FindOption(rule.ruleId);
    if (!option)
        return 0;
    switch (option->sorts) {
    case Sorts::Tag:
        return QString::compare(left.tag, right.tag);
    case Sorts::TagDescending:
        return QString::compare(right.tag, left.tag);
    case Sorts::FirstIndicator:
        return int(left.field->indicator1.unicode()) - int(right.field->indicator1.unicode());
    case Sorts::SecondIndicator:
        return int(left.field->indicator2.unicode()) - int(right.field->indicator2.unicode());
    case Sorts::Text:
        return QString::compare(SortText(*left.field), SortText(*right.field));
    case Sorts::Subfield: {
        const QChar code = rule.parameter.isEmpty() ? QChar() : rule.parameter[0];
        const QStringList leftValues = left.field->All(code);
        const QStringList rightValues = right.field->All(code);
        if (leftValues.isEmpty() != rightValues.isEmpty())
            return leftValues.isEmpty() ? 1 : -1;
        return leftValues.isEmpty()
                   ? 0
                   : QString::compare(leftValues[0].toCaseFolded(), rightValues[0].toCaseFolded());
    }
    default:
        return int(IsWanted(rule, option->sorts, right)) - int(IsWanted(rule, option->sorts, left));
    }
}

/// The first rule that tells the two apart; -1: none.
int TellingRule(const FieldOrderGroup& group, const Unit& left, const Unit& right) {
    for (qsizetype i = 0; i < group.rules.size(); ++i)
        if (Compare(group.rules[i], left, right) != 0)
            return int(i);
    return -1;
}

/// The rule that tells a unit from the next one of its group that differs, or else from the nearest one
/// before.
int PlacingRule(const FieldOrderGroup& group, const QList<Unit>& units, qsizetype place) {
    for (const int step : {1, -1})
        for (qsizetype i = place + step; i >= 0 && i < units.size(); i += step) {
            if (units[i].group != units[place].group)
                break;
            if (const int rule = TellingRule(group, units[place], units[i]); rule >= 0)
                return rule;
        }
    return -1;
}

QList<Unit> UnitsOf(const marc::Record& record, bool isPairing) {
    QList<Unit> units;
    QList<qsizetype> others;
    for (qsizetype i = 0; i < record.fields.size(); ++i) {
        const marc::Field& field = record.fields[i];
        if (isPairing && field.tag == OtherWriting)
            others.append(i);
        else
            units.append({.field = &field, .tag = field.tag, .places = {i}});
    }
    for (const qsizetype place : others) {
        const marc::Field& field = record.fields[place];
        const std::optional<Link> link = LinkOf(field);
        const auto belongs = [&](const Unit& unit) {
            const std::optional<Link> back = LinkOf(*unit.field);
            return unit.field->tag == link->tag && back && back->tag == OtherWriting &&
                   back->occurrence == link->occurrence;
        };
        const auto unit = link && link->occurrence != NoField
                              ? std::find_if(units.begin(), units.end(), belongs)
                              : units.end();
        if (unit != units.end()) {
            unit->places.append(place);
            continue;
        }
        // Alone it stands where it stood among the fields that it is sorted with.
        const auto behind = std::find_if(units.begin(), units.end(),
                                         [&](const Unit& other) { return other.places.first() > place; });
        units.insert(behind, {.field = &field, .tag = link ? link->tag : field.tag, .places = {place}});
    }
    return units;
}

int GroupOf(const FieldOrderConfig& configuration, const Unit& unit) {
    if (unit.field->IsControl())
        return PlacedField::Control;
    for (qsizetype i = 0; i < configuration.groups.size(); ++i)
        if (fieldorder::Takes(configuration.groups[i].match, unit.tag))
            return int(i);
    return PlacedField::NoGroup;
}

} // namespace

QList<PlacedField> Reorder(const marc::Record& record, const FieldOrderConfig& configuration) {
    QList<Unit> units = UnitsOf(record, configuration.pairing880);
    for (Unit& unit : units)
        unit.group = GroupOf(configuration, unit);
    const auto rank = [&](const Unit& unit) {
        return unit.group == PlacedField::NoGroup ? int(configuration.groups.size()) : unit.group;
    };
    std::stable_sort(units.begin(), units.end(), [&](const Unit& left, const Unit& right) {
        if (rank(left) != rank(right))
            return rank(left) < rank(right);
        if (left.group < 0)
            return false;
        const FieldOrderGroup& group = configuration.groups[left.group];
        const int rule = TellingRule(group, left, right);
        return rule >= 0 && Compare(group.rules[rule], left, right) < 0;
    });
    QList<PlacedField> placed;
    for (qsizetype i = 0; i < units.size(); ++i) {
        const Unit& unit = units[i];
        const int rule = unit.group < 0 ? -1 : PlacingRule(configuration.groups[unit.group], units, i);
        for (qsizetype k = 0; k < unit.places.size(); ++k)
            placed.append({.from = unit.places[k], .group = unit.group, .rule = rule, .isPaired = k > 0});
    }
    return placed;
}

} // namespace sysadmin
