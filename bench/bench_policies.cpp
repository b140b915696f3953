// The loan rules of a policy group: listing 1,197 of them, opening their list and their map, changing three
// fields in all of them with one request, checking a whole library's, and making a sample library. Beside the
// change the same one as bare SQL.
#include "support/BenchLibrary.h"

#include "circulation/MatrixMap.h"
#include "circulation/PolicyReader.h"
#include "circulation/frmCirculation_Matrix.h"
#include "circulation/frmCirculation_PolicyDef.h"
#include "comm/CommLibrary.h"
#include "comm/CommandLine.h"
#include "core/Application.h"
#include "core/data/RequestChannel.h"
#include "loan/RuleCheck.h"
#include "server/store/Database.h"

#include <QApplication>
#include <QPushButton>

#include <benchmark/benchmark.h>

using namespace sysadmin;

namespace {

/// A library in which every policy group has a rule for each patron group and item type (27,531 rules), or
/// only the first one has (1,197 besides the others of the sample).
class RuleLibrary {
public:
    explicit RuleLibrary(bool isFull)
        : m_comm(m_prompter, CommandLine{}, [&](const QString&, QString*) { return m_library.Endpoints(); })
        , application(m_comm, m_prompter) {
        const QString problem = m_comm.SignOnDirectly("SYSADMIN", "sample-admin-1");
        if (!problem.isEmpty())
            qFatal("%s", qPrintable(problem));
        const auto database = m_library.Get()->Connect();
        for (const QVariant& id :
             database->FirstColumn("SELECT id FROM circulation_policy_groups ORDER BY id")) {
            if (group.isEmpty())
                group = id.toString();
            Fill(id.toString());
            if (!isFull)
                break;
        }
        const QString cluster =
            database->FirstValue("SELECT cluster_id FROM circulation_policy_groups WHERE id=?", {group})
                .toString();
        application.clusters.Put({{}, "Cluster", "CLUSTER", cluster});
        application.clusters.SetCurrent(cluster);
        application.profile.Load(Channel(), "SYSADMIN");
    }
    RequestChannel& Channel() { return m_comm.GetChannel(); }
    std::unique_ptr<server::Database> Connect() const { return m_library.Get()->Connect(); }
    void Send(const QString& name) {
        if (const qint16 status = Channel().SendRequest(name))
            qFatal("%s: %d", qPrintable(name), status);
    }
    QStringList Clusters() const {
        QStringList ids;
        for (const QVariant& id : Connect()->FirstColumn("SELECT id FROM clusters"))
            ids << id.toString();
        return ids;
    }
    void PutGroup() { Channel().PutField("ID", group); }

    MatrixGroup Matrix() const { return {.id = group, .name = "Group", .mayEdit = true}; }

    QString group;

private:
    void Fill(const QString& id) {
        Channel().PutField("ID", id);
        Send("LstMatSettings");
        QStringList patrons;
        QStringList items;
        while (Channel().NextRecord("P"))
            patrons << Channel().GetField("P");
        while (Channel().NextRecord("II"))
            if (Channel().GetField("I5") == u"N")
                items << Channel().GetField("II");
        // The short loans of the sample become ordinary ones, so that one request takes them all.
        const auto database = Connect();
        const QVariantList of{id.toLongLong()};
        const QString shortLoans = " FROM circulation_item_settings WHERE group_id=? AND is_short_loan='Y'";
        for (const QVariant& item : database->FirstColumn("SELECT item_type_id" + shortLoans, of))
            items << item.toString();
        database->Run("UPDATE circulation_item_settings SET is_short_loan='N' WHERE group_id=?", of);
        Channel().PutField("ID", id);
        Channel().PutField("OV", "Y");
        for (const QString& patron : patrons)
            for (const QString& item : items) {
                Channel().PutField("MS", "1");
                Channel().PutField("MP", patron);
                Channel().PutField("MII", item);
            }
        Channel().PutField("CR", "Y");
        Channel().PutField("LP", "14");
        Send("CopyMat");
    }

    BenchLibrary m_library;
    YesPrompter m_prompter;
    CommLibrary m_comm;

public:
    Application application;
};

RuleLibrary& LibraryOf(benchmark::State& state) {
    static RuleLibrary some(false);
    static RuleLibrary full(true);
    return state.range(0) == 0 ? some : full;
}

void ListEntries(benchmark::State& state) {
    RuleLibrary& library = LibraryOf(state);
    for (auto _ : state) {
        library.PutGroup();
        library.Send("LstMatPatronItem");
        int entries = 0;
        while (library.Channel().NextRecord("MI"))
            ++entries;
        if (entries != 1197)
            state.SkipWithError("wrong number of entries");
    }
}

/// The pages of the policy screen, from the request to the painted list.
void OpenMatrixPage(benchmark::State& state) {
    RuleLibrary& library = LibraryOf(state);
    for (auto _ : state) {
        MatrixPages pages(library.application, nullptr);
        QWidget around;
        QWidget* page = pages.MakePage(MatrixKind::Regular, &around);
        page->resize(900, 600);
        pages.SetGroup(library.Matrix());
        if (!pages.Load() || pages.Entries(MatrixKind::Regular).size() != 1197)
            state.SkipWithError("wrong number of entries");
        page->grab();
    }
}

/// The screen with the list of the policy groups.
void OpenScreen(benchmark::State& state) {
    RuleLibrary& library = LibraryOf(state);
    for (auto _ : state) {
        frmCirculation_PolicyDef screen(library.application, nullptr);
        screen.resize(1000, 700);
        screen.LoadScreen();
        screen.grab();
    }
}

/// The group with the 1,197 rules opened there, until it is painted.
void OpenGroup(benchmark::State& state) {
    RuleLibrary& library = LibraryOf(state);
    frmCirculation_PolicyDef screen(library.application, nullptr);
    screen.resize(1000, 700);
    screen.LoadScreen();
    screen.findChild<ListGrid*>("vsf")->SelectKey(library.group);
    for (auto _ : state) {
        screen.findChild<QPushButton*>("cmdEdit")->click();
        screen.grab();
        if (screen.findChild<ListGrid*>("vsfMatrix")->Model().Rows().size() != 1197)
            state.SkipWithError("wrong number of entries");
        state.PauseTiming();
        screen.findChild<QPushButton*>("cmdCancel")->click();
        state.ResumeTiming();
    }
}

void OpenMap(benchmark::State& state) {
    RuleLibrary& library = LibraryOf(state);
    MatrixMap map("picMatrix", nullptr);
    map.resize(1300, 640);
    for (auto _ : state) {
        MatrixPicture picture;
        picture.Read(library.application, library.Matrix());
        map.SetPictures(&picture, nullptr);
        map.grab();
        map.SetPictures(nullptr, nullptr);
    }
}

void PaintMap(benchmark::State& state) {
    RuleLibrary& library = LibraryOf(state);
    MatrixPicture picture;
    picture.Read(library.application, library.Matrix());
    MatrixMap map("picMatrix", nullptr);
    map.resize(1300, 640);
    map.SetPictures(&picture, nullptr);
    QPixmap paper(map.size());
    for (auto _ : state)
        map.viewport()->render(&paper);
}

void UpdateAll(benchmark::State& state) {
    RuleLibrary& library = LibraryOf(state);
    library.PutGroup();
    library.Send("LstMatPatronItem");
    QList<QStringList> entries;
    while (library.Channel().NextRecord("MI"))
        entries.append({library.Channel().GetField("MI"), library.Channel().GetField("MP"),
                        library.Channel().GetField("MII")});
    int days = 14;
    for (auto _ : state) {
        library.PutGroup();
        for (const QStringList& entry : entries) {
            library.Channel().PutField("MI", entry[0]);
            library.Channel().PutField("MP", entry[1]);
            library.Channel().PutField("MII", entry[2]);
        }
        const QString next = QString::number(days = days == 14 ? 21 : 14);
        library.Channel().PutField("LP", next);
        library.Channel().PutField("RPr", next);
        library.Channel().PutField("G", days == 14 ? "1" : "2");
        library.Send("UpdMulMat");
    }
}

void UpdateAllBare(benchmark::State& state) {
    RuleLibrary& library = LibraryOf(state);
    const auto database = library.Connect();
    int days = 14;
    for (auto _ : state) {
        days = days == 14 ? 21 : 14;
        RunInTransaction(*database, [&] {
            database->Run("UPDATE circulation_matrix SET loan_period=?, renewal_period=?, grace_period=? "
                          "WHERE group_id=?",
                          {QString::number(days), days, days, library.group.toLongLong()});
        });
    }
}

loan::Policy Read(RuleLibrary& library, const QString& cluster) {
    PolicyReader reader(library.Channel(), cluster);
    if (const qint16 status = reader.ReadAll())
        qFatal("the policy could not be read: %d", status);
    return reader.Policy();
}

void CheckAll(benchmark::State& state) {
    RuleLibrary& library = LibraryOf(state);
    QList<loan::Policy> policies;
    for (const QString& cluster : library.Clusters())
        policies.append(Read(library, cluster));
    for (auto _ : state)
        for (const loan::Policy& policy : policies)
            benchmark::DoNotOptimize(loan::CheckRules(policy, QDate(2026, 11, 21)));
}

/// The same with everything that is read for it.
void ReadAndCheckAll(benchmark::State& state) {
    RuleLibrary& library = LibraryOf(state);
    const QStringList clusters = library.Clusters();
    for (auto _ : state)
        for (const QString& cluster : clusters)
            benchmark::DoNotOptimize(loan::CheckRules(Read(library, cluster), QDate(2026, 11, 21)));
}

void MakeSampleLibrary(benchmark::State& state) {
    for (auto _ : state)
        BenchLibrary();
}

BENCHMARK(ListEntries)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(OpenMatrixPage)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(OpenScreen)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(OpenGroup)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(OpenMap)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(PaintMap)->Arg(0)->Unit(benchmark::kMillisecond);
BENCHMARK(UpdateAll)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(UpdateAllBare)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(CheckAll)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadAndCheckAll)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(MakeSampleLibrary)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    const BenchEnvironment environment;
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
