#include "loan/ReadPolicy.h"

#include <functional>

namespace sysadmin::loan {

namespace {

/// What becomes of a tag's value.
template <class Record>
using Setters = QHash<QString, std::function<void(Record&, const QString&)>>;

template <class Record>
auto Flag(bool Record::*member) {
    return [member](Record& record, const QString& value) { record.*member = value == u"Y"; };
}

template <class Record>
auto Count(int Record::*member) {
    return [member](Record& record, const QString& value) { record.*member = value.toInt(); };
}

template <class Record>
auto Money(Amount Record::*member) {
    return [member](Record& record, const QString& value) {
        record.*member = AmountFromText(value).value_or(0);
    };
}

template <class Record>
auto Most(std::optional<Amount> Record::*member) {
    return [member](Record& record, const QString& value) { record.*member = AmountFromText(value); };
}

template <class Record>
auto Letter(Unit Record::*member) {
    return [member](Record& record, const QString& value) { record.*member = UnitOf(value); };
}

template <class Record>
void Set(const Setters<Record>& setters, const Fields& fields, Record& record) {
    for (const auto& [tag, value] : fields)
        if (const auto setter = setters.constFind(tag); setter != setters.constEnd())
            (*setter)(record, value);
}

/// Reads rows that begin with their key into what `record` finds for it.
template <class Record>
void SetRows(const Setters<Record>& setters, const QString& keyTag, const Fields& fields,
             const std::function<Record&(qint64)>& record) {
    Record* at = nullptr;
    for (const auto& [tag, value] : fields) {
        if (tag == keyTag)
            at = &record(value.toLongLong());
        else if (const auto setter = setters.constFind(tag); at && setter != setters.constEnd())
            (*setter)(*at, value);
    }
}

QDate DateOf(const QString& text) {
    return QDate::fromString(text, "yyyyMMdd");
}

QTime TimeOf(const QString& text) {
    return QTime::fromString(text, "HH:mm");
}

/// The five fields of a day.
void SetDay(DayHours& hours, int part, const QString& value) {
    switch (part) {
    case 0:
        hours.isOpen = value == u"Y";
        break;
    case 1:
        hours.opens = TimeOf(value);
        break;
    case 2:
        hours.closes = TimeOf(value);
        break;
    case 3:
        hours.due = TimeOf(value);
        break;
    case 4:
        hours.inEffect = TimeOf(value);
        break;
    }
}

/// A weekday's tag: which day and which of its fields.
const QHash<QString, QPair<int, int>>& WeekTags() {
    static const QHash<QString, QPair<int, int>> tags = [] {
        QHash<QString, QPair<int, int>> all;
        const QStringList days{"Sn", "Mn", "Tu", "Wd", "Th", "Fr", "St"};
        for (int day = 0; day < days.size(); ++day) {
            const QStringList parts = day == 0 ? QStringList{"Opn", "OpnTm", "ClsTm", "DTm", "ETm"}
                                               : QStringList{"Opn", "OTm", "CTm", "DTm", "ETm"};
            for (int part = 0; part < parts.size(); ++part)
                all.insert(days[day] + parts[part], {day, part});
        }
        return all;
    }();
    return tags;
}

} // namespace

Unit UnitOf(const QString& letter) {
    static const QHash<QString, Unit> units{
        {"M", Unit::Minute}, {"H", Unit::Hour}, {"D", Unit::Day}, {"T", Unit::Term}, {"I", Unit::Indefinite}};
    return units.value(letter.left(1), Unit::Day);
}

namespace {

const Setters<Rule>& RuleSetters() {
    static const Setters<Rule> setters{
        {"MP", [](Rule& record, const QString& value) { record.patronGroup = value.toLongLong(); }},
        {"MII", [](Rule& record, const QString& value) { record.itemType = value.toLongLong(); }},
        {"CR", Flag(&Rule::mayCharge)},
        {"Hl", Flag(&Rule::allowsHolds)},
        {"Rc", Flag(&Rule::allowsRecalls)},
        {"CSl", Flag(&Rule::allowsCallSlips)},
        {"LP", [](Rule& record, const QString& value) { record.period = value.toDouble(); }},
        {"LnI", Letter(&Rule::unit)},
        {"G", Count(&Rule::grace)},
        {"FR", Money(&Rule::fineRate)},
        {"FI", Letter(&Rule::fineUnit)},
        {"MF", Most(&Rule::mostFine)},
        {"MR", Count(&Rule::mostRenewals)},
        {"RPr", Count(&Rule::renewalPeriod)},
        {"RI", Letter(&Rule::renewalUnit)},
        {"RF", Flag(&Rule::renewsFromRenewal)},
        {"RRP", Count(&Rule::recallReturn)},
        {"MRL", Count(&Rule::leastLoanWhenRecalled)},
        {"RGP", Count(&Rule::recallGrace)},
        {"RFR", Money(&Rule::recallFineRate)},
        {"RFI", Letter(&Rule::recallFineUnit)},
        {"MRF", Most(&Rule::mostRecallFine)},
        {"NO", Flag(&Rule::dueAtNextFixedTime)},
        {"BO", Flag(&Rule::booksOverdue)},
        {"WP", Count(&Rule::warning)},
        {"WI", Letter(&Rule::warningUnit)},
        {"CI", Count(&Rule::courtesy)},
        {"ML", Count(&Rule::leastLoanForCourtesy)},
        {"FO", Count(&Rule::firstOverdue)},
        {"LI", Count(&Rule::lost)},
        {"OC", Count(&Rule::overdueCount)},
        {"ON", Count(&Rule::overdueInterval)},
        {"RNC", Count(&Rule::recallNoticeCount)},
        {"RN", Count(&Rule::recallNoticeInterval)},
        {"HS", Count(&Rule::holdShelf)},
        {"HSI", Letter(&Rule::holdShelfUnit)},
    };
    return setters;
}

} // namespace

void ReadRule(const Fields& fields, Rule& rule) {
    Set(RuleSetters(), fields, rule);
}

void ReadRules(const Fields& fields, Group& group) {
    SetRows<Rule>(RuleSetters(), "MI", fields, [&](qint64 id) -> Rule& {
        group.rules.append(Rule{.id = id});
        return group.rules.last();
    });
}

void ReadGroup(const Fields& fields, Group& group) {
    static const Setters<Group> setters{
        {"Nm", [](Group& record, const QString& value) { record.name = value; }},
        {"CCL", Flag(&Group::countsClosedForLoan)},
        {"AFDFOL", Flag(&Group::fixedTimeForOvernight)},
        {"CCF", Flag(&Group::countsClosedForFine)},
        {"I", Flag(&Group::includesLostFee)},
        {"LF", Money(&Group::lostFee)},
        {"IMF", Flag(&Group::includesMostFineForLost)},
        {"ExtRecDueDate", Flag(&Group::extendsRecallDue)},
        {"RR", Flag(&Group::renewsIfRecalled)},
        {"HR", Flag(&Group::renewsIfHeld)},
        {"OR", Flag(&Group::renewsIfOverdue)},
        {"LIR_ROD", Flag(&Group::returnRemovesFines)},
        {"LIR_RRF", Flag(&Group::returnRemovesReplacement)},
        {"LIR_RPF", Flag(&Group::returnRemovesFee)},
        {"EP", Count(&Group::earlyPickup)},
        {"UI", Count(&Group::unclaimed)},
    };
    Set(setters, fields, group);
}

void ReadItemSettings(const Fields& fields, Group& group) {
    static const Setters<ItemSettings> setters{{"I4", Money(&ItemSettings::replacementCost)},
                                               {"I5", Flag(&ItemSettings::isShortLoan)}};
    SetRows<ItemSettings>(setters, "I1", fields, [&](qint64 id) -> ItemSettings& { return group.items[id]; });
}

void ReadPatronRules(const Fields& fields, Group& group) {
    static const Setters<PatronRule> setters{{"1C", Flag(&PatronRule::finesApply)},
                                             {"1E", Flag(&PatronRule::overdueNoticesApply)},
                                             {"1X", Flag(&PatronRule::courtesyNoticesApply)}};
    SetRows<PatronRule>(setters, "1", fields, [&](qint64 id) -> PatronRule& { return group.patrons[id]; });
}

void ReadDemeritRule(const Fields& fields, DemeritRule& rule) {
    static const Setters<DemeritRule> setters{{"DemAply", Flag(&DemeritRule::apply)},
                                              {"MaxDem", Count(&DemeritRule::most)},
                                              {"SusDays", Count(&DemeritRule::suspensionDays)}};
    Set(setters, fields, rule);
}

void ReadCirculation(const Fields& fields, Policy& policy) {
    static const Setters<Policy> setters{{"UDem", Flag(&Policy::usesDemerits)},
                                         {"TB", Count(&Policy::bookingBuffer)}};
    Set(setters, fields, policy);
}

void ReadLocations(const Fields& fields, Group& group) {
    static const Setters<Location> setters{
        {"SN", [](Location& record, const QString& value) { record.name = value; }},
        {"CL", Flag(&Location::isDesk)},
        {"PL", Flag(&Location::isPickup)}};
    SetRows<Location>(setters, "SI", fields, [&](qint64 id) -> Location& {
        group.locations.append(Location{.id = id});
        return group.locations.last();
    });
}

void ReadCalendar(const Fields& fields, Calendar& calendar) {
    static const QStringList exceptionTags{"ExOpn", "ExOTm", "ExCTm", "ExDTm", "ExETm"};
    QDate exception;
    QDate term;
    for (const auto& [tag, value] : fields) {
        if (tag == u"Nm")
            calendar.name = value;
        else if (tag == u"StDt")
            calendar.begin = DateOf(value);
        else if (tag == u"EDt")
            calendar.end = DateOf(value);
        else if (tag == u"FDDt")
            calendar.fixedDue = DateOf(value);
        else if (tag == u"ExDt")
            exception = DateOf(value);
        else if (tag == u"ETrm")
            calendar.terms[term = DateOf(value)] = 0;
        else if (tag == u"LDay" && term.isValid())
            calendar.terms[term] = value.toInt();
        else if (const auto day = WeekTags().constFind(tag); day != WeekTags().constEnd())
            SetDay(calendar.week[size_t(day->first)], day->second, value);
        else if (const qsizetype part = exceptionTags.indexOf(tag); part >= 0 && exception.isValid())
            SetDay(calendar.exceptions[exception], int(part), value);
    }
}

} // namespace sysadmin::loan
