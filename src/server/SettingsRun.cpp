#include "server/SettingsRun.h"

#include "server/HistoryFile.h"
#include "server/Library.h"
#include "server/ServerOptions.h"
#include "server/files/DifferenceText.h"
#include "server/files/Import.h"
#include "server/files/SettingsFolder.h"
#include "server/store/Database.h"

#include <QFileInfo>

namespace sysadmin::server {

namespace {

constexpr int Failed = 2;

class Run {
public:
    Run(const ServerOptions& options, const RunOutput& output, const Library& library)
        : m_options(options)
        , m_output(output)
        , m_library(library)
        , m_form(library.GetRegistry().GetTables())
        , m_database(library.Connect()) {}

    int Do();

private:
    int Complain(const QString& line) {
        m_output.complain(line);
        return Failed;
    }
    bool ChooseTables();
    int Export();
    int ExportHistory();
    int CompareOrImport();
    void Tell(const Comparison& comparison);

    const ServerOptions& m_options;
    const RunOutput& m_output;
    const Library& m_library;
    FileForm m_form;
    std::unique_ptr<Database> m_database;
    QStringList m_tables;
};

/// Which tables it is about; false when one is not known.
bool Run::ChooseTables() {
    if (m_options.only.isEmpty())
        m_tables = m_form.Order();
    for (const QString& name : m_options.only) {
        if (!m_form.Order().contains(name)) {
            m_output.complain("--only: no settings are called \"" + name +
                              "\"; the names are those of the files that --export writes, without \".csv\".");
            return false;
        }
        m_tables << m_form.WithParts(name);
    }
    return true;
}

int Run::Export() {
    QString error;
    RunInTransaction(*m_database, Transaction::Mode::Read, [&] {
        error = WriteFolder(*m_database, m_form, m_tables, m_options.folder);
        return false; // nothing is to be kept
    });
    if (!error.isEmpty())
        return Complain(error);
    m_output.tell(QString("The settings are in %1: %2 files.").arg(m_options.folder).arg(m_tables.size()));
    return 0;
}

void Run::Tell(const Comparison& comparison) {
    for (const Difference& difference : comparison.differences)
        for (const QString& line : LinesOf(difference))
            m_output.tell(line);
    m_output.tell(comparison.differences.isEmpty() ? "Nothing differs." : SumOf(comparison));
}

int Run::CompareOrImport() {
    FolderSettings files = ReadFolder(m_form, m_tables, m_options.folder);
    if (!files.error.isEmpty())
        return Complain(files.error);
    for (const QString& name : m_options.only)
        if (!files.tables.contains(name))
            return Complain("There is no file " + name + ".csv in " + m_options.folder + '.');
    for (const QString& name : files.ignored)
        m_output.tell(name + ": left out, as it holds no settings.");
    Comparison comparison;
    comparison.problems = files.problems;
    if (comparison.problems.isEmpty() && m_options.task == ServerOptions::Task::Compare)
        RunInTransaction(*m_database, Transaction::Mode::Read, [&] {
            comparison = CompareWith(*m_database, m_form, files.tables);
            return false; // nothing is to be kept
        });
    else if (comparison.problems.isEmpty())
        comparison = ImportSettings(m_library, *m_database, m_form, files.tables,
                                    m_options.dryRun ? ImportMode::Try : ImportMode::Do);
    for (const FileProblem& problem : comparison.problems)
        m_output.complain(problem.Sentence());
    if (m_options.task == ServerOptions::Task::Compare) {
        if (!files.problems.isEmpty())
            return Complain("The files could not be compared.");
        Tell(comparison);
        return comparison.differences.isEmpty() && comparison.problems.isEmpty() ? 0 : 1;
    }
    if (!comparison.problems.isEmpty()) {
        m_output.complain("Nothing was imported.");
        return 1;
    }
    Tell(comparison);
    for (const QString& line : MissingSecrets(m_form, comparison))
        m_output.tell(line);
    if (!comparison.differences.isEmpty())
        m_output.tell(m_options.dryRun ? "Nothing was imported: this was a dry run." : "Imported.");
    return 0;
}

int Run::ExportHistory() {
    qint64 records = 0;
    const QString error =
        WriteHistoryFile(*m_database, m_library.GetRegistry().GetTables(), m_options.historyFile, &records);
    if (!error.isEmpty())
        return Complain(error);
    m_output.tell(
        QString("The history is in %1: %2 changes of records.").arg(m_options.historyFile).arg(records));
    return 0;
}

int Run::Do() {
    if (m_options.task == ServerOptions::Task::ExportHistory)
        return ExportHistory();
    if (!ChooseTables())
        return Failed;
    return m_options.task == ServerOptions::Task::Export ? Export() : CompareOrImport();
}

} // namespace

int RunSettings(const ServerOptions& options, const RunOutput& output) {
    const bool needsFolder =
        options.task == ServerOptions::Task::Compare || options.task == ServerOptions::Task::Import;
    if (needsFolder && !QFileInfo(options.folder).isDir()) {
        output.complain("There is no folder " + options.folder +
                        " with files of settings; --export makes one.");
        return Failed;
    }
    LibraryOptions opening;
    opening.address = options.library;
    opening.patience = std::chrono::seconds(50);
    if (options.task == ServerOptions::Task::Import && !options.dryRun)
        opening.whenMissing = LibraryOptions::WhenMissing::MakeEmpty;
    QString error;
    const auto library = Library::Open(opening, &error);
    if (!library) {
        output.complain(error);
        return Failed;
    }
    if (!library->FirstPassword().isEmpty())
        output.tell("A new library was made. Sign on as SYSADMIN with the password " +
                    library->FirstPassword() + " ; it must be changed at once.");
    try {
        return Run(options, output, *library).Do();
    } catch (const StoreError& failure) {
        output.complain(options.library.Describe() + ": " + failure.Text());
        return Failed;
    }
}

} // namespace sysadmin::server
