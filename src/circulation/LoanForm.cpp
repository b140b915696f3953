#include "circulation/LoanForm.h"

#include "framework/forms/Rules.h"

namespace sysadmin {

MomentFields::MomentFields(Form& form, const QString& role)
    : date(form, {.name = "txt" + role + "Date"})
    , time(form, {.name = "txt" + role + "Time"}) {}

LoanForm::LoanForm() {
    const auto isOnce = [this] { return !chkAlways.IsOn(); };
    for (MomentFields& renewal : renewed)
        When(isOnce).Enable(renewal.date, renewal.time);
}

Layout LoanForm::Draw() {
    const auto row = [](const QString& heading, MomentFields& moment) {
        return BlockRow(heading, {moment.date, moment.time});
    };
    return Below({cboLocation, cboPatronGroup, cboItemType,
                  Block({tr("Date"), tr("Time")},
                        {row(tr("Loan:"), charged), row(tr("1st Renewal:"), renewed[0]),
                         row(tr("2nd Renewal:"), renewed[1]), row(tr("3rd Renewal:"), renewed[2]),
                         row(tr("Recall:"), recalled), row(tr("Return:"), returned)}),
                  chkAlways, chkHold});
}

void LoanForm::Begin(const QDateTime& now) {
    const Loading loading(*this);
    Clear();
    charged.date.SetDate(now.date());
    charged.time.SetTime(QTime(now.time().hour(), now.time().minute()));
}

std::optional<QDateTime> LoanForm::At(const MomentFields& moment) const {
    if (!moment.date.Date().isValid())
        return std::nullopt;
    QTime time = moment.time.Time();
    if (!time.isValid())
        time = charged.time.Time();
    return QDateTime(moment.date.Date(), time.isValid() ? time : QTime(12, 0));
}

loan::Request LoanForm::Request() const {
    loan::Request request{.location = cboLocation.Draft().toLongLong(),
                          .patronGroup = cboPatronGroup.Draft().toLongLong(),
                          .itemType = cboItemType.Draft().toLongLong(),
                          .charged = At(charged).value_or(QDateTime()),
                          .recalled = At(recalled),
                          .returned = At(returned),
                          .hasHold = chkHold.IsOn(),
                          .renewsAlways = chkAlways.IsOn()};
    if (!request.renewsAlways)
        for (const MomentFields& renewal : renewed)
            if (const auto at = At(renewal))
                request.renewals << *at;
    return request;
}

} // namespace sysadmin
