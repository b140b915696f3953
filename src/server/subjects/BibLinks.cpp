#include "wire/BibLinks.h"

#include "server/store/Database.h"
#include "server/subjects/BibLinks.h"
#include "server/subjects/Ranks.h"
#include "server/subjects/Registrations.h"
#include "server/subjects/SearchIndexes.h"
#include "wire/MarcMark.h"

namespace sysadmin::server {

namespace links = wire::links;

namespace {

const QString Links = "bib_links";

Ranks LinkRanks() {
    return {.table = Links, .column = "rank", .idTag = "ID", .rankTag = "Rk"};
}

/// A control field has no parts, any other field is named with a subfield.
bool IsPlaceInOrder(const Row& link) {
    const bool isControl = links::IsControlField(link["field"].toString());
    const bool hasIndicators =
        link["indicator1"] != links::AnyIndicator || link["indicator2"] != links::AnyIndicator;
    return link["subfield"].toString().isEmpty() == isControl && !(isControl && hasIndicators);
}

/// The link leads from a place in a record to an index that takes its text from records; new links come last.
qint16 CheckLink(Context& context, const wire::Fields& request, const Row& before, Row& after) {
    if (!IsPlaceInOrder(after))
        return status::ColumnError;
    const auto code = ComponentCode(context, after["index_code"].toString());
    if (!code)
        return status::ColumnError;
    after["index_code"] = *code;
    const auto same = context.database.FirstValue(
        "SELECT COUNT(*) FROM bib_links WHERE field=? AND indicator1=? AND indicator2=? AND subfield=? AND "
        "index_code=? AND id<>?",
        {after["field"], after["indicator1"], after["indicator2"], after["subfield"], after["index_code"],
         before.isEmpty() ? 0 : wire::FirstValue(request, "ID").toLongLong()});
    if (same.toLongLong() > 0)
        return status::DuplicateRecord;
    if (before.isEmpty())
        after["rank"] = NextRank(context, LinkRanks());
    return status::Ok;
}

qint16 RemoveLink(Context& context, qint64, const Row& link) {
    CloseGap(context, LinkRanks(), link["rank"]);
    return status::Ok;
}

SubjectField Indicator(const QString& tag, const QString& column) {
    return SubjectField::Text(tag, column, 1)
        .Required()
        .Default(links::AnyIndicator)
        .Checked(wire::IsMarcMark)
        .InList();
}

} // namespace

void AddLinksTo(Context& context, const QString& index, ReplyFields& reply) {
    context.database.Each("SELECT caption, field, subfield FROM bib_links WHERE index_code=? ORDER BY rank",
                          {index}, [&](const ResultRow& row) {
                              Put(reply, "LkCp", row.value(0).toString());
                              Put(reply, "LkFF", row.value(1).toString());
                              Put(reply, "LkSF", row.value(2).toString());
                          });
}

void RegisterBibLinks(Registry& registry) {
    registry.AddSubject({
        .table = Links,
        .requests = {.list = "LstBibLk",
                     .get = "GetBibLk",
                     .add = "AddBibLk",
                     .update = "UpdBibLk",
                     .remove = "DelBibLk"},
        .fields =
            {
                SubjectField::Text("Cp", "caption", links::CaptionLength).Required().InList(),
                SubjectField::Text("Dr", "direction", 1).Required().Checked(links::IsDirection).InList(),
                SubjectField::Text("FF", "field", 3).Required().Checked(links::IsField).InList(),
                Indicator("I1", "indicator1"),
                Indicator("I2", "indicator2"),
                SubjectField::Text("SF", "subfield", 1).Checked(links::IsSubfield).InList(),
                SubjectField::Text("IC", "index_code", wire::indexes::CodeLength).Required().InList(),
                SubjectField::Flag("SS", "shows_staff", "Y").InList(),
                SubjectField::Flag("SP", "shows_public", "Y").InList(),
                SubjectField::Whole("Rk", "rank").OnlyInList(),
            },
        .addReply = {"ID"},
        .order = {"rank"},
        .checkPut = CheckLink,
        .checkRemove = RemoveLink,
    });
    registry.AddTable({.name = Links, .indexed = {{"rank"}, {"index_code"}}, .ordered = true});
    registry.AddChange("SeqBibLk", Area::System, [](Context& context, const wire::Fields& request) {
        return StoreOrder(context, LinkRanks(), request);
    });
    registry.AboutSeveral("SeqBibLk", Links, "ID");
}

} // namespace sysadmin::server
