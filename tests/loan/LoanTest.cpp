#include "loan/Loan.h"
#include "loan/ReadPolicy.h"
#include "loan/RuleCheck.h"
#include "support/LoanWords.h"

#include <QFile>
#include <QRandomGenerator>

#include <gtest/gtest.h>

namespace sysadmin::loan {

void PrintTo(const QDateTime& time, std::ostream* out) {
    *out << time.toString("yyyy-MM-dd HH:mm").toStdString();
}

namespace {

constexpr int Year = 2030;

/// "01-31"
QDate Date(const QString& text) {
    return QDate::fromString(QString("%1-%2").arg(Year).arg(text), Qt::ISODate);
}

/// "01-31/17:00"; "-" is none.
QDateTime At(const QString& text) {
    return text == "-" ? QDateTime() : QDateTime(Date(text.left(5)), QTime::fromString(text.mid(6), "HH:mm"));
}

DayHours Hours(const char* opens, const char* closes, const char* due, const char* inEffect) {
    const auto time = [](const char* text) { return QTime::fromString(text, "HH:mm"); };
    return {true, time(opens), time(closes), time(due), time(inEffect)};
}

/// The calendars of loans.txt.
QList<Calendar> CalendarNamed(const QString& name) {
    Calendar calendar{.id = 1, .name = name, .begin = Date("01-01"), .end = Date("12-31")};
    if (name == "none")
        return {};
    if (name == "late") {
        calendar.week.fill(Hours("08:00", "02:00", "10:00", "22:00"));
        return {calendar};
    }
    for (size_t day = 1; day <= 5; ++day)
        calendar.week[day] = Hours("09:00", "17:00", "10:00", "16:00");
    calendar.week[6] = Hours("10:00", "14:00", "11:00", "13:00");
    calendar.exceptions = {
        {Date("01-21"), {}}, {Date("02-20"), Hours("12:00", "15:00", "13:00", "14:00")}, {Date("02-21"), {}}};
    calendar.terms = {{Date("03-22"), 14}, {Date("06-14"), 14}};
    if (name == "fixed")
        calendar.fixedDue = Date("03-01");
    return {calendar};
}

/// A library with one policy group, patron group, item type and location, all of the id 1.
Policy OneRule(const QString& calendar, const QString& fields) {
    Fields tags{{"1", "1"}, {"I1", "1"}};
    const QString usual = "CR=Y Rc=Y LnI=D FI=D RFI=D RI=D 1C=Y 1E=Y 1X=Y ";
    for (const QString& field : (usual + fields).split(' ', Qt::SkipEmptyParts))
        tags.append({field.section('=', 0, 0), field.section('=', 1)});
    Rule rule{.id = 1, .patronGroup = 1, .itemType = 1};
    ReadRule(tags, rule);
    Group group{.id = 1, .name = "Group"};
    ReadGroup(tags, group);
    ReadPatronRules(tags, group);
    ReadItemSettings(tags, group);
    ReadLocations({{"SI", "1"}, {"SN", "Desk"}, {"CL", "Y"}, {"PL", "Y"}}, group);
    group.calendars = CalendarNamed(calendar);
    group.rules = {rule};
    Policy policy{.groups = {group}, .patronGroups = {{1, "Patrons"}}, .itemTypes = {{1, "Items"}}};
    ReadCirculation(tags, policy);
    ReadDemeritRule(tags, policy.demerits[1]);
    return policy;
}

Request Loan(const QString& text) {
    Request request{.location = 1, .patronGroup = 1, .itemType = 1};
    testing::ReadHappenings(text, At, request);
    return request;
}

QString Short(const QDateTime& time) {
    return time.isValid() ? time.toString("MM-dd/HH:mm") : "-";
}

/// What came of a loan, under the names of loans.txt.
QHash<QString, QString> Outcome(const Answer& answer) {
    QString renewed;
    for (const Event& event : answer.events)
        renewed += event.isAllowed ? '+' : '-';
    QStringList notices;
    for (const Notice& notice : answer.notices)
        notices << QString("wcoxrq").mid(int(notice.kind), 1) + Short(notice.at);
    QHash<QString, QString> outcome{
        {"due", Short(answer.due)},
        {"first", Short(answer.firstDue)},
        {"renewed", renewed},
        {"fine", AmountText(answer.fine, 2)},
        {"days", QString::number(answer.fines.size())},
        {"lost", Short(answer.lost.value_or(QDateTime()))},
        {"cost", AmountText(answer.LostCost(), 2)},
        {"suspended", Short(answer.suspendedUntil.value_or(QDateTime()))},
        {"shelf", Short(answer.onShelfUntil.value_or(QDateTime()))},
        {"next", Short(answer.nextBooking.value_or(QDateTime()))},
        {"booking",
         answer.booking ? Short(answer.booking->first) + '~' + Short(answer.booking->second) : "-"},
        {"notices", notices.isEmpty() ? "-" : notices.join(',')},
    };
    if (answer.reachesMost)
        outcome.insert("most", {});
    if (answer.isFineRemoved)
        outcome.insert("removed", {});
    return outcome;
}

TEST(LoanTest, LoansReckonedByHand) {
    QFile file(SYSADMIN_SOURCE_DIR "/tests/loan/loans.txt");
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    int loans = 0;
    int number = 0;
    for (const QString& line : QString::fromUtf8(file.readAll()).split('\n')) {
        ++number;
        const QStringList parts = line.split(" | ");
        if (line.startsWith('#') || line.trimmed().isEmpty())
            continue;
        ASSERT_EQ(parts.size(), 4) << line.toStdString();
        ++loans;
        const Policy policy = OneRule(parts[0], parts[1]);
        const Answer answer = Reckon(policy, Loan(parts[2]));
        EXPECT_EQ(answer.problem, "") << line.toStdString();
        const QHash<QString, QString> outcome = Outcome(answer);
        for (const QString& expected : parts[3].split(' ', Qt::SkipEmptyParts)) {
            const QString name = expected.section('=', 0, 0);
            ASSERT_TRUE(outcome.contains(name)) << "line " << number << ": no " << name.toStdString();
            EXPECT_EQ(outcome[name].toStdString(), expected.section('=', 1).toStdString())
                << "line " << number << ", " << name.toStdString() << ": " << line.toStdString();
        }
        EXPECT_GE(answer.steps.size(), 3) << line.toStdString();
    }
    EXPECT_GE(loans, 60);
}

TEST(LoanTest, SaysWhatIsMissing) {
    const Policy policy = OneRule("work", "LP=7 CR=N");
    const auto problem = [&](qint64 location, qint64 patron, qint64 item) {
        Request request = Loan("01-02/10:00");
        request.location = location;
        request.patronGroup = patron;
        request.itemType = item;
        return Reckon(policy, request).problem;
    };
    EXPECT_TRUE(problem(2, 1, 1).contains("no circulation policy group"));
    EXPECT_TRUE(problem(1, 2, 1).contains("no matrix entry"));
    EXPECT_TRUE(problem(1, 1, 2).contains("no matrix entry"));
    EXPECT_TRUE(problem(1, 1, 1).contains("does not allow to charge"));
}

TEST(RuleCheckTest, FindsWhatContradictsItself) {
    using Kind = Finding::Kind;
    struct Case {
        QString fields;
        QList<Kind> expected;
    };
    const QList<Case> cases{
        {"LP=7", {}},
        {"LP=0", {Kind::NoLoanPeriod}},
        {"LP=0 CR=N", {}},
        {"LP=0 LnI=I", {}},
        {"LP=7 G=7", {}},
        {"LP=7 G=8", {Kind::GraceTooLong}},
        {"LP=1 LnI=T G=8", {}},
        {"LP=7 RRP=8", {Kind::RecallTooLong}},
        {"LP=7 RRP=8 Rc=N", {}},
        {"LP=12 LnI=H RI=H FI=H RFI=H RRP=1", {Kind::RecallTooLong}},
        {"LP=7 FR=1.00 MF=0.50", {Kind::MostBelowRate}},
        {"LP=7 FR=1.00 MF=", {}},
        {"LP=7 RFR=1.00 MRF=0.50", {Kind::MostBelowRate}},
        {"LP=7 LI=15 FO=1 OC=2 ON=7", {}},
        {"LP=7 LI=14 FO=1 OC=2 ON=7", {Kind::NoticeAfterLost}},
        {"LP=7 LI=0 FO=1 OC=2 ON=7", {}},
        {"LP=7 LI=5 RNC=3 RN=2", {Kind::NoticeAfterLost}},
        {"LP=7 WP=5", {Kind::NotAShortLoan}},
        {"LP=7 BO=Y", {Kind::NotAShortLoan}},
        {"LP=7 WP=5 NO=Y BO=Y I5=Y", {}},
        {"LP=7 FI=H", {Kind::WrongUnit}},
        {"LP=7 LnI=H RI=T FI=H RFI=H Rc=N", {}},
        {"LP=7 LnI=H RI=T FI=H RFI=H Rc=N I5=Y", {Kind::WrongUnit}},
        {"LP=7 LnI=I RI=H", {Kind::WrongUnit}},
    };
    for (const auto& [fields, expected] : cases) {
        QList<Kind> found;
        for (const Finding& finding : CheckRules(OneRule("work", fields), Date("03-01")))
            found << finding.kind;
        EXPECT_EQ(found, expected) << fields.toStdString();
    }

    Policy policy = OneRule("work", "LP=7");
    Group& group = policy.groups.first();
    group.rules.append(Rule{.id = 2, .patronGroup = 2, .itemType = 2, .mayCharge = true, .period = 1});
    group.locations.append(Location{.id = 2, .name = "Other", .isDesk = true});
    group.calendars.append(Calendar{.id = 2, .name = "Next", .begin = QDate(Year + 1, 1, 3)});
    policy.groups.append(Group{.id = 2, .name = "Empty"});
    QList<QPair<Kind, qint64>> found; // with what leads to the place
    for (const Finding& finding : CheckRules(policy, Date("12-20"))) {
        found.append({finding.kind,
                      finding.patronGroup * 10 + finding.itemType + finding.location + finding.calendar});
        EXPECT_FALSE(finding.text.isEmpty() || FindingText(finding.kind).isEmpty());
    }
    EXPECT_EQ(found, (QList<QPair<Kind, qint64>>{{Kind::NoEntry, 12},
                                                 {Kind::NoEntry, 21},
                                                 {Kind::NoCalendar, 0},
                                                 {Kind::CalendarGap, 1},
                                                 {Kind::DeskWithoutPickup, 2},
                                                 {Kind::NoRules, 0},
                                                 {Kind::NoCalendar, 0}}));
}

/// Loans at random, always the same ones.
class RandomLoans {
public:
    int Below(int limit) { return int(m_random.bounded(limit)); }
    QString OneOf(const QStringList& list) { return list[Below(int(list.size()))]; }
    QDateTime Moment() { return QDateTime(Date("01-01").addDays(Below(300)), QTime(Below(24), Below(60))); }

private:
    QRandomGenerator m_random{20300101};
};

TEST(LoanTest, NothingIsDueWhileClosedAndLongerIsNeverEarlier) {
    RandomLoans random;
    for (int i = 0; i < 600; ++i) {
        const QString calendar = random.OneOf({"work", "fixed", "late", "none"});
        const QString fields = "LnI=" + random.OneOf({"M", "H", "D"}) + " CCL=" + random.OneOf({"N", "Y"}) +
                               " AFDFOL=" + random.OneOf({"N", "Y"}) + " I5=" + random.OneOf({"N", "Y"}) +
                               " NO=" + random.OneOf({"N", "Y"});
        Request request{.location = 1, .patronGroup = 1, .itemType = 1, .charged = random.Moment()};
        QDateTime before;
        for (const int period : {1, 2, 3, 5, 8, 20, 60}) {
            const Policy policy = OneRule(calendar, fields + QString(" LP=%1").arg(period));
            const QDateTime due = Reckon(policy, request).due;
            ASSERT_TRUE(due.isValid());
            const OpenHours hours(policy.groups.first().calendars);
            EXPECT_TRUE(hours.IsOpen(ToMoment(due)))
                << fields.toStdString() << ' ' << period << " due " << due.toString().toStdString();
            EXPECT_GE(due, request.charged);
            EXPECT_TRUE(!before.isValid() || before <= due) << fields.toStdString() << ' ' << period;
            before = due;
        }
    }
}

TEST(LoanTest, AFineNeverExceedsItsMaximumAndNeverShrinks) {
    RandomLoans random;
    for (int i = 0; i < 600; ++i) {
        const QString unit = random.OneOf({"M", "H", "D"});
        const QString fields = QString("LP=%1 LnI=%2 FI=%2 G=%3 FR=0.%4 MF=%5 CCL=%6 CCF=%7")
                                   .arg(1 + random.Below(30))
                                   .arg(unit)
                                   .arg(random.Below(3))
                                   .arg(1 + random.Below(9))
                                   .arg(random.Below(20))
                                   .arg(random.OneOf({"N", "Y"}), random.OneOf({"N", "Y"}));
        const Policy policy = OneRule(random.OneOf({"work", "late", "none"}), fields);
        Request request{.location = 1, .patronGroup = 1, .itemType = 1, .charged = random.Moment()};
        const QDateTime due = Reckon(policy, request).due;
        Amount before = 0;
        for (const int later : {0, 30, 100, 1000, 5000, 40000}) {
            request.returned = due.addSecs(later * 60);
            const Answer answer = Reckon(policy, request);
            EXPECT_LE(answer.fine, *policy.groups.first().rules.first().mostFine) << fields.toStdString();
            EXPECT_GE(answer.fine, before) << fields.toStdString();
            Amount sum = 0;
            for (const FineDay& day : answer.fines)
                EXPECT_EQ(day.total, sum += day.amount);
            EXPECT_EQ(sum, answer.fine);
            before = answer.fine;
        }
    }
}

} // namespace
} // namespace sysadmin::loan
