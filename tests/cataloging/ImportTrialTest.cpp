#include "cataloging/ImportTrial.h"

#include "cataloging/DuplicateSearch.h"
#include "cataloging/ImportTrialSteps.h"
#include "cataloging/SameRecords.h"
#include "marc/ReadRecords.h"
#include "support/Words.h"
#include "wire/DuplicateDetection.h"

#include <QFile>
#include <gtest/gtest.h>

// Imports reckoned by hand (trials.txt): a rule, records, and what would become of them.
namespace sysadmin {

namespace {

/// A trial as it stands in the file.
struct WrittenTrial {
    QString title;
    int line = 0;
    ImportTrialRule rule;
    TriedLibrary library;
    bool isDoubtful = false; // matches are possible ones only
    QString libraryRecords;
    QString records;
    QStringList expected;
};

TriedPlace PlaceIn(const QStringList& words) {
    return {words.value(0), words.value(1), words.value(2), words.value(3)};
}

void Take(WrittenTrial& trial, const QStringList& words) {
    const QString word = words.first();
    const QStringList rest = words.mid(1);
    ImportTrialRule& rule = trial.rule;
    static const QHash<QString, bool ImportTrialRule::*> flags{
        {"existing", &ImportTrialRule::usesExistingBibs}, {"copy-852", &ImportTrialRule::copies852},
        {"copy-856", &ImportTrialRule::copies856},        {"one-po", &ImportTrialRule::onePoPerBib},
        {"approve", &ImportTrialRule::approves},          {"suppress", &ImportTrialRule::suppresses},
        {"keep", &ImportTrialRule::keepsSuppression},     {"discard", &ImportTrialRule::discardsBibs}};
    static const QHash<QString, QHash<QString, QString> ImportTrialRule::*> settings{
        {"location", &ImportTrialRule::location},
        {"multiple", &ImportTrialRule::multiple},
        {"copies", &ImportTrialRule::copyNumbers},
        {"order", &ImportTrialRule::orders},
        {"chosen", &ImportTrialRule::chosen}};
    if (const auto flag = flags.find(word); flag != flags.end())
        rule.*(*flag) = true;
    else if (const auto part = settings.find(word); part != settings.end())
        for (const QString& pair : rest)
            (rule.*(*part)).insert(pair.section('=', 0, 0), pair.section('=', 1));
    else if (word == u"doubt")
        trial.isDoubtful = true;
    else if (word == u"mode")
        rule.mode = rest[0].toInt();
    else if (word == u"handling")
        rule.bibHandling = rest[0];
    else if (word == u"authority")
        rule.authorityHandling = rest[0];
    else if (word == u"owner")
        rule.owningLibrary = rest[0];
    else if (word == u"status")
        rule.statuses.append(rest[0]);
    else if (word == u"media" || word == u"sensitize") {
        (word == u"media" ? rule.magneticMedia : rule.sensitize) = PlaceIn(rest.mid(1));
        (word == u"media" ? rule.magneticValue : rule.sensitizeValue) = rest[0];
    } else if (word == u"item-type")
        rule.itemTypes.append(PlaceIn(rest));
    else if (word == u"barcode")
        rule.barcodes.append(PlaceIn(rest));
    else if (word == u"map")
        rule.mappings.append({rest[0], rest[2], rest[1], rest[3], rest.value(4), rest.value(5)});
    else if (word == u"place") {
        QList<CallNumberHierarchy>& all = trial.library.hierarchies;
        if (all.isEmpty() || all.last().name != rest[0])
            all.append(CallNumberHierarchy{.name = rest[0]});
        all.last().places.append({rest[1], rest[2], rest[3], rest[4], rest[5]});
    } else if (word == u"fund")
        trial.library.funds.append(rest);
    else if (word == u"ledger")
        trial.library.ledgers.append(rest);
    else if (word == u"mismatch")
        trial.library.checkFund = [rest](const QString& fund, const QString& ledger, const QString&) {
            return fund + '/' + ledger == rest[0] ? rest[1] : QString();
        };
    else
        ADD_FAILURE() << "line " << trial.line << ": what is " << word.toStdString() << "?";
}

QList<WrittenTrial> ReadTrials() {
    QFile file(SYSADMIN_SOURCE_DIR "/tests/cataloging/trials.txt");
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    QList<WrittenTrial> trials;
    WrittenTrial common; // what all begin with
    QString* block = nullptr;
    int number = 0;
    for (const QString& line : QString::fromUtf8(file.readAll()).split('\n')) {
        ++number;
        if (line.startsWith("trial ")) {
            trials.append(common);
            trials.last().title = line.mid(6);
            trials.last().line = number;
        } else if (line == u"records" || line == u"library") {
            block = line == u"records" ? &trials.last().records : &trials.last().libraryRecords;
        } else if (line == u"end") {
            block = nullptr;
        } else if (block) {
            *block += line + '\n';
        } else if (line.startsWith("> ")) {
            trials.last().expected.append(line.mid(2));
        } else if (!line.trimmed().isEmpty() && !line.startsWith('#')) {
            Take(trials.isEmpty() ? common : trials.last(), testing::SplitWords(line));
        }
    }
    return trials;
}

} // namespace

TEST(ImportTrialTest, ComesToWhatWasReckonedByHand) {
    QSet<int> modes;
    for (const WrittenTrial& trial : ReadTrials()) {
        SCOPED_TRACE("trials.txt:" + std::to_string(trial.line) + " " + trial.title.toStdString());
        modes.insert(trial.rule.mode);
        SameRecords same;
        for (const marc::Record& record : marc::ReadRecords(trial.libraryRecords).records)
            same.Add(record, record.Title());
        TriedLibrary library = trial.library;
        library.findSame = [&](const marc::Record& record) {
            const QString name = same.Find(record);
            return trial.isDoubtful ? TriedMatch{.possible = name} : TriedMatch{.same = name};
        };
        const marc::Result read = marc::ReadRecords(trial.records);
        EXPECT_TRUE(read.problems.isEmpty()) << read.problems.join('\n').toStdString();
        QStringList lines;
        for (const TriedRecord& record : TryImport(read.records, trial.rule, library))
            for (const auto& [what, text] : TrialInWords(record, trial.rule))
                lines.append(QString("%1 %2: %3").arg(record.number).arg(what, text));
        EXPECT_EQ(lines.join('\n').toStdString(), trial.expected.join('\n').toStdString());
    }
    EXPECT_EQ(modes.size(), wire::bulkimport::LoadModes().size());
}

TEST(ImportTrialTest, AmountsAreFoundInWhateverRecordsHold) {
    const QList<std::pair<QString, QString>> amounts{{"12.50", "12.50"},
                                                     {"$12.5", "12.50"},
                                                     {"12,50 EUR", "12.50"},
                                                     {"1,234.00", "1234.00"},
                                                     {"1.234,5", "1234.50"},
                                                     {"24", "24.00"},
                                                     {"1,234", "1234.00"},
                                                     {"USD 7.", "7.00"},
                                                     {"(pbk.) : $9.95", "9.95"},
                                                     {"gift", "none"},
                                                     {"", "none"},
                                                     {".", "none"},
                                                     {"12345678901234567890", "12345678901234567890.00"}};
    for (const auto& [text, amount] : amounts)
        EXPECT_EQ(importtrial::AmountIn(text).value_or("none").toStdString(), amount.toStdString())
            << text.toStdString();
}

TEST(ImportTrialTest, RecordsAreTheSameByAnyIdentifier) {
    const auto record = [](const QString& text) {
        return marc::ReadRecords("245 10 $a Other\n" + text).records[0];
    };
    SameRecords same;
    same.Add(record("001    77\n003    LIB\n010    $a   98012345 \n020    $a 0-306-40615-2 (pbk.)\n022    $a "
                    "0378-5955\n"
                    "035    $a (OC)55\n"),
             "Owls");
    for (const char* text : {"001    77\n003    lib\n", "010    $a 98012345\n", "020    $a 9780306406157\n",
                             "020    $a 0306406152\n", "022    $a 0378-5955 (print)\n", "035    $a (oc)55\n"})
        EXPECT_TRUE(same.Find(record(text)).startsWith("Owls (")) << text;
    for (const char* text : {"001    77\n003    OTHER\n", "001    77\n", "020    $a 9780306406158\n",
                             "020    $a none\n", "035    $a 55\n", "022    $z 0378-5955\n"})
        EXPECT_EQ(same.Find(record(text)), QString()) << text;
    // An authority record has a number of its own.
    EXPECT_EQ(
        same.Find(marc::ReadRecords("LDR    00000nz  a2200000n  4500\n001    77\n003    LIB\n").records[0]),
        QString());
}

TEST(ImportTrialTest, AProfileSaysWhichRecordIsTheNearest) {
    const auto record = [](const QString& number, const QString& title) {
        return marc::ReadRecords("001    " + number + "\n245 10 $a " + title + "\n").records[0];
    };
    DuplicateProfile profile{.recordType = "B", .warn = 50, .replace = 150};
    profile.indexes = {
        {.code = wire::duplicates::RecordIdCode("B"), .name = "Record ID", .weight = 100},
        {.code = "T", .name = "Title", .definition = "245a", .fieldOverride = "245", .weight = 60}};
    const auto find = [&](const DuplicateProfile& by) {
        DuplicateSearch search(by, std::nullopt);
        search.Add(record("1", "Herons"), "Herons");
        search.Add(record("2", "Owls"), "Owls");
        return search.Find(record("2", "Owls"));
    };
    const TriedMatch nearest = find(profile);
    EXPECT_TRUE(nearest.same.isEmpty() || nearest.same.startsWith("Owls (score 160"))
        << nearest.same.toStdString();
    EXPECT_TRUE((nearest.same + nearest.possible).startsWith("Owls (score 1"))
        << (nearest.same + nearest.possible).toStdString();
    profile.replace = 100;
    EXPECT_TRUE(find(profile).same.startsWith("Owls"));
    profile.replace = 500;
    EXPECT_TRUE(find(profile).possible.startsWith("Owls"));
    profile.warn = 400;
    EXPECT_EQ(find(profile).possible, QString());
    // By no index: by identifiers.
    profile.indexes.clear();
    EXPECT_EQ(find(profile).same, "Owls (control number 2)");
}

} // namespace sysadmin
