#include "requests/RequestsScreens.h"
#include "requests/frmWS_SelfRegistration.h"
#include "support/ScreenTest.h"

namespace sysadmin {

namespace {

class WebServicesTest : public ScreenTest {
protected:
    void OpenSelfRegistration(const wire::Fields& more) {
        application.clusters.Put(
            {.sInUsePULoc = {}, .sClusterName = "Main", .sClusterCD = "MAIN", .sClusterID = "2"});
        application.clusters.SetCurrent("2");
        channel.Answer(
            "GetWSSelfReg", 0,
            wire::Fields{
                {"P", "30"}, {"G", ""}, {"AI", "11"}, {"AN", "Guest"}, {"AI", "12"}, {"AN", "Student"}} +
                more);
        Open<frmWS_SelfRegistration>();
    }
};

TEST_F(WebServicesTest, ConfigurationHasItsOwnFailureMessages) {
    channel.Answer("GetZebConfig", 0, {{"US", "Y"}, {"UP", "N"}, {"DP", "0000"}});
    Screen& screen = Open(AddRequestsScreens, "WS_Configuration");
    Check("chkChangePIN", true);
    Type("txtDefaultPIN", "1234");
    channel.Answer("UpdZebConfig", 2);
    prompter.ExpectBox("Unable to save web service configuration.", true, Box::Icon::Exclamation);
    Click("cmdSave");
    EXPECT_EQ(TextOf("txtDefaultPIN"), "1234");
    channel.Answer("UpdZebConfig", 0);
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last().fields, (wire::Fields{{"US", "Y"}, {"UP", "Y"}, {"DP", "1234"}}));

    channel.Answer("GetZebConfig", 1);
    prompter.ExpectBox("Unable to load web service configuration.");
    screen.LoadScreen();
    EXPECT_FALSE(IsEnabled("cmdSave")) << "what could not be read is not overwritten";
}

TEST_F(WebServicesTest, AlertTextsKeepTheirMarkers) {
    const wire::Fields stored{{"LSE", "Y"},
                              {"OA", "Y"},
                              {"FA", "N"},
                              {"BA", "N"},
                              {"EA", "Y"},
                              {"ED", "14"},
                              {"OAT", "You have overdue materials at \\\\l."},
                              {"FAT", " \\l \\\\\\\\d "},
                              {"BAT", ""},
                              {"EAT", "Your account will expire on \\\\d, \\\\n days from today."}};
    channel.Answer("GetWSLoginSum", 0, stored);
    Open(AddRequestsScreens, "WS_LoginSummary");
    EXPECT_EQ(TextOf("txtOverdue"), "You have overdue materials at \\\\l.");
    EXPECT_FALSE(IsEnabled("txtFines"));
    EXPECT_TRUE(IsEnabled("txtExpirationDays"));
    channel.Answer("UpdWSLoginSum", 0);
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last().fields, stored);

    Check("chkFines", true);
    EXPECT_TRUE(IsEnabled("txtFines"));
    channel.Answer("UpdWSLoginSum", 3);
    prompter.ExpectBox("Unable to save login summary configuration.");
    Click("cmdSave");
    EXPECT_TRUE(Get<QCheckBox>("chkFines").isChecked());
}

TEST_F(WebServicesTest, SelfRegistrationAsksForGroupThenIdentifierType) {
    OpenSelfRegistration({});
    EXPECT_EQ(channel.sent.last(), (ScriptedChannel::Sent{"GetWSSelfReg", {{"CID", "2"}}}));
    prompter.ExpectBox("Please select a Default Patron Group");
    Click("cmdSave");
    EXPECT_TRUE(Get<QWidget>("cboDefaultGroup").hasFocus());
    Choose("cboDefaultGroup", "Student");
    prompter.ExpectBox("Please select an Identifier Type");
    Click("cmdSave");
    EXPECT_TRUE(Get<QWidget>("cboIdType").hasFocus());
    EXPECT_EQ(channel.sent.size(), 1);
}

TEST_F(WebServicesTest, SelfRegistrationSendsEveryFieldAndTheIdentifierUnderItsTypesCode) {
    OpenSelfRegistration({{"G", "11"},
                          {"IDC", "SSN"},
                          {"FC", "lastName"},
                          {"FV", "Y"},
                          {"FR", "Y"},
                          {"FC", "SSN"},
                          {"FV", "Y"},
                          {"FR", "N"},
                          {"FC", "institutionId"},
                          {"FV", "N"},
                          {"FR", "N"},
                          {"SRE", "Y"}});
    EXPECT_TRUE(Get<QCheckBox>("chkWebService").isChecked());
    EXPECT_TRUE(Get<QCheckBox>("chkLastNameRequired").isChecked());
    EXPECT_TRUE(Get<QCheckBox>("chkIdentifierVisible").isChecked());
    EXPECT_FALSE(IsEnabled("chkCityRequired"));
    Check("chkCityVisible", true);
    Check("chkCityRequired", true);
    Choose("cboIdType", "Institution ID");
    Choose("cboDefaultGroup", "Student");
    channel.Answer("UpdWSSelfReg", 0);
    Click("cmdSave");
    const ScriptedChannel::Sent& saved = channel.sent.last();
    EXPECT_EQ(
        saved.Values("FC"),
        (QStringList{"title",    "firstName", "middleName",   "lastName",     "primaryPhone", "otherPhone",
                     "address1", "address2",  "address3",     "address4",     "address5",     "city",
                     "state",    "country",   "zipCode",      "emailAddress", "SMSNumber",    "department",
                     "major",    "birthDate", "institutionId"}));
    const auto fieldAt = [&](int index) { return saved.fields.mid(3 * index, 3); };
    EXPECT_EQ(fieldAt(3), (wire::Fields{{"FC", "lastName"}, {"FV", "Y"}, {"FR", "Y"}}));
    EXPECT_EQ(fieldAt(11), (wire::Fields{{"FC", "city"}, {"FV", "Y"}, {"FR", "Y"}}));
    EXPECT_EQ(fieldAt(20), (wire::Fields{{"FC", "institutionId"}, {"FV", "Y"}, {"FR", "N"}}));
    EXPECT_EQ(saved.fields.mid(63),
              (wire::Fields{{"SRE", "Y"}, {"P", "30"}, {"G", "12"}, {"IDC", "institutionId"}}));

    Check("chkLastNameVisible", false);
    EXPECT_FALSE(Get<QCheckBox>("chkLastNameRequired").isChecked()) << "nobody could fill it in";
}

TEST_F(WebServicesTest, GroupsFollowTheClusterUnlessSomethingIsBeingEdited) {
    OpenSelfRegistration({{"G", "11"}, {"IDC", "SSN"}});
    application.clusters.Put(
        {.sInUsePULoc = {}, .sClusterName = "Med", .sClusterCD = "MED", .sClusterID = "3"});
    application.clusters.SetCurrent("3");
    auto& screen = *static_cast<frmWS_SelfRegistration*>(Get<QWidget>("cmdSave").parentWidget());
    channel.Answer("GetWSSelfReg", 0, {{"G", "11"}, {"IDC", "SSN"}, {"AI", "31"}, {"AN", "Resident"}});
    screen.OnClusterChanged();
    EXPECT_EQ(channel.sent.last().fields, (wire::Fields{{"CID", "3"}}));
    EXPECT_EQ(Get<QComboBox>("cboDefaultGroup").count(), 1);
    Check("chkCityVisible", true);
    screen.OnClusterChanged();
    EXPECT_EQ(channel.sent.size(), 2);
}

} // namespace

} // namespace sysadmin
