#include "support/TestServer.h"
#include "wire/Status.h"

#include <gtest/gtest.h>

namespace sysadmin::testing {
namespace {

using namespace server;

/// Fine and fee tables, location limit groups and the settings of which there is one record.
class SystemTablesTest : public ::testing::Test {
protected:
    wire::Reply Send(const QString& name, const wire::Fields& fields = {}) {
        return m_server.Send(name, fields);
    }
    qint16 StatusOf(const QString& name, const wire::Fields& fields = {}) {
        return Send(name, fields).status;
    }
    QString AddedId(const QString& name, const wire::Fields& fields, const QString& tag = "ID") {
        const wire::Reply reply = Send(name, fields);
        EXPECT_EQ(reply.status, status::Ok) << name.toStdString();
        return wire::FirstValue(reply.fields, tag);
    }
    void Restart() {
        m_server.Restart();
        m_server.SignOnAs("SYSADMIN");
    }

    TestServer m_server;
};

TEST_F(SystemTablesTest, LocationLimitGroupsShareLocations) {
    const QStringList locations = ValuesOf(Send("AvlLmt").fields, "AI");
    ASSERT_EQ(locations.size(), 633);
    const auto selected = [&](const QString& group) {
        return ValuesOf(Send("GetLmt", {{"ID", group}}).fields, "SI");
    };
    QStringList groups;
    for (const char* code : {"ONE", "TWO"})
        groups << AddedId("AddLmt", {{"C", code},
                                     {"N", code},
                                     {"O", "Y"},
                                     {"SI", locations[0]},
                                     {"LS", "1"},
                                     {"SI", locations[1]},
                                     {"LS", "1"}});
    EXPECT_EQ(StatusOf("UpdLmt", {{"C", "ONE"},
                                  {"N", "Only"},
                                  {"O", "N"},
                                  {"SI", locations[0]},
                                  {"LS", "3"},
                                  {"SI", locations[2]},
                                  {"LS", "1"},
                                  {"ID", groups[0]}}),
              status::Ok);
    Restart();
    EXPECT_EQ(selected(groups[0]), (QStringList{locations[1], locations[2]}));
    EXPECT_EQ(selected(groups[1]), (QStringList{locations[0], locations[1]}));
    const wire::Fields record = Send("GetLmt", {{"ID", groups[0]}}).fields;
    EXPECT_EQ(record.mid(0, 3), (wire::Fields{{"C", "ONE"}, {"N", "Only"}, {"O", "N"}}));
    EXPECT_EQ(ValuesOf(record, "AI").size(), 631);

    EXPECT_EQ(StatusOf("AddLmt", {{"C", "one"}, {"N", "Third"}}), status::DuplicateCode);
    EXPECT_EQ(StatusOf("AddLmt", {{"C", "THREE"}, {"N", "TWO"}}), status::DuplicateName);
    EXPECT_EQ(StatusOf("AddLmt", {{"C", "THREE"}, {"N", "Third"}, {"SI", "99999"}, {"LS", "1"}}),
              status::NotFound);
    EXPECT_FALSE(ValuesOf(Send("LstLmt").fields, "C").contains("THREE")) << "all or nothing";
    EXPECT_EQ(StatusOf("DelLmt", {{"ID", groups[0]}}), status::Ok);
    const QString used = m_server.Value("SELECT id FROM location_limit_groups WHERE code='LAW'");
    EXPECT_EQ(StatusOf("DelLmt", {{"ID", used}}), status::InUse);
}

TEST_F(SystemTablesTest, MiscellaneousSwitchesAndAlertTextsAreKept) {
    const wire::Fields switches{{"RP", "Y"}, {"MP", "N"}, {"D", "Y"}, {"DSS", "N"}};
    EXPECT_EQ(StatusOf("UpdMsc", switches), status::Ok);
    const wire::Fields services{{"US", "Y"}, {"UP", "N"}, {"DP", "secret-pin"}};
    EXPECT_EQ(StatusOf("UpdZebConfig", services), status::Ok);
    const wire::Fields alerts{{"LSE", "N"},
                              {"OA", "N"},
                              {"FA", "Y"},
                              {"BA", "Y"},
                              {"EA", "N"},
                              {"ED", "7"},
                              {"OAT", " at \\\\l \\l, "},
                              {"FAT", ""},
                              {"BAT", "\\\\"},
                              {"EAT", "\\\\d \\\\n"}};
    EXPECT_EQ(Send("GetWSLoginSum").fields.mid(6, 1),
              (wire::Fields{{"OAT", "You have overdue materials at \\\\l."}}));
    EXPECT_EQ(StatusOf("UpdWSLoginSum", alerts), status::Ok);
    EXPECT_EQ(StatusOf("UpdWSLoginSum", {{"ED", "soon"}}), status::ColumnError);
    Restart();
    EXPECT_EQ(Send("GetMsc").fields, switches);
    EXPECT_EQ(Send("GetZebConfig").fields, services);
    EXPECT_EQ(Send("GetWSLoginSum").fields, alerts);
    EXPECT_EQ(m_server.Value("SELECT COUNT(*) FROM history_records WHERE fields LIKE ?", {"%secret-pin%"}),
              "0");
}

TEST_F(SystemTablesTest, SelfRegistrationKeepsItsFields) {
    const QString cluster = m_server.Value("SELECT MIN(id) FROM clusters");
    const wire::Fields before = Send("GetWSSelfReg", {{"CID", cluster}}).fields;
    EXPECT_EQ(ValuesOf(before, "FC").size(), 21);
    const QStringList groups = ValuesOf(before, "AI");
    ASSERT_FALSE(groups.isEmpty());

    const wire::Fields end{{"SRE", "N"}, {"P", "90"}, {"G", groups.last()}, {"IDC", "SSN"}};
    const wire::Fields fields{{"FC", "lastName"}, {"FV", "Y"}, {"FR", "Y"},
                              {"FC", "SSN"},      {"FV", "Y"}, {"FR", "N"}};
    EXPECT_EQ(StatusOf("UpdWSSelfReg", fields + end), status::Ok);
    Restart();
    const wire::Fields after = Send("GetWSSelfReg", {{"CID", cluster}}).fields;
    EXPECT_EQ(after.mid(0, 2), (wire::Fields{{"P", "90"}, {"G", groups.last()}}));
    EXPECT_EQ(ValuesOf(after, "AI"), groups);
    EXPECT_EQ(ValuesOf(after, "IDC"), QStringList{"SSN"});
    for (const char* code : {"lastName", "SSN"})
        EXPECT_EQ(InRecord(after, "FC", code, "FR"), InRecord(fields, "FC", code, "FR")) << code;
    EXPECT_EQ(after.last(), (wire::Field{"SRE", "N"}));
    EXPECT_EQ(wire::FirstValue(Send("GetWSSelfReg", {{"CID", "99999"}}).fields, "AI"), groups.last())
        << "the default group is named in every cluster";

    const QList<wire::Fields> wrong{
        wire::Fields{{"FC", "shoeSize"}, {"FV", "Y"}, {"FR", "N"}} + end,
        wire::Fields{{"FC", "city"}, {"FV", "Y"}} + end,
        wire::Fields{{"FC", "city"}, {"FV", "Y"}, {"FR", "?"}} + end,
        fields + fields + end,
        {{"SRE", "Y"}, {"G", "99999"}, {"IDC", "SSN"}},
        {{"SRE", "Y"}, {"G", ""}, {"IDC", "SSN"}},
        {{"SRE", "Y"}, {"G", groups[0]}, {"IDC", "passport"}},
        {{"P", "-1"}},
    };
    for (const wire::Fields& request : wrong)
        EXPECT_EQ(StatusOf("UpdWSSelfReg", request), status::ColumnError)
            << request.last().value.toStdString();
    EXPECT_EQ(Send("GetWSSelfReg", {{"CID", cluster}}).fields, after);
}

TEST_F(SystemTablesTest, DefaultDatesAreExactOrRelative) {
    const wire::Fields dates{
        {"PatExpDate", ""}, {"PatExpOffset", "2Y"}, {"PatPurgeDate", "20300131"}, {"PatPurgeOffset", ""}};
    EXPECT_EQ(StatusOf("UpdPatDefDates", dates), status::Ok);
    EXPECT_EQ(StatusOf("UpdPatDefDates", {{"PatExpDate", "20300101"}}), status::ColumnError)
        << "both of a pair";
    for (const wire::Fields& wrong : QList<wire::Fields>{
             {{"PatPurgeDate", "20300231"}}, {{"PatExpOffset", "2W"}}, {{"PatExpOffset", "Y"}}})
        EXPECT_EQ(StatusOf("UpdPatDefDates", wrong), status::ColumnError);
    Restart();
    EXPECT_EQ(Send("GetPatDefDates").fields, dates);
}

TEST_F(SystemTablesTest, RightsDecide) {
    struct Case {
        const char* read;
        const char* change;
        wire::Fields fields;
    };
    const QList<Case> system{
        {"LstFee", "AddFee", {{"Cd", "X"}, {"Nm", "X"}}},
        {"LstFee", "AddPmt", {{"PNm", "X"}}},
        {"LstFee", "AddPstTp", {{"PstNm", "X"}}},
        {"LstLmt", "AddLmt", {{"C", "X"}, {"N", "X"}}},
        {"GetMsc", "UpdMsc", {{"RP", "Y"}}},
        {"GetZebConfig", "UpdZebConfig", {{"US", "Y"}}},
        {"GetWSSelfReg", "UpdWSSelfReg", {{"SRE", "Y"}}},
        {"GetWSLoginSum", "UpdWSLoginSum", {{"LSE", "Y"}}},
    };
    m_server.SignOnAs("VIEWER");
    for (const Case& request : system) {
        EXPECT_EQ(StatusOf(request.read), status::Ok) << request.read;
        EXPECT_EQ(StatusOf(request.change, request.fields), status::NotAuthorised) << request.change;
    }
    EXPECT_EQ(StatusOf("UpdPatDefDates", {{"PatExpOffset", "1Y"}}), status::NotAuthorised);
    m_server.SignOnAs("CIRC");
    for (const Case& request : system) {
        EXPECT_EQ(StatusOf(request.change, request.fields), status::NotAuthorised) << request.change;
        // Circulation policies choose from that list.
        const bool isChoice = QString(request.read) == "LstFee";
        EXPECT_EQ(StatusOf(request.read), isChoice ? status::Ok : status::NotAuthorised) << request.read;
    }
    EXPECT_EQ(StatusOf("UpdPatDefDates", {{"PatExpOffset", "1Y"}}), status::Ok);
}

} // namespace
} // namespace sysadmin::testing
