#pragma once

#include "circulation/CalendarForm.h"
#include "framework/MaintenanceScreen.h"

namespace sysadmin {

class CalendarYear;

class CalendarYear;

/// Circulation calendars of the current cluster: weekly opening hours, exception dates, terms and the fixed
/// due date.
class frmCirculation_Calendars : public MaintenanceScreen {
    Q_OBJECT

public:
    frmCirculation_Calendars(Application& application, QWidget* parent);

protected:
    void BeforeLoad() override;
    void BeforeSeveral(Table& table) override;

private:
    QWidget* MakeSlot(const QString& name);
    QWidget* MakeNextDayIcon(const DayHours& day, const QString& name);
    void MarkAll(const QString& mark);
    void AskExceptionFor(QDate date);
    void ReadEventNames();

    CalendarForm& m_form = KeepForm<CalendarForm>();
    SeveralCalendarsForm& m_several = KeepForm<SeveralCalendarsForm>();
    CalendarYear* picYear = nullptr;
};

} // namespace sysadmin
