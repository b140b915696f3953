#include "server/subjects/SearchIndexes.h"

#include "server/store/Database.h"
#include "server/subjects/BibLinks.h"
#include "server/subjects/FieldWeights.h"
#include "server/subjects/HeadingFilters.h"
#include "server/subjects/Registrations.h"
#include "server/subjects/StoredRules.h"
#include "server/subjects/Vouchers.h"
#include "wire/ItemText.h"

#include <algorithm>

namespace sysadmin::server {

namespace indexes = wire::indexes;
using indexes::Family;

namespace {

constexpr qint16 InCompositeIndex = 83;
constexpr int IndexBatch = 200;

const QString Composites = "composite_indexes";

/// Calls `visit` with each composite index that has the component: its id and its definition.
template <class Visit>
void EachComposite(Context& context, const QString& component, const Visit& visit) {
    QList<std::pair<qint64, QString>> found;
    context.database.Each(
        "SELECT id, definition FROM composite_indexes ORDER BY id", {}, [&](const ResultRow& row) {
            if (indexes::ComponentsOf(row.value(1).toString()).contains(component, Qt::CaseInsensitive))
                found.append({row.value(0).toLongLong(), row.value(1).toString()});
        });
    for (const auto& [id, definition] : found)
        visit(id, definition);
}

/// Whoever names the index by its code goes on to name it.
void FollowCode(Context& context, const QString& before, const QString& after) {
    EachComposite(context, before, [&](qint64 id, const QString& definition) {
        QStringList components = indexes::ComponentsOf(definition);
        for (QString& component : components)
            if (component.compare(before, Qt::CaseInsensitive) == 0)
                component = after;
        wire::ItemText items(definition);
        items.Set(indexes::key::Components, components.join(indexes::ComponentSeparator));
        context.records.Update(Composites, id, {{"definition", items.Text()}});
    });
    for (const IndexReference& reference : IndexReferences())
        for (const QVariant& id : context.database.FirstColumn(
                 "SELECT id FROM " + reference.table + " WHERE " + reference.column + "=?", {before}))
            context.records.Update(reference.table, id.toLongLong(), {{reference.column, after}});
}

/// No display definition twice.
bool AreDisplaysInOrder(const Row& index) {
    QSet<qint64> seen;
    for (const char* column : {"first_display_id", "second_display_id", "third_display_id"})
        if (const QVariant id = index[column]; !id.isNull()) {
            if (seen.contains(id.toLongLong()))
                return false;
            seen.insert(id.toLongLong());
        }
    return true;
}

/// The components are indexes that are there, and none of them is a composite one.
bool AreComponentsThere(Context& context, const QString& definition) {
    const QStringList components = indexes::ComponentsOf(definition);
    return std::all_of(components.begin(), components.end(), [&](const QString& code) {
        return HasIndex(context, code) && !context.records.IdOfText(Composites, "code", code);
    });
}

qint16 CheckIndex(const IndexFamily& family, Context& context, const Row& before, Row& after) {
    const QString code = after["code"].toString().trimmed();
    const QString former = before["code"].toString();
    const bool isRenamed = Fold(code) != Fold(former);
    if (Fold(code) == Fold(indexes::ReservedCode))
        return status::ReservedCode;
    if (!before.isEmpty() && isRenamed && indexes::IsSystemCode(family.family, former))
        return status::SystemIndex;
    if (isRenamed && HasIndex(context, code))
        return status::DuplicateCode;
    if (!AreDisplaysInOrder(after) || !IsVoucherRangeInOrder(after))
        return status::ColumnError;
    if (family.family == Family::Composite && after["definition"] != before["definition"] &&
        !AreComponentsThere(context, after["definition"].toString()))
        return status::ColumnError;
    if (!before.isEmpty() && code != former)
        FollowCode(context, former, code);
    return status::Ok;
}

qint16 CheckIndexRemoval(const IndexFamily& family, Context& context, const Row& index) {
    const QString code = index["code"].toString();
    if (indexes::IsSystemCode(family.family, code))
        return status::SystemIndex;
    qint16 result = status::Ok;
    EachComposite(context, code, [&](qint64, const QString&) { result = InCompositeIndex; });
    for (const IndexReference& reference : IndexReferences())
        if (!reference.goesToo && context.records.Count(reference.table, reference.column, code) > 0)
            result = status::InUse;
    if (result == status::Ok)
        for (const IndexReference& reference : IndexReferences())
            if (reference.goesToo)
                context.records.RemoveWhere(reference.table, reference.column, code);
    return result;
}

/// Whoever names the index by its code.
void FindIndexUses(Context& context, qint64, const Row& index,
                   const std::function<void(const RecordName& user, const QString& column)>& tell) {
    const QString code = index["code"].toString();
    EachComposite(context, code, [&](qint64 id, const QString&) { tell({Composites, id}, "definition"); });
    for (const IndexReference& reference : IndexReferences())
        for (const QVariant& id : context.database.FirstColumn(
                 "SELECT id FROM " + reference.table + " WHERE " + reference.column + "=? ORDER BY id",
                 {code}))
            tell({reference.table, id.toLongLong()}, reference.column);
}

SubjectField Display(const QString& tag, const QString& column) {
    return SubjectField::Reference(tag, column, "bib_texts").Carrying("code");
}

SubjectField SortKey(const QString& tag, const QString& column) {
    return SubjectField::Text(tag, column, 20).Default(indexes::NoSortKey).Checked(indexes::IsSortKey);
}

QList<SubjectField> IndexFields() {
    return QList<SubjectField>{
               SubjectField::Text("Cd", "code", indexes::CodeLength)
                   .Required()
                   .Unique(status::DuplicateCode)
                   .Checked(indexes::IsCode)
                   .InList(),
               SubjectField::Text("Nm", "name", indexes::NameLength).Required().InList(),
               SubjectField::Whole("Z", "use_attribute", 1, indexes::MostUse),
               Display("DF1", "first_display_id"),
               Display("DF2", "second_display_id"),
               Display("DF3", "third_display_id"),
               SortKey("SF1", "primary_sort"),
               SortKey("SF2", "secondary_sort"),
               SortKey("SF3", "tertiary_sort"),
               SubjectField::Text("RDAF", "rda_formats", indexes::RdaLength).Default(indexes::NoRdaFormats),
               SubjectField::Flag("SS", "staff_suppressed"),
               SubjectField::Text("Ix", "definition", indexes::DefinitionLength)
                   .Checked(indexes::IsDefinition)} +
           VoucherFields("PW");
}

/// The fields of a record whose words a keyword index takes.
Children WordFields(const QString& table) {
    return {.table = table + "_fields",
            .owner = "index_id",
            .fields = {SubjectField::Text("KF", "field", 3).Required().Checked(indexes::IsFieldPattern),
                       SubjectField::Text("KSI", "include_subfields", indexes::SubfieldsLength)
                           .Checked(indexes::AreSubfields),
                       SubjectField::Text("KSE", "exclude_subfields", indexes::SubfieldsLength)
                           .Checked(indexes::AreSubfields)},
            .ordered = true};
}

/// What else the library says of an index: its heading filter, and the links that look in it.
void AddUses(Context& context, const IndexFamily& family, qint64 id, ReplyFields& reply) {
    if (family.family == Family::Headings)
        AddLeftOut(context, id, reply);
    const QString code = context.records.Find(family.table, id)->value("code").toString();
    AddLinksTo(context, code, reply);
    AddWeightsOf(context, code, reply);
}

/// Composite indexes with a component that is no index, or a composite one.
QList<qint64> CompositesOfNothing(Database& database) {
    QSet<QString> codes;
    for (const IndexFamily& family : IndexFamilies())
        if (family.family != Family::Composite)
            for (const QVariant& code : database.FirstColumn("SELECT code FROM " + family.table))
                codes.insert(Fold(code.toString()));
    QList<qint64> ids;
    database.Each("SELECT id, definition FROM composite_indexes", {}, [&](const ResultRow& row) {
        const QStringList components = indexes::ComponentsOf(row.value(1).toString());
        if (!std::all_of(components.begin(), components.end(),
                         [&](const QString& code) { return codes.contains(Fold(code)); }))
            ids << row.value(0).toLongLong();
    });
    return ids;
}

/// The ids of the system's own indexes of a family, negative: these must stay. With `all` each index is the
/// system's, and positive ids, too, let nobody add one.
QList<qint64> SystemIndexes(Database& database, const IndexFamily& family, bool all) {
    QList<qint64> ids;
    database.Each("SELECT id, code FROM " + family.table, {}, [&](const ResultRow& row) {
        const qint64 id = row.value(0).toLongLong();
        if (all || indexes::IsSystemCode(family.family, row.value(1).toString()))
            ids << -id;
        if (all)
            ids << id;
    });
    return ids;
}

/// Indexes whose code another index of an earlier family has, or that no index may have.
QList<qint64> IndexesOfTakenCodes(Database& database, const IndexFamily& family) {
    QSet<QString> taken{Fold(indexes::ReservedCode)};
    QList<qint64> ids;
    for (const IndexFamily& other : IndexFamilies())
        database.Each("SELECT id, code FROM " + other.table, {}, [&](const ResultRow& row) {
            const QString code = Fold(row.value(1).toString());
            if (other.table == family.table && taken.contains(code))
                ids << row.value(0).toLongLong();
            else if (other.table != family.table)
                taken.insert(code);
        });
    return ids;
}

/// What holds of the indexes of a family, whichever way they come into the library.
Table RulesOf(const IndexFamily& family) {
    const bool all = family.family == Family::Headings;
    QStringList others;
    for (const IndexFamily& other : IndexFamilies())
        if (other.table != family.table)
            others << other.table;
    Table table{.name = family.table,
                .rules = {{AreDisplaysInOrder, "A display definition stands there twice."},
                          {IsVoucherRangeInOrder, "The range of vouchers is not in order."}},
                .storedRules = {
                    {{},
                     [&family, all](Database& database) { return SystemIndexes(database, family, all); },
                     all ? "The set of these indexes is the system's own: none is added, none removed."
                         : "An index of the system's own is missing."},
                    {others, [&family](Database& database) { return IndexesOfTakenCodes(database, family); },
                     "Another index has this code, or no index may have it."}}};
    if (family.family == Family::Composite)
        table.storedRules.append({others, CompositesOfNothing, "A component is no index that there is."});
    return table;
}

void RegisterFamily(Registry& registry, const IndexFamily& family, const RequestNames& requests,
                    const QList<Children>& children = {}) {
    registry.AddTable(RulesOf(family));
    registry.AddSubject({
        .table = family.table,
        .area = Area::System,
        .requests = requests,
        .fields = IndexFields(),
        .key = "Cd",
        .originalKey = "FC",
        .children = children,
        .batch = IndexBatch,
        .checkPut = [&family](Context& context, const wire::Fields&, const Row& before,
                              Row& after) { return CheckIndex(family, context, before, after); },
        .checkRemove = [&family](Context& context, qint64,
                                 const Row& index) { return CheckIndexRemoval(family, context, index); },
        .findUses = FindIndexUses,
        .addToGet = [&family](Context& context, qint64 id,
                              ReplyFields& reply) { AddUses(context, family, id, reply); },
    });
}

/// The indexes of which a composite one can be made.
Answer ListComponents(Context& context, const wire::Fields&) {
    Answer answer;
    for (const IndexFamily& family : IndexFamilies())
        if (family.family != Family::Composite)
            PutList(context, {family.table, {{"CC", "code"}, {"CN", "name"}}, {"code"}}, answer.fields);
    return answer;
}

} // namespace

const QList<IndexFamily>& IndexFamilies() {
    static const QList<IndexFamily> families{{Family::Keyword, "keyword_indexes"},
                                             {Family::HoldingsKeyword, "holdings_keyword_indexes"},
                                             {Family::Composite, Composites},
                                             {Family::Headings, "heading_indexes"}};
    return families;
}

const QList<IndexReference>& IndexReferences() {
    static const QList<IndexReference> references{{"duplicate_profile_indexes", "code"},
                                                  {"bib_links", "index_code"},
                                                  {"holdings_hook_matches", "index_code"},
                                                  {"index_weightings", "code", true}};
    return references;
}

std::optional<QString> ComponentCode(Context& context, const QString& code) {
    for (const IndexFamily& family : IndexFamilies())
        if (family.family != Family::Composite)
            if (const auto id = context.records.IdOfText(family.table, "code", code))
                return context.records.Find(family.table, *id)->value("code").toString();
    return std::nullopt;
}

bool HasIndex(Context& context, const QString& code) {
    const QList<IndexFamily>& families = IndexFamilies();
    return std::any_of(families.begin(), families.end(), [&](const IndexFamily& family) {
        return context.records.IdOfText(family.table, "code", code).has_value();
    });
}

void RegisterSearchIndexes(Registry& registry) {
    const QList<IndexFamily>& families = IndexFamilies();
    RegisterFamily(registry, families[0],
                   {.list = "LstKSrch",
                    .get = "GetKSrch",
                    .add = "AddKSrch",
                    .update = "UpdKSrch",
                    .remove = "DelKSrch"},
                   {WordFields(families[0].table)});
    RegisterFamily(registry, families[1],
                   {.list = "LstMKSrch",
                    .get = "GetMKSrch",
                    .add = "AddMKSrch",
                    .update = "UpdMKSrch",
                    .remove = "DelMKSrch"},
                   {WordFields(families[1].table)});
    RegisterFamily(registry, families[2],
                   {.list = "LstCSrch",
                    .get = "GetCSrch",
                    .add = "AddCSrch",
                    .update = "UpdCSrch",
                    .remove = "DelCSrch"});
    // The set of these is the system's own: none is added, none removed.
    RegisterFamily(registry, families[3], {.list = "LstCSDef", .get = "GetCSDef", .update = "UpdCSDef"});
    registry.AddRead("LstComp", Area::System, ListComponents);
    registry.About("LstComp", {families[0].table, families[1].table, families[3].table});
}

} // namespace sysadmin::server
