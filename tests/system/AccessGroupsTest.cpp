#include "framework/ListGrid.h"
#include "support/ScreenTest.h"
#include "system/frmSystem_AccessControlGroups.h"

#include <QClipboard>
#include <QRadioButton>
#include <QTabWidget>
#include <QTest>

namespace sysadmin {

namespace {

const QString V4 = "0000:0000:0000:0000:0000:ffff:";
const QString V6 = "2001:0db8:0000:0000:0000:0000:0000:";

class AccessGroupsTest : public ScreenTest {
protected:
    void OpenWith() {
        channel.Answer("LstAG", 0,
                       {{"I", "1"},
                        {"T", "R"},
                        {"C", "CAMPUS"},
                        {"N", "Campus"},
                        {"I", "2"},
                        {"T", "P"},
                        {"C", "STAFF"},
                        {"N", "Staff"},
                        {"I", "3"},
                        {"T", "D"},
                        {"C", "WEB"},
                        {"N", "Web"},
                        {"I", "4"},
                        {"T", "I"},
                        {"C", "X"},
                        {"N", "Kiosks"}});
        Open<frmSystem_AccessControlGroups>();
    }
    void StartEdit(const QString& key, const wire::Fields& record) {
        Grid().SelectKey(key);
        channel.Answer("GetAG", 0, record);
        Click("cmdEdit");
    }
    void StartNew(const QString& type) {
        channel.Answer("AvlAG", 0, {{"AI", "7"}, {"AN", "Faculty"}, {"AI", "8"}, {"AN", "Staff"}});
        Click("cmdNew");
        Type("txtCode", "NEW");
        Type("txtName", "New");
        Choose("cboGroupType", type);
    }
    QString ShownTab() {
        auto& tabs = Get<QTabWidget>("tabMembers");
        QStringList enabled;
        for (int i = 0; i < tabs.count(); ++i)
            if (tabs.isTabEnabled(i))
                enabled.append(QString(tabs.tabText(i)).remove('&'));
        EXPECT_EQ(enabled.size(), 1);
        EXPECT_EQ(QString(tabs.tabText(tabs.currentIndex())).remove('&'), enabled.value(0));
        return enabled.value(0);
    }
    /// Drives the dialog that the button opens: fills the boxes of a family, presses OK. Boxes that come up
    /// are expected by the caller, in front of this.
    static void Fill(QDialog& dialog, const QString& prefix, const QStringList& groups) {
        for (qsizetype i = 0; i < groups.size(); ++i) {
            auto* box = dialog.findChild<QLineEdit*>(prefix + "_" + QString::number(i));
            box->clear();
            QTest::keyClicks(box, groups[i]);
        }
    }
    static void Press(QDialog& dialog, const QString& button) {
        dialog.findChild<QAbstractButton*>(button)->click();
    }
    void Enter(const QString& button, const QString& form, const QString& ok, const QString& prefix,
               const QString& option, const QStringList& groups) {
        prompter.ExpectDialogResult(form, [=](QDialog& dialog) {
            Press(dialog, option);
            Fill(dialog, prefix, groups);
            Press(dialog, ok);
        });
        Click(button);
    }
    void EnterV4(const QString& address, const QString& button = "cmdAddIPAddress") {
        Enter(button, "frmIPAddress", "cmdOK_IPAddress", "txtIP4", "OptIpv4Address", address.split('.'));
    }
    void EnterV4Range(const QString& least, const QString& most, const QString& button = "cmdAddIPRange") {
        Enter(button, "frmIPRange", "cmdOK_IPRange", "txtIP4", "OptIpv4Range",
              least.split('.') + most.split('.'));
    }
    /// The same with an entry that is refused with this message, after which the operator gives up.
    void Refuse(const QString& button, const QString& form, const QString& ok, const QString& prefix,
                const QStringList& groups, const QString& message) {
        prompter.ExpectDialogResult(form, [=, this](QDialog& dialog) {
            Fill(dialog, prefix, groups);
            prompter.ExpectBox(message, true, Box::Icon::Exclamation);
            Press(dialog, ok);
            EXPECT_TRUE(dialog.isVisible()) << "the entry can be corrected";
            dialog.reject();
        });
        Click(button);
    }
};

TEST_F(AccessGroupsTest, ListNamesTheTypes) {
    OpenWith();
    EXPECT_EQ(GridRows(), (QStringList{"CAMPUS|Campus|IP Range", "STAFF|Staff|Patron Group",
                                       "WEB|Web|Domain Name", "X|Kiosks|IP Address"}));
    prompter.ExpectBox("You will delete Access Control Group:\r\n\"CAMPUS\"\r\n\r\nAre you sure?");
    channel.Answer("DelAG", 2);
    ExpectErrorDialog(prompter, "Database table error.", 2, "Delete Access Control Groups",
                      "Access Control Group");
    Click("cmdDelete");
    EXPECT_EQ(channel.sent.last(), (ScriptedChannel::Sent{"DelAG", {{"I", "1"}}}));
    channel.Answer("LstAG", 2);
    prompter.ExpectBox("Unable to load Access Control Groups.", true, Box::Icon::Exclamation);
    Open<frmSystem_AccessControlGroups>();
}

TEST_F(AccessGroupsTest, RangesAreShownShortAndSentInFull) {
    OpenWith();
    const wire::Fields ranges{
        {"MI", V6 + "0000"}, {"XI", V6 + "00ab"}, {"MI", V4 + "0a00:0000"}, {"XI", V4 + "0a00:00ff"}};
    StartEdit("1", wire::Fields{{"C", "CAMPUS"}, {"N", "Campus"}, {"T", "R"}} + ranges);
    EXPECT_EQ(channel.sent.last(), (ScriptedChannel::Sent{"GetAG", {{"I", "1"}}}));
    EXPECT_EQ(ShownTab(), "IP Range");
    EXPECT_EQ(GridRows("vsfIPRange"),
              (QStringList{"2001:db8:0:0:0:0:0:0 - 2001:db8:0:0:0:0:0:ab", "10.0.0.0 - 10.0.0.255"}));
    EnterV4Range("10.0.1.0", "10.0.1.9");
    Type("txtName", "campus");
    channel.Answer("UpdAG", 0);
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last().fields,
              (wire::Fields{{"T", "R"}, {"I", "1"}, {"C", "CAMPUS"}, {"N", "campus"}} + ranges +
               wire::Fields{{"MI", V4 + "0a00:0100"}, {"XI", V4 + "0a00:0109"}, {"NCd", "N"}, {"NNm", "Y"}}));
}

TEST_F(AccessGroupsTest, RangesThatAreNotInOrderAreRefused) {
    OpenWith();
    StartNew("IP Range");
    EnterV4Range("10.0.0.16", "10.0.0.31");
    const auto refuse = [&](const QString& ends, const QString& message) {
        Refuse("cmdAddIPRange", "frmIPRange", "cmdOK_IPRange", "txtIP4", ends.split('.'), message);
    };
    const QString order = "Minimum IP Address must be less than Maximum IP Address";
    refuse("10.0.0.1.10.0.0.1", order);
    refuse("10.0.0.2.10.0.0.1", order);
    const QString overlap = "IP Address Range is overlapping with an existing range: 10.0.0.16 - 10.0.0.31";
    refuse("10.0.0.1.10.0.0.16", overlap);
    refuse("10.0.0.20.10.0.0.21", overlap);
    const QString number = "IP Address must be a numeric value between 0 - 255.";
    refuse("10.0.0.1.10.0.0.256", number);
    refuse("10.0.0.1.10.0.0.", number);
    EnterV4Range("10.0.0.0", "10.0.0.15");
    EnterV4Range("10.0.0.0", "10.0.0.10", "cmdModifyIPRange"); // it does not overlap with itself
    EXPECT_EQ(GridRows("vsfIPRange"), (QStringList{"10.0.0.16 - 10.0.0.31", "10.0.0.0 - 10.0.0.10"}));
    Click("cmdRemoveIPRange");
    EXPECT_EQ(GridRows("vsfIPRange"), QStringList{"10.0.0.16 - 10.0.0.31"});
}

TEST_F(AccessGroupsTest, AddressesOfBothFamilies) {
    OpenWith();
    StartNew("IP Address");
    EXPECT_EQ(ShownTab(), "IP Address");
    EnterV4("10.0.0.1");
    Enter("cmdAddIPAddress", "frmIPAddress", "cmdOK_IPAddress", "txtIP6", "OptIpv6Address",
          {"2001", "DB8", "0", "0", "0", "0", "0", "00ab"});
    EXPECT_EQ(GridRows("vsfIPAddress"), (QStringList{"10.0.0.1", "2001:db8:0:0:0:0:0:ab"}));
    Refuse("cmdAddIPAddress", "frmIPAddress", "cmdOK_IPAddress", "txtIP4", {"10", "0", "0", "1"},
           "IP Address: 10.0.0.1 is already being used.");
    prompter.ExpectDialogResult("frmIPAddress", [&](QDialog& dialog) {
        Press(dialog, "OptIpv6Address");
        prompter.ExpectBox("IP Address must be an hexadecimal value between 0 - FFFF.");
        Press(dialog, "cmdOK_IPAddress");
        Press(dialog, "cmdCancel_IPAddress");
    });
    Click("cmdAddIPAddress");

    Grid("vsfIPAddress").SelectKey(V4 + "0a00:0001");
    EnterV4("10.0.0.2", "cmdModifyIPAddress");
    channel.Answer("AddAG", 0, {{"I", "9"}, {"C", "NEW"}});
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last().fields,
              (wire::Fields{
                  {"T", "I"}, {"C", "NEW"}, {"N", "New"}, {"IP", V4 + "0a00:0002"}, {"IP", V6 + "00ab"}}));
    EXPECT_EQ(Grid().SelectedKey(), "9");
    EXPECT_TRUE(GridRows().contains("NEW|New|IP Address"));
}

TEST_F(AccessGroupsTest, DomainNamesHaveADot) {
    OpenWith();
    StartEdit("3", {{"C", "WEB"}, {"N", "Web"}, {"T", "D"}, {"DI", "1"}, {"DN", "b.example.org"}});
    const auto enter = [&](const QString& button, const QString& name, const QString& message = {}) {
        prompter.ExpectDialogResult("frmDomainName", [=, this](QDialog& dialog) {
            auto& edit = *dialog.findChild<QLineEdit*>("txtDomainName");
            edit.clear();
            QTest::keyClicks(&edit, name);
            if (!message.isEmpty())
                prompter.ExpectBox(message);
            Press(dialog, "cmdOK_Domain");
            if (!message.isEmpty())
                Press(dialog, "cmdCancel_Domain");
        });
        Click(button);
    };
    enter("cmdAddDomain", "localhost",
          "The domain name format is incorrect.\r\nPlease enter a name such as library.example.edu.");
    enter("cmdAddDomain", "B.example.org", "Domain name: B.example.org is already used.");
    enter("cmdAddDomain", " a.example.org ");
    EXPECT_EQ(GridRows("vsfDomain"), (QStringList{"b.example.org", "a.example.org"})) << "in order of entry";
    enter("cmdModifyDomain", "c.example.org");
    channel.Answer("UpdAG", 0);
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last().Values("DN"), (QStringList{"b.example.org", "c.example.org"}));
}

TEST_F(AccessGroupsTest, OnlyMembersOfTheTypeAreSent) {
    OpenWith();
    StartEdit("2", {{"C", "STAFF"},
                    {"N", "Staff"},
                    {"T", "P"},
                    {"AI", "7"},
                    {"AN", "Faculty"},
                    {"SI", "8"},
                    {"SN", "Staff"}});
    EXPECT_EQ(ShownTab(), "Patron Group");
    Click("cmdSelectAll");
    Choose("cboGroupType", "IP Address");
    EnterV4("10.0.0.1");
    Choose("cboGroupType", "Patron Group");
    EXPECT_EQ(GridRows("vsfSelectedPatron"), (QStringList{"Staff", "Faculty"}))
        << "a look at another type loses nothing";
    channel.Answer("UpdAG", 8);
    prompter.ExpectBox("This code already exists.  Please enter a unique code.");
    Click("cmdSave");
    const ScriptedChannel::Sent sent = channel.sent.last();
    EXPECT_EQ(sent.Values("SI"), (QStringList{"8", "7"}));
    EXPECT_TRUE(sent.Values("IP").isEmpty());
    channel.Answer("UpdAG", 2);
    ExpectErrorDialog(prompter, "Database table error.", 2, "Save Access Control Groups",
                      "Access Control Group");
    Click("cmdSave");
}

TEST_F(AccessGroupsTest, WholeAddressesCanBePasted) {
    OpenWith();
    StartNew("IP Address");
    prompter.ExpectDialogResult("frmIPAddress", [](QDialog& dialog) {
        const auto text = [&](const QString& box) { return dialog.findChild<QLineEdit*>(box)->text(); };
        auto* first = dialog.findChild<QLineEdit*>("txtIP4_0");
        first->setFocus();
        QGuiApplication::clipboard()->setText("10.20.30.40");
        first->paste();
        EXPECT_EQ(text("txtIP4_0") + text("txtIP4_1") + text("txtIP4_2") + text("txtIP4_3"), "10203040");
        QGuiApplication::clipboard()->setText("10.20");
        first->selectAll();
        first->paste();
        EXPECT_EQ(text("txtIP4_0"), "10") << "half an address is not taken";
        QGuiApplication::clipboard()->setText("2001:db8::7");
        first->selectAll();
        first->paste();
        EXPECT_TRUE(dialog.findChild<QRadioButton*>("OptIpv6Address")->isChecked())
            << "an address of the other family brings its boxes";
        EXPECT_EQ(text("txtIP6_0"), "2001");
        EXPECT_EQ(text("txtIP6_7"), "7");
        Press(dialog, "cmdOK_IPAddress");
    });
    Click("cmdAddIPAddress");
    EXPECT_EQ(GridRows("vsfIPAddress"), QStringList{"2001:db8:0:0:0:0:0:7"});
}

TEST_F(AccessGroupsTest, TypingGoesFromBoxToBox) {
    OpenWith();
    StartNew("IP Address");
    prompter.ExpectDialogResult("frmIPAddress", [](QDialog& dialog) {
        dialog.findChild<QLineEdit*>("txtIP4_0")->setFocus();
        const auto type = [&](const QString& keys) {
            for (const QChar key : keys)
                QTest::keyClick(dialog.focusWidget(), key.toLatin1());
        };
        type("192168x.1.25"); // three digits fill a box, a dot leaves it, letters are not taken
        QStringList boxes;
        for (int i = 0; i < 4; ++i)
            boxes.append(dialog.findChild<QLineEdit*>("txtIP4_" + QString::number(i))->text());
        EXPECT_EQ(boxes, (QStringList{"192", "168", "1", "25"}));
        dialog.reject();
    });
    Click("cmdAddIPAddress");
}

TEST_F(AccessGroupsTest, ReadOnlyOperatorOnlyLooks) {
    SetRights(false);
    OpenWith();
    StartEdit(
        "1",
        {{"C", "CAMPUS"}, {"N", "Campus"}, {"T", "R"}, {"MI", V4 + "0a00:0000"}, {"XI", V4 + "0a00:00ff"}});
    EXPECT_EQ(FrameCaption(), "View Access Control Group:");
    for (const char* button : {"cmdAddIPRange", "cmdModifyIPRange", "cmdRemoveIPRange"})
        EXPECT_FALSE(IsEnabled(button)) << button;
    emit Grid("vsfIPRange").RowActivated("");
    channel.Answer("GetAG", 5);
    Click("cmdCancel");
    ExpectErrorDialog(prompter, "Record not found to be updated.", 5, "Edit System Access Control Groups",
                      "Access Control Group");
    Click("cmdEdit");
}

} // namespace

} // namespace sysadmin
