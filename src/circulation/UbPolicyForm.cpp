#include "circulation/UbPolicyForm.h"

#include "framework/forms/Rules.h"
#include "wire/Counts.h"

#include <QCoreApplication>

namespace sysadmin {

// clang-format off
const QList<UbLimitSpec>& UbLimits() {
    static const QList<UbLimitSpec> limits{
        {"Balance", "UBFEE", "UBMOBAL", "UBFLBK", QT_TRANSLATE_NOOP("UbPolicy", "UB Fines/Lost Item Fees Apply"),
         QT_TRANSLATE_NOOP("UbPolicy", "Max Outstanding Balance"), true},
        {"ItemsBorrowed", "UBMILMT", "UBILMT", "UBIBBK", QT_TRANSLATE_NOOP("UbPolicy", "Max UB Items Borrowed Apply"),
         QT_TRANSLATE_NOOP("UbPolicy", "Max Item Borrowed")},
        {"OverdueItems", "UBMODL", "UBODL", "UBOIBK", QT_TRANSLATE_NOOP("UbPolicy", "Max UB Overdue Items Apply"),
         QT_TRANSLATE_NOOP("UbPolicy", "Max Overdue Items")},
        {"OverdueRecalled", "UBMODRL", "UBODRL", "UBORIBK", QT_TRANSLATE_NOOP("UbPolicy", "Max UB Overdue Recalled Items Apply"),
         QT_TRANSLATE_NOOP("UbPolicy", "Max Overdue Recalled Items")},
        {"SelfShelf", "UBMSSL", "UBSSL", "UBSSBK", QT_TRANSLATE_NOOP("UbPolicy", "Max UB Self-Shelf Returns Apply"),
         QT_TRANSLATE_NOOP("UbPolicy", "Max Self-Shelf Returns")},
        {"ClaimedReturns", "UBMCRL", "UBCRL", "UBCLRBK", QT_TRANSLATE_NOOP("UbPolicy", "Max UB Claimed Returns Apply"),
         QT_TRANSLATE_NOOP("UbPolicy", "Max Claimed Returns")},
        {"LostItems", "UBMLL", "UBLL", "UBLIBK", QT_TRANSLATE_NOOP("UbPolicy", "Max UB Lost Items Apply"),
         QT_TRANSLATE_NOOP("UbPolicy", "Max Lost Items")},
        {"Requests", "UBMR", "UBR", "UBRBK", QT_TRANSLATE_NOOP("UbPolicy", "Max UB Requests Apply"),
         QT_TRANSLATE_NOOP("UbPolicy", "Max UB Request")},
        {"Demerits", "UBMaxDemLmt", "UBDemLmt", "UBDMBK", QT_TRANSLATE_NOOP("UbPolicy", "Max UB Demerits Apply"),
         QT_TRANSLATE_NOOP("UbPolicy", "Max Demerits"), false, true},
    };
    return limits;
}
// clang-format on

QString UbCaption(const char* caption) {
    return QCoreApplication::translate("UbPolicy", caption);
}

namespace {

std::unique_ptr<ValueField> MakeMost(Form& form, const UbLimitSpec& limit) {
    FieldSpec spec{.name = QString("txt") + limit.role,
                   .tag = limit.most,
                   .caption = UbCaption(limit.mostCaption),
                   .required = true};
    if (limit.isMoney)
        return std::make_unique<MoneyField>(form, spec);
    spec.most = wire::MostCount;
    return std::make_unique<NumberField>(form, spec);
}

} // namespace

UbLimit::UbLimit(Form& form, const UbLimitSpec& theSpec)
    : spec(theSpec)
    , applies(form, {.name = QString("chk") + spec.role + "Apply",
                     .tag = spec.applies,
                     .caption = UbCaption(spec.appliesCaption)})
    , most(MakeMost(form, spec))
    , blocks(form, {.name = QString("chk") + spec.role + "Block",
                    .tag = spec.blocks,
                    .caption = Form::tr("Block Local Transactions")}) {}

UbPolicyForm::UbPolicyForm() {
    for (const UbLimitSpec& spec : UbLimits()) {
        UbLimit& limit = *limits.emplace_back(std::make_unique<UbLimit>(*this, spec));
        When([this] { return chkUBEligible.IsOn(); }).Enable(limit.applies);
        When([this, &limit] {
            return chkUBEligible.IsOn() && limit.applies.IsOn();
        }).Enable(*limit.most, limit.blocks);
    }
}

} // namespace sysadmin
