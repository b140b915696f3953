#include "core/data/RequestChannel.h"
#include "support/ScriptedChannel.h"

#include <gtest/gtest.h>

namespace sysadmin {
namespace {

class ChannelCursorTest : public ::testing::Test {
protected:
    void Load(const wire::Fields& reply, qint16 status = 0) {
        channel.Answer("Lst", status, reply);
        EXPECT_EQ(channel.SendRequest("Lst"), status);
    }

    ScriptedChannel channel;
};

TEST_F(ChannelCursorTest, WalksRecordsAndReadsInsideThem) {
    Load({{"Total", "2"}, {"Cd", "A"}, {"Nm", "Alpha"}, {"Cd", "B"}, {"Fl", "Y"}});
    EXPECT_EQ(channel.GetField("Nm"), "Alpha") << "before the first record the whole reply is read";
    ASSERT_TRUE(channel.NextRecord("Cd"));
    EXPECT_EQ(channel.GetField("Cd"), "A");
    EXPECT_EQ(channel.GetField("Nm"), "Alpha");
    EXPECT_EQ(channel.GetField("Total"), QString()) << "it stands before the record";
    EXPECT_FALSE(channel.GetFlag("Fl")) << "it is the next one's";
    ASSERT_TRUE(channel.NextRecord("Cd"));
    EXPECT_EQ(channel.GetField("Nm"), QString()) << "not the record's before";
    EXPECT_TRUE(channel.GetFlag("Fl"));
    EXPECT_FALSE(channel.NextRecord("Cd"));
    EXPECT_EQ(channel.GetField("Cd"), "A") << "after the last one the whole reply is read again";
    EXPECT_EQ(channel.GetField("Total"), "2");
    EXPECT_FALSE(channel.NextRecord("Cd"));
    EXPECT_FALSE(channel.NextRecord("None"));
}

TEST_F(ChannelCursorTest, EachTagHasAPlaceOfItsOwn) {
    Load({{"Grp", "1"}, {"Cd", "A"}, {"Cd", "B"}, {"Grp", "2"}, {"Cd", "C"}});
    ASSERT_TRUE(channel.NextRecord("Grp"));
    EXPECT_EQ(channel.GetField("Cd"), "A");
    ASSERT_TRUE(channel.NextRecord("Cd"));
    ASSERT_TRUE(channel.NextRecord("Cd"));
    EXPECT_EQ(channel.GetField("Cd"), "B");
    EXPECT_EQ(channel.GetField("Grp"), "2") << "the record of B reaches to the next one of its tag";
    ASSERT_TRUE(channel.NextRecord("Grp"));
    EXPECT_EQ(channel.GetField("Grp"), "2");
    EXPECT_EQ(channel.GetField("Cd"), "C");
    ASSERT_TRUE(channel.NextRecord("Cd"));
    EXPECT_EQ(channel.GetField("Cd"), "C");
}

TEST_F(ChannelCursorTest, AReplyReplacesTheOneBeforeAndFieldsAreSentOnce) {
    channel.PutField("K", "1");
    channel.PutField("K", "");
    Load({{"Cd", "A"}, {"Cd", "B"}});
    EXPECT_TRUE(channel.NextRecord("Cd"));
    EXPECT_TRUE(channel.NextRecord("Cd"));
    Load({{"Cd", "C"}}, 55);
    EXPECT_EQ(channel.GetField("Cd"), "C");
    EXPECT_TRUE(channel.NextRecord("Cd"));
    EXPECT_EQ(channel.GetField("Cd"), "C");
    Load({}, 1);
    EXPECT_EQ(channel.GetField("Cd"), QString());
    EXPECT_FALSE(channel.NextRecord("Cd"));
    EXPECT_EQ(channel.sent[0].fields, (wire::Fields{{"K", "1"}, {"K", ""}}));
    EXPECT_TRUE(channel.sent[1].fields.isEmpty()) << "sent with the first request only";
}

TEST_F(ChannelCursorTest, AFlagIsACapitalY) {
    Load({{"A", "Y"}, {"B", "y"}, {"C", "N"}, {"D", "YY"}});
    EXPECT_TRUE(channel.GetFlag("A"));
    for (const char* tag : {"B", "C", "D", "E"})
        EXPECT_FALSE(channel.GetFlag(tag)) << tag;
}

} // namespace
} // namespace sysadmin
