#include "loan/Loan.h"
#include "loan/ReadPolicy.h"
#include "loan/RuleCheck.h"
#include "support/TestServer.h"
#include "wire/Status.h"

#include <gtest/gtest.h>

namespace sysadmin::testing {
namespace {

/// What is stored in the sample library, read by requests as a client reads it.
class RealLoansTest : public ::testing::Test {
protected:
    loan::Fields Ask(const QString& name, const wire::Fields& fields) {
        const wire::Reply reply = m_server.Send(name, fields);
        EXPECT_EQ(reply.status, 0) << name.toStdString();
        loan::Fields read;
        for (const wire::Field& field : reply.fields)
            read.append({field.tag, field.value});
        return read;
    }
    void ReadGroupOf(const QString& cluster, const QString& id) {
        const wire::Fields key{{"ID", id}, {"CID", cluster}};
        loan::Group group{.id = id.toLongLong()};
        const loan::Fields record = Ask("GetCrcGp", key);
        loan::ReadGroup(record, group);
        loan::ReadLocations(record, group);
        loan::ReadItemSettings(record, group);
        loan::ReadPatronRules(Ask("GetCrcPatronGp", key), group);
        loan::ReadRules(Ask("LstMatRule", key), group);
        for (const auto& [tag, value] : record)
            if (tag == u"SCI") {
                loan::Calendar calendar{.id = value.toLongLong()};
                loan::ReadCalendar(Ask("GetCal", {{"ID", value}, {"CID", cluster}}), calendar);
                group.calendars.append(calendar);
            }
        m_policy.groups.append(group);
    }
    void ReadPolicy() {
        for (const QString& cluster :
             ValuesOf(m_server.Send("GetClusterList", {{"OI", "SYSADMIN"}}).fields, "CID"))
            for (const QString& id : ValuesOf(m_server.Send("LstCrcGp", {{"CID", cluster}}).fields, "ID"))
                ReadGroupOf(cluster, id);
    }
    qint64 IdOf(const QString& table, const QString& code, const QString& more = "1=1") {
        return m_server.Value("SELECT id FROM " + table + " WHERE code=? AND " + more, {code}).toLongLong();
    }

    TestServer m_server;
    loan::Policy m_policy;
};

QDateTime At(const QString& text) {
    return QDateTime::fromString(text, "yyyy-MM-dd/HH:mm");
}

/// By hand, from the rules as they stand in data/sample-library.
TEST_F(RealLoansTest, ReckonedByHand) {
    struct Case {
        const char* group;
        const char* patron;
        const char* item;
        const char* happens; ///< the loan, then renew=, recall=, return=
        const char* expected;
    };
    const QList<Case> cases{
        {"Engineering Library", "faculty", "m-map", "2026-10-05/10:00", "2026-11-02/23:00"},
        {"Engineering Library", "undergrad", "m-game", "2026-11-12/10:00", "2026-11-28/18:00"},
        {"Engineering Library", "faculty", "m-laptop", "2026-12-17/10:00", "2026-12-26/16:00"},
        {"Engineering Library", "visitor", "m-multimedia", "2026-12-08/10:00", "2026-12-10/02:00"},
        {"Engineering Library", "faculty", "m-accessories-1", "2026-10-05/10:00", "2026-10-05/14:00"},
        {"Engineering Library", "faculty", "m-accessories-1", "2026-10-05/20:30", "2026-10-06/10:00"},
        {"Engineering Library", "faculty", "m-accessories-1", "2026-10-09/19:00", "2026-10-10/11:00"},
        {"Engineering Library", "faculty", "m-accessories-1", "2026-11-25/21:00", "2026-11-28/11:00"},
        {"Engineering Library", "visitor", "m-library-equipment-1", "2026-10-05/10:00",
         "2026-11-02/23:00 lost 2026-11-30/23:00"},
        {"Media Center", "faculty", "m-av-equipment-3", "2026-10-05/22:00", "2026-10-06/11:00"},
        {"Media Center", "undergrad", "m-game", "2026-11-16/10:00", "2026-12-02/23:00"},
        {"Law Library", "faculty", "m-periodical", "2026-10-05/10:00", "2026-10-13/21:00"},
        {"Law Library", "visitor", "m-accessories-1", "2026-10-09/15:00", "2026-10-11/14:00"},
        {"Law Library", "visitor", "m-accessories-1", "2026-10-09/16:30", "2026-10-11/15:30"},
        {"Law Library", "faculty", "m-map",
         "2026-10-05/10:00 recall=2026-10-12/10:00 return=2026-10-26/10:00", "2026-10-20/21:00 15.00"},
        {"Medical Library", "faculty", "1-day-reserve", "2026-10-05/10:00", "2026-12-12/01:00"},
        {"Medical Library", "faculty", "1-day-reserve", "2026-11-30/10:00", "2027-03-21/21:00"},
        {"Business Library", "undergrad", "1-day-reserve", "2026-10-05/10:00 renew=2026-12-10/10:00",
         "2027-03-21/21:00"},
        {"Medical Library", "visitor", "2-hour-reserve", "2026-10-05/10:00 return=2026-10-05/15:30",
         "2026-10-05/12:00 4.00"},
        {"Medical Library", "visitor", "2-hour-reserve", "2026-10-05/10:00 return=2026-10-06/12:00",
         "2026-10-05/12:00 24.00"},
        {"Medical Library", "visitor", "28-day-reserve", "2026-10-05/10:00 return=2026-11-09/10:00",
         "2026-11-02/21:00"},
        {"Medical Library", "visitor", "28-day-reserve", "2026-10-05/10:00 return=2026-11-11/10:00",
         "2026-11-02/21:00 9.00"},
    };
    ReadPolicy();
    for (const Case& one : cases) {
        loan::Request request{.itemType = IdOf("item_types", one.item)};
        for (const loan::Group& group : m_policy.groups)
            if (group.name == one.group)
                request.location = group.locations.first().id;
        request.patronGroup =
            IdOf("patron_groups", one.patron,
                 QString("cluster_id=(SELECT cluster_id FROM circulation_policy_groups WHERE name='%1')")
                     .arg(one.group));
        for (const QString& part : QString(one.happens).split(' ')) {
            const QString value = part.section('=', 1);
            if (part.startsWith("renew="))
                request.renewals << At(value);
            else if (part.startsWith("recall="))
                request.recalled = At(value);
            else if (part.startsWith("return="))
                request.returned = At(value);
            else
                request.charged = At(part);
        }
        const loan::Answer answer = loan::Reckon(m_policy, request);
        QString outcome = answer.due.toString("yyyy-MM-dd/HH:mm");
        if (answer.fine > 0)
            outcome += ' ' + loan::AmountText(answer.fine, 2);
        if (QString(one.expected).contains("lost"))
            outcome += " lost " + answer.lost.value_or(QDateTime()).toString("yyyy-MM-dd/HH:mm");
        QString steps;
        for (const loan::Step& step : answer.steps)
            steps += step.text + '\n';
        EXPECT_EQ(outcome.toStdString(), one.expected)
            << one.group << ' ' << one.patron << ' ' << one.item << ' ' << one.happens << ' '
            << answer.problem.toStdString() << '\n'
            << steps.toStdString();
    }
}

TEST_F(RealLoansTest, WhatTheCheckFinds) {
    ReadPolicy();
    qsizetype rules = 0;
    for (const loan::Group& group : m_policy.groups)
        rules += group.rules.size();
    EXPECT_EQ(rules, 3444);
    QMap<loan::Finding::Kind, int> found;
    for (const loan::Finding& finding : loan::CheckRules(m_policy, QDate(2026, 11, 21)))
        ++found[finding.kind];
    using Kind = loan::Finding::Kind;
    EXPECT_EQ(found[Kind::NoRules], 4);
    EXPECT_EQ(found[Kind::NoCalendar] + found[Kind::CalendarGap], 0);
    EXPECT_EQ(found[Kind::WrongUnit] + found[Kind::NoLoanPeriod] + found[Kind::MostBelowRate], 0);
    EXPECT_GT(found[Kind::DeskWithoutPickup], 0);
}

} // namespace
} // namespace sysadmin::testing
