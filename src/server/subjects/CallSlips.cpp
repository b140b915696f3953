#include "callslips/CallNumberOrder.h"
#include "server/ReplyFields.h"
#include "server/store/Database.h"
#include "server/subjects/DefaultMark.h"
#include "server/subjects/Ranks.h"
#include "server/subjects/Registrations.h"
#include "server/subjects/StoredRules.h"
#include "server/subjects/circulation/KeyedRows.h"

#include <QSet>

#include <algorithm>

namespace sysadmin::server {

namespace {

constexpr qint16 InCallSlip = 77;
constexpr qint16 InArchivedCallSlip = 78;

const QString Queues = "call_slip_queues";
const QString SlipRules = "call_slip_rules";

/// The library's other clients keep the call slips themselves.
const QList<UsageKind>& CallSlipUsages() {
    static const QList<UsageKind> usages{{"call slips", InCallSlip},
                                         {"archived call slips", InArchivedCallSlip}};
    return usages;
}

bool IsProcessing(const QString& value) {
    return value == "C" || value == "H" || value == "T";
}

bool IsCallNumberTypeOrNone(const QString& value) {
    return value.isEmpty() || callslips::IsCallNumberType(value);
}

/// There is always one default queue: the first one is it until another one is made it.
qint16 CheckQueue(Context& context, const wire::Fields&, const Row& before, Row& after) {
    return KeepDefaultMark(context, Queues, before, after);
}

qint16 MoveDefault(Context& context, const wire::Fields&, qint64 id, bool) {
    MoveDefaultMark(context, Queues, id);
    return status::Ok;
}

qint16 CheckQueueRemoval(Context& context, qint64, const Row& queue) {
    return CheckDefaultRemoval(context, Queues, queue);
}

/// A range without anything in it would make a rule that takes nothing.
qint16 CheckRanges(const Row& rule) {
    const auto year = [&](const QString& column) { return rule.value(column); };
    if (!year("first_year").isNull() && !year("end_year").isNull() &&
        year("first_year").toInt() >= year("end_year").toInt())
        return status::ColumnError;
    const QString least = rule.value("least_call_number").toString().trimmed();
    const QString end = rule.value("end_call_number").toString().trimmed();
    if (least.isEmpty() && end.isEmpty())
        return status::Ok;
    const QString type = rule.value("call_number_type").toString();
    if (type.isEmpty())
        return status::ColumnError;
    const callslips::Scheme scheme = callslips::SchemeOf(type);
    if (!least.isEmpty() && !callslips::IsCallNumber(least, scheme))
        return status::WrongLeastCallNumber;
    const bool isAbove =
        least.isEmpty() || callslips::SortKey(least, scheme) < callslips::SortKey(end, scheme);
    return end.isEmpty() || (callslips::IsCallNumber(end, scheme) && isAbove) ? status::Ok
                                                                              : status::WrongMostCallNumber;
}

/// The request that sets their order has tags of its own.
Ranks RuleRanks() {
    return {.table = SlipRules, .column = "rank", .idTag = {}, .rankTag = {}};
}

/// New rules are tried behind all others.
qint16 CheckSlipRule(Context& context, const wire::Fields&, const Row& before, Row& after) {
    if (before.isEmpty())
        after.insert("rank", NextRank(context, RuleRanks()));
    return CheckRanges(after);
}

qint16 RemoveRule(Context& context, qint64, const Row& rule) {
    CloseGap(context, RuleRanks(), rule.value("rank"));
    return status::Ok;
}

/// The ranks that a request carries under a tag, as they stand in it; none when they are not all numbers from
/// 1 to their count, each once.
std::optional<QList<qint64>> RanksIn(const wire::Fields& request, const QString& tag) {
    QList<qint64> ranks;
    for (const wire::Field& field : request)
        if (field.tag == tag)
            ranks.append(field.value.toLongLong());
    QList<bool> seen(ranks.size(), false);
    for (qint64 rank : ranks) {
        if (rank < 1 || rank > ranks.size() || seen[rank - 1])
            return std::nullopt;
        seen[rank - 1] = true;
    }
    return ranks;
}

/// Gives every rule its new rank; a rule is known by the rank that it had. The history tells of the rules
/// that were moved, not of those that only made room for them: nobody's edit of one of these is in the way.
Answer OrderRules(Context& context, const wire::Fields& request) {
    const auto ranks = RanksIn(request, "RR");
    const auto before = RanksIn(request, "PRR");
    if (!ranks || !before || ranks->size() != before->size())
        return {status::ColumnError};
    if (ranks->size() + 1 != NextRank(context, RuleRanks()))
        return {status::RecordChanged};
    QList<qint64> ids;
    for (const QVariant& id : context.database.FirstColumn("SELECT id FROM call_slip_rules ORDER BY rank"))
        ids.append(id.toLongLong());
    QList<qint64> formerRanks(ranks->size());
    for (qsizetype i = 0; i < ranks->size(); ++i)
        formerRanks[(*ranks)[i] - 1] = (*before)[i];
    const QSet<qint64> moved = Moved(formerRanks);
    for (qsizetype i = 0; i < formerRanks.size(); ++i) {
        const qint64 id = ids[formerRanks[i] - 1];
        if (moved.contains(formerRanks[i]))
            context.records.Update(SlipRules, id, {{"rank", i + 1}});
        else if (formerRanks[i] != i + 1)
            context.database.Run("UPDATE call_slip_rules SET rank=? WHERE id=?", {i + 1, id});
    }
    return {};
}

Answer ListCallNumberTypes(Context&, const wire::Fields&) {
    Answer answer;
    for (const callslips::CallNumberType& type : callslips::CallNumberTypes()) {
        Put(answer.fields, "ACT", type.code);
        Put(answer.fields, "ACN", type.name);
    }
    return answer;
}

SubjectField Criterion(const QString& tag, const QString& column, const QString& target) {
    return SubjectField::Reference(tag, column, target).InList();
}

SubjectField Bound(const QString& tag, const QString& column) {
    return SubjectField::Text(tag, column, CallNumberLength).InList();
}

void RegisterQueues(Registry& registry) {
    registry.AddSubject({
        .table = Queues,
        .requests =
            {.list = "LstCSl", .get = "GetCSl", .add = "AddCSl", .update = "UpdCSl", .remove = "DelCSl"},
        .fields =
            {
                SubjectField::Text("Nm", "name", NameLength).OnlyInList(),
                SubjectField::Text("C", "code", CodeLength).Required().Unique(status::DuplicateCode).InList(),
                SubjectField::Text("N", "name", NameLength).Required().Unique(status::DuplicateName),
                SubjectField::Flag("D", "is_default").InList(),
                SubjectField::Flag("PI", "shows_patron"),
                SubjectField::Flag("CR", "sets_cataloging_review"),
                SubjectField::Flag("RR", "sets_circulation_review"),
                SubjectField::Text("P", "processing", 1).Default("H").Checked(IsProcessing),
                SubjectField::Whole("EP", "expire_period", 0, MostSlipPeriod),
                SubjectField::Text("EI", "expire_unit", 1).Default("D").Checked(IsShortUnit),
                SubjectField::Whole("AP", "archive_period", 0, MostSlipPeriod),
                SubjectField::Text("AI", "archive_unit", 1).Default("D").Checked(IsShortUnit),
                SubjectField::Reference("L", "location_id", "locations"),
                SubjectField::Reference("I", "default_item_type_id", "item_types"),
            },
        .usedBy = {{SlipRules, "queue_id", status::InUse}},
        .usages = CallSlipUsages(),
        .addReply = {"ID"},
        .order = {"code"},
        .checkPut = CheckQueue,
        .afterPut = MoveDefault,
        .checkRemove = CheckQueueRemoval,
    });
    registry.AddList("AvlCSl", Area::System,
                     {{"locations", {{"LI", "id"}, {"LN", "name"}}, {"name", "code"}},
                      {"item_types", {{"II", "id"}, {"IN", "name"}}, {"name"}}});
}

void RegisterRules(Registry& registry) {
    registry.AddSubject({
        .table = SlipRules,
        .requests =
            {.list = "LstCSR", .get = "GetCSR", .add = "AddCSR", .update = "UpdCSR", .remove = "DelCSR"},
        .fields =
            {
                SubjectField::Joined("GN", "queue_id", Queues, "name").OnlyInList(),
                SubjectField::Joined("LN", "item_location_id", "locations", "name").OnlyInList(),
                Criterion("PL", "item_location_id", "locations"),
                Criterion("TL", "temporary_location_id", "locations"),
                Criterion("IT", "item_type_id", "item_types"),
                Criterion("TI", "temporary_item_type_id", "item_types"),
                Criterion("LI", "holdings_location_id", "locations"),
                Criterion("GI", "queue_id", Queues).Required(),
                SubjectField::Text("CT", "call_number_type", 1).Checked(IsCallNumberTypeOrNone).InList(),
                Bound("MND", "least_call_number"),
                Bound("MXD", "end_call_number"),
                SubjectField::Whole("YMN", "first_year", 0, MostSlipYear).InList(),
                SubjectField::Whole("YMX", "end_year", 0, MostSlipYear).InList(),
                SubjectField::Whole("Rk", "rank").OnlyInList(),
            },
        .key = "RR",
        .addReply = {"RR"},
        .order = {"rank"},
        .checkPut = CheckSlipRule,
        .checkRemove = RemoveRule,
    });
    registry.AddTable({.name = SlipRules,
                       .indexed = {{"rank"}},
                       .ordered = true,
                       .rules = {{[](const Row& rule) { return CheckRanges(rule) == status::Ok; },
                                  "A range of call numbers or years is not in order."}},
                       .storedRules = {PlacesInOrder(SlipRules, "rank")}});
    registry.AddTable({.name = Queues, .onlyOne = {"is_default"}});
    registry.AddChange("OrdCSR", Area::System, OrderRules);
    registry.AboutSeveral("OrdCSR", SlipRules);
    registry.AddRead("AvlCSR", Area::System, ListCallNumberTypes);
}

} // namespace

void RegisterCallSlips(Registry& registry) {
    RegisterQueues(registry);
    RegisterRules(registry);
    registry.AddSubject({
        .table = "no_fill_reasons",
        .requests =
            {.list = "LstNFR", .get = "GetNFR", .add = "AddNFR", .update = "UpdNFR", .remove = "DelNFR"},
        .fields =
            {
                SubjectField::Text("C", "code", CodeLength).Required().Unique(status::DuplicateCode).InList(),
                SubjectField::Text("D", "description", NameLength).Required().InList(),
                SubjectField::Flag("S", "suppressed").InList(),
            },
        .key = "I",
        .usages = CallSlipUsages(),
        .addReply = {"I"},
    });
}

} // namespace sysadmin::server
