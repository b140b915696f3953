#include "server/subjects/Registrations.h"
#include "server/subjects/StoredRules.h"

#include <QDate>

namespace sysadmin::server {

namespace {

constexpr int MostPercent = 999;
constexpr qint16 UsedByRollovers = 57;
constexpr qint16 UsedByFunds = 88;
constexpr qint16 UsedByLedgers = 89;

/// A rule of a fund type: whether it is on, and from which percentage it applies.
struct FundRule {
    QString flagTag;
    QString column;

    QString PercentTag() const { return flagTag + "P"; }
    QString PercentColumn() const { return column + "_percent"; }
};

const QList<FundRule>& FundRules() {
    static const QList<FundRule> rules{
        {"OCW", "overcommit_warning"}, {"OEW", "overexpend_warning"}, {"OCL", "overcommit_limit"},
        {"OEL", "overexpend_limit"},   {"UC", "undercommit"},         {"UE", "underexpend"},
    };
    return rules;
}

QList<SubjectField> FundTypeFields() {
    QList<SubjectField> fields{
        SubjectField::Text("Nm", "name", TextLength).Required().Unique(status::DuplicateName).InList()};
    for (const FundRule& rule : FundRules())
        fields << SubjectField::Flag(rule.flagTag, rule.column)
               << SubjectField::Whole(rule.PercentTag(), rule.PercentColumn(), 0, MostPercent);
    return fields;
}

/// A rule that is on needs its percentage; one that is off keeps none.
qint16 CheckFundRules(Context&, const wire::Fields&, const Row&, Row& after) {
    for (const FundRule& rule : FundRules()) {
        if (after.value(rule.column).toString() != "Y")
            after[rule.PercentColumn()] = QVariant();
        else if (after.value(rule.PercentColumn()).isNull())
            return status::ColumnError;
    }
    return status::Ok;
}

QDate DayOf(const QString& value) {
    return QDate::fromString(value.left(10), "yyyy-MM-dd");
}

bool IsFirstDay(const QString& value) {
    return value.size() == 10 && DayOf(value).isValid();
}

bool IsEnd(const QString& value) {
    return value.size() == 19 && value.endsWith(" 23:59:59") && DayOf(value).isValid();
}

bool EndsAfterItsStart(const Row& period) {
    return DayOf(period["end_date"].toString()) >= DayOf(period["start_date"].toString());
}

/// The ledgers of a fiscal period with their funds, and the locations that spend from them. The acquisitions
/// client keeps them.
void AddLedgerTables(Registry& registry) {
    const auto reference = [](const QString& column, const QString& table,
                              OnRemoval onRemoval = OnRemoval::Refuse) {
        return Column{.name = column, .type = ColumnType::Reference, .target = table, .onRemoval = onRemoval};
    };
    registry.AddTable({.name = "ledgers",
                       .columns = {{.name = "name"},
                                   reference("fiscal_period_id", "fiscal_periods"),
                                   reference("policy_group_id", "acquisitions_policy_groups")},
                       .uniqueTexts = {{.column = "name", .within = "fiscal_period_id"}}});
    registry.AddTable(
        {.name = "ledger_locations",
         .columns = {reference("ledger_id", "ledgers", OnRemoval::RemoveToo),
                     reference("location_id", "locations")},
         .uniqueSets = {{"ledger_id", "location_id"}},
         .owner = "ledger_id",
         .storedRules = {FindsNone("SELECT k.id FROM ledger_locations k WHERE NOT EXISTS (SELECT 1 FROM "
                                   "acquisitions_policy_locations p WHERE p.location_id=k.location_id)",
                                   "The location belongs to no acquisitions policy group.",
                                   {"acquisitions_policy_locations"})}});
    registry.AddTable({.name = "funds",
                       .columns = {{.name = "code"},
                                   {.name = "name"},
                                   reference("ledger_id", "ledgers", OnRemoval::RemoveToo),
                                   reference("fund_type_id", "fund_types")},
                       .uniqueTexts = {{.column = "code", .within = "ledger_id"}}});
}

} // namespace

void RegisterAcquisitionsFunds(Registry& registry) {
    registry.AddSubject({
        .table = "fund_types",
        .area = Area::Acquisitions,
        .requests = {.list = "LstFndTp",
                     .get = "GetFndTp",
                     .add = "AddFndTp",
                     .update = "UpdFndTp",
                     .remove = "DelFndTp"},
        .fields = FundTypeFields(),
        .usedBy = {{"funds", "fund_type_id", UsedByFunds}},
        .addReply = {"ID", "Nm"},
        .checkPut = CheckFundRules,
    });
    registry.AddSubject({
        .table = "fiscal_periods",
        .area = Area::Acquisitions,
        .requests = {.list = "LstFscPr",
                     .get = "GetFscPr",
                     .add = "AddFscPr",
                     .update = "UpdFscPr",
                     .remove = "DelFscPr"},
        .fields =
            {
                SubjectField::Text("Nm", "name", TextLength)
                    .Required()
                    .Unique(status::DuplicateName)
                    .InList(),
                SubjectField::Text("StDt", "start_date", 10).Required().Checked(IsFirstDay),
                SubjectField::Text("EDt", "end_date", 19).Required().Checked(IsEnd),
            },
        .usedBy = {{"ledgers", "fiscal_period_id", UsedByLedgers},
                   {"import_rule_settings", "fiscal_period_id"}},
        .usages = {{"rollover rules", UsedByRollovers}},
        .addReply = {"ID", "Nm"},
        .rules = {{EndsAfterItsStart, "The period ends before it begins."}},
    });
    AddLedgerTables(registry);
}

} // namespace sysadmin::server
