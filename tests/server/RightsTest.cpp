#include "support/TestServer.h"

#include <gtest/gtest.h>

namespace sysadmin::testing {
namespace {

using namespace server;

struct Expectation {
    QString operatorId;
    QString rights; ///< tags that are "Y" in the replies to the start-up requests
    bool reads = false;
    bool writes = false;
    bool readsSecurity = false;
};

TEST(RightsTest, EachSampleOperatorMayDoWhatTheProfileSays) {
    const QList<Expectation> expectations{
        {"SYSADMIN", "ASPG ASPGV CatPG CatPGV CrcPG CrcPGV Sec SecV ChgPwd SysDf SysDfV EditPatGrp PatGrpV",
         true, true, true},
        {"VIEWER", "ASPGV CatPGV CrcPGV SecV SysDfV PatGrpV", true, false, true},
        {"CIRC", "CrcPG CrcPGV", false, false, false},
        {"GUEST", "", false, false, false},
    };
    TestServer server;
    for (const Expectation& expected : expectations) {
        SCOPED_TRACE(expected.operatorId.toStdString());
        server.SignOnAs(expected.operatorId);
        QStringList held;
        for (const char* name : {"SAInit", "CheckMasterProfile"}) {
            const wire::Reply reply = server.Send(name, {{"OI", expected.operatorId.toLower()}});
            EXPECT_EQ(reply.status, status::Ok);
            for (const wire::Field& field : reply.fields)
                if (field.value == "Y" && field.tag != "PRB")
                    held << field.tag;
        }
        EXPECT_EQ(held.join(' '), expected.rights);
        EXPECT_EQ(server.StatusOf("SAInit", {{"OI", "SOMEBODY"}}), status::NotAuthorised);

        const qint16 read = expected.reads ? status::Ok : status::NotAuthorised;
        const qint16 write = expected.writes ? status::Ok : status::NotAuthorised;
        EXPECT_EQ(server.StatusOf("LstVenTp"), read);
        EXPECT_EQ(server.StatusOf("GetBsCur"), read);
        EXPECT_EQ(server.StatusOf("GetSecOptions"),
                  expected.readsSecurity ? status::Ok : status::NotAuthorised);
        EXPECT_EQ(server.StatusOf("AddVenTp", {{"Cd", "ZINE"}, {"Nm", "Zines"}}), write);
        EXPECT_EQ(server.StatusOf("DelVenTp", {{"Cd", "ZINE"}}), write);
        EXPECT_EQ(server.StatusOf("UpdBsCur", {{"CtNm", "United States"}}), write);
        EXPECT_EQ(server.StatusOf("UpdSecOptions", {{"PMC", "3"}}), write);
        EXPECT_EQ(server.StatusOf("LstLoc"), status::Ok) << "a list from which every screen chooses";
    }
}

TEST(RightsTest, ProfilesAddUpAndChangesHoldAtOnce) {
    TestServer administration;
    const auto circ = administration.Connect();
    ASSERT_EQ(circ->SignOn("CIRC", SamplePassword("CIRC")), status::Ok);
    EXPECT_EQ(circ->Send("LstVenTp").status, status::NotAuthorised);
    const wire::Reply added = administration.Send(
        "AddMPrf", {{"SOI", "CIRC"}, {"OSt", "1"}, {"ASPGV", "Y"}, {"Nm", "Acquisitions readers"}});
    ASSERT_EQ(added.status, status::Ok);
    EXPECT_EQ(circ->Send("LstVenTp").status, status::Ok);
    EXPECT_EQ(circ->Send("DelVenTp", {{"Cd", "MAP"}}).status, status::NotAuthorised);
    EXPECT_EQ(wire::FirstValue(circ->Send("SAInit", {{"OI", "CIRC"}}).fields, "CrcPG"), "Y");

    const QString profile = wire::FirstValue(added.fields, "ID");
    EXPECT_EQ(administration.StatusOf("UpdMPrf", {{"ID", profile}, {"ASPG", "Y"}}), status::Ok);
    EXPECT_EQ(circ->Send("DelVenTp", {{"Cd", "MAP"}}).status, status::Ok);
    EXPECT_EQ(administration.StatusOf("UpdMPrf", {{"ID", profile}, {"SOI", "CIRC"}, {"OSt", "3"}}),
              status::Ok);
    EXPECT_EQ(circ->Send("LstVenTp").status, status::NotAuthorised);
}

} // namespace
} // namespace sysadmin::testing
