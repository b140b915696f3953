#pragma once

#include "circulation/frmCirculation_Matrix.h"
#include "core/Application.h"
#include "framework/MaintenanceScreen.h"
#include "framework/forms/ListFields.h"
#include "framework/forms/Rules.h"

#include <QVBoxLayout>

namespace sysadmin::exact {

// Screens that the library system does not have: they declare what no screen of it needs yet, or everything
// at once.

struct GroupForm : Form {
    TextField txtName{
        *this, {.name = "txtName", .tag = "Nm", .caption = "&Name:", .required = true, .column = {"Names"}}};
    FlagField chkSunday{*this, {.name = "chkSunday", .tag = "Su", .caption = "Open on &Sundays"}};
    PasswordField txtSecret{*this, {.name = "txtSecret", .caption = "Password:"}};
    RowsField rows{*this,
                   {.name = "vsfPhones", .caption = "Phones"},
                   {{.caption = "Number", .tag = "Ph"}},
                   {.marker = "PhId", .puts = {PutKey("PhId"), PutCell("Ph", 0), PutState("PhRq")}}};
    PickedField members{*this,
                        {.name = "members", .tag = "SI"},
                        {"vsfAvailable", "Available:", "vsfMembers", "&Members:"},
                        {.tags = {"AI", "AN", "SI", "SN", "St"}}};
};

class GroupScreen : public MaintenanceScreen {
public:
    GroupScreen(Application& application, QWidget* parent)
        : MaintenanceScreen(application, "frmGroups", "Groups", Area::System, parent) {
        AddTable({.subject = "Group", .word = "Gp", .plural = "Groups"}, m_form, Below({}),
                 {PutValue(m_form.txtName), PutValue(m_form.chkSunday),
                  [this](RequestChannel& channel, const SaveContext&) {
                      m_form.rows.Put(channel);
                      for (const GridRow& row : m_form.members.Lists().Added())
                          channel.PutField("Add", row.key);
                      for (const GridRow& row : m_form.members.Lists().Removed())
                          channel.PutField("Remove", row.key);
                  }});
        Finish();
    }

private:
    GroupForm& m_form = KeepForm<GroupForm>();
};

struct CalendarForm : Form {
    TextField txtName{
        *this, {.name = "txtName", .tag = "Nm", .caption = "Name:", .required = true, .column = {"Names"}}};
    NumberField txtLeast{*this, {.name = "txtLeast", .tag = "Le", .caption = "Least:", .most = 999}};
    NumberField txtMost{*this, {.name = "txtMost", .tag = "Mo", .caption = "Most:", .most = 999}};
    TextField txtHours{*this, {.name = "txtHours", .tag = "Hr", .caption = "Hours:"}};
    TextField txtTerms{*this, {.name = "txtTerms", .tag = "Tr", .caption = "Terms:"}};

    CalendarForm() {
        WhenLeft(txtLeast, [this] {
            if (txtLeast.Value() > txtMost.Value())
                txtMost.SetValue(txtLeast.Value());
        });
    }
};

struct SeveralForm : Form {
    TextField txtStart{*this, {.name = "txtStart", .tag = "StDt", .caption = "Start:", .required = true}};
    TextField txtEnd{*this, {.name = "txtEnd", .tag = "EDt", .caption = "End:"}};
};

class CalendarScreen : public MaintenanceScreen {
public:
    bool CheckAllFields(const QStringList& more) {
        return CheckAll(m_form, *Current().view, "Please correct:", more);
    }
    CalendarScreen(Application& application, QWidget* parent)
        : MaintenanceScreen(application, "frmCalendars", "Calendars", Area::Circulation, parent) {
        AddTable({.subject = "Calendar",
                  .word = "Cal",
                  .plural = "Calendars",
                  .namesRecord = true,
                  .steps = {{.request = "UpdHours",
                             .caption = "Save Hours",
                             .keyTag = "ID",
                             .fields = {&m_form.txtHours}},
                            {.request = "UpdTerms",
                             .caption = "Save Terms",
                             .keyTag = "ID",
                             .fields = {&m_form.txtTerms}}},
                  .several = {.form = &m_several,
                              .button = "cmdEditMultiple",
                              .buttonCaption = "Edit Multiple",
                              .caption = "Edit Several Calendars:",
                              .request = "UpdMultCal",
                              .saveCaption = "Save Several"}},
                 m_form, Below({}),
                 {PutValue(m_form.txtName), PutValue(m_form.txtLeast), PutValue(m_form.txtMost),
                  OnUpdate(PutOriginalKey("ID"))});
        Finish();
    }

private:
    CalendarForm& m_form = KeepForm<CalendarForm>();
    SeveralForm& m_several = KeepForm<SeveralForm>();
};

/// The matrix of a policy group on its own.
class MatrixScreen : public sysadmin::Screen {
public:
    MatrixScreen(Application& application, QWidget* parent)
        : Screen(application, "frmMatrix", "Matrix", parent)
        , m_pages(application, this) {
        auto* line = new QVBoxLayout(this);
        for (const MatrixKind kind : {MatrixKind::Regular, MatrixKind::ShortLoan})
            line->addWidget(m_pages.MakePage(kind, this));
    }
    void LoadScreen() override {
        m_pages.SetGroup(MatrixGroup{"7", "Main", "1", App().profile.CircEdit()});
        m_pages.Load();
    }

private:
    MatrixPages m_pages;
};

} // namespace sysadmin::exact
