#include "Engines.h"

#include "server/files/Copy.h"
#include "server/files/Import.h"
#include "server/files/LibrarySettings.h"
#include "server/files/TableFile.h"
#include "server/remote/RemoteJobs.h"
#include "support/TestServer.h"

#include <QRandomGenerator>
#include <QSet>

namespace sysadmin::testing {
namespace {

using namespace server;

/// Chosen differences taken over into a library, on each engine.
class SettingsCopyTest : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        if (IsSkipped())
            return;
        m_server = std::make_unique<TestServer>(TestServer::Options{.address = Address()});
        m_form = std::make_unique<FileForm>(m_server->GetLibrary().GetRegistry().GetTables());
    }

    /// What the files of the library say.
    Settings OwnFiles() {
        Settings settings;
        QList<FileProblem> problems;
        LibrarySettings library(m_server->GetDatabase(), *m_form);
        for (const QString& table : m_form->Order())
            settings.insert(table,
                            ReadTableFile(*m_form, table, WriteTableFile(library.Read(table)), problems));
        EXPECT_TRUE(problems.isEmpty());
        return settings;
    }

    /// In words that tell two differences apart.
    static QSet<QString> Words(const QList<Difference>& differences) {
        QSet<QString> words;
        for (const Difference& difference : differences) {
            QString text = QString::number(int(difference.kind)) + difference.table + '/' + difference.key;
            for (const ChangedCell& cell : difference.cells)
                text += '|' + cell.column->name + '=' + cell.before + '>' + cell.after;
            words.insert(text);
        }
        return words;
    }

    /// Takes these over, if nothing stands against it.
    CopyPlan Copy(const Settings& settings, const QList<RecordKey>& chosen) {
        Database& database = m_server->GetDatabase();
        CopyPlan plan;
        RunInTransaction(database, Transaction::Mode::Write, [&] {
            LibrarySettings present(database, *m_form);
            Settings before;
            for (const QString& table : m_form->Order())
                before.insert(table, present.Read(table));
            plan = PlanCopy(*m_form, before, settings, chosen);
            Records records(database, m_form->GetTables(), Author{"TEST", "local", "CpyCfg", "now"});
            Import(records, *m_form, present, {"TEST", m_server->Now()}, plan.comparison);
            return plan.comparison.problems.isEmpty();
        });
        return plan;
    }

    std::unique_ptr<TestServer> m_server;
    std::unique_ptr<FileForm> m_form;
};
INSTANTIATE_ON_ENGINES(SettingsCopyTest);

TEST_P(SettingsCopyTest, WhatIsCopiedIsEqualAfterwardsAndTheRestIsAsItWas) {
    // Another library: some records are missing here, some there, some texts and marks are others.
    QRandomGenerator random(20261124);
    Settings other = OwnFiles();
    EXPECT_TRUE(CompareWith(m_server->GetDatabase(), *m_form, other).differences.isEmpty());
    for (const QString& table : m_form->Order()) {
        SettingsTable& settings = other[table];
        const qsizetype keys = NaturalKey(m_form->Named(table)).value_or(QStringList()).size();
        for (int i = 0; i < 2 && !settings.records.isEmpty() && keys < settings.columns.size(); ++i) {
            SettingsRecord& record = settings.records[random.bounded(settings.records.size())];
            const qsizetype column = keys + random.bounded(settings.columns.size() - keys);
            // What another record has there is a value that the column takes.
            record.cells[column] = settings.records[random.bounded(settings.records.size())].cells[column];
        }
        if (settings.records.size() > 2 && random.bounded(2) == 0)
            settings.records.removeAt(random.bounded(settings.records.size()));
    }
    // Something is missing here, too.
    for (const QVariant& id : m_server->GetDatabase().FirstColumn(
             "SELECT r.id FROM request_forms r WHERE r.system_defined='N' ORDER BY r.id LIMIT 2"))
        RunInTransaction(m_server->GetDatabase(), [&] {
            Records(m_server->GetDatabase(), m_form->GetTables()).Remove("request_forms", id.toLongLong());
        });
    int copied = 0;
    int refused = 0;
    int along = 0;
    // What is chosen by chance may be refused: as many rounds as it takes, within reason.
    const int enough = GetParam() == StoreAddress::Engine::Sqlite ? 5 : 2;
    for (int round = 0; round < 12 && (copied < enough || along == 0); ++round) {
        const QList<Difference> before = CompareWith(m_server->GetDatabase(), *m_form, other).differences;
        if (before.isEmpty())
            break;
        QList<RecordKey> chosen;
        for (int i = 0; i < 3; ++i) {
            const Difference& difference = before[random.bounded(before.size())];
            chosen.append({difference.table, difference.key});
        }
        const CopyPlan plan = Copy(other, chosen);
        const QSet<QString> planned = Words(plan.comparison.differences);
        EXPECT_TRUE(Words(before).contains(planned)) << "something that did not differ is changed";
        for (const RecordKey& record : chosen)
            EXPECT_TRUE(std::any_of(plan.comparison.differences.begin(), plan.comparison.differences.end(),
                                    [&](const Difference& difference) {
                                        return RecordKey{difference.table, difference.key} == record;
                                    }));
        along += int(plan.because.size());
        const bool isCopied = plan.comparison.problems.isEmpty();
        ++(isCopied ? copied : refused);
        const QSet<QString> left = Words(CompareWith(m_server->GetDatabase(), *m_form, other).differences);
        EXPECT_EQ(left, isCopied ? Words(before) - planned : Words(before));
    }
    EXPECT_GT(copied, 1) << copied << " copied, " << refused << " refused";
    EXPECT_GT(along, 0);
}

TEST_P(SettingsCopyTest, AllOfAnotherLibraryMakesThemEqual) {
    const Settings sample = OwnFiles();
    Database& database = m_server->GetDatabase();
    // A policy group with all that belongs to it is not here.
    const QString group = "SELECT MIN(id) FROM circulation_policy_groups";
    RunInTransaction(database, [&] {
        const qint64 id = database.FirstValue(group).toLongLong();
        Records records(database, m_form->GetTables());
        records.RemoveWhere("circulation_matrix", "group_id", id);
        records.Remove("circulation_policy_groups", id);
    });
    const QList<Difference> missing = CompareWith(database, *m_form, sample).differences;
    ASSERT_GT(missing.size(), 20);
    // Whichever part of it is chosen brings the group along; the group alone comes without its parts.
    const CopyPlan one = Copy(sample, {{missing.last().table, missing.last().key}});
    EXPECT_TRUE(one.because.size() >= 1);
    for (const FileProblem& problem : one.comparison.problems)
        ADD_FAILURE() << problem.Sentence().toStdString();
    QList<RecordKey> all;
    for (const Difference& difference : missing)
        all.append({difference.table, difference.key});
    const CopyPlan rest = Copy(sample, all);
    for (const FileProblem& problem : rest.comparison.problems)
        ADD_FAILURE() << problem.Sentence().toStdString();
    EXPECT_TRUE(CompareWith(database, *m_form, sample).differences.isEmpty());
}

TEST(JobMemoryTest, OnlySomeJobsHoldMuchAtATime) {
    RemoteJobs jobs;
    std::vector<std::shared_ptr<void>> shares;
    while (auto share = jobs.LendMemory())
        shares.push_back(share);
    EXPECT_EQ(shares.size(), 4U);
    shares.pop_back();
    EXPECT_TRUE(jobs.LendMemory());
    EXPECT_TRUE(jobs.LendMemory()) << "a share that is dropped is free again";
}

} // namespace
} // namespace sysadmin::testing
