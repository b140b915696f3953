// The settings as files: a library with 27,531 loan rules written to a folder, compared with it, and made
// again out of it. Beside it what the bare engine takes to read and to write so many rules.
#include "server/Library.h"
#include "server/files/Import.h"
#include "server/files/LibrarySettings.h"
#include "server/files/SettingsFolder.h"
#include "server/store/Database.h"
#include "server/store/Records.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

using namespace sysadmin;
using namespace sysadmin::server;

namespace {

const QString Rules = "circulation_matrix";
constexpr int RuleCount = 27'531;

/// The library in which every policy group has a rule for each patron group and item type, and its files.
class FilesLibrary {
public:
    FilesLibrary()
        : m_library(Open(m_place.filePath("library")))
        , database(m_library->Connect())
        , form(m_library->GetRegistry().GetTables()) {
        // As in a library of one cluster: every policy group meets every patron group.
        RunInTransaction(*database, [&] {
            Records records(*database, form.GetTables());
            const auto ids = [&](const QString& sql) { return database->FirstColumn(sql); };
            const QVariant cluster = database->FirstValue("SELECT MIN(id) FROM clusters");
            for (const char* table : {"circulation_policy_groups", "patron_groups"})
                for (const QVariant& id : ids(QString("SELECT id FROM %1").arg(table)))
                    database->Run(QString("UPDATE OR IGNORE %1 SET cluster_id=? WHERE id=?").arg(table),
                                  {cluster, id});
            database->Run("UPDATE circulation_item_settings SET is_short_loan='N'");
            const auto entry =
                *records.Find(Rules, database->FirstValue("SELECT MIN(id) FROM " + Rules).toLongLong());
            database->Run("DELETE FROM " + Rules);
            for (const QVariant& group : ids("SELECT id FROM circulation_policy_groups"))
                for (const QVariant& patrons : ids("SELECT id FROM patron_groups ORDER BY id LIMIT 21"))
                    for (const QVariant& type : ids("SELECT id FROM item_types")) {
                        Row row = entry;
                        row["group_id"] = group;
                        row["patron_group_id"] = patrons;
                        row["item_type_id"] = type;
                        records.Insert(Rules, row);
                    }
        });
        if (Count() != RuleCount)
            qFatal("There are %d rules.", Count());
        Write();
        full = ReadFolder(form, form.Order(), folder.path());
        if (!full.error.isEmpty() || !full.problems.isEmpty())
            qFatal("The files are not in order.");
        without = full.tables;
        without[Rules].records.clear();
    }
    int Count() const { return database->FirstValue("SELECT COUNT(*) FROM " + Rules).toInt(); }
    void Write() {
        RunInTransaction(*database, Transaction::Mode::Read, [&] {
            if (const QString error = WriteFolder(*database, form, form.Order(), folder.path());
                !error.isEmpty())
                qFatal("%s", qPrintable(error));
            return false;
        });
    }
    void Import(const Settings& settings) {
        const Comparison done = ImportSettings(*m_library, *database, form, settings, server::ImportMode::Do);
        if (!done.problems.isEmpty())
            qFatal("%s", qPrintable(done.problems.first().Sentence()));
    }

    QTemporaryDir folder;

private:
    static std::shared_ptr<const server::Library> Open(const QString& place) {
        LibraryOptions options;
        options.address = StoreAddress::InDirectory(place);
        options.whenMissing = LibraryOptions::WhenMissing::MakeSample;
        options.hashCost = HashCost::Least();
        QString error;
        const auto library = server::Library::Open(options, &error);
        if (!library)
            qFatal("%s", qPrintable(error));
        return library;
    }

    QTemporaryDir m_place;
    std::shared_ptr<const server::Library> m_library;

public:
    std::unique_ptr<Database> database;
    FileForm form;
    FolderSettings full;
    Settings without; ///< the same without rules
};

FilesLibrary& TheLibrary() {
    static FilesLibrary library;
    return library;
}

void ExportAll(benchmark::State& state) {
    FilesLibrary& library = TheLibrary();
    for (auto _ : state)
        library.Write();
}

void ReadRulesBare(benchmark::State& state) {
    FilesLibrary& library = TheLibrary();
    for (auto _ : state)
        library.database->Each("SELECT * FROM " + Rules + " ORDER BY id", {}, [](const ResultRow& row) {
            const int columns = row.Count();
            for (int i = 0; i < columns; ++i)
                benchmark::DoNotOptimize(row.value(i).toString());
        });
}

/// Reading the files, and finding that nothing differs.
void CompareAll(benchmark::State& state) {
    FilesLibrary& library = TheLibrary();
    for (auto _ : state) {
        const FolderSettings read = ReadFolder(library.form, library.form.Order(), library.folder.path());
        RunInTransaction(*library.database, Transaction::Mode::Read, [&] {
            if (!CompareWith(*library.database, library.form, read.tables).differences.isEmpty())
                state.SkipWithError("something differs");
            return false;
        });
    }
}

/// Reading the files, and adding all rules with their history.
void ImportAll(benchmark::State& state) {
    FilesLibrary& library = TheLibrary();
    for (auto _ : state) {
        state.PauseTiming();
        library.Import(library.without);
        state.ResumeTiming();
        library.Import(ReadFolder(library.form, library.form.Order(), library.folder.path()).tables);
        if (library.Count() != RuleCount)
            state.SkipWithError("wrong number of rules");
    }
}

/// The rules with the columns that are not kept by the server alone, for adding them again.
QList<QVariantList> RowsOf(FilesLibrary& library, const QStringList& columns) {
    QList<QVariantList> rows;
    library.database->Each("SELECT " + columns.join(", ") + " FROM " + Rules, {}, [&](const ResultRow& row) {
        QVariantList values;
        for (int i = 0; i < columns.size(); ++i)
            values << row.value(i);
        rows << values;
    });
    return rows;
}

QStringList ColumnsOf(FilesLibrary& library) {
    QStringList columns;
    for (const Column& column : library.form.Named(Rules).columns)
        columns << column.name;
    return columns;
}

/// All rules added in one request: the records, the history of each, the register of changes.
void AddRulesInOneRequest(benchmark::State& state) {
    FilesLibrary& library = TheLibrary();
    QList<const Column*> columns;
    for (const Column& column : library.form.Named(Rules).columns)
        columns << &column;
    const QList<QVariantList> rows = RowsOf(library, ColumnsOf(library));
    for (auto _ : state)
        RunInTransaction(*library.database, Transaction::Mode::Write, [&] {
            state.PauseTiming();
            library.database->Run("DELETE FROM " + Rules);
            state.ResumeTiming();
            Records records(*library.database, library.form.GetTables(),
                            Author{"ANNA", "local", "Test", "2026-11-22T10:00:00.000Z", "Anna", 1});
            Records::Inserter inserter(records, Rules, columns);
            for (const QVariantList& row : rows)
                inserter.Add(row);
            records.Finish();
            return false;
        });
}

void InsertRulesBare(benchmark::State& state) {
    FilesLibrary& library = TheLibrary();
    const QStringList columns = ColumnsOf(library);
    const QList<QVariantList> rows = RowsOf(library, columns);
    const QString sql = "INSERT INTO " + Rules + " (" + columns.join(", ") + ") VALUES (" +
                        QString("?, ").repeated(columns.size()).chopped(2) + ')';
    for (auto _ : state)
        RunInTransaction(*library.database, Transaction::Mode::Write, [&] {
            state.PauseTiming();
            library.database->Run("DELETE FROM " + Rules);
            state.ResumeTiming();
            for (const QVariantList& row : rows)
                library.database->RunInsert(sql, row);
            return false;
        });
}

BENCHMARK(ExportAll)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadRulesBare)->Unit(benchmark::kMillisecond);
BENCHMARK(CompareAll)->Unit(benchmark::kMillisecond);
BENCHMARK(ImportAll)->Unit(benchmark::kMillisecond);
BENCHMARK(AddRulesInOneRequest)->Unit(benchmark::kMillisecond);
BENCHMARK(InsertRulesBare)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
