#include "cataloging/DuplicateScore.h"

#include "marc/ReadRecords.h"

#include <gtest/gtest.h>

namespace sysadmin {
namespace {

marc::Record Record(const QString& lines) {
    const marc::Result read = marc::ReadRecords(lines, 1);
    EXPECT_TRUE(read.problems.isEmpty()) << read.problems.join('\n').toStdString();
    return read.records.value(0);
}

const QString Book = "LDR    00000cam a2200000 i 4500\n001    ocm1\n008    250310s2025    nyua\n"
                     "020    $a 978-0-00-000001-9 (hardcover)\n035    $a (X)77\n040    $a DLC $d YDX $e rda\n"
                     "245 14 $a The Owls : $b a study\n650  7 $a Owls $5 NhHF\n690    $a Local";
const QString Same = "LDR    00000nam a2200000 a 4500\n001    77\n008    250310s2024    nyua\n"
                     "020    $a 9780000000019\n040    $a XYZ\n245 10 $a OWLS: $b A Study.\n"
                     "590    $a Signed\n650  7 $a Birds $5 NhHF\n650  0 $a Owls";
const QString Other = "LDR    00000nam a2200000 a 4500\n001    3\n245 10 $a Reeds";

DuplicateProfile Books(const QString& handling) {
    return {
        .recordType = "B",
        .handling = handling,
        .warn = 50,
        .replace = 150,
        .indexes = {{.code = "020N", .definition = "AL=Y S+=az NF=020", .weight = 100},
                    {.code = "TITL", .definition = "FS=Y S+=ab NF=245 LN=250", .weight = 50},
                    {.code = "YEAR", .definition = "FO=7 FL=4 NF=008", .weight = 25}},
        .qualities = {{"a", "_", "DLC", "*", "rda"}, {"a", "*", "*", "YDX", "*"}, {"a", "_", "*", "*", "*"}},
        .mergeFields = {{"590", "*", "*", ""}, {"650", "*", "7", "NhHF"}, {"690", "*", "*", ""}}};
}

QString Outcome(const DuplicateProfile& profile, const QString& incoming, const QString& existing) {
    return ScoreDuplicate(profile, Record(incoming), Record(existing)).outcome.join('|');
}

TEST(DuplicateScoreTest, WeightsOfTheIndexesThatMatchAreAdded) {
    const DuplicateScore score = ScoreDuplicate(Books("R"), Record(Book), Record(Same));
    ASSERT_EQ(score.matches.size(), 3);
    EXPECT_TRUE(score.matches[0].matches);
    EXPECT_EQ(score.matches[0].incoming, QStringList("9780000000019"));
    // What is not filed does not count, nor do case and marks.
    EXPECT_TRUE(score.matches[1].matches);
    EXPECT_EQ(score.matches[1].incoming, QStringList("owls a study"));
    EXPECT_FALSE(score.matches[2].matches);
    EXPECT_EQ(score.matches[2].existing, QStringList("2024"));
    EXPECT_EQ(score.sum, 150);
    EXPECT_EQ(score.verdict, DuplicateScore::Verdict::Duplicate);
    EXPECT_EQ(ScoreDuplicate(Books("R"), Record(Other), Record(Book)).sum, 0);
}

TEST(DuplicateScoreTest, OverridesSayWhereTheIncomingRecordHasIt) {
    DuplicateProfile profile{.recordType = "B", .indexes = {{.code = "BBID", .weight = 100}}};
    const auto sum = [&] { return ScoreDuplicate(profile, Record(Book), Record(Same)).sum; };
    EXPECT_EQ(sum(), 0);
    profile.indexes[0].fieldOverride = "035";
    EXPECT_EQ(sum(), 0); // "(X)77"
    EXPECT_EQ(ScoreDuplicate(profile, Record("035    $a 77"), Record(Same)).sum, 100);
    profile.indexes[0].subfieldOverride = "z";
    EXPECT_EQ(ScoreDuplicate(profile, Record("035    $a 77"), Record(Same)).sum, 0);
    EXPECT_EQ(ScoreDuplicate(profile, Record("035    $z 77"), Record(Same)).sum, 100);
    // Another subfield of the index's own field.
    profile.indexes = {{.code = "TITL", .definition = "S+=a NF=245", .subfieldOverride = "b", .weight = 1}};
    EXPECT_EQ(ScoreDuplicate(profile, Record("245 00 $a x $b Reeds"), Record(Other)).sum, 1);
}

TEST(DuplicateScoreTest, AnIndexTakesWhatItsDefinitionSays) {
    const marc::Record record = Record("650  0 $a Owls $x Marsh\n650  7 $a Birds $2 fast\n651  0 $a North");
    const auto texts = [&](const QString& definition) { return IndexTexts(definition, record).join('|'); };
    EXPECT_EQ(texts("NF=65X"), "owls marsh|birds fast|north");
    EXPECT_EQ(texts("NF=650 S-=2 LN=6"), "owls m|birds");
    EXPECT_EQ(texts("NF=65X S+=a FS=Y"), "owls");
    EXPECT_EQ(texts("NF=65X S+=a LS=Y"), "north");
    EXPECT_EQ(texts("NF=6XX S+=a 2+=7 1+=_"), "birds");
    EXPECT_EQ(texts("NF=6XX S+=a 2-=0"), "birds");
    EXPECT_EQ(texts("NF=* S+=x"), "marsh");
    EXPECT_EQ(texts("IX=B"), "");
}

TEST(DuplicateScoreTest, WhatWouldHappenFollowsFromHandlingAndThresholds) {
    const QString duplicate = "Duplicate: 150 reaches the replace threshold of 150.|";
    EXPECT_EQ(Outcome(Books("A"), Book, Same),
              duplicate + "The incoming record is added, whatever it is a duplicate of.");
    EXPECT_EQ(Outcome(Books("D"), Book, Same),
              duplicate + "The incoming record is not added: it is there already.");
    EXPECT_EQ(Outcome(Books("R"), Book, Same),
              duplicate + "The incoming record replaces the one that is there.");
    const QString lower =
        "The incoming record stands lower in the quality hierarchy (place 3, the one that is "
        "there 1).|The record that is there stays.";
    EXPECT_EQ(Outcome(Books("R"), Same, Book), duplicate + lower);
    EXPECT_EQ(Outcome(Books("M"), Book, Same),
              duplicate + "The incoming record replaces the one that is there.|Fields of the record that is "
                          "there that are kept: 590, 650.");
    EXPECT_EQ(Outcome(Books("B"), Same, Book),
              duplicate + lower + "|Fields of the incoming record that are kept: 590, 650.");

    DuplicateProfile profile = Books("R");
    profile.replace = 151;
    EXPECT_EQ(Outcome(profile, Book, Same), "Possible duplicate: 150 reaches the warn threshold of 50.|The "
                                            "incoming record is added, with a warning.");
    profile.discardsUnmatched = true;
    EXPECT_EQ(Outcome(profile, Other, Same), "No duplicate: 0 reaches no threshold.|The incoming record is "
                                             "discarded: it matches no record that is there.");
    profile.replace.reset();
    profile.warn = 0;
    profile.discardsUnmatched = false;
    EXPECT_EQ(Outcome(profile, Other, Same),
              "No duplicate: 0 reaches no threshold.|Without a replace threshold nothing counts as a "
              "duplicate.|The incoming record is added.");
}

} // namespace
} // namespace sysadmin
