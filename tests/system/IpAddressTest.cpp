#include "system/IpAddress.h"

#include <gtest/gtest.h>

namespace sysadmin {

namespace {

const QString V4 = "0000:0000:0000:0000:0000:ffff:";

QString V4Of(const QString& dotted) {
    return CanonicalIp(IpFamily::V4, dotted.split('.')).value_or("none");
}

QString V6Of(const QString& groups) {
    return CanonicalIp(IpFamily::V6, groups.split(':')).value_or("none");
}

TEST(IpAddressTest, CanonicalFormAndBack) {
    struct Case {
        QString canonical;
        IpFamily family;
        QString shown;
    };
    const QList<Case> cases{
        {V4 + "0a00:0001", IpFamily::V4, "10.0.0.1"},
        {V4 + "0000:0000", IpFamily::V4, "0.0.0.0"},
        {V4 + "ffff:ffff", IpFamily::V4, "255.255.255.255"},
        {V4 + "c0a8:0a0f", IpFamily::V4, "192.168.10.15"},
        {"0000:0000:0000:0000:0000:0000:0000:0000", IpFamily::V6, "0:0:0:0:0:0:0:0"},
        {"ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff", IpFamily::V6, "ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff"},
        {"2001:0db8:0000:00ab:0000:0000:0000:0001", IpFamily::V6, "2001:db8:0:ab:0:0:0:1"},
        // Close to the mapped ones, but not of them.
        {"0000:0000:0000:0000:0000:fffe:0a00:0001", IpFamily::V6, "0:0:0:0:0:fffe:a00:1"},
        {"0001:0000:0000:0000:0000:ffff:0a00:0001", IpFamily::V6, "1:0:0:0:0:ffff:a00:1"},
    };
    for (const Case& one : cases) {
        EXPECT_EQ(FamilyOfIp(one.canonical), one.family);
        EXPECT_EQ(ShowIp(one.canonical), one.shown);
        EXPECT_EQ(CanonicalIp(one.family, IpGroups(one.canonical, one.family)), one.canonical);
        EXPECT_EQ(ParseIp(one.shown), one.canonical);
        EXPECT_TRUE(IsCanonicalIp(one.canonical));
    }
    EXPECT_EQ(V6Of("ABCD:0:0:0:0:0:0:Ef"), "abcd:0000:0000:0000:0000:0000:0000:00ef");
    EXPECT_EQ(V4Of("010.001.00.9"), V4Of("10.1.0.9")) << "decimal, whatever zeros stand in front";
}

TEST(IpAddressTest, BoxesHoldOneGroup) {
    for (const char* good : {"0", "255", "007"})
        EXPECT_TRUE(IsIpGroup(IpFamily::V4, good)) << good;
    for (const char* bad : {"", "256", "-1", "+1", " 1", "1.", "a", "0255", "１"})
        EXPECT_FALSE(IsIpGroup(IpFamily::V4, QString::fromUtf8(bad))) << bad;
    for (const char* good : {"0", "FFFF", "aB9"})
        EXPECT_TRUE(IsIpGroup(IpFamily::V6, good)) << good;
    for (const char* bad : {"", "10000", "g", "0x1", "-1", " a"})
        EXPECT_FALSE(IsIpGroup(IpFamily::V6, bad)) << bad;
    EXPECT_EQ(CanonicalIp(IpFamily::V4, {"1", "2", "3"}), std::nullopt);
    EXPECT_EQ(CanonicalIp(IpFamily::V6, {"1", "2", "3", "4"}), std::nullopt);
    EXPECT_EQ(CanonicalIp(IpFamily::V4, {"1", "2", "3", "256"}), std::nullopt);
}

TEST(IpAddressTest, WholeAddressesAsPeopleWriteThem) {
    EXPECT_EQ(ParseIp(" 10.0.0.1\n"), V4 + "0a00:0001");
    EXPECT_EQ(ParseIp("::"), V6Of("0:0:0:0:0:0:0:0"));
    EXPECT_EQ(ParseIp("::1"), V6Of("0:0:0:0:0:0:0:1"));
    EXPECT_EQ(ParseIp("2001:DB8::ff00:42"), V6Of("2001:db8:0:0:0:0:ff00:42"));
    EXPECT_EQ(ParseIp("::ffff:192.0.2.1"), V4Of("192.0.2.1"));
    for (const char* bad : {"", "10", "10.1", "10.0.0.256", "10.0.0.1.2", "1:2:3", "1::2::3", "fe80::1%eth0",
                            "10.0.0.1/8", "12345::", "host.example.edu"})
        EXPECT_EQ(ParseIp(bad), std::nullopt) << bad;
}

TEST(IpAddressTest, TextOrderIsNumericOrder) {
    const QStringList ascending{V6Of("0:0:0:0:0:0:0:0"),
                                V6Of("0:0:0:0:0:0:ffff:ffff"),
                                V4Of("0.0.0.0"),
                                V4Of("2.0.0.0"),
                                V4Of("10.0.0.9"),
                                V4Of("10.0.0.10"),
                                V4Of("10.0.1.0"),
                                V4Of("255.255.255.255"),
                                V6Of("0:0:0:0:1:0:0:0"),
                                V6Of("2001:db8:0:0:0:0:0:0"),
                                V6Of("ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff")};
    for (qsizetype i = 1; i < ascending.size(); ++i)
        EXPECT_LT(ascending[i - 1], ascending[i]);
}

TEST(IpAddressTest, RangesOverlapWhenTheyShareAnAddress) {
    const auto range = [](const QString& least, const QString& most) {
        return IpRange{*ParseIp(least), *ParseIp(most)};
    };
    const IpRange middle = range("10.0.0.16", "10.0.0.31");
    EXPECT_FALSE(Overlap(middle, range("10.0.0.0", "10.0.0.15"))) << "adjacent below";
    EXPECT_FALSE(Overlap(middle, range("10.0.0.32", "10.0.0.40"))) << "adjacent above";
    EXPECT_TRUE(Overlap(middle, range("10.0.0.0", "10.0.0.16"))) << "touching below";
    EXPECT_TRUE(Overlap(middle, range("10.0.0.31", "10.0.0.40"))) << "touching above";
    EXPECT_TRUE(Overlap(middle, range("10.0.0.20", "10.0.0.21"))) << "inside";
    EXPECT_TRUE(Overlap(middle, range("10.0.0.0", "10.0.0.255"))) << "around";
    EXPECT_TRUE(Overlap(middle, middle));
    EXPECT_TRUE(Overlap(middle, range("::", "ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff")))
        << "an IPv4 range inside an IPv6 one";
    EXPECT_FALSE(Overlap(middle, range("2001:db8::", "2001:db8::ffff")));
    EXPECT_EQ(ShowIpRange(middle), "10.0.0.16 - 10.0.0.31");
}

TEST(IpAddressTest, WhatIsNotCanonicalIsShownAsItIs) {
    for (const char* odd :
         {"", "10.0.0.1", "0000:0000:0000:0000:0000:FFFF:0A00:0001", "0000:0000:0000:0000"}) {
        EXPECT_FALSE(IsCanonicalIp(odd)) << odd;
        EXPECT_EQ(ShowIp(odd), odd);
    }
}

} // namespace

} // namespace sysadmin
