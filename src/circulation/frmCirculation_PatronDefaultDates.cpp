#include "circulation/frmCirculation_PatronDefaultDates.h"

#include "core/Application.h"
#include "core/Prompter.h"
#include "framework/forms/Rules.h"

namespace sysadmin {

DefaultDate::DefaultDate(Form& form, const QString& role, const QString& tagStart, const QString& caption)
    : how(form,
          {.name = "opt" + role,
           .initial = "R",
           .accessible = caption,
           .options = {{"E", Form::tr("Exact date")}, {"R", Form::tr("Relative to the record's creation")}}})
    , exact(form, {.name = "dtp" + role + "Date",
                   .tag = tagStart + "Date",
                   .caption = Form::tr("Date:"),
                   .format = "yyyyMMdd"})
    , relative(form, {.name = "txt" + role + "Offset",
                      .tag = tagStart + "Offset",
                      .caption = Form::tr("Interval:"),
                      .options = {{"Y", Form::tr("Year")}, {"M", Form::tr("Month")}, {"D", Form::tr("Day")}},
                      .unitName = "cbo" + role + "Unit"}) {}

void DefaultDate::FollowLoaded() {
    how.SetStored(exact.IsBlank() ? "R" : "E");
}

void DefaultDate::Put(RequestChannel& channel) const {
    channel.PutField(exact.Tag(), IsExact() ? exact.Draft() : QString());
    channel.PutField(relative.Tag(), IsExact() || relative.IsBlank() ? QString() : relative.Draft());
}

void DefaultDate::ClearOther() {
    if (IsExact())
        relative.SetStored({});
    else
        exact.SetStored({});
}

PatronDefaultDatesForm::PatronDefaultDatesForm() {
    for (DefaultDate* date : {&expiration, &purge})
        When([date] { return date->IsExact(); }).Enable(date->exact).Disable(date->relative);
    expiration.FollowLoaded();
    purge.FollowLoaded();
}

frmCirculation_PatronDefaultDates::frmCirculation_PatronDefaultDates(Application& application,
                                                                     QWidget* parent)
    : SingleRecordScreen(application, "frmCirculation_PatronDefaultDates",
                         tr("Circulation Patron Default Dates"), Area::Circulation, parent) {
    const auto frame = [](const QString& name, const QString& caption, DefaultDate& date) {
        return Frame(name, caption, {date.how, date.exact, date.relative});
    };
    Build({.subject = tr("Patron Default Dates"),
           .notice = "PatDefDates",
           .frameNoun = tr("Patron Default Dates"),
           .getRequest = "GetPatDefDates",
           .updateRequest = "UpdPatDefDates",
           .loadCaption = "Load Circulation Patron Default Dates - REQ_CIRC_PATRON_DEFAULT_DATES_GET",
           .saveCaption = "Save Circulation Patron Default Dates"},
          m_form,
          Below({frame("fraExpiration", tr("Expiration Date"), m_form.expiration),
                 frame("fraPurge", tr("Purge Date"), m_form.purge)}),
          {[this](RequestChannel& channel, const SaveContext&) {
              m_form.expiration.Put(channel);
              m_form.purge.Put(channel);
          }});
}

void frmCirculation_PatronDefaultDates::ReadRecord() {
    SingleRecordScreen::ReadRecord();
    m_form.expiration.FollowLoaded();
    m_form.purge.FollowLoaded();
}

bool frmCirculation_PatronDefaultDates::CheckBeforeSave() {
    return SingleRecordScreen::CheckBeforeSave() &&
           CheckDate(m_form.expiration, tr("Please enter the expiration date."),
                     tr("The expiration date is not a future date; any patron record created with this "
                        "default date will be immediatedly expired.\r\nContinue anyway?")) &&
           CheckDate(m_form.purge, tr("Please enter the purge date."),
                     tr("The purge date is not a future date; any patron record created with this "
                        "default date will be purged when the purge job runs.\r\nContinue anyway?"));
}

bool frmCirculation_PatronDefaultDates::CheckDate(const DefaultDate& date, const QString& missing,
                                                  const QString& past) {
    if (!date.IsExact())
        return true;
    if (date.exact.IsBlank()) {
        Tell(missing);
        View().FocusField(date.exact);
        return false;
    }
    if (date.exact.Date() > QDate::currentDate() ||
        App().prompter.ShowBox(
            this,
            {.text = past, .icon = Box::Icon::Question, .buttons = Box::Buttons::YesNo, .careful = true}))
        return true;
    View().FocusField(date.exact);
    return false;
}

void frmCirculation_PatronDefaultDates::AfterSave() {
    m_form.expiration.ClearOther();
    m_form.purge.ClearOther();
}

} // namespace sysadmin

#include "moc_frmCirculation_PatronDefaultDates.cpp"
