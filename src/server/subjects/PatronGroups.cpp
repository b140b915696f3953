#include "server/SubjectRequests.h"
#include "server/store/Database.h"
#include "server/subjects/Registrations.h"
#include "server/subjects/circulation/KeyedRows.h"

namespace sysadmin::server {

namespace {

constexpr qint16 UsedByPatronBarcodes = 85;
constexpr qint16 UsedByRemotePolicies = 96;
constexpr qint16 UsedByTransactions = 102;
constexpr qint16 UsedByMatrix = 103;

SubjectField CountLimit(const QString& tag, const QString& column) {
    return SubjectField::Whole(tag, column, 0, MostCount);
}

/// How many items of a type a patron group may have charged.
const KeyedRows& ItemLimits() {
    static const KeyedRows limits{.table = "patron_group_item_limits",
                                  .owner = "patron_group_id",
                                  .state = {},
                                  .keyTag = "ITMTYPID",
                                  .keyColumn = "item_type_id",
                                  .keyTable = "item_types",
                                  .fields = {CountLimit("PatChrgLmt", "charge_limit")}};
    return limits;
}

/// What applies is known.
bool IsKnownWhatApplies(const Row& group) {
    const auto lacks = [&](const char* flag, const char* number) {
        return group[flag].toString() == u"Y" && group[number].isNull();
    };
    return !lacks("limit_applies", "charge_limit") && !lacks("demerits_apply", "most_demerits") &&
           !lacks("demerits_apply", "suspension_days");
}

Answer ListItemLimits(Context& context, const wire::Fields& request) {
    const QString id = wire::FirstValue(request, "ID");
    // A group that is still to be made has none.
    const auto group = id.isEmpty() ? std::optional(qint64(0)) : KeyRecord(context, "patron_groups", id);
    if (!group)
        return {status::NotFound};
    Answer answer;
    PutKeyedRows(context, ItemLimits(), *group,
                 {{"PATITMID", "r.id"}, {"ITMTYPID", "m.id"}, {"Nm", "m.name"}}, {}, {}, answer.fields);
    return answer;
}

/// "AddPatItmGpTp" and "UpdPatItmGpTp": an update without a limit takes the limit away.
Answer StoreItemLimit(Context& context, const wire::Fields& request, bool adding) {
    const auto group = KeyRecord(context, "patron_groups", wire::FirstValue(request, "ID"));
    const auto item =
        KeyRecord(context, ItemLimits().keyTable, wire::FirstValue(request, ItemLimits().keyTag));
    if (!group || !item)
        return {status::NotFound};
    const QVariant stored = context.database.FirstValue(
        "SELECT id FROM patron_group_item_limits WHERE patron_group_id=? AND item_type_id=?",
        {*group, *item});
    if (stored.isValid() == adding)
        return {adding ? status::DuplicateRecord : status::NotFound};
    Row row;
    if (const qint16 refused = ReadFields(context, ItemLimits().fields, request, true, row))
        return {refused};
    const bool isLimit = !row["charge_limit"].isNull();
    if (adding && !isLimit)
        return {status::ColumnError};
    if (!isLimit) {
        context.records.Remove(ItemLimits().table, stored.toLongLong());
    } else if (adding) {
        row.insert(ItemLimits().owner, *group);
        row.insert(ItemLimits().keyColumn, *item);
        context.records.Insert(ItemLimits().table, row);
    } else {
        context.records.Update(ItemLimits().table, stored.toLongLong(), row);
    }
    return {};
}

} // namespace

void RegisterPatronGroups(Registry& registry) {
    registry.AddSubject({
        .table = "patron_groups",
        .area = Area::PatronGroups,
        .requests = {.list = "LstPatGp",
                     .get = "GetPatGp",
                     .add = "AddPatGp",
                     .update = "UpdPatGp",
                     .remove = "DelPatGp"},
        .fields =
            {
                SubjectField::Reference("CID", "cluster_id", "clusters").Required().WriteOnly(),
                SubjectField::Text("Cd", "code", CodeLength)
                    .Required()
                    .Unique(status::DuplicateCode, "cluster_id")
                    .InList(),
                // Real libraries give several groups the same name.
                SubjectField::Text("Nm", "name", NameLength).Required().InList(),
                SubjectField::Text("Dsp", "display_name", NameLength),
                CountLimit("MaxDem", "most_demerits"),
                CountLimit("SusDays", "suspension_days"),
                SubjectField::Flag("DemAply", "demerits_apply"),
                SubjectField::Flag("ChrgdStatDsply", "shows_charged_messages"),
                SubjectField::Flag("PatChrgLmtAply", "limit_applies"),
                CountLimit("PatChrgLmt", "charge_limit"),
            },
        .listArea = Area::AnyOperator,
        .usedBy = {{"circulation_matrix", "patron_group_id", UsedByMatrix},
                   {"ub_policies", "patron_group_id", UsedByRemotePolicies},
                   {"patron_group_mappings", "patron_group_id", UsedByRemotePolicies},
                   {"patron_group_mappings", "other_group_id", UsedByRemotePolicies}},
        .usages = {{"patron barcodes", UsedByPatronBarcodes},
                   {"remote patron policies", UsedByRemotePolicies},
                   {"circulation transactions", UsedByTransactions}},
        .addReply = {"ID"},
        .within = ListFilter{"CID", "cluster_id"},
        .listFilters = {{"CID", "cluster_id"}},
        .rules = {{IsKnownWhatApplies, "A limit applies and is not said."}},
    });
    registry.AddTable(ItemLimits().StoredAs("patron_groups"));
    registry.AddRead("LstPatItmGpTp", Area::PatronGroups, ListItemLimits);
    registry.AddChange(
        "AddPatItmGpTp", Area::PatronGroups,
        [](Context& context, const wire::Fields& request) { return StoreItemLimit(context, request, true); });
    registry.AddChange("UpdPatItmGpTp", Area::PatronGroups,
                       [](Context& context, const wire::Fields& request) {
                           return StoreItemLimit(context, request, false);
                       });
    for (const char* request : {"LstPatItmGpTp", "AddPatItmGpTp", "UpdPatItmGpTp"})
        registry.About(request, {"patron_groups"}, {"ID"});
}

} // namespace sysadmin::server
