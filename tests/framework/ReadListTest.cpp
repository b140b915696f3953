#include "framework/forms/ReadList.h"
#include "support/ScriptedChannel.h"

#include <gtest/gtest.h>

namespace sysadmin {

namespace {

using Sent = ScriptedChannel::Sent;

TEST(ReadListTest, ListsAreReadStrictlyOrContinuing) {
    ScriptedChannel channel;
    struct Case {
        ListForm form;
        qint16 last;
        QStringList read;
        QList<qint16> reported;
    };
    for (const Case& one :
         {Case{ListForm::Strict, 0, {"2"}, {55}}, Case{ListForm::Strict, 3, {}, {55, 3}},
          Case{ListForm::Continuing, 0, {"1", "2"}, {}}, Case{ListForm::Continuing, 3, {"1"}, {3}}}) {
        channel.sent.clear();
        channel.Answer("LstX", 55, {{"ID", "1"}});
        channel.Answer("LstX", one.last, {{"ID", "2"}});
        QStringList read;
        QList<qint16> reported;
        const qint16 result =
            ReadList(channel,
                     {.request = "LstX",
                      .form = one.form,
                      .putKey = [](RequestChannel& to) { to.PutField("K", "1"); },
                      .report = [&](qint16 status) { reported.append(status); }},
                     {{"ID", [&](RequestChannel& from) { read.append(from.GetField("ID")); }}});
        EXPECT_EQ(result, one.last);
        EXPECT_EQ(read, one.read);
        EXPECT_EQ(reported, one.reported);
        EXPECT_EQ(channel.sent, (QList<Sent>{{"LstX", {{"K", "1"}}}, {"LstX", {{"K", "1"}, {"55", "Y"}}}}));
    }
}

} // namespace

} // namespace sysadmin
