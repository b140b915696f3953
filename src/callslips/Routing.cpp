#include "callslips/Routing.h"

#include "callslips/CallNumberOrder.h"

#include <algorithm>
#include <limits>

namespace sysadmin::callslips {

namespace {

constexpr int FirstOfYears = std::numeric_limits<int>::min();
constexpr int EndOfYears = std::numeric_limits<int>::max();
/// How far the question is followed whether a rule is ever reached.
constexpr size_t MostParts = 256;
constexpr size_t MostSteps = 20000;

bool Contains(const auto& values, const auto& value) {
    return std::find(values.begin(), values.end(), value) != values.end();
}

/// Whether the end of one range lies behind the end of another; none is behind everything.
bool EndsBehind(const std::optional<QString>& end, const std::optional<QString>& other) {
    return other && (!end || *end > *other);
}

/// Whether a key lies in front of the end of a range.
bool IsBefore(const QString& key, const std::optional<QString>& end) {
    return !end || key < *end;
}

} // namespace

Routing::Routing(const QList<Rule>& rules, const std::array<QList<QString>, AttributeCount>& known)
    : m_ids{QString()} {
    for (size_t i = 0; i < AttributeCount; ++i)
        m_known[i] = size_t(known[i].size());
    m_prepared.reserve(size_t(rules.size()));
    for (const Rule& rule : rules) {
        m_byLocation[Intern(rule.attributes[size_t(Attribute::ItemLocation)])].push_back(
            int(m_prepared.size()));
        m_prepared.push_back(Prepare(rule));
    }
}

int Routing::Intern(const QString& id) {
    if (id.isEmpty())
        return 0;
    int& number = m_numbers[id];
    if (number == 0) {
        number = int(m_ids.size());
        m_ids.append(id);
    }
    return number;
}

Routing::Prepared Routing::Prepare(const Rule& rule) {
    Prepared prepared;
    for (size_t i = 0; i < AttributeCount; ++i)
        prepared.attributes[i] = Intern(rule.attributes[i]);
    if (rule.HasCallNumbers()) {
        const Scheme scheme = SchemeOf(rule.callNumberType);
        // Bounds without a type are of no scheme that there is.
        prepared.type = rule.callNumberType.isEmpty() ? QString("?") : rule.callNumberType;
        if (!rule.leastCallNumber.isEmpty())
            prepared.least = SortKey(rule.leastCallNumber, scheme);
        if (!rule.endCallNumber.isEmpty())
            prepared.end = SortKey(rule.endCallNumber, scheme);
    }
    prepared.anyYear = !rule.HasYears();
    prepared.firstYear = rule.firstYear.value_or(FirstOfYears);
    prepared.endYear = rule.endYear.value_or(EndOfYears);
    return prepared;
}

bool Misfits::Any() const {
    return callNumber || year || std::find(attributes.begin(), attributes.end(), true) != attributes.end();
}

std::vector<Misfits> Routing::Try(const Request& request) const {
    constexpr int NoRuleHasIt = -1;
    std::array<int, AttributeCount> values{};
    for (size_t i = 0; i < AttributeCount; ++i)
        values[i] = m_numbers.value(request.attributes[i], NoRuleHasIt);
    const QString key = SortKey(request.callNumber, SchemeOf(request.callNumberType));
    const bool hasCallNumber = !request.callNumber.trimmed().isEmpty();
    std::vector<Misfits> tried;
    for (const Prepared& rule : m_prepared) {
        Misfits misfits;
        for (size_t i = 0; i < AttributeCount; ++i)
            misfits.attributes[i] = rule.attributes[i] != 0 && rule.attributes[i] != values[i];
        misfits.callNumber = !rule.type.isEmpty() && (!hasCallNumber || rule.type != request.callNumberType ||
                                                      key < rule.least || !IsBefore(key, rule.end));
        misfits.year = !rule.anyYear &&
                       (!request.year || *request.year < rule.firstYear || *request.year >= rule.endYear);
        tried.push_back(misfits);
        if (!misfits.Any())
            break;
    }
    return tried;
}

Part Routing::PartOf(const Prepared& rule) const {
    Part part;
    for (size_t i = 0; i < AttributeCount; ++i)
        part.attributes[i].value = rule.attributes[i];
    part.type = rule.type;
    part.least = rule.least;
    part.end = rule.end;
    part.withoutYear = rule.anyYear;
    part.firstYear = rule.firstYear;
    part.endYear = rule.endYear;
    return part;
}

bool Routing::Overlaps(const Part& part, const Prepared& rule) const {
    for (size_t i = 0; i < AttributeCount; ++i) {
        const int wanted = rule.attributes[i];
        const Part::Values& has = part.attributes[i];
        if (wanted != 0 && (has.value == 0 ? Contains(has.excluded, wanted) : has.value != wanted))
            return false;
    }
    if (!rule.type.isEmpty() &&
        (part.type.isEmpty()
             ? Contains(part.excludedTypes, rule.type)
             : part.type != rule.type || !IsBefore(rule.least, part.end) || !IsBefore(part.least, rule.end)))
        return false;
    return rule.anyYear || std::max(rule.firstYear, part.firstYear) < std::min(rule.endYear, part.endYear);
}

bool Routing::IsWithin(const Prepared& inner, const Prepared& outer) const {
    for (size_t i = 0; i < AttributeCount; ++i)
        if (outer.attributes[i] != 0 && outer.attributes[i] != inner.attributes[i])
            return false;
    if (!outer.type.isEmpty() &&
        (inner.type != outer.type || inner.least < outer.least || EndsBehind(inner.end, outer.end)))
        return false;
    return outer.anyYear ||
           (!inner.anyYear && inner.firstYear >= outer.firstYear && inner.endYear <= outer.endYear);
}

/// Adds to `left` what the rule leaves of the part, which it overlaps: one criterion after the other is cut
/// down to what the rule takes, and what lies outside stays.
void Routing::TakeAway(Part part, const Prepared& rule, std::vector<Part>& left) const {
    for (size_t i = 0; i < AttributeCount; ++i) {
        if (rule.attributes[i] == 0 || part.attributes[i].value != 0)
            continue;
        Part outside = part;
        outside.attributes[i].excluded.push_back(rule.attributes[i]);
        if (m_known[i] == 0 || outside.attributes[i].excluded.size() < m_known[i])
            left.push_back(std::move(outside));
        part.attributes[i] = {rule.attributes[i], {}};
    }
    if (!rule.type.isEmpty()) {
        if (part.type.isEmpty()) {
            Part outside = part;
            outside.excludedTypes.push_back(rule.type);
            left.push_back(std::move(outside));
            part.type = rule.type;
            part.excludedTypes.clear();
        }
        if (part.least < rule.least) {
            Part outside = part;
            outside.end = rule.least;
            left.push_back(std::move(outside));
            part.least = rule.least;
        }
        if (EndsBehind(part.end, rule.end)) {
            Part outside = part;
            outside.least = *rule.end;
            left.push_back(std::move(outside));
            part.end = rule.end;
        }
    }
    if (rule.anyYear)
        return;
    const auto keep = [&](bool withoutYear, int first, int end) {
        if (!withoutYear && first >= end)
            return;
        Part outside = part;
        outside.withoutYear = withoutYear;
        outside.firstYear = first;
        outside.endYear = end;
        left.push_back(std::move(outside));
    };
    if (part.withoutYear)
        keep(true, 0, 0);
    keep(false, part.firstYear, std::min(part.endYear, rule.firstYear));
    keep(false, std::max(part.firstYear, rule.endYear), part.endYear);
}

/// False when the rule takes none of the parts.
bool Routing::Subtract(std::vector<Part>& parts, const Prepared& rule) const {
    if (std::none_of(parts.begin(), parts.end(), [&](const Part& part) { return Overlaps(part, rule); }))
        return false;
    std::vector<Part> left;
    for (Part& part : parts)
        if (Overlaps(part, rule))
            TakeAway(std::move(part), rule, left);
        else
            left.push_back(std::move(part));
    parts = std::move(left);
    return true;
}

/// The places in front of `before` of rules that may take items of the location, in order; of the location 0
/// all of them.
std::vector<int> Routing::Rivals(int itemLocation, int before) const {
    std::vector<int> rivals;
    if (itemLocation == 0) {
        rivals.resize(size_t(before));
        for (int i = 0; i < before; ++i)
            rivals[size_t(i)] = i;
        return rivals;
    }
    static const std::vector<int> none;
    const auto placesOf = [&](int location) -> const std::vector<int>& {
        const auto found = m_byLocation.constFind(location);
        return found == m_byLocation.constEnd() ? none : *found;
    };
    const std::vector<int>& own = placesOf(itemLocation);
    const std::vector<int>& any = placesOf(0);
    std::merge(own.begin(), std::lower_bound(own.begin(), own.end(), before), any.begin(),
               std::lower_bound(any.begin(), any.end(), before), std::back_inserter(rivals));
    return rivals;
}

QList<int> Routing::ShadowOf(int place) const {
    const Prepared& rule = m_prepared[size_t(place)];
    const std::vector<int> rivals = Rivals(rule.attributes[size_t(Attribute::ItemLocation)], place);
    for (int rival : rivals)
        if (IsWithin(rule, m_prepared[size_t(rival)]))
            return {rival};
    std::vector<Part> parts{PartOf(rule)};
    QList<int> takers;
    size_t steps = 0;
    for (int rival : rivals) {
        steps += parts.size();
        if (steps > MostSteps || parts.size() > MostParts)
            return {};
        if (Subtract(parts, m_prepared[size_t(rival)]))
            takers.append(rival);
        if (parts.empty())
            return takers;
    }
    return {};
}

QList<QList<int>> Routing::Shadows() const {
    QList<QList<int>> shadows;
    shadows.reserve(qsizetype(m_prepared.size()));
    for (int place = 0; place < int(m_prepared.size()); ++place)
        shadows.append(ShadowOf(place));
    return shadows;
}

std::optional<std::vector<Part>> Routing::LeftAt(const QString& location) const {
    Prepared whole;
    whole.firstYear = FirstOfYears;
    whole.endYear = EndOfYears;
    // A value that no rule has is as good as any other one.
    const int number = m_numbers.value(location, -1);
    whole.attributes[size_t(Attribute::ItemLocation)] = number;
    whole.attributes[size_t(Attribute::HoldingsLocation)] = number;
    whole.attributes[size_t(Attribute::TemporaryLocation)] = -1;
    whole.attributes[size_t(Attribute::TemporaryItemType)] = -1;
    std::vector<Part> parts{PartOf(whole)};
    size_t steps = 0;
    for (int rival : Rivals(number, int(m_prepared.size()))) {
        steps += parts.size();
        if (steps > MostSteps || parts.size() > MostParts)
            return std::nullopt;
        Subtract(parts, m_prepared[size_t(rival)]);
        if (parts.empty())
            break;
    }
    return parts;
}

} // namespace sysadmin::callslips
