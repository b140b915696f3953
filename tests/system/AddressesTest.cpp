#include "framework/ListGrid.h"
#include "support/ScreenTest.h"
#include "system/frmSystem_Addresses.h"
#include "system/frmSystem_DefaultAdd.h"

#include <QTabWidget>
#include <QTest>

namespace sysadmin {

namespace {

const QStringList AddressTags{"AdrNm", "EMl", "Adr1", "Adr2", "Adr3", "Adr4", "Adr5", "City", "St",
                              "Zip",   "Cty", "SAN",  "Ship", "Bill", "Strt", "Cmp",  "CDsk", "Other"};
const wire::Fields Location{{"Cd", "DESK"}, {"Nm", "Desk"}, {"Spn", "D"},
                            {"Dsp", "Ask"}, {"OPAC", "Y"},  {"Lb", "2"}};

wire::Fields Address(const QString& id, const QString& contact) {
    wire::Fields fields{{"AdrID", id}};
    for (const QString& tag : AddressTags)
        fields.append(wire::Field{tag, AddressTags.indexOf(tag) < 12 ? tag + id : QString("N")});
    fields[1].value = contact;
    return fields;
}

wire::Fields Phone(const QString& address, const QString& type, const QString& number, const QString& id) {
    return {{"PhAID", address}, {"PhTp", type}, {"PhNm", number}, {"PhID", id}};
}

class AddressesTest : public ScreenTest {
protected:
    AddressesTest() { application.pickLists.Set("cboPhoneType", {{"1", "Primary"}, {"2", "Fax"}}); }

    void OpenWith(const wire::Fields& addresses, bool readOnly = false) {
        channel.Answer("GetLoc", 0, Location + addresses);
        m_dialog = std::make_unique<frmSystem_Addresses>(application, "12", readOnly, nullptr);
        ASSERT_TRUE(m_dialog->Load());
        m_dialog->show();
    }
    QTabWidget& Tabs() { return *m_dialog->findChild<QTabWidget*>("tabAddress"); }
    /// A control of the tab in front, else of the dialog.
    template <class Widget>
    Widget& In(const QString& name) {
        auto* widget = Tabs().currentWidget()->findChild<Widget*>(name);
        return widget ? *widget : *m_dialog->findChild<Widget*>(name);
    }
    void Press(const QString& button) {
        ASSERT_TRUE(In<QAbstractButton>(button).isEnabled()) << button.toStdString();
        In<QAbstractButton>(button).click();
    }
    void Enter(const QString& lineEdit, const QString& text) {
        In<QLineEdit>(lineEdit).clear();
        QTest::keyClicks(&In<QLineEdit>(lineEdit), text);
    }
    QStringList Phones() {
        QStringList phones;
        const GridModel& model = In<ListGrid>("vsfPhone").Model();
        for (int row = 0; row < model.rowCount(); ++row)
            phones.append(model.CellText(row, 0) + "|" + model.CellText(row, 1));
        return phones;
    }
    /// The phone dialog: the operator chooses and types, then presses the button.
    void ExpectPhone(const QString& type, const QString& number) {
        prompter.ExpectDialogResult("frmSystem_PhoneNumbers", [=](QDialog& dialog) {
            auto& types = *dialog.findChild<QComboBox*>("cboPhoneType");
            types.setCurrentIndex(types.findText(type));
            emit types.activated(types.currentIndex());
            auto& edit = *dialog.findChild<QLineEdit*>("txtPhoneNumber");
            edit.clear();
            QTest::keyClicks(&edit, number);
            dialog.findChild<QAbstractButton*>("cmdOK")->click();
        });
    }

    std::unique_ptr<frmSystem_Addresses> m_dialog;
};

TEST_F(AddressesTest, EachAddressFillsATabAndPhonesFindTheirs) {
    // The phones stand next to the wrong addresses on purpose.
    OpenWith(Address("7", "Desk") + Phone("9", "2", "200", "31") + Address("9", "Dock") +
             Phone("7", "1", "100", "30"));
    EXPECT_EQ(channel.sent, (QList<ScriptedChannel::Sent>{{"GetLoc", {{"ID", "12"}}}}));
    EXPECT_EQ(In<QLineEdit>("txtContact").text(), "Desk");
    EXPECT_EQ(In<QLineEdit>("txtState").text(), "St7");
    EXPECT_EQ(Phones(), QStringList{"Primary|100"});
    EXPECT_EQ(Tabs().count(), 6);
    EXPECT_TRUE(Tabs().isTabEnabled(1));
    EXPECT_FALSE(Tabs().isTabEnabled(2));
    Tabs().setCurrentIndex(1);
    EXPECT_EQ(In<QLineEdit>("txtContact").text(), "Dock");
    EXPECT_EQ(Phones(), QStringList{"Fax|200"});
    EXPECT_FALSE(In<QAbstractButton>("cmdSave").isEnabled()) << "nothing was changed";

    channel.Answer("GetLoc", 2);
    prompter.ExpectBox("Unable to load System Addresses.", true, Box::Icon::Exclamation);
    frmSystem_Addresses other(application, "12", false, nullptr);
    EXPECT_FALSE(other.Load());
}

TEST_F(AddressesTest, ANewAddressGoesOutInsideTheLocation) {
    OpenWith(Address("7", "Desk"));
    Press("cmdNew");
    EXPECT_EQ(Tabs().currentIndex(), 1);
    EXPECT_FALSE(In<QAbstractButton>("cmdSave").isEnabled()) << "it is empty";
    Enter("txtContact", "Dock");
    Enter("txtZip", "123");
    In<QAbstractButton>("chkShipToAddress").click();
    ExpectPhone("Fax", "555");
    Press("cmdAdd");
    channel.Answer("UpdLoc", 0);
    channel.Answer("GetLoc", 0,
                   Location + Address("7", "Desk") + Address("8", "Dock") + Phone("8", "2", "555", "40"));
    Press("cmdSave");

    wire::Fields expected{{"AdrRq", "1"}, {"AdrID", ""}};
    for (const QString& tag : AddressTags)
        expected.append(wire::Field{tag, tag == u"AdrNm"                 ? "Dock"
                                         : tag == u"Zip"                 ? "123"
                                         : tag == u"Ship"                ? "Y"
                                         : AddressTags.indexOf(tag) < 12 ? ""
                                                                         : "N"});
    expected += {{"PhNm", "555"}, {"PhTp", "2"}, {"PhRq", "1"}, {"PhAID", ""}};
    expected += Location;
    expected += {{"ID", "12"}, {"NCd", "N"}};
    EXPECT_EQ(channel.LastSent("UpdLoc").fields, expected);

    // From now on it is the one with the id.
    Enter("txtCity", "Town");
    channel.Answer("UpdLoc", 0);
    channel.Answer("GetLoc", 0,
                   Location + Address("7", "Desk") + Address("8", "Dock") + Phone("8", "2", "555", "40"));
    Press("cmdSave");
    const ScriptedChannel::Sent sent = channel.LastSent("UpdLoc");
    EXPECT_EQ(sent.Value("AdrRq"), "2");
    EXPECT_EQ(sent.Value("AdrID"), "8");
    EXPECT_EQ(sent.Value("PhRq"), "2");
    EXPECT_EQ(sent.Value("PhAID"), "8");
}

TEST_F(AddressesTest, PhonesAreAddedChangedAndRemoved) {
    OpenWith(Address("7", "Desk") + Phone("7", "1", "100", "30") + Phone("7", "1", "101", "31") +
             Phone("7", "2", "102", "32"));
    In<ListGrid>("vsfPhone").SelectKey("30");
    ExpectPhone("Fax", "900");
    Press("cmdEdit");
    In<ListGrid>("vsfPhone").SelectKey("31");
    const QString question = "Are you sure you want to delete this phone number?";
    prompter.ExpectBox(question, false, Box::Icon::Question, "Delete Phone Number");
    Press("cmdRemove");
    prompter.ExpectBox(question);
    Press("cmdRemove");
    ExpectPhone("Primary", "103");
    Press("cmdAdd");
    EXPECT_EQ(Phones(), (QStringList{"Fax|900", "Fax|102", "Primary|103"}));
    ExpectPhone("Primary", "104");
    Press("cmdAdd");
    prompter.ExpectBox(question);
    Press("cmdRemove"); // the one that was just added: the server never hears of it

    channel.Answer("UpdLoc", 0);
    channel.Answer("GetLoc", 0, Location + Address("7", "Desk"));
    Press("cmdSave");
    const ScriptedChannel::Sent sent = channel.LastSent("UpdLoc");
    EXPECT_EQ(sent.Values("PhNm"), (QStringList{"900", "101", "102", "103"}));
    EXPECT_EQ(sent.Values("PhTp"), (QStringList{"2", "1", "2", "1"}));
    EXPECT_EQ(sent.Values("PhRq"), (QStringList{"2", "3", "2", "1"}));
    EXPECT_EQ(sent.Values("PhAID"), (QStringList{"7", "7", "7", "7"}));
}

TEST_F(AddressesTest, FailedSaveKeepsWhatWasEntered) {
    OpenWith(Address("7", "Desk"));
    Enter("txtContact", "Someone");
    channel.Answer("UpdLoc", 2);
    prompter.ExpectBox("Unable to save Address data.", true, Box::Icon::Exclamation);
    ExpectErrorDialog(prompter, "Database table error.", 2, "Save System Addresses", "System Addresses");
    Press("cmdSave");
    EXPECT_EQ(In<QLineEdit>("txtContact").text(), "Someone");
    prompter.ExpectBox("There is data currently being edited!\r\nPlease save or cancel the open work area.");
    Press("cmdClose");
    EXPECT_TRUE(m_dialog->isVisible());
    Press("cmdCancel");
    EXPECT_EQ(In<QLineEdit>("txtContact").text(), "Desk");
    Press("cmdClose");
    EXPECT_FALSE(m_dialog->isVisible());
}

TEST_F(AddressesTest, EditsOnOtherTabsOutliveASave) {
    OpenWith(Address("7", "Desk") + Address("9", "Dock"));
    Enter("txtContact", "Unsaved");
    Tabs().setCurrentIndex(1);
    Enter("txtContact", "Saved");
    channel.Answer("UpdLoc", 0);
    channel.Answer("GetLoc", 0, Location + Address("7", "Desk") + Address("9", "Saved"));
    Press("cmdSave");
    EXPECT_EQ(channel.LastSent("UpdLoc").Values("AdrID"), QStringList{"9"}) << "one address at a time";
    Tabs().setCurrentIndex(0);
    EXPECT_EQ(In<QLineEdit>("txtContact").text(), "Unsaved");
    EXPECT_TRUE(In<QAbstractButton>("cmdSave").isEnabled());
}

TEST_F(AddressesTest, DeletedAddressFreesItsTab) {
    OpenWith(Address("7", "Desk") + Phone("7", "1", "100", "30"));
    const QString question = "You will delete Address:\r\n\"Desk\"\r\n\r\nAre you sure?";
    prompter.ExpectBox(question, true, Box::Icon::Question, "Delete Address");
    channel.Answer("UpdLoc", 12);
    prompter.ExpectBox("Database error 12 while deleting System Address 1.", true, Box::Icon::Exclamation);
    Press("cmdDelete");
    EXPECT_EQ(In<QLineEdit>("txtContact").text(), "Desk");

    prompter.ExpectBox(question);
    channel.Answer("UpdLoc", 0);
    Press("cmdDelete");
    const ScriptedChannel::Sent sent = channel.LastSent("UpdLoc");
    EXPECT_EQ(sent.Value("AdrRq"), "3");
    EXPECT_EQ(sent.Value("AdrID"), "7");
    EXPECT_EQ(sent.Value("PhRq"), "3");
    EXPECT_EQ(In<QLineEdit>("txtContact").text(), "");
    EXPECT_TRUE(In<QLineEdit>("txtContact").isReadOnly());
    EXPECT_FALSE(In<QAbstractButton>("cmdDelete").isEnabled());
    Press("cmdNew");
    EXPECT_EQ(Tabs().currentIndex(), 0);
}

TEST_F(AddressesTest, ALocationHasSixAtTheMost) {
    wire::Fields six;
    for (int i = 1; i <= 6; ++i)
        six += Address(QString::number(i), "A");
    OpenWith(six);
    EXPECT_FALSE(In<QAbstractButton>("cmdNew").isEnabled());
    Tabs().setCurrentIndex(5);
    Press("cmdClear");
    EXPECT_EQ(In<QLineEdit>("txtCity").text(), "");
    EXPECT_FALSE(In<QAbstractButton>("cmdSave").isEnabled()) << "an empty address is deleted, not saved";
}

TEST_F(AddressesTest, ReadOnlyOperatorOnlyLooks) {
    OpenWith(Address("7", "Desk") + Phone("7", "1", "100", "30"), true);
    EXPECT_TRUE(In<QLineEdit>("txtContact").isReadOnly());
    EXPECT_FALSE(In<QAbstractButton>("cmdAdd").isEnabled());
    EXPECT_TRUE(In<QAbstractButton>("cmdSave").isHidden());
    EXPECT_EQ(Phones(), QStringList{"Primary|100"});
}

const QStringList DefaultTags{"LNm",  "CCm",  "EMl", "Adr1", "Adr2", "Adr3", "Adr4",
                              "Adr5", "City", "St",  "Zip",  "Cty",  "SAN"};

TEST_F(AddressesTest, DefaultAddressIsAddedAndThenUpdated) {
    channel.Answer("GetDAdr", 0);
    Open<frmSystem_DefaultAdd>();
    EXPECT_EQ(channel.sent, (QList<ScriptedChannel::Sent>{{"GetDAdr", {}}}));
    EXPECT_FALSE(IsEnabled("cmdSave"));
    Type("txtName", "University");
    Type("txtState", "CA");
    channel.Answer("AddDAdr", 3);
    ExpectErrorDialog(prompter, "Database column error.", 3, "Save Default Address", "Default Address");
    Click("cmdSave");
    channel.Answer("AddDAdr", 0);
    Click("cmdSave");
    wire::Fields expected;
    for (const QString& tag : DefaultTags)
        expected.append(wire::Field{tag, tag == u"LNm"  ? "University"
                                         : tag == u"St" ? QString("CA")
                                                        : QString()});
    EXPECT_EQ(channel.sent.last().fields, expected);
    channel.Answer("UpdDAdr", 0);
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last(), (ScriptedChannel::Sent{"UpdDAdr", expected}));
    Click("cmdClear");
    EXPECT_EQ(TextOf("txtState"), "");
    EXPECT_FALSE(IsEnabled("cmdSave"));
}

} // namespace

} // namespace sysadmin
