#include "server/SampleWriter.h"
#include "server/subjects/Registrations.h"

#include <QDate>

namespace sysadmin::server {

namespace {

constexpr int TextLength = 40;
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

QList<Field> FundTypeFields() {
    QList<Field> fields{
        Field::Text("Nm", "name", TextLength).Required().Unique(status::DuplicateName).InList()};
    for (const FundRule& rule : FundRules())
        fields << Field::Flag(rule.flagTag, rule.column)
               << Field::Whole(rule.PercentTag(), rule.PercentColumn(), 0, MostPercent);
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

qint16 CheckPeriod(Context&, const wire::Fields&, const Row&, Row& after) {
    return DayOf(after["end_date"].toString()) < DayOf(after["start_date"].toString()) ? status::ColumnError
                                                                                       : status::Ok;
}

void FillFundTypes(SampleWriter& sample) {
    struct FundType {
        QString name;
        QList<int> percents; // in the order of the rules; -1: off
        int funds = 0;
    };
    const QList<FundType> types{
        {"Allocated, Monographs", {90, 90, 110, 100, 50, -1}, 214},
        {"Allocated, Serials", {95, 95, 105, 105, -1, -1}, 168},
        {"Approval Plans", {85, 90, 100, 100, 60, 40}, 37},
        {"Document Delivery", {-1, 80, -1, 100, -1, -1}, 4},
        {"Electronic Resources", {95, 95, -1, -1, -1, -1}, 52},
        {"Endowment", {80, 80, 100, 100, 40, 25}, 131},
        {"Gift", {75, 75, 100, 100, -1, -1}, 66},
        {"Grant", {90, 90, 100, 100, 75, 75}, 19},
        {"Preservation and Binding", {90, 90, 110, 110, -1, -1}, 8},
        {"Start-Up Collections", {100, 100, 125, 120, -1, -1}, 0},
    };
    for (const FundType& type : types) {
        Row row{{"name", type.name}};
        for (qsizetype i = 0; i < type.percents.size(); ++i) {
            const FundRule& rule = FundRules()[i];
            const int percent = type.percents[i];
            row.insert(rule.column, percent < 0 ? "N" : "Y");
            if (percent >= 0)
                row.insert(rule.PercentColumn(), percent);
        }
        const qint64 id = sample.Add("fund_types", row);
        if (type.funds > 0)
            sample.Use("fund_types", "funds", id, type.funds);
    }
}

void FillFiscalPeriods(SampleWriter& sample) {
    const int firstYear = 2021;
    const int lastYear = 2028;
    for (int year = firstYear; year <= lastYear; ++year) {
        const qint64 id =
            sample.Add("fiscal_periods", {{"name", QString("Fiscal Year %1").arg(year)},
                                          {"start_date", QString("%1-09-01").arg(year - 1)},
                                          {"end_date", QString("%1-08-31 23:59:59").arg(year)}});
        // The last one is planned ahead: no ledger uses it yet. The one before it is the target of a
        // rollover.
        if (year == lastYear - 1)
            sample.Use("fiscal_periods", "rollover rules", id, 3);
        else if (year < lastYear)
            sample.Use("fiscal_periods", "ledgers", id, 12);
    }
    sample.Add("fiscal_periods", {{"name", "Grant Period 2026-2028"},
                                  {"start_date", "2026-01-01"},
                                  {"end_date", "2028-12-31 23:59:59"}});
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
        .usages = {{"funds", UsedByFunds}},
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
                Field::Text("Nm", "name", TextLength).Required().Unique(status::DuplicateName).InList(),
                Field::Text("StDt", "start_date", 10).Required().Checked(IsFirstDay),
                Field::Text("EDt", "end_date", 19).Required().Checked(IsEnd),
            },
        .usages = {{"ledgers", UsedByLedgers}, {"rollover rules", UsedByRollovers}},
        .addReply = {"ID", "Nm"},
        .checkPut = CheckPeriod,
    });
    registry.AddSample("fund types", FillFundTypes);
    registry.AddSample("fiscal periods", FillFiscalPeriods);
}

} // namespace sysadmin::server
