#include "server/SubjectRequests.h"
#include "server/store/Database.h"
#include "server/subjects/Registrations.h"
#include "wire/FieldOrder.h"
#include "wire/WebAddress.h"

// The orders of MARC fields: configurations with their groups of fields, and the address of the service that
// applies them.

namespace sysadmin::server {

namespace {

namespace fieldorder = wire::fieldorder;

constexpr int OrderBatch = 200;
const QString Configurations = "field_order_configurations";
const QString OrderGroupsTable = "field_order_groups";
const QString OrderRulesTable = "field_order_rules";

const QList<SubjectField>& RuleFields() {
    static const QList<SubjectField> fields{
        SubjectField::Text("MFONAME", "name", fieldorder::NameLength)
            .Required()
            .Unique(status::DuplicateName)
            .InList(),
        SubjectField::Text("MFODESC", "description", fieldorder::DescriptionLength).InList(),
        SubjectField::Flag("MFO880", "pairs_880"),
    };
    return fields;
}

std::optional<qint64> Configuration(Context& context, const wire::Fields& request) {
    const qint64 id = wire::FirstValue(request, "MFOCID").toLongLong();
    return context.records.IdWhere(Configurations, "id", id);
}

Answer ListOptions(Context&, const wire::Fields&) {
    Answer answer;
    for (const fieldorder::Option& option : fieldorder::Options()) {
        Put(answer.fields, "ORDRULE", QString::number(option.id));
        Put(answer.fields, "ORDNAME", option.name);
        Put(answer.fields, "ORDREP", option.repeatable ? "Y" : "N");
        Put(answer.fields, "ORDPARM", option.takesParameter ? "Y" : "N");
        Put(answer.fields, "ORDLABL", option.label);
        Put(answer.fields, "ORDTYPE", option.type);
    }
    return answer;
}

void PutGroups(Context& context, qint64 id, ReplyFields& reply) {
    context.database.Each("SELECT id, priority, pattern FROM " + OrderGroupsTable +
                              " WHERE configuration_id=? ORDER BY priority",
                          {id}, [&](const ResultRow& row) {
                              Put(reply, "MFOGID", row.value(0).toString());
                              Put(reply, "MFOGRP", row.value(1).toString());
                              Put(reply, "MFOMAT", row.value(2).toString());
                          });
}

Answer ReadRules(Context& context, const wire::Fields& request) {
    const auto group =
        context.records.IdWhere(OrderGroupsTable, "id", wire::FirstValue(request, "MFOGID").toLongLong());
    if (!group)
        return {status::NotFound};
    Answer answer;
    context.database.Each("SELECT sort_option, position, parameter FROM " + OrderRulesTable +
                              " WHERE group_id=? ORDER BY position",
                          {*group}, [&](const ResultRow& row) {
                              Put(answer.fields, "MFORID", row.value(0).toString());
                              Put(answer.fields, "MFORPS", row.value(1).toString());
                              Put(answer.fields, "MFORPM", row.value(2).toString());
                          });
    return answer;
}

/// "UpdMarcFieldOrder": stores a configuration without its groups, which are sent one by one behind it.
Answer StoreConfiguration(Context& context, const wire::Fields& request) {
    const bool isNew = wire::FirstValue(request, "MFOCID").isEmpty();
    const qint64 stored = isNew ? 0 : Configuration(context, request).value_or(0);
    if (!isNew && stored == 0)
        return {status::NotFound};
    Row row = isNew ? Row() : *context.records.Find(Configurations, stored);
    if (const qint16 refused = ReadFields(context, RuleFields(), request, isNew, row))
        return {refused};
    if (context.records.IsTaken(Configurations, {"name"}, row.value("name").toString(), {}, stored))
        return {status::DuplicateName};
    Answer answer;
    if (!isNew) {
        context.records.Update(Configurations, stored, row);
        context.records.RemoveWhere(OrderGroupsTable, "configuration_id", stored);
    } else {
        Put(answer.fields, "MFOCID", QString::number(context.records.Insert(Configurations, row)));
    }
    return answer;
}

/// One sort option of a group as a request carries it.
struct SentRule {
    QString option;
    QString position;
    QString parameter;
};

QList<SentRule> RulesIn(const wire::Fields& request) {
    QList<SentRule> rules;
    for (const wire::Field& field : request) {
        if (field.tag == "MFORID")
            rules.append({.option = field.value, .position = {}, .parameter = {}});
        else if (field.tag == "MFORPS" && !rules.isEmpty())
            rules.last().position = field.value;
        else if (field.tag == "MFORPM" && !rules.isEmpty())
            rules.last().parameter = field.value;
    }
    return rules;
}

/// "AddMarcFieldOrderSortRule": a group comes behind those that the configuration has.
Answer AddGroup(Context& context, const wire::Fields& request) {
    const auto configuration = Configuration(context, request);
    if (!configuration)
        return {status::NotFound};
    const qint64 priority = context.records.Count(OrderGroupsTable, "configuration_id", *configuration) + 1;
    const QString pattern = wire::FirstValue(request, "MFOMAT");
    const QList<SentRule> rules = RulesIn(request);
    if (wire::FirstValue(request, "MFOGRP") != QString::number(priority) ||
        priority > fieldorder::MostGroups || !fieldorder::IsPattern(pattern) ||
        rules.size() > fieldorder::MostGroups)
        return {status::ColumnError};
    const qint64 group = context.records.Insert(
        OrderGroupsTable,
        {{"configuration_id", *configuration}, {"priority", priority}, {"pattern", pattern}});
    QSet<int> chosen;
    for (qsizetype i = 0; i < rules.size(); ++i) {
        const SentRule& rule = rules[i];
        const fieldorder::Option* option = fieldorder::FindOption(rule.option.toInt());
        if (!option || rule.position != QString::number(i + 1) ||
            (chosen.contains(option->id) && !option->repeatable) || !IsStorable(rule.parameter) ||
            !fieldorder::IsParameter(*option, pattern, rule.parameter))
            return {status::ColumnError};
        chosen.insert(option->id);
        context.records.Insert(OrderRulesTable, {{"group_id", group},
                                                 {"position", i + 1},
                                                 {"sort_option", option->id},
                                                 {"parameter", rule.parameter}});
    }
    return {};
}

Table PartTable(const QString& name, const QString& owner, const QString& target, const QString& place) {
    return {.name = name,
            .columns = {{.name = owner,
                         .type = ColumnType::Reference,
                         .target = target,
                         .onRemoval = OnRemoval::RemoveToo},
                        {.name = place, .type = ColumnType::Whole}},
            .uniqueSets = {{owner, place}},
            .owner = owner};
}

} // namespace

void RegisterFieldOrders(Registry& registry) {
    registry.AddSubject({
        .table = Configurations,
        .area = Area::Cataloging,
        .requests = {.list = "LstMarcFieldOrder", .get = "GetMarcFieldOrder", .remove = "DelMarcFieldOrder"},
        .fields = RuleFields(),
        .key = "MFOCID",
        .batch = OrderBatch,
        .addToGet = PutGroups,
    });
    Table groups = PartTable(OrderGroupsTable, "configuration_id", Configurations, "priority");
    groups.columns << Column{.name = "pattern"};
    registry.AddTable(groups);
    Table rules = PartTable(OrderRulesTable, "group_id", OrderGroupsTable, "position");
    rules.columns << Column{.name = "sort_option", .type = ColumnType::Whole} << Column{.name = "parameter"};
    registry.AddTable(rules);

    registry.AddRead("LstMarcFieldOrderRules", Area::AnyOperator, ListOptions);
    registry.AddChange("UpdMarcFieldOrder", Area::Cataloging, StoreConfiguration);
    registry.About("UpdMarcFieldOrder", {Configurations}, {"MFOCID"});
    registry.AddChange("AddMarcFieldOrderSortRule", Area::Cataloging, AddGroup);
    registry.About("AddMarcFieldOrderSortRule", {Configurations}, {"MFOCID"});
    registry.AddRead("GetMarcFieldOrderSortRule", Area::Cataloging, ReadRules);
    registry.AboutOwner("GetMarcFieldOrderSortRule", Configurations, "MFOGID",
                        "SELECT configuration_id FROM " + OrderGroupsTable + " WHERE id=?", "rules");

    registry.AddSubject({
        .table = "field_order_service",
        .area = Area::Cataloging,
        .requests = {.get = "GetMarcOrderServiceControl", .update = "UpdMarcOrderServiceControl"},
        .fields = {SubjectField::Text("CNSU", "address", wire::WebAddressLength).Checked(wire::IsWebAddress)},
        .single = true,
    });
}

} // namespace sysadmin::server
