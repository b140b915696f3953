#include "server/Library.h"
#include "server/files/DifferenceText.h"
#include "server/files/Import.h"
#include "server/files/LibrarySettings.h"
#include "server/files/TableFile.h"
#include "server/remote/RemoteJobs.h"
#include "server/store/Database.h"
#include "server/subjects/ConfigurationWork.h"
#include "server/subjects/Registrations.h"
#include "wire/Csv.h"
#include "wire/TextPieces.h"

namespace sysadmin::server {

namespace {

constexpr std::chrono::seconds Longest{300};

// What a request prepares.

struct Reached : Prepared {
    std::optional<RemoteResult> result; ///< none while the job goes on
};

using DoWork = std::function<void(ConfigurationWork&, Database&, const Patience&)>;

std::shared_ptr<Prepared> Follow(Database& database, const Library& library, const Requester& requester,
                                 const wire::Fields& request, const QString& what, const DoWork& doWork) {
    const QString key = QStringList{QString::number(requester.session), "settings", what}.join('\n');
    const QString goesOn = wire::FirstValue(request, "55");
    auto reached = std::make_shared<Reached>();
    if (goesOn.isEmpty())
        library.Jobs().Cancel(key);
    std::shared_ptr<void> share = goesOn.isEmpty() ? library.Jobs().LendMemory() : nullptr;
    if (goesOn.isEmpty() && !share) {
        reached->result = RemoteResult{.outcome = Outcome::Busy};
        return reached;
    }
    reached->result = library.Jobs().Follow(key, requester.id, Longest, goesOn, [&] {
        const auto work = std::make_shared<ConfigurationWork>(library, Rights::Of(database, requester.row),
                                                              std::move(share));
        return [work, request, doWork](const Patience& patience) {
            RemoteResult result{.outcome = Outcome::Connected};
            try {
                work->ReadFiles(request);
                const auto own = work->library.Connect();
                doWork(*work, *own, patience);
                result.brought = work;
            } catch (const StoreError& error) {
                result.outcome = error.GetKind() == StoreError::Kind::Busy ? Outcome::Busy : Outcome::Closed;
            }
            if (patience.IsOver())
                result.outcome = patience.Reason();
            return result;
        };
    });
    return reached;
}

/// Answers by what the job found; while it goes on, or when it failed, with the status for that.
Answer AnswerBy(Context& context, const std::function<void(ConfigurationWork&, ReplyFields&)>& put) {
    const auto* reached = dynamic_cast<const Reached*>(context.prepared);
    if (!reached)
        return {status::NotFound};
    if (!reached->result)
        return {status::Continues};
    auto* work = dynamic_cast<ConfigurationWork*>(reached->result->brought.get());
    switch (reached->result->outcome) {
    case Outcome::Connected:
        break;
    case Outcome::Busy:
        return {status::CommunicationsFailure};
    case Outcome::Cancelled:
        return {};
    default:
        return {status::TableError};
    }
    Answer answer;
    if (work)
        put(*work, answer.fields);
    return answer;
}

// Replies.

constexpr qsizetype MostCells = 100'000; // of records that are added or removed

void PutTable(const ConfigurationWork& work, const QString& name, ReplyFields& reply) {
    const QString whole = work.places.WholeOf(name);
    Put(reply, "T", name);
    Put(reply, "W", work.places.WordOf(name));
    Put(reply, "O", whole == name ? QString() : whole);
    for (const Column* column : FileColumns(work.form.Named(name))) {
        Put(reply, "CC", FileHeading(*column));
        Put(reply, "CG", work.places.TagOf(name, column->name));
        Put(reply, "CF", column->type == ColumnType::Flag ? "Y" : "N");
    }
}

QString LetterOf(Difference::Kind kind) {
    return kind == Difference::Kind::Added ? "A" : kind == Difference::Kind::Changed ? "C" : "R";
}

/// How many parts the key of a table's records has.
qsizetype PartsOfKey(const FileForm& form, const Table& table) {
    qsizetype parts = 0;
    for (const QString& name : NaturalKey(table).value_or(QStringList())) {
        const Column* column = table.Find(name);
        const auto target = column ? form.GetTables().constFind(column->target) : form.GetTables().constEnd();
        parts += target == form.GetTables().constEnd() ? 1 : PartsOfKey(form, *target);
    }
    return parts;
}

/// The record of which this one is a part, or itself: key and name.
void PutWhole(ConfigurationWork& work, const Difference& difference, ReplyFields& reply) {
    const QString whole = work.places.WholeOf(difference.table);
    QString key = difference.key;
    QString name = difference.name;
    if (whole != difference.table) {
        const Table& table = work.form.Named(difference.table);
        const Column* owner = table.Find(table.owner);
        const qsizetype parts = PartsOfKey(work.form, work.form.Named(whole));
        const auto begin = [&](const QString& text, const QChar separator) {
            return text.split(separator).mid(0, parts).join(separator);
        };
        key = owner && parts > 0
                  ? begin(work.form.KeyOf(owner->target, difference.owner), keyparts::Separator)
                  : QString();
        // A cell names a record by several texts where it takes several.
        name = difference.owner;
        if (owner && PartsOfKey(work.form, work.form.Named(owner->target)) > 1)
            if (const auto records = wire::ParseCsv(difference.owner); !records.isEmpty())
                name = records.first().fields.mid(0, parts).join(" / ");
    }
    Put(reply, "U", key);
    Put(reply, "V", name);
}

void PutDifferences(ConfigurationWork& work, const Comparison& comparison, ReplyFields& reply) {
    QString table;
    qsizetype cells = 0;
    for (const Difference& difference : comparison.differences) {
        if (difference.table != table)
            PutTable(work, difference.table, reply);
        table = difference.table;
        Put(reply, "D", LetterOf(difference.kind));
        Put(reply, "K", difference.key);
        Put(reply, "N", difference.name);
        PutWhole(work, difference, reply);
        Put(reply, "L", QString::number(difference.line));
        if (const QString because = work.plan.because.value({difference.table, difference.key});
            !because.isEmpty())
            Put(reply, "Y", because);
        if (difference.kind != Difference::Kind::Changed && cells + difference.cells.size() > MostCells)
            continue;
        for (const ChangedCell& cell : difference.cells) {
            if (cell.before == cell.after) // of one that is added or removed: it says nothing
                continue;
            ++cells;
            Put(reply, "C", FileHeading(*cell.column));
            Put(reply, "B", cell.before);
            Put(reply, "A", cell.after);
        }
    }
}

void PutProblems(const QList<FileProblem>& problems, ReplyFields& reply) {
    for (const FileProblem& problem : problems) {
        Put(reply, "PT", problem.table);
        Put(reply, "PL", QString::number(problem.line));
        Put(reply, "PX", problem.text);
    }
}

void PutNotices(const ConfigurationWork& work, ReplyFields& reply) {
    for (const QString& file : work.leftOut)
        Put(reply, "LO", file);
    if (!work.notSeen.isEmpty())
        Put(reply, "NV", QString::number(work.notSeen.size()));
}

// The requests.

std::shared_ptr<Prepared> PrepareExport(Database& database, const Library& library,
                                        const Requester& requester, const wire::Fields& request) {
    return Follow(database, library, requester, request, "export",
                  [](ConfigurationWork& work, Database& own, const Patience& patience) {
                      RunInTransaction(own, Transaction::Mode::Read, [&] {
                          LibrarySettings present(own, work.form);
                          for (const QString& table : work.form.Order()) {
                              if (patience.IsOver())
                                  break;
                              if (work.rights.MayView(work.places.AreaOf(table)))
                                  work.files.insert(table,
                                                    QString::fromUtf8(WriteTableFile(present.Read(table))));
                              else
                                  work.notSeen.insert(table);
                          }
                          return false;
                      });
                  });
}

Answer Export(Context& context, const wire::Fields&) {
    return AnswerBy(context, [](ConfigurationWork& work, ReplyFields& reply) {
        for (auto file = work.files.begin(); file != work.files.end(); ++file) {
            Put(reply, "F", file.key());
            for (const QString& piece : wire::TextPieces(*file))
                Put(reply, "X", piece);
        }
        PutNotices(work, reply);
    });
}

std::shared_ptr<Prepared> PrepareCompare(Database& database, const Library& library,
                                         const Requester& requester, const wire::Fields& request) {
    return Follow(database, library, requester, request, "compare",
                  [](ConfigurationWork& work, Database& own, const Patience& patience) {
                      if (!work.fileProblems.isEmpty())
                          return;
                      RunInTransaction(own, Transaction::Mode::Read, [&] {
                          LibrarySettings present(own, work.form);
                          for (const QString& table : work.form.Order())
                              if (const auto after = work.settings.constFind(table);
                                  after != work.settings.constEnd() && !patience.IsOver())
                                  CompareTable(work.form, present.Read(table), *after, work.plan.comparison);
                          return false;
                      });
                  });
}

Answer Compare(Context& context, const wire::Fields&) {
    return AnswerBy(context, [](ConfigurationWork& work, ReplyFields& reply) {
        PutDifferences(work, work.plan.comparison, reply);
        PutProblems(work.fileProblems + work.plan.comparison.problems, reply);
        PutNotices(work, reply);
    });
}

std::shared_ptr<Prepared> PrepareTry(Database& database, const Library& library, const Requester& requester,
                                     const wire::Fields& request) {
    return Follow(database, library, requester, request, "try",
                  [requester](ConfigurationWork& work, Database& own, const Patience& patience) {
                      if (!work.fileProblems.isEmpty())
                          return;
                      RunInTransaction(own, Transaction::Mode::Write, [&] {
                          LibrarySettings present(own, work.form);
                          work.plan = PlanCopy(work.form, work.Present(present), work.settings, work.chosen);
                          work.AddRightProblems();
                          const QDateTime now = work.library.Now();
                          Records records(own, work.form.GetTables(),
                                          Author{requester.id, requester.peer, "CpyCfg", StoredTime(now)});
                          if (!patience.IsOver())
                              Import(records, work.form, present, {requester.id, now}, work.plan.comparison);
                          return false; // it was a try
                      });
                  });
}

Answer Try(Context& context, const wire::Fields&) {
    return AnswerBy(context, [](ConfigurationWork& work, ReplyFields& reply) {
        PutDifferences(work, work.plan.comparison, reply);
        PutProblems(work.fileProblems + work.plan.comparison.problems, reply);
        for (const QString& line : MissingSecrets(work.form, work.plan.comparison))
            Put(reply, "MS", line);
        Put(reply, "H", DigestOf(work.plan.comparison));
    });
}

Answer Copy(Context& context, const wire::Fields& request) {
    ConfigurationWork work(context.library, context.rights, nullptr);
    work.ReadFiles(request);
    if (!work.fileProblems.isEmpty())
        return {status::ColumnError};
    LibrarySettings present(context.database, work.form);
    work.plan = PlanCopy(work.form, work.Present(present), work.settings, work.chosen);
    Comparison& comparison = work.plan.comparison;
    work.AddRightProblems();
    if (!comparison.problems.isEmpty() || DigestOf(comparison) != wire::FirstValue(request, "H"))
        return {status::RecordChanged};
    Import(context.records, work.form, present, {context.requester.id, context.now}, comparison);
    if (!comparison.problems.isEmpty())
        return {status::RecordChanged};
    QStringList tables;
    for (const Difference& difference : comparison.differences)
        for (const QString& table : {difference.table, work.places.WholeOf(difference.table)})
            if (!tables.contains(table))
                tables << table;
    Answer answer;
    Put(answer.fields, "Q", QString::number(comparison.differences.size()));
    for (const QString& word : context.library.GetRegistry().WordsOf(tables))
        Put(answer.fields, "W", word);
    return answer;
}

} // namespace

void RegisterConfigurations(Registry& registry) {
    registry.AddRequest(
        {.name = "ExpCfg", .area = Area::Security, .handler = Export, .prepare = PrepareExport});
    registry.AddRequest(
        {.name = "CmpCfg", .area = Area::Security, .handler = Compare, .prepare = PrepareCompare});
    registry.AddRequest({.name = "TryCfg",
                         .area = Area::Security,
                         .access = Access::Edit,
                         .handler = Try,
                         .prepare = PrepareTry});
    registry.AddChange("CpyCfg", Area::Security, Copy);
}

} // namespace sysadmin::server
