#include "server/store/Database.h"
#include "server/subjects/Registrations.h"
#include "server/subjects/circulation/CirculationPolicies.h"

// Circulation policy groups: their flags, calendars, and a row of rules for each patron group and item type.
// Their locations and their matrix have files of their own.

namespace sysadmin::server {

namespace {

constexpr qint16 MatrixInTransactions = 79;
constexpr qint16 HasOpacDesk = 80;

/// The rules of a policy group for each patron group of its cluster.
const KeyedRows& PatronRules() {
    // A count and whether it applies. For the short-loan limits the count comes first: their tags are the
    // other way round.
    const auto limit = [](const QString& applyTag, const QString& countTag, const QString& column) {
        return QList<SubjectField>{SubjectField::Flag(applyTag, column + "_applies"),
                                   Count(countTag, "most_" + column)};
    };
    const auto reversed = [&](const QString& countTag, const QString& applyTag, const QString& column) {
        QList<SubjectField> fields = limit(applyTag, countTag, column);
        fields.swapItemsAt(0, 1);
        return fields;
    };
    static const KeyedRows rows{
        .table = "circulation_patron_rules",
        .owner = "group_id",
        .state = "1B",
        .keyTag = "1",
        .keyColumn = "patron_group_id",
        .keyTable = "patron_groups",
        .fields =
            QList<SubjectField>{SubjectField::Flag("1C", "fines_apply"), Amount("1D", "most_balance", "0.00"),
                                SubjectField::Flag("1E", "overdue_notice_applies"),
                                SubjectField::Flag("1X", "courtesy_notice_applies"),
                                Amount("1F", "least_balance_for_notice", "0.00")} +
            limit("1G", "1H", "items_borrowed") + limit("1I", "1J", "overdue_items") +
            limit("1K", "1L", "overdue_recalled_items") + limit("1M", "1N", "recalls") +
            limit("1O", "1P", "self_shelf_returns") + limit("1Q", "1R", "claimed_returns") +
            limit("1S", "1T", "lost_items") + limit("12", "13", "call_slip_requests") +
            QList<SubjectField>{
                SubjectField::Flag("1U", "opac_holds"), SubjectField::Flag("1V", "opac_recalls"),
                SubjectField::Flag("11", "opac_call_slips"), SubjectField::Flag("14", "email_courtesy"),
                SubjectField::Flag("15", "email_cancellation"), SubjectField::Flag("16", "email_available"),
                SubjectField::Flag("17", "email_overdue"), SubjectField::Flag("18", "email_other_overdue"),
                SubjectField::Flag("19", "email_other_recall"), SubjectField::Flag("20", "email_recall"),
                SubjectField::Flag("21", "opac_short_loans")} +
            reversed("22", "23", "short_loans") + reversed("24", "25", "short_loan_titles") +
            reversed("26", "27", "short_loans_per_day") + limit("MHR", "HRL", "hold_requests") +
            QList<SubjectField>{SubjectField::Flag("HBL", "holds_count_as_borrowed")},
    };
    return rows;
}

/// The settings of a policy group for each item type.
const KeyedRows& ItemSettings() {
    const auto fields = [] {
        QList<SubjectField> all{Amount("I4", "replacement_cost", "0.00"),
                                SubjectField::Flag("I5", "is_short_loan"), Count("I6", "order_quantity"),
                                Count("I7", "reorder_point")};
        // Requests by channel and kind on items of a status.
        const QList<QPair<QString, QString>> statuses{
            {"M", "missing"}, {"LS", "lost_by_system"}, {"LL", "lost_by_library"}};
        const QList<QPair<QString, QString>> kinds{
            {"OH", "opac_hold"}, {"OR", "opac_recall"}, {"CH", "circ_hold"}, {"CR", "circ_recall"}};
        for (const auto& [statusTag, statusName] : statuses)
            for (const auto& [kindTag, kindName] : kinds)
                all << SubjectField::Flag(kindTag + statusTag, kindName + '_' + statusName);
        return all;
    };
    static const KeyedRows rows{.table = "circulation_item_settings",
                                .owner = "group_id",
                                .state = "I3",
                                .keyTag = "I1",
                                .keyColumn = "item_type_id",
                                .keyTable = "item_types",
                                .fields = fields()};
    return rows;
}

const KeyedRows& PolicyCalendars() {
    static const KeyedRows rows{.table = "circulation_policy_calendars",
                                .owner = "group_id",
                                .state = "CS",
                                .keyTag = "SCI",
                                .keyColumn = "calendar_id",
                                .keyTable = "calendars",
                                .onKeyRemoval = OnRemoval::Refuse};
    return rows;
}

const QString OfCluster = "m.cluster_id=?";

void PutCalendars(Context& context, const QString& idTag, const QString& condition,
                  const QVariantList& values, ReplyFields& reply) {
    context.database.Each("SELECT m.id, m.name, m.start_date, m.end_date FROM calendars m WHERE " +
                              condition + " ORDER BY m.start_date, m.id",
                          values, [&](const ResultRow& row) {
                              Put(reply, idTag, row.value(0).toString());
                              Put(reply, "CN", row.value(1).toString());
                              Put(reply, "SD", row.value(2).toString());
                              Put(reply, "ED", row.value(3).toString());
                          });
}

/// "CircAvail": what a new group may have.
Answer ListGroupChoices(Context& context, const wire::Fields& request) {
    const auto cluster = KeyRecord(context, "clusters", wire::FirstValue(request, "CID"));
    if (!cluster)
        return {status::NotFound};
    Answer answer;
    PutPolicyLocations(context, std::nullopt, answer.fields);
    PutCalendars(context, "ACI", OfCluster, {*cluster}, answer.fields);
    context.database.Each("SELECT id, name FROM patron_groups WHERE cluster_id=? ORDER BY id", {*cluster},
                          [&](const ResultRow& row) {
                              Put(answer.fields, "1", row.value(0).toString());
                              Put(answer.fields, "1A", row.value(1).toString());
                          });
    context.database.Each("SELECT id, name FROM item_types ORDER BY id", {}, [&](const ResultRow& row) {
        Put(answer.fields, "I1", row.value(0).toString());
        Put(answer.fields, "I2", row.value(1).toString());
    });
    return answer;
}

void AddToGroup(Context& context, qint64 id, ReplyFields& reply) {
    const qint64 cluster =
        context.database.FirstValue("SELECT cluster_id FROM circulation_policy_groups WHERE id=?", {id})
            .toLongLong();
    PutPolicyLocations(context, id, reply);
    const QString chosen =
        "EXISTS (SELECT 1 FROM circulation_policy_calendars c WHERE c.calendar_id=m.id AND c.group_id=?)";
    PutCalendars(context, "ACI", OfCluster + " AND NOT " + chosen, {cluster, id}, reply);
    PutCalendars(context, "SCI", chosen, {id}, reply);
    PutKeyedRows(context, ItemSettings(), id, {{"I1", "m.id"}, {"I2", "m.name"}}, {}, {}, reply);
}

/// "GetCrcPatronGp": the rules for each patron group of the cluster.
Answer ListPatronRules(Context& context, const wire::Fields& request) {
    const auto group = FindPolicyGroup(context, request);
    if (!group)
        return {status::NotFound};
    Answer answer;
    PutKeyedRows(context, PatronRules(), group->id, {{"1", "m.id"}, {"1A", "m.name"}}, OfCluster,
                 {group->cluster}, answer.fields);
    return answer;
}

qint16 ApplyRows(Context& context, const wire::Fields& request, qint64 id, bool) {
    const qint64 cluster =
        context.database.FirstValue("SELECT cluster_id FROM circulation_policy_groups WHERE id=?", {id})
            .toLongLong();
    for (const KeyedRows* rows : {&PolicyCalendars(), &PatronRules()})
        if (const qint16 refused = ApplyKeyedRows(context, *rows, id, OfCluster, {cluster}, request))
            return refused;
    if (const qint16 refused = ApplyKeyedRows(context, ItemSettings(), id, {}, {}, request))
        return refused;
    const QList<CalendarDates> calendars = CalendarsOf(context, id);
    for (qsizetype i = 0; i < calendars.size(); ++i)
        for (qsizetype other = 0; other < i; ++other)
            if (calendars[i].Overlaps(calendars[other]))
                return status::CalendarsOverlap;
    return status::Ok;
}

/// A group stays in its cluster.
qint16 CheckGroupRemoval(Context& context, qint64 id, const Row&) {
    if (context.database.FirstRow(
            "SELECT 1 FROM circulation_policy_locations WHERE group_id=? AND is_opac_desk='Y'", {id}))
        return HasOpacDesk;
    if (context.database.FirstRow("SELECT 1 FROM circulation_matrix e JOIN usage u ON u.record_id=e.id AND "
                                  "u.table_name='circulation_matrix' AND u.used>0 WHERE e.group_id=?",
                                  {id}))
        return MatrixInTransactions;
    return status::Ok;
}

} // namespace

std::optional<NamedGroup> FindPolicyGroup(Context& context, const wire::Fields& request) {
    const QString cluster = wire::FirstValue(request, "CID");
    bool isNumber = false;
    const qint64 id = wire::FirstValue(request, "ID").toLongLong(&isNumber);
    const auto row = context.database.FirstRow(
        "SELECT id, cluster_id FROM circulation_policy_groups WHERE id=?", {isNumber ? id : 0});
    if (!row || (!cluster.isEmpty() && (*row)[1].toString() != cluster))
        return std::nullopt;
    return NamedGroup{(*row)[0].toLongLong(), (*row)[1].toLongLong()};
}

QString ComparableEnd(const QString& end) {
    return end.isEmpty() ? QString("99991230") : end;
}

QList<CalendarDates> CalendarsOf(Context& context, qint64 group) {
    QList<CalendarDates> calendars;
    context.database.Each("SELECT k.id, k.start_date, k.end_date FROM circulation_policy_calendars c JOIN "
                          "calendars k ON k.id=c.calendar_id WHERE c.group_id=? ORDER BY k.start_date, k.id",
                          {group}, [&](const ResultRow& row) {
                              calendars.append({row.value(0).toLongLong(), row.value(1).toString(),
                                                ComparableEnd(row.value(2).toString())});
                          });
    return calendars;
}

void RegisterCirculationGroups(Registry& registry) {
    using Field = SubjectField;
    registry.AddSubject({
        .table = "circulation_policy_groups",
        .area = Area::Circulation,
        .requests = {.list = "LstCrcGp",
                     .get = "GetCrcGp",
                     .add = "AddCrcGp",
                     .update = "UpdCrcGp",
                     .remove = "DelCrcGp"},
        .fields =
            {
                Field::Reference("CID", "cluster_id", "clusters").Required().WriteOnly(),
                Field::Text("Nm", "name", NameLength)
                    .Required()
                    .Unique(status::DuplicateName, "cluster_id")
                    .InList(),
                Field::Flag("CCL", "counts_closed_for_loan"),
                Field::Flag("AFDFOL", "fixed_due_time_for_overnight"),
                Field::Flag("CCF", "counts_closed_for_fine"),
                Field::Flag("I", "includes_lost_fee"),
                Amount("LF", "lost_fee"),
                Field::Flag("IMF", "includes_most_fine_for_lost"),
                Count("EP", "early_pickup_minutes"),
                Count("UI", "unclaimed_minutes"),
                Field::Flag("ExtRecDueDate", "extends_recall_due_date"),
                Field::Flag("RR", "renews_if_recalled"),
                Field::Flag("HR", "renews_if_held"),
                Field::Flag("OR", "renews_if_overdue"),
                Field::Flag("LIR_ROD", "return_removes_overdue_fines"),
                Field::Flag("LIR_RRF", "return_removes_replacement_fee"),
                Field::Flag("LIR_RPF", "return_removes_processing_fee"),
                Field::Flag("LIR_LIF", "return_decrements_lost_count"),
                Field::Reference("POS_LIF", "credit_posting_type_id", "posting_types"),
                Field::Flag("TLH_HSR", "in_transit_fulfills_title_hold"),
                Field::Flag("TLHC", "title_holds_without_items_in_circ"),
                Field::Flag("TLHO", "title_holds_without_items_in_opac"),
            },
        .addedIdTag = "IdPolLoc",
        .within = ListFilter{"CID", "cluster_id"},
        .listFilters = {{"CID", "cluster_id"}},
        .afterPut = ApplyRows,
        .checkRemove = CheckGroupRemoval,
        .addToGet = AddToGroup,
    });
    for (const KeyedRows* rows : {&PolicyCalendars(), &PatronRules(), &ItemSettings()})
        registry.AddTable(rows->StoredAs("circulation_policy_groups"));
    registry.AddRead("CircAvail", Area::Circulation, ListGroupChoices);
    registry.AddRead("GetCrcPatronGp", Area::Circulation, ListPatronRules);
}

} // namespace sysadmin::server
