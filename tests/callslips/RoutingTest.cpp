#include "callslips/Routing.h"
#include "callslips/CallNumberOrder.h"

#include <QFile>
#include <QRandomGenerator>
#include <gtest/gtest.h>

namespace sysadmin::callslips {

namespace {

const QStringList Tags{"PL", "TL", "IT", "TI", "LI"};

std::optional<int> Year(const QString& text) {
    return text.isEmpty() ? std::nullopt : std::optional(text.toInt());
}

Rule RuleOf(const QStringList& words) {
    Rule rule;
    for (const QString& word : words) {
        const QString tag = word.section('=', 0, 0);
        const QString value = word.section('=', 1);
        if (tag == "CT")
            rule.callNumberType = value;
        else if (tag == "CN")
            rule.leastCallNumber = value.section("..", 0, 0), rule.endCallNumber = value.section("..", 1);
        else if (tag == "Y")
            rule.firstYear = Year(value.section("..", 0, 0)), rule.endYear = Year(value.section("..", 1));
        else
            rule.attributes[size_t(Tags.indexOf(tag))] = value;
    }
    return rule;
}

Request RequestOf(const QStringList& words) {
    Request request;
    for (const QString& word : words) {
        const QString tag = word.section('=', 0, 0);
        const QString value = word.section('=', 1);
        if (tag == "CT")
            request.callNumberType = value;
        else if (tag == "CN")
            request.callNumber = value;
        else if (tag == "Y")
            request.year = Year(value);
        else
            request.attributes[size_t(Tags.indexOf(tag))] = value;
    }
    return request;
}

/// The place of the rule that takes the request; none when no rule does.
std::optional<int> TakerOf(const Routing& routing, const Request& request) {
    const std::vector<Misfits> tried = routing.Try(request);
    return tried.empty() || tried.back().Any() ? std::nullopt : std::optional(int(tried.size()) - 1);
}

/// The same said plainly.
bool Fits(const Rule& rule, const Request& request) {
    for (size_t i = 0; i < AttributeCount; ++i)
        if (!rule.attributes[i].isEmpty() && rule.attributes[i] != request.attributes[i])
            return false;
    if (rule.HasCallNumbers()) {
        const auto key = [&](const QString& number) {
            return SortKey(number, SchemeOf(rule.callNumberType));
        };
        if (request.callNumberType != rule.callNumberType ||
            key(request.callNumber) < key(rule.leastCallNumber) ||
            (!rule.endCallNumber.isEmpty() && key(request.callNumber) >= key(rule.endCallNumber)))
            return false;
    }
    return !rule.HasYears() || (request.year && (!rule.firstYear || *request.year >= *rule.firstYear) &&
                                (!rule.endYear || *request.year < *rule.endYear));
}

QString ShadowsOf(const Routing& routing) {
    QStringList words;
    const QList<QList<int>> shadows = routing.Shadows();
    for (qsizetype i = 0; i < shadows.size(); ++i) {
        QStringList takers;
        for (int place : shadows[i])
            takers.append(QString::number(place + 1));
        if (!takers.isEmpty())
            words.append(QString("%1:%2").arg(i + 1).arg(takers.join(',')));
    }
    return words.join(' ');
}

TEST(RoutingTest, Stories) {
    QFile file(SYSADMIN_SOURCE_DIR "/tests/callslips/routing.txt");
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    QList<Rule> rules;
    std::array<QList<QString>, AttributeCount> known;
    int asked = 0;
    for (const QString& line : QString::fromUtf8(file.readAll()).split('\n', Qt::SkipEmptyParts)) {
        SCOPED_TRACE(line.toStdString());
        const QStringList words = line.section(" -> ", 0, 0).split(' ', Qt::SkipEmptyParts);
        if (words.first() == "story")
            rules.clear(), known = {};
        else if (words.first() == "rule")
            rules.append(RuleOf(words.mid(1)));
        else if (words.first() == "known")
            known[size_t(Tags.indexOf(words[1]))] = words.mid(2);
        else if (words.first() == "shadows")
            EXPECT_EQ(ShadowsOf(Routing(rules, known)), words.mid(1).join(' '));
        else if (words.first() == "try") {
            const auto taker = TakerOf(Routing(rules), RequestOf(words.mid(1)));
            const QString expected = line.section(" -> ", 1).section(' ', 0, 0);
            EXPECT_EQ(taker ? QString::number(*taker + 1) : QString("none"), expected);
            ++asked;
        }
    }
    EXPECT_GT(asked, 10);
}

/// All requests of a small world.
QList<Request> World() {
    QList<Request> requests;
    for (const char* location : {"a", "b", "c"})
        for (const char* temporary : {"", "a"})
            for (const char* type : {"x", "y"})
                for (const char* number : {"", "0 A5", "0 C5", "0 E5", "0 G5", "1 100", "1 300", "8 Z"})
                    for (int year : {0, 1870, 1890, 1910, 1930, 1950, 1970, 1990, 2010}) {
                        const QString text = number;
                        Request request{.attributes = {location, temporary, type, {}, location},
                                        .callNumberType = text.section(' ', 0, 0),
                                        .callNumber = text.section(' ', 1)};
                        if (year)
                            request.year = year;
                        requests.append(request);
                    }
    return requests;
}

Rule RandomRule(QRandomGenerator& random) {
    const auto pick = [&](const QStringList& of) { return of[random.bounded(int(of.size()))]; };
    const auto often = [&] { return random.bounded(3) > 0; };
    Rule rule;
    if (often())
        rule.attributes[0] = pick({"a", "b", "c"});
    if (!often())
        rule.attributes[1] = "a";
    if (!often())
        rule.attributes[2] = pick({"x", "y"});
    if (!often()) {
        rule.callNumberType = pick({"0", "0", "1"});
        const QStringList bounds =
            rule.callNumberType == u"0" ? QStringList{"", "B", "D", "F"} : QStringList{"", "200"};
        const int from = random.bounded(int(bounds.size()));
        rule.leastCallNumber = bounds[from];
        if (from + 1 < bounds.size() && often())
            rule.endCallNumber = bounds[from + 1 + random.bounded(int(bounds.size()) - from - 1)];
    }
    if (!often()) {
        const int from = 1880 + 20 * random.bounded(4);
        if (often())
            rule.firstYear = from;
        if (often())
            rule.endYear = from + 20 * (1 + random.bounded(3));
    }
    return rule;
}

TEST(RoutingTest, AgreesWithTryingEveryRequest) {
    QRandomGenerator random(13);
    const QList<Request> world = World();
    int shadowed = 0;
    int open = 0;
    for (int round = 0; round < 200; ++round) {
        QList<Rule> rules;
        for (int i = 0; i < 12; ++i)
            rules.append(RandomRule(random));
        const Routing routing(rules, {QList<QString>{"a", "b", "c"}, {}, {"x", "y"}, {}, {}});
        QList<bool> reached(rules.size(), false);
        QSet<QString> left;
        for (const Request& request : world) {
            std::optional<int> first;
            for (int i = 0; i < rules.size() && !first; ++i)
                if (Fits(rules[i], request))
                    first = i;
            ASSERT_EQ(TakerOf(routing, request), first);
            if (first)
                reached[*first] = true;
            else if (request.attributes[1].isEmpty())
                left.insert(request.attributes[0]);
        }
        const QList<QList<int>> shadows = routing.Shadows();
        for (int i = 0; i < rules.size(); ++i) {
            EXPECT_FALSE(reached[i] && !shadows[i].isEmpty()) << "round " << round << " rule " << i;
            // The world has a request for everything that rules tell apart.
            EXPECT_FALSE(!reached[i] && shadows[i].isEmpty()) << "round " << round << " rule " << i;
            shadowed += !shadows[i].isEmpty();
        }
        for (const char* location : {"a", "b", "c"}) {
            EXPECT_EQ(!routing.LeftAt(location)->empty(), left.contains(location)) << round << location;
            open += left.contains(location);
        }
    }
    EXPECT_GT(shadowed, 100);
    EXPECT_GT(open, 100);
}

} // namespace

} // namespace sysadmin::callslips
