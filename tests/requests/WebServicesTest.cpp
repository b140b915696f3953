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
