#include "support/TestServer.h"

#include <gtest/gtest.h>

namespace sysadmin::testing {

namespace {

using wire::Fields;

class ServerProfilesTest : public ::testing::Test {
protected:
    QString IdOf(const QString& list, const QString& name) {
        const Fields fields = server.Send(list).fields;
        for (qsizetype i = 1; i < fields.size(); ++i)
            if (fields[i] == wire::Field{"Nm", name})
                return fields[i - 1].value;
        return {};
    }
    TestServer server;
};

TEST_F(ServerProfilesTest, AChangeTakesEffectAtTheNextRequest) {
    const QString id = IdOf("LstMPrf", "Circulation Settings");
    const auto circ = server.Connect();
    ASSERT_EQ(circ->SignOn("CIRC", SamplePassword("CIRC")), 0);
    EXPECT_EQ(circ->Send("AddVenTp", {{"Cd", "X"}, {"Nm", "X"}}).status, 12);
    ASSERT_EQ(server.StatusOf("UpdMPrf", {{"ASPG", "Y"}, {"Nm", "Circulation Settings"}, {"ID", id}}), 0);
    EXPECT_EQ(circ->Send("AddVenTp", {{"Cd", "X"}, {"Nm", "X"}}).status, 0);
    ASSERT_EQ(server.StatusOf("UpdMPrf",
                              {{"SOI", "CIRC"}, {"OSt", "3"}, {"Nm", "Circulation Settings"}, {"ID", id}}),
              0);
    EXPECT_EQ(circ->Send("AddVenTp", {{"Cd", "Y"}, {"Nm", "Y"}}).status, 12);
}

TEST_F(ServerProfilesTest, TheLastHolderOfTheSecurityRightIsKept) {
    const QString admins = IdOf("LstMPrf", "System Administrators");
    const Fields named{{"Nm", "System Administrators"}, {"ID", admins}};
    EXPECT_EQ(server.StatusOf("UpdMPrf", Fields{{"Sec", "N"}} + named), 53);
    EXPECT_EQ(server.StatusOf("UpdMPrf", Fields{{"SOI", "SYSADMIN"}, {"OSt", "3"}} + named), 53);
    EXPECT_EQ(server.StatusOf("DelMPrf", {{"ID", admins}}), 53);
    EXPECT_EQ(wire::FirstValue(server.Send("SAInit", {{"OI", "SYSADMIN"}}).fields, "Sec"), "Y")
        << "nothing half done";

    ASSERT_EQ(server.StatusOf("AddMPrf", {{"SOI", "VIEWER"}, {"OSt", "1"}, {"Sec", "Y"}, {"Nm", "Deputies"}}),
              0);
    EXPECT_EQ(server.StatusOf("DelMPrf", {{"ID", admins}}), 0);
    EXPECT_EQ(server.StatusOf("LstMPrf"), 12) << "SYSADMIN holds nothing now";
}

TEST_F(ServerProfilesTest, CirculationListsAndPatronIds) {
    const Fields offered = server.Send("GetCrBlocks").fields;
    const QString itemBlock = wire::FirstValue(offered, "AvlItmBlkID");
    const QString patronId = wire::FirstValue(offered, "API");
    ASSERT_FALSE(itemBlock.isEmpty() || patronId.isEmpty());
    const QString id = IdOf("LstCrPrf", "Desk Staff");
    ASSERT_EQ(
        server.StatusOf(
            "UpdCrPrf",
            {{"AllLoc", "Y"}, {"SelItmBlkID", itemBlock}, {"IBSt", "1"}, {"Nm", "Desk Staff"}, {"ID", id}}),
        0);
    EXPECT_EQ(server.StatusOf("UpdPINs", {{"ID", id}, {"SPI", patronId}, {"PSt", "1"}}), 0);
    EXPECT_EQ(server.StatusOf("UpdPINs", {{"ID", "99999"}, {"SPI", patronId}, {"PSt", "1"}}), 5);
    EXPECT_EQ(server.StatusOf("UpdPINs", {{"ID", id}, {"SPI", "99999"}, {"PSt", "1"}}), 5);
    const Fields kept = server.Send("GetCrPrf", {{"ID", id}}).fields;
    EXPECT_EQ(wire::FirstValue(kept, "AllLoc"), "Y");
    EXPECT_EQ(ValuesOf(kept, "SelItmBlkID"), QStringList{itemBlock});
    EXPECT_EQ(ValuesOf(kept, "SPI"), QStringList{patronId});
    EXPECT_FALSE(ValuesOf(kept, "API").contains(patronId));
}

} // namespace

} // namespace sysadmin::testing
