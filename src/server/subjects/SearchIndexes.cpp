#include "server/subjects/SearchIndexes.h"

#include "server/store/Database.h"
#include "server/subjects/BibLinks.h"
#include "server/subjects/FieldWeights.h"
#include "server/subjects/HeadingFilters.h"
#include "server/subjects/Registrations.h"
#include "server/subjects/Vouchers.h"
#include "wire/ItemText.h"

#include <algorithm>

namespace sysadmin::server {

namespace indexes = wire::indexes;
using indexes::Family;

namespace {

constexpr qint16 InCompositeIndex = 83;
constexpr int Batch = 200;

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

qint16 CheckRemoval(const IndexFamily& family, Context& context, const Row& index) {
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

SubjectField Display(const QString& tag, const QString& column) {
    return SubjectField::Reference(tag, column, "bib_texts").Carrying("code");
}

SubjectField SortKey(const QString& tag, const QString& column) {
    return SubjectField::Text(tag, column, 20).Default(indexes::NoSortKey).Checked(indexes::IsSortKey);
}

QList<SubjectField> Fields() {
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

void RegisterFamily(Registry& registry, const IndexFamily& family, const RequestNames& requests,
                    const QList<Children>& children = {}) {
    registry.AddSubject({
        .table = family.table,
        .area = Area::System,
        .requests = requests,
        .fields = Fields(),
        .key = "Cd",
        .originalKey = "FC",
        .children = children,
        .batch = Batch,
        .checkPut = [&family](Context& context, const wire::Fields&, const Row& before,
                              Row& after) { return CheckIndex(family, context, before, after); },
        .checkRemove = [&family](Context& context, qint64,
                                 const Row& index) { return CheckRemoval(family, context, index); },
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
