#include "server/subjects/HeadingFilters.h"

#include "server/store/Database.h"
#include "server/subjects/Registrations.h"
#include "wire/HeadingFilters.h"
#include "wire/ItemText.h"
#include "wire/SearchIndexes.h"

namespace sysadmin::server {

namespace headings = wire::headings;
namespace indexes = wire::indexes;

namespace {

const QString Filters = "heading_filters";

bool IsOfHeadings(const QString& definition) {
    return wire::ItemText(definition).Value(indexes::key::Kind) == indexes::kind::Headings;
}

/// No entry that says nothing, and none that another one has said already.
bool AreEntriesInOrder(const QList<Row>& rows) {
    QList<headings::LeftOut> entries;
    for (const Row& row : rows)
        entries.append({row["kind"].toString(), row["vocabulary"].toString(), row["source"].toString()});
    for (qsizetype i = 0; i < entries.size(); ++i) {
        if (!headings::IsInOrder(entries[i]))
            return false;
        for (qsizetype j = 0; j < entries.size(); ++j)
            if (i != j && headings::Covers(entries[i], entries[j]))
                return false;
    }
    return !entries.isEmpty();
}

Children LeftOut() {
    return {
        .table = "heading_filter_entries",
        .owner = "filter_id",
        .fields = {SubjectField::Text("HK", "kind", 2).Required().Checked(headings::IsKind),
                   SubjectField::Text("HV", "vocabulary", 1).Required().Checked(headings::IsVocabulary),
                   SubjectField::Text("HS", "source", headings::SourceLength).Checked(headings::IsSource)},
        .ordered = true,
        .check = AreEntriesInOrder};
}

/// A filter is for an index of headings that has none yet.
qint16 CheckFilter(Context& context, const wire::Fields&, const Row& before, Row& after) {
    const qint64 index = after["index_id"].toLongLong();
    if (!before.isEmpty() && before["index_id"].toLongLong() == index)
        return status::Ok;
    if (!IsOfHeadings(context.records.Find("heading_indexes", index)->value("definition").toString()))
        return status::ColumnError;
    return context.records.Count(Filters, "index_id", index) > 0 ? status::DuplicateRecord : status::Ok;
}

/// "AvlHdFlt": the indexes that can have a filter.
Answer ListFilterableIndexes(Context& context, const wire::Fields&) {
    Answer answer;
    context.database.Each("SELECT code, name, definition FROM heading_indexes ORDER BY code", {},
                          [&](const ResultRow& row) {
                              if (!IsOfHeadings(row.value(2).toString()))
                                  return;
                              Put(answer.fields, "HC", row.value(0).toString());
                              Put(answer.fields, "HN", row.value(1).toString());
                              Put(answer.fields, "Ix", row.value(2).toString());
                          });
    return answer;
}

} // namespace

void AddLeftOut(Context& context, qint64 index, ReplyFields& reply) {
    if (const auto filter = context.records.IdWhere(Filters, "index_id", index))
        PutChildren(context, LeftOut(), *filter, reply);
}

void RegisterHeadingFilters(Registry& registry) {
    registry.AddSubject({
        .table = Filters,
        .requests = {.list = "LstHdFlt",
                     .get = "GetHdFlt",
                     .add = "AddHdFlt",
                     .update = "UpdHdFlt",
                     .remove = "DelHdFlt"},
        .fields = {SubjectField::Reference("HC", "index_id", "heading_indexes", OnRemoval::RemoveToo)
                       .Carrying("code")
                       .Required()
                       .InList(),
                   SubjectField::Joined("HN", "index_id", "heading_indexes", "name").OnlyInList()},
        .children = {LeftOut()},
        .addReply = {"ID"},
        .checkPut = CheckFilter,
    });
    registry.AddTable({.name = Filters, .uniqueSets = {{"index_id"}}});
    registry.AddRead("AvlHdFlt", Area::System, ListFilterableIndexes);
}

} // namespace sysadmin::server
