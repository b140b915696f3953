#include "wire/MatchKeys.h"

#include <gtest/gtest.h>

namespace sysadmin::wire::matching {
namespace {

TEST(MatchKeysTest, WhatIsTheSameBecomesTheSame) {
    const struct {
        const char* normalisation;
        const char* text;
        const char* expected;
    } cases[] = {
        {"N", "  (UNIV)ocm 1 ", "(UNIV)ocm 1"},
        {"T", "L'\u00c9t\u00e9 -- \"Stra\u00dfe\", 2. ed.", "l ete stra\u00dfe 2 ed"},
        {"T", " .,; ", ""},
        {"S", "0-00-000002-5 (paper)", "9780000000026"},
        {"S", "978-0-00-000002-6", "9780000000026"},
        {"S", "043942089x", "9780439420891"},
        {"S", "1234-567X", "1234567X"},
        {"S", "paper", ""},
        {"L", "   85000002 ", "85000002"},
        {"L", "n  85-2", "n85000002"},
        {"L", "75-425165//r75", "75425165"},
        {"C", "(UNIV)ocm00012305 ", "12305"},
        {"C", "00100", "100"},
        {"C", "(UNIV)", ""},
    };
    for (const auto& one : cases)
        EXPECT_EQ(Normalised(QString::fromUtf8(one.text), one.normalisation), QString::fromUtf8(one.expected))
            << one.normalisation << " " << one.text;
    EXPECT_TRUE(IsNormalisation("C"));
    EXPECT_FALSE(IsNormalisation(""));
    EXPECT_FALSE(IsNormalisation("NT"));
}

} // namespace
} // namespace sysadmin::wire::matching
