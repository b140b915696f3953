#include "server/files/Import.h"

#include "server/Context.h"
#include "server/Library.h"
#include "server/SecurityHolders.h"
#include "server/SecurityOptions.h"
#include "server/files/Apply.h"
#include "server/store/Database.h"

#include <algorithm>
#include <tuple>

namespace sysadmin::server {

namespace {

/// By whom and when, where operators are concerned: their records show it.
void MarkOperators(Records& records, const ImportedBy& by, const Comparison& comparison) {
    const QString today = StoredTime(by.now).left(10);
    for (const Difference& difference : comparison.differences) {
        if (difference.table != u"operators" || difference.kind == Difference::Kind::Removed)
            continue;
        const auto id = records.IdOfText("operators", "operator_id", difference.name);
        if (!id)
            continue;
        Row row{{"modified_on", today}, {"modified_by", by.operatorId}};
        if (difference.kind == Difference::Kind::Added)
            row.insert("created_on", today);
        records.Update("operators", *id, row);
    }
}

} // namespace

Comparison CompareWith(Database& database, FileForm& form, const Settings& settings) {
    Comparison comparison;
    LibrarySettings library(database, form);
    for (const QString& table : form.Order())
        if (const auto after = settings.constFind(table); after != settings.constEnd())
            CompareTable(form, library.Read(table), *after, comparison);
    return comparison;
}

void Import(Records& records, FileForm& form, LibrarySettings& present, const ImportedBy& by,
            Comparison& comparison) {
    if (!comparison.problems.isEmpty() || comparison.differences.isEmpty())
        return;
    Database& database = records.GetDatabase();
    const auto isHeld = [&] {
        return SecurityHolderCanSignOn(database, ReadSecurityRules(database), by.now);
    };
    const bool wasHeld = isHeld();
    comparison.problems = Apply(records, form, present, comparison);
    if (!comparison.problems.isEmpty())
        return;
    MarkOperators(records, by, comparison);
    records.Finish();
    if (wasHeld && !isHeld())
        comparison.problems.append(
            {"master_profile_operators", 0,
             "Nobody who could sign on would be left with the right to change security settings."});
}

Comparison ImportSettings(const Library& library, Database& database, FileForm& form,
                          const Settings& settings, ImportMode mode) {
    Comparison comparison;
    RunInTransaction(database, Transaction::Mode::Write, [&] {
        LibrarySettings present(database, form);
        comparison = {};
        for (const QString& table : form.Order())
            if (const auto after = settings.constFind(table); after != settings.constEnd())
                CompareTable(form, present.Read(table), *after, comparison);
        const ImportedBy by{"IMPORT", library.Now()};
        Records records(database, form.GetTables(),
                        Author{.operatorId = by.operatorId,
                               .peer = "local",
                               .request = "Import",
                               .time = StoredTime(by.now),
                               .name = "an import of files"});
        Import(records, form, present, by, comparison);
        return comparison.problems.isEmpty() && mode == ImportMode::Do;
    });
    std::stable_sort(comparison.problems.begin(), comparison.problems.end(),
                     [](const FileProblem& one, const FileProblem& other) {
                         return std::tie(one.table, one.line) < std::tie(other.table, other.line);
                     });
    return comparison;
}

} // namespace sysadmin::server
