#include "circulation/frmCirculation_Calendars.h"

#include "circulation/CalendarYear.h"
#include "core/Application.h"
#include "framework/RowsEditor.h"
#include "wire/Status.h"

#include <QLabel>
#include <QPainter>
#include <QPainterPath>

namespace sysadmin {

namespace {

constexpr int IconSize = 18;
const QString NextDayPrefix = "imgNextDay";
const QStringList WeekRoles{"Sn", "Mn", "Tu", "Wd", "Th", "Fr", "St"};

Layout WeekBlock(CalendarForm& form) {
    const QStringList days{Form::tr("Sunday:"),    Form::tr("Monday:"),   Form::tr("Tuesday:"),
                           Form::tr("Wednesday:"), Form::tr("Thursday:"), Form::tr("Friday:"),
                           Form::tr("Saturday:")};
    QList<Layout> rows;
    for (int day = 0; day < days.size(); ++day) {
        DayHours& hours = form.week[size_t(day)];
        rows.append(BlockRow(days[day], {hours.open, hours.close, Slot(NextDayPrefix + WeekRoles[day]),
                                         hours.inEffect, hours.due}));
    }
    return Block({Form::tr("Open Time"), Form::tr("Close Time"), "",
                  Form::tr(".......Overnight Loans.......") + "\n" + Form::tr("In Effect"),
                  "\n" + Form::tr("Due Time")},
                 rows);
}

QPixmap Moon(const QWidget& widget) {
    const qreal ratio = widget.devicePixelRatioF();
    QPixmap picture(QSize(IconSize, IconSize) * ratio);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    QPainterPath disc;
    disc.addEllipse(QRectF(2, 2, IconSize - 4, IconSize - 4));
    QPainterPath shadow;
    shadow.addEllipse(QRectF(7, 0, IconSize - 4, IconSize - 4));
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(disc - shadow, widget.palette().color(QPalette::WindowText));
    return picture;
}

/// All tags that the fields put, in the order in which they travel.
QList<PutStep> Puts(CalendarForm& form) {
    QList<PutStep> puts{
        PutValue(form.txtName),      OnUpdate(PutOriginalKey("ID")), OnUpdate(PutDraft("NNm", form.txtName)),
        PutValue(form.txtStartDate), PutValue(form.txtEndDate),      PutValue(form.txtFixedDueDate)};
    for (DayHours& day : form.week)
        for (const Field* field :
             std::initializer_list<const Field*>{&day.flag, &day.open, &day.close, &day.due, &day.inEffect})
            puts.append(PutValue(*field));
    return puts << PutConstant("ExRq", "Y") << PutValue(form.lists.exceptions) << PutValue(form.lists.terms);
}

} // namespace

frmCirculation_Calendars::frmCirculation_Calendars(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmCirculation_Calendars", tr("Circulation Calendars"),
                        Area::Circulation, parent) {
    const QString explained = tr("%1 will be updated in calendars with %2 on the supplied dates and added to "
                                 "calendars without existing %2 on the supplied dates.");
    AddTable(
        {.subject = tr("Circulation Calendar"),
         .word = "Cal",
         .plural = "Circulation Calendars",
         .clusterTag = "CID",
         .listAfterChange = true,
         .deleteSeveralRequest = "DelMultCal",
         .saveCaption = "Save Circulation Calendar",
         .deleteCaption = "Delete Circulation Calendar",
         .namesRecord = true,
         .several = {.form = &m_several,
                     .layout = Below(
                         {m_several.vsfSelected,
                          Beside({Button("cmdSelectAll", tr("Select &All"), [this] { MarkAll("Y"); }),
                                  Button("cmdUnselectAll", tr("&Unselect All"), [this] { MarkAll("N"); })}),
                          Beside({m_several.txtStartDate, m_several.txtEndDate}), m_several.txtFixedDueDate,
                          Tabs("tabMultiple",
                               {Page(tr("E&xceptions"),
                                     {Note(explained.arg(tr("Exceptions"), tr("exceptions"))),
                                      m_several.lists.exceptions}),
                                Page(tr("&Terms"), {Note(explained.arg(tr("Term loans"), tr("term loans"))),
                                                    m_several.lists.terms})})}),
                     .frame = "fraEditMultiple",
                     .button = "cmdEditMultiple",
                     .buttonCaption = tr("Edit &Multiple"),
                     .caption = tr("Edit Multiple Calendars:"),
                     .request = "UpdMultCal",
                     .saveCaption = "Save Circulation Calendar",
                     .records = &m_several.vsfSelected,
                     .puts = {PutValue(m_several.txtStartDate), PutValue(m_several.txtEndDate),
                              PutValue(m_several.txtFixedDueDate), PutConstant("ExRq", "Y"),
                              PutValue(m_several.lists.exceptions), PutValue(m_several.lists.terms)}}},
        m_form,
        Below({m_form.txtName, Beside({m_form.txtStartDate, m_form.txtEndDate}), m_form.txtFixedDueDate,
               Tabs("tabCalendar",
                    {Page(tr("&Hours"), {WeekBlock(m_form)}),
                     Page(tr("E&xceptions"), {m_form.lists.exceptions}),
                     Page(tr("&Terms"), {m_form.lists.terms}), Page(tr("&Year"), {Slot("picYear")})})}),
        Puts(m_form), [this](const QString& name) { return MakeSlot(name); });
    Finish();
    connect(&application.notices, &Notices::SubjectChanged, this, [this](const QString& subject) {
        if (subject == u"Evt")
            ReadEventNames();
    });
}

QWidget* frmCirculation_Calendars::MakeSlot(const QString& name) {
    if (name.startsWith(NextDayPrefix))
        return MakeNextDayIcon(m_form.week[size_t(WeekRoles.indexOf(name.mid(NextDayPrefix.size())))], name);
    picYear = new CalendarYear(m_form, this);
    connect(picYear, &CalendarYear::DayChosen, this, &frmCirculation_Calendars::AskExceptionFor);
    return picYear;
}

void frmCirculation_Calendars::BeforeLoad() {
    ReadEventNames();
}

// Without them the year is as good, only less telling.
void frmCirculation_Calendars::ReadEventNames() {
    QList<Event> events;
    if (ReadEvents(App().channel, events) == wire::status::Ok)
        picYear->SetEvents(events);
}

QWidget* frmCirculation_Calendars::MakeNextDayIcon(const DayHours& day, const QString& name) {
    auto* icon = new QLabel(this);
    icon->setObjectName(name);
    icon->setFixedWidth(IconSize);
    const QString words = tr("Closes on the next day");
    icon->setToolTip(words);
    icon->setAccessibleName(words);
    const auto follow = [icon, &day] {
        const bool isNextDay = day.Drafts().ClosesNextDay();
        icon->setPixmap(isNextDay ? Moon(*icon) : QPixmap());
        icon->setVisible(isNextDay);
    };
    QSizePolicy policy = icon->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    icon->setSizePolicy(policy);
    connect(&m_form, &Form::Changed, icon, follow);
    follow();
    return icon;
}

void frmCirculation_Calendars::BeforeSeveral(Table& table) {
    QList<GridRow> calendars;
    const QStringList chosen = table.grid->SelectedKeys();
    for (const GridRow& row : table.grid->Model().Rows())
        calendars.append({row.key, {chosen.contains(row.key) ? "Y" : "N", row.cells.value(0)}, {}});
    m_several.vsfSelected.SetStoredRows(calendars);
}

void frmCirculation_Calendars::MarkAll(const QString& mark) {
    QStringList keys;
    for (const GridRow& row : m_several.vsfSelected.Rows())
        keys.append(row.key);
    m_several.vsfSelected.SetCells(keys, 0, mark);
}

void frmCirculation_Calendars::AskExceptionFor(QDate date) {
    if (GetState() != State::Editing && GetState() != State::EditingNew)
        return;
    RowsField& exceptions = m_form.lists.exceptions;
    const QString key = date.toString(CalendarDateFormat);
    *m_form.lists.suggestedDate = date;
    AskForRow(exceptions, exceptions.FindRow(key) ? key : QString(), this, App().prompter);
    *m_form.lists.suggestedDate = QDate();
}

} // namespace sysadmin

#include "moc_frmCirculation_Calendars.cpp"
