#include "framework/MaintenanceScreen.h"
#include "framework/forms/ListFields.h"
#include "support/ScreenTest.h"

#include <QDialog>
#include <QLabel>
#include <QTableWidget>
#include <QTest>

namespace sysadmin {

namespace {

constexpr qint16 Changed = 131;
constexpr qint16 Gone = 5;
const wire::Fields ByAnna{{"ChBy", "Anna Weber"}, {"ChAt", "2026-03-14 09:26:53"}};

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

class ConflictScreenTest : public ScreenTest {
protected:
    void SetUp() override {
        List("North");
        Open<GroupScreen>();
        Read("North", "N", "555 0100", {"b"});
        Click("cmdEdit");
        Type("txtName", "Mine");
        auto& available = Grid("vsfAvailable");
        available.SelectKeys({"a"});
        Click("cmdSelect");
    }
    void List(const QString& name) { channel.Answer("LstGp", 0, {{"ID", "1"}, {"Nm", name}}); }
    void Read(const QString& name, const QString& sunday, const QString& phone, const QStringList& members) {
        wire::Fields reply{{"Nm", name}, {"Su", sunday}, {"PhId", "7"}, {"Ph", phone}};
        for (const QString& key : {QString("a"), QString("b"), QString("c")}) {
            const bool isMember = members.contains(key);
            reply.append({isMember ? "SI" : "AI", key});
            reply.append({isMember ? "SN" : "AN", "Branch " + key.toUpper()});
        }
        channel.Answer("GetGp", 0, reply);
    }
    /// What the question shows, a line for each field.
    void Answer(const QString& button, const QStringList& shown) {
        prompter.ExpectDialogResult("frmConflict", [=](QDialog& dialog) {
            EXPECT_TRUE(dialog.findChild<QLabel*>("lblConflict")->text().contains("Anna Weber"));
            QStringList lines;
            if (const auto* table = dialog.findChild<QTableWidget*>("vsfDifferences"))
                for (int row = 0; row < table->rowCount(); ++row) {
                    QStringList cells;
                    for (int column = 0; column < table->columnCount(); ++column)
                        cells << table->item(row, column)->text().replace('\n', '+');
                    lines << cells.join('|');
                }
            EXPECT_EQ(lines, shown);
            dialog.findChild<QAbstractButton*>(button)->click();
        });
    }
    void Refuse() { channel.Answer("UpdGp", Changed, ByAnna); }
};

TEST_F(ConflictScreenTest, TheVersionsStandSideBySideAndNothingIsLost) {
    const QStringList shown{"Name|North|Mine|South", "Open on Sundays|No|No|Yes",
                            "Phones|555 0100|555 0100|555 0199",
                            "Members|Branch B|Branch B+Branch A|Branch C"};
    Refuse();
    Read("South", "Y", "555 0199", {"c"});
    Answer("cmdBackToEditing", shown);
    Click("cmdSave");
    EXPECT_EQ(TextOf("txtName"), "Mine");
    EXPECT_FALSE(Get<QAbstractButton>("chkSunday").isChecked());
    EXPECT_EQ(GridRows("vsfMembers"), (QStringList{"Branch B", "Branch A"}));
    EXPECT_EQ(GridRows("vsfPhones"), QStringList{"555 0100"});

    // The draft is a change of what is stored now.
    channel.Answer("UpdGp", 0);
    Click("cmdSave");
    const auto saved = channel.LastSent("UpdGp");
    EXPECT_EQ(saved.Value("Nm"), "Mine");
    EXPECT_EQ(saved.Value("Su"), "N");
    EXPECT_EQ(saved.Value("PhRq"), "2");
    EXPECT_EQ(saved.Values("Add"), (QStringList{"b", "a"}));
    EXPECT_EQ(saved.Values("Remove"), QStringList{"c"});
    EXPECT_EQ(GridRows(), QStringList{"Mine"});
}

TEST_F(ConflictScreenTest, TheirsIsKeptOrMineSavedAtOnce) {
    Refuse();
    Read("South", "N", "555 0100", {"b"});
    Answer("cmdSaveMine", {"Name|North|Mine|South", "Members|Branch B|Branch B+Branch A|Branch B"});
    channel.Answer("UpdGp", Changed, ByAnna); // and once more
    Read("East", "N", "555 0100", {"b"});
    Answer("cmdKeepTheirs", {"Name|South|Mine|East", "Members|Branch B|Branch B+Branch A|Branch B"});
    List("East");
    Click("cmdSave");
    QTRY_VERIFY(GridRows() == QStringList{"East"});
    EXPECT_FALSE(IsEnabled("fraEdit"));
    EXPECT_TRUE(channel.AllAnswered());
}

TEST_F(ConflictScreenTest, WhatIsGoneIsAddedAgainOrLeft) {
    channel.Answer("UpdGp", Gone, ByAnna);
    Answer("cmdSaveMine", {});
    channel.Answer("AddGp", 0, {{"ID", "2"}, {"Nm", "Mine"}});
    Click("cmdSave");
    EXPECT_EQ(channel.LastSent("AddGp").Value("Nm"), "Mine");
    EXPECT_EQ(GridRows(), QStringList{"Mine"});
}

TEST_F(ConflictScreenTest, AReadThatFailsLeavesTheEditAsItIs) {
    Refuse();
    channel.Answer("GetGp", 2);
    ExpectErrorDialog(prompter, "Database table error.", 2, "Edit Groups", "Group");
    Click("cmdSave");
    EXPECT_EQ(TextOf("txtName"), "Mine");
    EXPECT_EQ(GridRows("vsfMembers"), (QStringList{"Branch B", "Branch A"}));
    EXPECT_TRUE(IsEnabled("cmdSave"));
}

TEST_F(ConflictScreenTest, TheListFollowsUnlessSomethingIsOpen) {
    emit application.notices.ChangedByOthers("Gp");
    EXPECT_TRUE(Get<QLabel>("lblChangedByOthers").isVisible());
    List("South");
    Click("cmdCancel");
    QTRY_VERIFY(GridRows() == QStringList{"South"});
    EXPECT_FALSE(Get<QLabel>("lblChangedByOthers").isVisible());

    prompter.ExpectBox("You will delete Group:\r\n\"South\"\r\n\r\nAre you sure?");
    channel.Answer("DelGp", Changed, ByAnna);
    List("East");
    Answer("cmdSaveMine", {"Names|South|South|East"});
    channel.Answer("DelGp", 0);
    Click("cmdDelete");
    EXPECT_EQ(GridRows(), QStringList());
}

} // namespace

} // namespace sysadmin
