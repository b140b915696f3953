#include "framework/ListGrid.h"
#include "framework/MaintenanceScreen.h"
#include "support/ScreenTest.h"

#include <QTest>

namespace sysadmin {

namespace {

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

class SavesTest : public ScreenTest {
protected:
    void SetUp() override {
        List();
        Open<CalendarScreen>();
    }
    void List() { channel.Answer("LstCal", 0, {{"ID", "1"}, {"Nm", "Fall"}, {"ID", "2"}, {"Nm", "Spring"}}); }
    QStringList NamesSince(qsizetype from) const {
        QStringList names;
        for (qsizetype i = from; i < channel.sent.size(); ++i)
            names.append(channel.sent[i].name);
        return names;
    }
};

TEST_F(SavesTest, ASaveOfSeveralRequestsGoesOnWhereItStopped) {
    Click("cmdNew");
    EXPECT_EQ(FrameCaption(), "New Calendar:");
    Type("txtName", "Summer");
    Type("txtHours", "9-5");
    Type("txtTerms", "June");
    qsizetype from = channel.sent.size();
    channel.Answer("AddCal", 0, {{"ID", "3"}, {"Nm", "Summer"}});
    channel.Answer("UpdHours", 0);
    channel.Answer("UpdTerms", 3);
    ExpectErrorDialog(prompter, "Database column error.", 3, "Save Terms", "Calendar");
    Click("cmdSave");
    EXPECT_EQ(NamesSince(from), (QStringList{"AddCal", "UpdHours", "UpdTerms"}));
    EXPECT_TRUE(IsEnabled("fraEdit"));
    EXPECT_EQ(TextOf("txtTerms"), "June");
    EXPECT_EQ(GridRows(), (QStringList{"Fall", "Spring", "Summer"}));

    from = channel.sent.size();
    channel.Answer("UpdTerms", 3);
    ExpectErrorDialog(prompter, "Database column error.", 3, "Save Terms", "Calendar");
    Click("cmdSave");
    EXPECT_EQ(NamesSince(from), QStringList{"UpdTerms"});
    // What was edited meanwhile goes out, too, as a change of the record that there is now.
    Type("txtName", "Winter");
    from = channel.sent.size();
    channel.Answer("UpdCal", 0);
    channel.Answer("UpdTerms", 0);
    Click("cmdSave");
    EXPECT_EQ(NamesSince(from), (QStringList{"UpdCal", "UpdTerms"}));
    EXPECT_EQ(channel.LastSent("UpdCal").Value("ID"), "3");
    EXPECT_EQ(channel.sent.last().fields, (wire::Fields{{"ID", "3"}, {"Tr", "June"}}));
    EXPECT_FALSE(IsEnabled("fraEdit"));
}

TEST_F(SavesTest, TheFrameNamesTheRecordAndASaveByKeyLeavesTheField) {
    channel.Answer("GetCal", 0, {{"Nm", "Fall"}, {"Le", "1"}, {"Mo", "25"}});
    Click("cmdEdit");
    EXPECT_EQ(FrameCaption(), "Edit Fall:");
    auto& least = Get<QLineEdit>("txtLeast");
    least.setFocus();
    least.selectAll();
    QTest::keyClicks(&least, "30");
    channel.Answer("UpdCal", 0);
    QTest::keyClick(&least, Qt::Key_S, Qt::ControlModifier);
    ASSERT_EQ(channel.sent.last().name, "UpdCal");
    EXPECT_EQ(channel.sent.last().Value("Mo"), "30") << "as if the operator had tabbed out of the field";
}

TEST_F(SavesTest, SeveralRecordsAreEditedTogether) {
    Grid().SelectKeys({"1", "2"});
    Click("cmdEditMultiple");
    EXPECT_EQ(FrameCaption(), "Edit Several Calendars:");
    EXPECT_FALSE(IsEnabled("cmdSave")) << "no field is chosen";
    Check("chkModifyStart", true);
    EXPECT_FALSE(IsEnabled("cmdSave")) << "a chosen field must be filled";
    EXPECT_FALSE(IsEnabled("txtEnd"));
    Type("txtStart", "2027");
    channel.Answer("UpdMultCal", 2);
    ExpectErrorDialog(prompter, "Database table error.", 2, "Save Several", "Calendar");
    Click("cmdSave");
    EXPECT_EQ(TextOf("txtStart"), "2027");
    EXPECT_EQ(channel.sent.last().fields, (wire::Fields{{"ID", "1"}, {"ID", "2"}, {"StDt", "2027"}}));

    channel.Answer("UpdMultCal", 0,
                   {{"Nm", "Fall"}, {"Err", "it is in use"}, {"Nm", "Spring"}, {"Err", "it overlaps"}});
    prompter.ExpectBox("Fall:  it is in use\r\nSpring:  it overlaps");
    List();
    Click("cmdSave");
    EXPECT_FALSE(IsEnabled("fraEdit"));
    Grid().SelectKeys({"2"});
    Click("cmdEditMultiple");
    EXPECT_FALSE(Get<QAbstractButton>("chkModifyStart").isChecked());
    EXPECT_EQ(TextOf("txtStart"), "");
}

TEST_F(SavesTest, AllProblemsComeInOneMessage) {
    List();
    auto& screen = Open<CalendarScreen>();
    Click("cmdNew");
    Type("txtName", "Fall");
    Type("txtLeast", "999");
    EXPECT_TRUE(screen.CheckAllFields({}));
    Type("txtName", "");
    prompter.ExpectBox("Please correct:\r\n\u2022 Please enter a value for \"Name\".\r\n\u2022 Too early.");
    EXPECT_FALSE(screen.CheckAllFields({"Too early."}));
    EXPECT_TRUE(Get<QWidget>("txtName").hasFocus());
}

} // namespace

} // namespace sysadmin
