#include "server/store/Database.h"
#include "server/subjects/MatchRows.h"
#include "server/subjects/Registrations.h"
#include "server/subjects/SearchIndexes.h"
#include "wire/MatchKeys.h"

#include <algorithm>

namespace sysadmin::server {

namespace {

const QString Matches = "holdings_hook_matches";

/// No match twice. What it is searched in counts: one number may stand in two indexes.
bool IsEachOnce(const QList<Row>& rows) {
    QSet<QString> seen;
    for (const Row& row : rows) {
        QStringList parts;
        for (const char* column : {"field", "subfields", "index_code"})
            parts.append(row[column].toString());
        seen.insert(Fold(parts.join('\n')));
    }
    return seen.size() == rows.size();
}

/// Where a record of another database is looked for in this library, first to last.
Children MatchesOfHook() {
    Children rows = MatchRows(Matches, "hook_id", {"HF", "HS", "HN"});
    rows.fields.insert(2, SubjectField::Text("HX", "index_code", wire::indexes::CodeLength).Required());
    rows.check = IsEachOnce;
    return rows;
}

/// There is a match, and the index of each is there and no composite one: what is searched is one text.
qint16 CheckMatches(Context& context, const wire::Fields&, qint64 id, bool) {
    const auto codes =
        context.database.FirstColumn("SELECT index_code FROM holdings_hook_matches WHERE hook_id=?", {id});
    const bool areThere = std::all_of(codes.begin(), codes.end(), [&](const QVariant& code) {
        return HasIndex(context, code.toString()) &&
               !context.records.IdOfText("composite_indexes", "code", code.toString());
    });
    return !codes.isEmpty() && areThere ? status::Ok : status::ColumnError;
}

} // namespace

Children MatchRows(const QString& table, const QString& owner, const MatchTags& tags) {
    return {.table = table,
            .owner = owner,
            .fields =
                {SubjectField::Text(tags.field, "field", 3).Required().Checked(wire::indexes::IsFieldPattern),
                 SubjectField::Text(tags.subfields, "subfields", wire::indexes::SubfieldsLength)
                     .Checked(wire::indexes::AreSubfields),
                 SubjectField::Text(tags.normalisation, "normalisation", 1)
                     .Default(wire::matching::normal::AsItStands)
                     .Checked(wire::matching::IsNormalisation)},
            .ordered = true,
            .check = [](const QList<Row>& rows) {
                QSet<QString> seen;
                for (const Row& row : rows)
                    seen.insert(row["field"].toString() + '\n' + row["subfields"].toString());
                return seen.size() == rows.size();
            }};
}

void RegisterHoldingsHooks(Registry& registry) {
    registry.AddSubject({
        .table = "holdings_hooks",
        .requests =
            {.list = "LstHook", .get = "GetHook", .add = "AddHook", .update = "UpdHook", .remove = "DelHook"},
        .fields =
            {SubjectField::Text("DNm", "name", NameLength).Required().Unique(status::DuplicateName).InList()},
        .key = "DID",
        .usedBy = {{"search_databases", "hook_id", status::InUse}},
        .children = {MatchesOfHook()},
        .addReply = {"DID"},
        .order = {"name"},
        .afterPut = CheckMatches,
    });
}

} // namespace sysadmin::server
