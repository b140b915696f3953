#include "server/store/Database.h"
#include "server/subjects/Registrations.h"
#include "wire/BulkImport.h"

namespace sysadmin::server {

namespace fundcheck = wire::bulkimport::fundcheck;

namespace {

/// What a purchase order can have: types of orders and line items, currencies and the library's own one.
Answer ListOrderChoices(Context& context, const wire::Fields&) {
    Answer answer;
    PutList(context, {"po_types", {{"OTYPEID", "id"}, {"OTYPEDESC", "name"}}, {"name"}}, answer.fields);
    PutList(context, {"line_item_types", {{"OLIDEFID", "id"}, {"OLIDEF", "name"}}, {"name"}}, answer.fields);
    PutList(context, {"currencies", {{"OCURR", "code"}, {"OCURRDCML", "decimals"}}, {"code"}}, answer.fields);
    const auto base = context.database.FirstRow("SELECT code, decimals FROM base_currency");
    Put(answer.fields, "OCURRBASE", base ? base->value(0).toString() : QString());
    Put(answer.fields, "OCURRDCMLBASE", base ? base->value(1).toString() : QString());
    return answer;
}

/// A code stands in the ledgers of several years.
Answer ListFunds(Context& context, const wire::Fields&) {
    Answer answer;
    context.database.Each("SELECT code, MIN(name) FROM funds GROUP BY code ORDER BY code", {},
                          [&](const ResultRow& row) {
                              Put(answer.fields, "FCODE", row.value(0).toString());
                              Put(answer.fields, "FNAME", row.value(1).toString());
                          });
    return answer;
}

/// The name of a ledger comes again each year.
Answer ListLedgers(Context& context, const wire::Fields&) {
    Answer answer;
    context.database.Each("SELECT l.id, l.name, p.id, p.name FROM ledgers l JOIN fiscal_periods p ON "
                          "p.id=l.fiscal_period_id ORDER BY p.start_date DESC, l.name, l.id",
                          {}, [&](const ResultRow& row) {
                              Put(answer.fields, "ID", row.value(0).toString());
                              Put(answer.fields, "Nm", row.value(1).toString());
                              Put(answer.fields, "FISCALID", row.value(2).toString());
                              Put(answer.fields, "FPN", row.value(3).toString());
                          });
    return answer;
}

/// The fiscal periods that are not over.
Answer ListCurrentPeriods(Context& context, const wire::Fields&) {
    const QString today = context.now.toLocalTime().date().toString(Qt::ISODate);
    Answer answer;
    context.database.Each("SELECT id, name FROM fiscal_periods WHERE end_date>=? ORDER BY start_date, id",
                          {today}, [&](const ResultRow& row) {
                              Put(answer.fields, "ID", row.value(0).toString());
                              Put(answer.fields, "Nm", row.value(1).toString());
                          });
    return answer;
}

/// The accounts with one vendor.
Answer ListVendorAccounts(Context& context, const wire::Fields& request) {
    Answer answer;
    context.database.Each("SELECT id, name FROM vendor_accounts WHERE vendor_id=? ORDER BY name",
                          {wire::FirstValue(request, "ID").toLongLong()}, [&](const ResultRow& row) {
                              Put(answer.fields, "OACCTID", row.value(0).toString());
                              Put(answer.fields, "OACCTNM", row.value(1).toString());
                          });
    return answer;
}

/// How fund, ledger and fiscal period go together; each of them may be missing.
QString CheckFund(Context& context, const QVariantList& ledgersOfFund, qint64 ledger, qint64 period) {
    const auto periodOf = [&](const QVariant& id) {
        return context.database.FirstValue("SELECT fiscal_period_id FROM ledgers WHERE id=?", {id})
            .toLongLong();
    };
    qsizetype inPeriod = 0;
    bool inLedger = false;
    for (const QVariant& id : ledgersOfFund) {
        inPeriod += periodOf(id) == period ? 1 : 0;
        inLedger = inLedger || id.toLongLong() == ledger;
    }
    const bool hasFund = !ledgersOfFund.isEmpty();
    if (hasFund && period != 0 && inPeriod == 0)
        return fundcheck::FundNotInPeriod;
    if (hasFund && ledger != 0 && !inLedger)
        return fundcheck::FundNotInLedger;
    if (ledger != 0 && period != 0 && periodOf(ledger) != period)
        return fundcheck::LedgerNotInPeriod;
    if (hasFund && period != 0 && ledger == 0 && inPeriod > 1)
        return fundcheck::SeveralLedgers;
    return fundcheck::Fine;
}

Answer AnswerFundCheck(Context& context, const wire::Fields& request) {
    const QString fund = wire::FirstValue(request, "FCODE").trimmed();
    const qint64 ledger = wire::FirstValue(request, "LEDGERID").toLongLong();
    const qint64 period = wire::FirstValue(request, "FISCALID").toLongLong();
    const QVariantList ledgers =
        context.database.FirstColumn("SELECT ledger_id FROM funds WHERE code=?", {fund});
    if (!fund.isEmpty() && ledgers.isEmpty())
        return {status::InvalidFund};
    if ((ledger != 0 && !context.records.Find("ledgers", ledger)) ||
        (period != 0 && !context.records.Find("fiscal_periods", period)))
        return {status::NotFound};
    Answer answer;
    Put(answer.fields, "RES", CheckFund(context, ledgers, ledger, period));
    return answer;
}

Column BelongsTo(const QString& column, const QString& table) {
    return {.name = column, .type = ColumnType::Reference, .target = table};
}

} // namespace

// All of these are kept by the acquisitions client; other programs choose from them.
void RegisterAcquisitionsOrders(Registry& registry) {
    registry.AddTable({.name = "currencies",
                       .columns = {{.name = "code"},
                                   {.name = "name"},
                                   {.name = "decimals", .type = ColumnType::Whole, .fallback = "2"}},
                       .uniqueTexts = {{.column = "code"}}});
    registry.AddTable(
        {.name = "line_item_types", .columns = {{.name = "name"}}, .uniqueTexts = {{.column = "name"}}});
    registry.AddTable({.name = "vendor_accounts",
                       .columns = {BelongsTo("vendor_id", "vendors"), {.name = "name"}},
                       .uniqueSets = {{"vendor_id", "name"}}});
    registry.AddRead("AvlCatOrd", Area::AnyOperator, ListOrderChoices);
    registry.AddRead("AvlCatOrdFund", Area::AnyOperator, ListFunds);
    registry.AddRead("LstLedger", Area::AnyOperator, ListLedgers);
    registry.AddRead("LstCurrFscPr", Area::AnyOperator, ListCurrentPeriods);
    registry.AddRead("AvlVendorAccnt", Area::AnyOperator, ListVendorAccounts);
    registry.AddRead("ChkFundLedgFisc", Area::AnyOperator, AnswerFundCheck);
}

} // namespace sysadmin::server
