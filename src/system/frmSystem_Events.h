#pragma once

#include "core/data/EventList.h"
#include "framework/MaintenanceScreen.h"

class QLabel;

namespace sysadmin {

struct EventForm : Form {
    EventForm();
    /// The event as it is entered.
    Event Entered() const;
    /// No year has a 31st of June.
    std::optional<Finding> FormProblem() override;

    TextField txtName{
        *this,
        {.name = "txtName", .tag = "Nm", .caption = tr("Name:"), .maxLength = NameLength, .required = true}};
    ChoiceField cboRule;
    ChoiceField cboMonth;
    NumberField txtDay{*this,
                       {.name = "txtDay",
                        .tag = "Dy",
                        .caption = tr("Day:"),
                        .required = true,
                        .initial = "1",
                        .least = 1,
                        .most = 31}};
    ChoiceField cboWeek;
    ChoiceField cboWeekday;
    NumberField txtFromEaster{*this,
                              {.name = "txtFromEaster",
                               .tag = "Of",
                               .caption = tr("Days from Easter:"),
                               .required = true,
                               .unit = tr("(before it: -2)"),
                               .initial = "0",
                               .least = -wire::events::MostFromEaster,
                               .most = wire::events::MostFromEaster}};
    DateField txtDate{*this,
                      {.name = "txtDate",
                       .tag = "Dt",
                       .caption = tr("Date:"),
                       .required = true,
                       .format = wire::events::DateFormat}};
    FlagField chkOpen{*this, {.name = "chkOpen", .tag = "O", .caption = tr("Open, with hours of its own")}};
    TimeField txtOpenTime{*this,
                          {.name = "txtOpenTime", .tag = "OTm", .caption = tr("From:"), .required = true}};
    TimeField txtCloseTime{*this,
                           {.name = "txtCloseTime", .tag = "CTm", .caption = tr("To:"), .required = true}};
};

/// Holidays and happenings: rules for their dates, and whether the library is closed or has other hours.
class frmSystem_Events : public MaintenanceScreen {
    Q_OBJECT

public:
    frmSystem_Events(Application& application, QWidget* parent);

protected:
    GridRow ReadRow(const Table& table) override;
    void RefreshOwnControls() override;

private:
    void ShowNext();
    void ApplyToCalendars();

    EventForm& m_form = KeepForm<EventForm>();
    QLabel* lblNext = nullptr;
    QPushButton* cmdApply = nullptr;
};

/// A rule as people say it: "fourth Thursday of November".
QString InWords(const wire::events::Rule& rule);

} // namespace sysadmin
