#include "security/SecurityOptionsForm.h"

#include "core/data/RequestChannel.h"
#include "framework/forms/Rules.h"

#include <algorithm>

namespace sysadmin {

namespace {

constexpr qint64 MinutesPerHour = 60;
constexpr qint64 MinutesPerDay = 1440;
constexpr int MostAmount = 999999;

qint64 MinutesIn(const QString& unit) {
    return unit == u"D" ? MinutesPerDay : unit == u"H" ? MinutesPerHour : 1;
}

qint64 DividedUp(qint64 number, qint64 divisor) {
    return (number + divisor - 1) / divisor;
}

/// So many days in the field's unit.
int InUnitOf(const TimeSpanField& field, int days) {
    return int(days * MinutesPerDay / MinutesIn(field.Unit()));
}

QList<PickItem> UnitsOf(const QString& letters) {
    QList<PickItem> units;
    for (const QChar letter : letters)
        units.append({letter, letter == u'M'   ? Form::tr("Minutes")
                              : letter == u'H' ? Form::tr("Hours")
                                               : Form::tr("Days")});
    return units;
}

} // namespace

TimeSpanField::TimeSpanField(Form& form, const FieldSpec& spec, const QString& units)
    : IntervalField(form, spec) {
    Declaration().options = UnitsOf(units);
    Declaration().letterFirst = true;
    Declaration().most = MostAmount;
}

void TimeSpanField::ChangeUnit(const QString& unit) {
    if (IsBlank())
        SetParts({}, unit);
    else
        SetParts(QString::number(DividedUp(Minutes(), MinutesIn(unit))), unit);
}

qint64 TimeSpanField::Minutes() const {
    return Amount() * MinutesIn(Unit());
}

CountField::CountField(Form& form, const FieldSpec& spec)
    : NumberField(form, spec) {
    Declaration().required = true;
}

SecurityOptionsForm::SecurityOptionsForm() {
    When([this] { return optGroupReq.Draft() == u"1"; })
        .Enable(fpGroupReq, chkMinAlphaCharGrp, chkMinUpperCharGrp, chkMinLowerCharGrp, chkMinNumberCharGrp,
                chkMinSpecialCharGrp);
    // A number that is typed over is blank for a moment; 0 acts once the field is left.
    When([this] {
        return fpLoginAttempts.IsBlank() || fpLoginAttempts.Value() > 0;
    }).Enable(fpLockoutDuration, fpLockoutCounter);
    When([this] { return m_attemptsLeft == 0 && fpLoginAttempts.Value() > 0; }).Do([this] {
        constexpr int UsualPeriod = 24;
        constexpr int UsualReset = 10;
        if (fpLockoutDuration.Amount() == 0)
            fpLockoutDuration.SetAmount(UsualPeriod);
        if (fpLockoutCounter.Amount() == 0)
            fpLockoutCounter.SetAmount(UsualReset);
    });
    WhenLeft(fpLoginAttempts, [this] {
        m_attemptsLeft = fpLoginAttempts.Value();
        if (m_attemptsLeft > 0)
            return;
        fpLoginAttempts.SetValue(0);
        fpLockoutDuration.SetAmount(0);
        fpLockoutCounter.SetAmount(0);
    });
    WhenLeft(fpMinPasswordLen, [this] { LeaveLength(false); });
    WhenLeft(fpMaxPasswordLen, [this] { LeaveLength(true); });
    WhenLeft(fpReminderDays, [this] {
        if (fpReminderDays.Value() > fpMaxPasswordAge.Value())
            fpMaxPasswordAge.SetValue(fpReminderDays.Value());
    });
    WhenLeft(fpMinPasswordAge, [this] {
        const qint64 days = DividedUp(fpMinPasswordAge.Minutes(), MinutesPerDay);
        if (fpMaxPasswordAge.Value() > 0 && days > fpMaxPasswordAge.Value())
            fpMaxPasswordAge.SetValue(int(std::min<qint64>(days, MostDays)));
    });
    WhenLeft(fpMaxPasswordAge, [this] {
        const int days = fpMaxPasswordAge.Value();
        if (days == 0)
            return;
        if (fpReminderDays.Value() > days)
            fpReminderDays.SetValue(days);
        if (fpMinPasswordAge.Minutes() > days * MinutesPerDay)
            fpMinPasswordAge.SetAmount(InUnitOf(fpMinPasswordAge, days));
    });
}

void SecurityOptionsForm::LoadOptions(RequestChannel& channel) {
    const Loading loading(*this);
    Load(channel);
    m_attemptsLeft = fpLoginAttempts.Value();
    const int count = channel.GetField("PGR").toInt();
    optGroupReq.SetStored(count > 0 ? "1" : "0");
    fpGroupReq.SetStored(QString::number(std::max(count, 1)));
}

void SecurityOptionsForm::TakeExpiry(int days) {
    fpMaxPasswordAge.SetStored(QString::number(days));
    if (days == 0)
        return;
    // What the server has lowered with it.
    if (fpReminderDays.Value() > days)
        fpReminderDays.SetStored(QString::number(days));
    if (fpMinPasswordAge.Minutes() > days * MinutesPerDay)
        fpMinPasswordAge.SetStored(fpMinPasswordAge.Unit() +
                                   QString::number(InUnitOf(fpMinPasswordAge, days)));
}

QString SecurityOptionsForm::GroupRequirement() const {
    return optGroupReq.Draft() == u"1" ? fpGroupReq.Draft() : "0";
}

wire::PasswordRules SecurityOptionsForm::Rules() const {
    wire::Fields fields{{"PGR", GroupRequirement()}};
    for (const Field* field : Fields())
        if (const auto* value = dynamic_cast<const ValueField*>(field); value && !value->Tag().isEmpty())
            fields.append({value->Tag(), value->Draft()});
    return wire::PasswordRules::FromFields(fields);
}

void SecurityOptionsForm::LeaveLength(bool maximum) {
    if (maximum) {
        fpMaxPasswordLen.SetValue(std::max(1, fpMaxPasswordLen.Value()));
        if (fpMaxPasswordLen.Value() < fpMinPasswordLen.Value())
            fpMinPasswordLen.SetValue(fpMaxPasswordLen.Value());
    }
    // Holds after a maximum below it, too, which then follows.
    fpMinPasswordLen.SetValue(std::max(LeastPasswordLength, fpMinPasswordLen.Value()));
    if (fpMinPasswordLen.Value() > fpMaxPasswordLen.Value())
        fpMaxPasswordLen.SetValue(fpMinPasswordLen.Value());
}

} // namespace sysadmin
