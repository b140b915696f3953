#pragma once

#include <QHash>
#include <QList>
#include <QString>

#include <array>
#include <optional>
#include <vector>

// Which rule takes a call slip request. Rules are tried in their order; the first one whose criteria are all
// met takes the request.

namespace sysadmin::callslips {

/// Criteria that are met by one value.
enum class Attribute { ItemLocation, TemporaryLocation, ItemType, TemporaryItemType, HoldingsLocation };
inline constexpr size_t AttributeCount = 5;
using Attributes = std::array<QString, AttributeCount>; ///< ids; empty: none, or of a rule any

struct Rule {
    Attributes attributes = {};
    QString callNumberType = {}; ///< of the bounds
    QString leastCallNumber = {};
    QString endCallNumber = {}; ///< the first one that is not taken any more
    std::optional<int> firstYear = {};
    std::optional<int> endYear = {}; ///< the first one that is not taken any more

    bool HasCallNumbers() const { return !leastCallNumber.isEmpty() || !endCallNumber.isEmpty(); }
    bool HasYears() const { return firstYear || endYear; }
};

struct Request {
    Attributes attributes = {};
    QString callNumberType = {};
    QString callNumber = {};
    std::optional<int> year = {};
};

/// What keeps a rule from taking a request: the criteria that are not met.
struct Misfits {
    std::array<bool, AttributeCount> attributes = {};
    bool callNumber = false;
    bool year = false;

    bool Any() const;
};

/// Requests that belong together: some of their attributes, call numbers and years. What rules leave over is
/// told in such parts.
struct Part {
    /// One value, or none with the values that it is not.
    struct Values {
        int value = 0; ///< 0: any but the excluded ones
        std::vector<int> excluded = {};
    };
    std::array<Values, AttributeCount> attributes = {};
    /// Call numbers of one type between two keys; without a type all of the other types, and none at all.
    QString type = {};
    std::vector<QString> excludedTypes = {};
    QString least = {};
    std::optional<QString> end = {};
    /// No year, and years from the first up to the last one.
    bool withoutYear = true;
    int firstYear = 0;
    int endYear = 0;
};

/// The rules of a library, made ready for many questions.
class Routing {
public:
    /// `known`: all values that there are of an attribute that every item has; empty: not known.
    explicit Routing(const QList<Rule>& rules, const std::array<QList<QString>, AttributeCount>& known = {});

    /// Tries the rules in their order: for each one what keeps it from taking the request, up to the one that
    /// takes it, which nothing does.
    std::vector<Misfits> Try(const Request& request) const;
    /// For each rule that can never be reached the places of the earlier rules that take all of its requests;
    /// empty for all others. Rules of which this would take too long to find out count as reachable.
    QList<QList<int>> Shadows() const;
    /// What no rule takes of the items that belong to the location and are there: parts of requests, of which
    /// there are none when everything is taken. Nothing when it would take too long to find out.
    std::optional<std::vector<Part>> LeftAt(const QString& location) const;

    /// The id of an attribute's value in a part.
    QString ValueOf(int value) const { return m_ids.value(value); }

private:
    struct Prepared {
        std::array<int, AttributeCount> attributes = {}; ///< 0: any
        QString type = {};                               ///< empty: any call number, or none
        QString least = {};
        std::optional<QString> end = {};
        bool anyYear = true;
        int firstYear = 0;
        int endYear = 0;
    };

    int Intern(const QString& id);
    Prepared Prepare(const Rule& rule);
    Part PartOf(const Prepared& rule) const;
    bool Overlaps(const Part& part, const Prepared& rule) const;
    bool IsWithin(const Prepared& inner, const Prepared& outer) const;
    void TakeAway(Part part, const Prepared& rule, std::vector<Part>& left) const;
    bool Subtract(std::vector<Part>& parts, const Prepared& rule) const;
    std::vector<int> Rivals(int itemLocation, int before) const;
    QList<int> ShadowOf(int place) const;

    std::vector<Prepared> m_prepared;
    QHash<QString, int> m_numbers; ///< of the values, from 1
    QList<QString> m_ids;          ///< the values by number
    std::array<size_t, AttributeCount> m_known = {};
    QHash<int, std::vector<int>> m_byLocation; ///< places by item location; 0: rules for any
};

} // namespace sysadmin::callslips
