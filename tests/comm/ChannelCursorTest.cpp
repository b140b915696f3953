#include "core/data/RequestChannel.h"
#include "support/ScriptedChannel.h"

#include <gtest/gtest.h>

namespace sysadmin {
namespace {

/// Sends a request that gets this reply, then takes the steps. A step is the tag of the record to go to
/// ("Cd>") or a field to read; what it gives stands behind "=", nothing where there is none.
void Walk(ScriptedChannel& channel, const wire::Fields& reply, const QString& steps) {
    channel.Answer("Lst", 55, reply);
    EXPECT_EQ(channel.SendRequest("Lst"), 55);
    for (const QString& step : steps.split(' ', Qt::SkipEmptyParts)) {
        const QString tag = step.section('=', 0, 0);
        const bool goes = tag.endsWith('>');
        const QString given =
            goes ? (channel.NextRecord(tag.chopped(1)) ? "yes" : "") : channel.GetField(tag);
        EXPECT_EQ(given, step.section('=', 1)) << step.toStdString() << " of " << steps.toStdString();
    }
}

TEST(ChannelCursor, WalksRecordsAndReadsInsideThem) {
    ScriptedChannel channel;
    // Before the first record and after the last one the whole reply is read, inside only the record.
    Walk(channel, {{"Total", "2"}, {"Cd", "A"}, {"Nm", "Alpha"}, {"Cd", "B"}, {"Fl", "Y"}},
         "Nm=Alpha Cd>=yes Cd=A Nm=Alpha Total= Fl= Cd>=yes Nm= Fl=Y Cd>= Cd=A Total=2 Cd>= None>=");
    // Each tag has a place of its own; a record reaches to the next one of its tag.
    Walk(channel, {{"Grp", "1"}, {"Cd", "A"}, {"Cd", "B"}, {"Grp", "2"}, {"Cd", "C"}},
         "Grp>=yes Cd=A Cd>=yes Cd>=yes Cd=B Grp=2 Grp>=yes Grp=2 Cd=C Cd>=yes Cd=C");
    // A reply replaces the one before.
    Walk(channel, {{"Cd", "C"}}, "Cd=C Cd>=yes Cd=C");
    Walk(channel, {}, "Cd= Cd>=");
}

TEST(ChannelCursor, ARecordIsReadByItsTagsAndStaysReadable) {
    ScriptedChannel channel;
    Walk(channel, {{"Total", "2"}, {"Cd", "A"}, {"Nm", "Alpha"}, {"Cd", "B"}}, "");
    const QStringList tags{"Nm", "Total"};
    const auto read = [&](const QStringList& of) {
        const wire::ReceivedRecord record = channel.GetRecord(of);
        QStringList values;
        for (qsizetype i = 0; i < record.Count(); ++i)
            values.append(record.Value(i));
        return values.join('|');
    };
    EXPECT_EQ(read(tags), "Alpha|2") << "of the whole reply";
    channel.NextRecord("Cd");
    const wire::ReceivedRecord first = channel.GetRecord(tags);
    EXPECT_EQ(read(tags), "Alpha|");
    channel.NextRecord("Cd");
    EXPECT_EQ(read(tags), "|");
    EXPECT_EQ(read({"Cd"}), "B") << "other tags";
    EXPECT_EQ(read({}), "");
    Walk(channel, {{"Nm", "Other"}}, "");
    EXPECT_EQ(read(tags), "Other|") << "the same tags, another reply";
    EXPECT_EQ(first.Value(0), "Alpha");
}

TEST(ChannelCursor, FieldsAreSentOnceAndAFlagIsACapitalY) {
    ScriptedChannel channel;
    channel.PutField("K", "1");
    channel.PutField("K", "");
    Walk(channel, {}, "");
    Walk(channel, {{"A", "Y"}, {"B", "y"}, {"C", "N"}, {"D", "YY"}}, "");
    EXPECT_EQ(channel.sent[0].fields, (wire::Fields{{"K", "1"}, {"K", ""}}));
    EXPECT_TRUE(channel.sent[1].fields.isEmpty());
    EXPECT_TRUE(channel.GetFlag("A"));
    EXPECT_FALSE(channel.GetFlag("B") || channel.GetFlag("C") || channel.GetFlag("D") ||
                 channel.GetFlag("E"));
}

} // namespace
} // namespace sysadmin
