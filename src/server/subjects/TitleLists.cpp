#include "wire/TitleLists.h"
#include "server/store/Database.h"
#include "server/subjects/Registrations.h"
#include "server/subjects/SearchIndexes.h"

namespace sysadmin::server {

namespace titles = wire::titles;

namespace {

const QString Columns = "title_list_columns";

/// The indexes that display a text with what they find.
QList<UsedBy> Displays() {
    QList<UsedBy> uses;
    for (const IndexFamily& family : IndexFamilies())
        for (const char* column : {"first_display_id", "second_display_id", "third_display_id"})
            uses.append({family.table, column, status::InUse});
    return uses;
}

bool IsListKind(const QString& value) {
    return value == titles::Staff || value == titles::PublicCatalogue;
}

bool IsEachTextOnce(const QList<Row>& rows) {
    QSet<qint64> texts;
    for (const Row& row : rows)
        texts.insert(row["text_id"].toLongLong());
    return texts.size() == rows.size();
}

/// The columns of a title list, first to last.
Children ColumnsOfList() {
    return {.table = Columns,
            .owner = "title_list_id",
            .fields = {SubjectField::Reference("BCd", "text_id", "bib_texts", OnRemoval::RemoveToo)
                           .Carrying("code")
                           .Required()
                           .WriteOnly(),
                       SubjectField::Text("Hd", "heading", titles::HeadingLength).Required().WriteOnly(),
                       SubjectField::Whole("Wd", "width", 1, titles::MostWidth).Required().WriteOnly()},
            .ordered = true,
            .check = IsEachTextOnce};
}

/// A title list without a column would show nothing.
qint16 CheckColumns(Context& context, const wire::Fields&, qint64 id, bool) {
    return context.records.Count(Columns, "title_list_id", id) > 0 ? status::Ok : status::ColumnError;
}

void PutColumns(Context& context, qint64 id, ReplyFields& reply) {
    context.database.Each("SELECT t.code, c.heading, c.width FROM title_list_columns c JOIN bib_texts t ON "
                          "t.id=c.text_id WHERE c.title_list_id=? ORDER BY c.id",
                          {id}, [&](const ResultRow& row) {
                              Put(reply, "BCd", row.value(0).toString());
                              Put(reply, "Hd", row.value(1).toString());
                              Put(reply, "Wd", row.value(2).toString());
                          });
}

} // namespace

void RegisterTitleLists(Registry& registry) {
    registry.AddSubject({
        .table = "bib_texts",
        .requests =
            {.list = "LstDsp", .get = "GetDsp", .add = "AddDsp", .update = "UpdDsp", .remove = "DelDsp"},
        .fields =
            {SubjectField::Text("BCd", "code", titles::TextCodeLength)
                 .Required()
                 .Unique(status::DuplicateCode)
                 .InList(),
             SubjectField::Text("BNm", "name", TextLength).Required().Unique(status::DuplicateName).InList(),
             SubjectField::Text("BFd", "field", 3).Checked(titles::IsTextField).InList(),
             SubjectField::Text("BSf", "subfields", wire::indexes::SubfieldsLength)
                 .Checked(wire::indexes::AreSubfields)
                 .InList()},
        .key = "BCd",
        .originalKey = "OC",
        .usedBy = Displays(),
        .order = {"code"},
    });
    // There is one for each kind of catalogue: none is added, none removed.
    registry.AddSubject({
        .table = "title_lists",
        .requests = {.list = "LstTtlLst", .get = "GetTtlLst", .update = "UpdTtlLst"},
        .fields = {SubjectField::Text("K", "kind", 1)
                       .Unique(status::DuplicateCode)
                       .Checked(IsListKind)
                       .ReadOnly()
                       .InList()},
        .key = "K",
        .children = {ColumnsOfList()},
        .afterPut = CheckColumns,
        .addToGet = PutColumns,
    });
}

} // namespace sysadmin::server
