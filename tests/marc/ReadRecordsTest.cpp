#include "marc/ReadRecords.h"

#include <QBuffer>
#include <QFile>
#include <QRandomGenerator>

#include <gtest/gtest.h>

namespace sysadmin::marc {

namespace {

QByteArray Data(const QString& name) {
    QFile file(SYSADMIN_SOURCE_DIR "/tests/data/" + name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
    return file.readAll();
}

Result ReadBytes(const QByteArray& bytes, int limit = MostRecords) {
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    return ReadRecords(buffer, limit);
}

/// The lines of all records, without the places of the leader that say how it was stored.
QString Text(const Result& result) {
    QString text;
    for (Record record : result.records) {
        record.leader.replace(0, 5, "00000").replace(9, 1, "a").replace(12, 5, "00000");
        text += ToText(record) + '\n';
    }
    return text;
}

TEST(ReadRecordsTest, EveryFormGivesTheSameRecords) {
    const Result lines = ReadBytes(Data("records.txt"));
    EXPECT_EQ(lines.problems, QStringList());
    ASSERT_EQ(lines.records.size(), 7);
    const Record& third = lines.records[2];
    EXPECT_EQ(third.number, 3);
    EXPECT_EQ(third.Title(), "Reki severa : ocherki /");
    ASSERT_TRUE(third.First("880"));
    EXPECT_EQ(third.First("880")->First('6'), "245-02/(N");
    EXPECT_EQ(third.First("880")->indicator1, '1');
    for (const char* name : {"records.xml", "records.mrc", "records-marc8.mrc"}) {
        const Result read = ReadBytes(Data(name));
        EXPECT_EQ(read.problems, QStringList()) << name;
        EXPECT_EQ(Text(read), Text(lines)) << name;
        EXPECT_FALSE(read.hasMore);
    }
    // What was written as lines reads as it was.
    EXPECT_EQ(Text(ReadRecords(Text(lines))), Text(lines));
}

TEST(ReadRecordsTest, ReadsNoMoreThanItsLimit) {
    for (const char* name : {"records.txt", "records.xml", "records.mrc"}) {
        const Result two = ReadBytes(Data(name), 2);
        EXPECT_EQ(two.records.size(), 2) << name;
        EXPECT_EQ(two.problems, QStringList()) << name;
        EXPECT_TRUE(two.hasMore) << name;
        const Result all = ReadBytes(Data(name), 7);
        EXPECT_EQ(all.records.size(), 7) << name;
        EXPECT_FALSE(all.hasMore) << name;
    }
}

TEST(ReadRecordsTest, LinesAsPeopleWriteThem) {
    struct Case {
        const char* line;
        const char* read;
    };
    for (const Case& one :
         {Case{"=245  10$aTitle$brest", "245 10 $a Title $b rest"},
          {"=245  1\\$aCosts {dollar}5", "245 1  $a Costs {dollar}5"},
          {"=008  a\\\\b", "008    a  b"},
          {"245 10 $a Costs $5 or $c5 $c rest", "245 10 $a Costs $5 or $c5 $c rest"},
          {"245 10 |a Title |b rest", "245 10 $a Title $b rest"},
          {"24510‡aTitle‡brest", "245 10 $a Title $b rest"},
          {"500 $a No indicators", "500    $a No indicators"},
          {"650 #0 $a Cats", "650  0 $a Cats"},
          {"520    $a Goes on\n       in the next line", "520    $a Goes on in the next line"},
          {"500    $a  $b x", "500    $a  $b x"},
          {"500    $a a {dollar}b c", "500    $a a {dollar}b c"}}) {
        const Result result = ReadRecords(QString(one.line));
        ASSERT_EQ(result.records.size(), 1) << one.line << result.problems.join(' ').toStdString();
        EXPECT_EQ(ToText(result.records[0]), QString(one.read) + '\n');
    }
    // A leader begins a record, as an empty line does; XML may stand in other elements.
    EXPECT_EQ(ReadRecords(QString("LDR  x\n001 1\nLDR  y\n001 2\n\n\n001 3")).records.size(), 3);
    EXPECT_EQ(ReadRecords(QString("<a><record><header/><m:record xmlns:m='u'><m:controlfield tag='001'>1"
                                  "</m:controlfield></m:record></record></a>"))
                  .records.size(),
              1);
}

TEST(ReadRecordsTest, SaysWhichRecordIsBrokenAndReadsTheOthers) {
    const QByteArray good = Data("records.mrc");
    const qsizetype first = good.indexOf('\x1d') + 1;
    const auto changed = [&](qsizetype at, const QByteArray& to) {
        return QByteArray(good).replace(at, to.size(), to);
    };
    struct Case {
        QByteArray bytes;
        const char* problem;
        int others;
    };

    for (const Case& one :
         {Case{changed(0, "00020"),
               "Record 1 (at byte 0): Its leader says that it is 20 bytes long, but it has ", 6},
          {changed(0, "x"), "Record 1 (at byte 0): Its leader does not begin with its length.", 6},
          {changed(12, "00030"), "Record 1 (at byte 0): Its directory and its fields do not fit together (",
           6},
          {changed(30, "9999"), "Record 1 (at byte 0): Its directory and its fields do not fit together (",
           6},
          {changed(24, "0\x01"
                       "1"),
           "Record 1 (at byte 0): ", 6},
          {changed(first - 3, "\xff"), "Record 1 (at byte 0): It is marked as UTF-8 (leader/09), but is not",
           6},
          {good + "00", "Record 8 (at byte ", 7},
          {Data("records-marc8.mrc")
               .replace("Marlowe, Ines $x", "")
               .replace("24.90 EUR", "24.90 \xff\xfe\xaf"),
           "Record 2 (at byte 1,071): It is marked as MARC-8 (leader/09), but is not", 6},
          {Data("records.mrc").replace("cam a2200193 i", "cam  2200193 i"),
           "Record 2 (at byte 1,071): It is marked as MARC-8 (leader/09), but is in UTF-8.", 6},
          {"001 1\n\n24 10 $a x\n500 $a y\n\n001 3",
           "Record 2 (line 3): Line 3: \"24 10 $a x\" does not begin with", 2},
          {"001 1\n\n245 10\n\n001 3", "Record 2 (line 3): Line 3: field 245 has no subfield behind its ind",
           2},
          {"001 1\n\n001 \xff\n\n001 3", "Record 2 (line 3): Line 3: it is not in UTF-8.", 2},
          {"<c><record/><record><controlfield tag='001'/></record></c>",
           "Record 1 (line 1): There are no fields.", 1},
          {"<c><record><datafield tag='245' ind1='12'/></record></c>",
           "Record 1 (line 1): Field 245 has an indicator that is no character.", 0},
          {"<c><record><datafield tag='245'/></record></c>", "Record 1 (line 1): Field 245 has no subfields.",
           0},
          {"<c><record><controlfield tag='001'>1</controlfield></record>\n<b></c>",
           "Record 2 (line 2): The XML is broken: ", 1},
          {"<c><record><controlfield tag='001'>1</controlfield></record>\n",
           "Record 2 (line 2): The XML ends too", 1},
          {"<html/>", "Record 1 (line 1): The XML has no \"record\" element.", 0}}) {
        const Result result = ReadBytes(one.bytes);
        ASSERT_EQ(result.problems.size(), 1) << one.problem << result.problems.join('\n').toStdString();
        EXPECT_TRUE(result.problems[0].startsWith(one.problem)) << result.problems[0].toStdString();
        EXPECT_EQ(result.records.size(), one.others) << one.problem;
    }
    EXPECT_TRUE(ReadBytes({}).records.isEmpty());
    EXPECT_EQ(ReadBytes(QByteArray(6'000'000, 'x') + "\x1e").problems.size(), 1);
    EXPECT_EQ(ReadBytes("<c>" + QByteArray(6'000'000, 'x')).problems.size(), 1);
    EXPECT_EQ(ReadBytes("001 1\x1f" + QByteArray(6'000'000, 'x')).problems.size(), 1);
}

/// Damages bytes of the files in many ways; nothing may crash, and what is read is whole.
TEST(ReadRecordsTest, DamagedFilesAreReadAsFarAsTheyGo) {
    QRandomGenerator random(20260114);
    for (const char* name : {"records.txt", "records.xml", "records.mrc", "records-marc8.mrc"}) {
        const QByteArray whole = Data(name);
        for (int round = 0; round < 300; ++round) {
            QByteArray bytes = whole;
            for (int change = random.bounded(1, 8); change > 0; --change) {
                if (bytes.isEmpty())
                    break;
                const qsizetype at = random.bounded(int(bytes.size()));
                switch (random.bounded(5)) {
                case 0:
                    bytes.remove(at, random.bounded(1, 40));
                    break;
                case 1:
                    bytes.insert(at, bytes.mid(random.bounded(int(bytes.size())), random.bounded(1, 200)));
                    break;
                case 2:
                    bytes.truncate(qMax<qsizetype>(at, 1));
                    break;
                case 3:
                    bytes[at] = "\x1d\x1e\x1f\x1b<>&$09"[random.bounded(10)];
                    break;
                default:
                    bytes[at] = char(random.bounded(256));
                }
            }
            const Result result = ReadBytes(bytes);
            for (const Record& record : result.records) {
                ASSERT_FALSE(record.fields.isEmpty());
                for (const Field& field : record.fields)
                    ASSERT_TRUE(field.tag.size() == 3 && (field.IsControl() || !field.subfields.isEmpty()));
            }
        }
    }
}

} // namespace

} // namespace sysadmin::marc
