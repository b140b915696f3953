#include "app/JobTest.h"

#include <QDialog>

namespace sysadmin {

namespace {

const QString AccessGroups = "System_AccessControlGroups";
const QString V4 = "0000:0000:0000:0000:0000:ffff:";
const QString V6 = "2001:0db8:0000:0000:0000:0000:0000:";

class AddressJobTest : public JobTest {
protected:
    AddressJobTest() { SignOn("SYSADMIN"); }

    /// Fills in the boxes of an address dialog and presses OK.
    void ExpectAddresses(const QString& form, const QString& family, const QStringList& addresses) {
        const bool isRange = form == u"frmIPRange";
        prompter.ExpectDialogResult(form, [=, this](QDialog& dialog) {
            Click(dialog, "OptIpv" + family + (isRange ? "Range" : "Address"));
            int box = 0;
            for (const QString& address : addresses)
                for (const QString& group : address.split(family == u"4" ? '.' : ':'))
                    Type(dialog, QString("txtIP%1_%2").arg(family).arg(box++), group);
            Click(dialog, isRange ? "cmdOK_IPRange" : "cmdOK_IPAddress");
        });
    }
};

TEST_F(AddressJobTest, AccessGroupsKeepBothKindsOfAddresses) {
    Screen* screen = &Open(AccessGroups);
    Click(*screen, "cmdNew");
    Type(*screen, "txtCode", "NETS");
    Type(*screen, "txtName", "Networks");
    Choose(*screen, "cboGroupType", "IP Range");
    ExpectAddresses("frmIPRange", "4", {"10.0.0.0", "10.0.0.255"});
    Click(*screen, "cmdAddIPRange");
    ExpectAddresses("frmIPRange", "6", {"2001:db8:0:0:0:0:0:ab", "2001:DB8:0:0:0:0:0:FFFF"});
    Click(*screen, "cmdAddIPRange");
    prompter.ExpectDialogResult("frmIPRange", [this](QDialog& dialog) {
        const QStringList groups = QString("10.0.0.255.10.0.1.0").split('.');
        for (int i = 0; i < groups.size(); ++i)
            Type(dialog, QString("txtIP4_%1").arg(i), groups[i]);
        prompter.ExpectBox("IP Address Range is overlapping with an existing range: 10.0.0.0 - 10.0.0.255");
        Click(dialog, "cmdOK_IPRange");
        Click(dialog, "cmdCancel_IPRange");
    });
    Click(*screen, "cmdAddIPRange");
    Click(*screen, "cmdSave");
    EXPECT_EQ(LastSent("AddAG").fields, (wire::Fields{{"T", "R"},
                                                      {"C", "NETS"},
                                                      {"N", "Networks"},
                                                      {"MI", V4 + "0a00:0000"},
                                                      {"XI", V4 + "0a00:00ff"},
                                                      {"MI", V6 + "00ab"},
                                                      {"XI", V6 + "ffff"}}));
    Click(*screen, "cmdNew");
    Type(*screen, "txtCode", "PCS");
    Type(*screen, "txtName", "Reading Room PCs");
    Choose(*screen, "cboGroupType", "IP Address");
    ExpectAddresses("frmIPAddress", "4", {"10.0.0.1"});
    Click(*screen, "cmdAddIPAddress");
    ExpectAddresses("frmIPAddress", "6", {"2001:db8:0:0:0:0:0:1"});
    Click(*screen, "cmdAddIPAddress");
    Click(*screen, "cmdSave");

    NextDay();
    screen = &Open(AccessGroups);
    Select(*screen, "NETS|Networks|IP Range");
    Click(*screen, "cmdEdit");
    EXPECT_EQ(Rows(*screen, "vsfIPRange"),
              (QStringList{"10.0.0.0 - 10.0.0.255", "2001:db8:0:0:0:0:0:ab - 2001:db8:0:0:0:0:0:ffff"}));
    Select(*screen, "10.0.0.0", "vsfIPRange");
    Click(*screen, "cmdRemoveIPRange");
    Click(*screen, "cmdSave");
    EXPECT_EQ(LastSent("UpdAG").Values("MI"), QStringList{V6 + "00ab"});
    EXPECT_EQ(LastSent("UpdAG").Value("NCd") + LastSent("UpdAG").Value("NNm"), "NN");
    Select(*screen, "PCS|Reading Room PCs|IP Address");
    Click(*screen, "cmdEdit");
    EXPECT_EQ(Rows(*screen, "vsfIPAddress"), (QStringList{"10.0.0.1", "2001:db8:0:0:0:0:0:1"}));
}

TEST_F(AddressJobTest, TheDefaultAddressIsKept) {
    Screen* screen = &Open("System_DefaultAddress");
    EXPECT_EQ(TextOf(*screen, "txtName"), "University Libraries");
    Type(*screen, "txtContact", "Head Office");
    Type(*screen, "txtAddress5", "Room 5");
    Click(*screen, "cmdSave");
    EXPECT_EQ(LastSent("UpdDAdr").Value("CCm"), "Head Office");
    Click(*screen, "cmdClear");
    EXPECT_EQ(TextOf(*screen, "txtContact"), "");
    Click(*screen, "cmdCancel");

    NextDay();
    screen = &Open("System_DefaultAddress");
    EXPECT_EQ(TextOf(*screen, "txtContact"), "Head Office");
    EXPECT_EQ(TextOf(*screen, "txtAddress5"), "Room 5");
    EXPECT_EQ(TextOf(*screen, "txtState"), "NY");
    // A library that has none yet gets its first one.
    Store().Run("DELETE FROM default_address");
    NextDay();
    screen = &Open("System_DefaultAddress");
    EXPECT_EQ(TextOf(*screen, "txtContact"), "");
    Type(*screen, "txtName", "Branch");
    Click(*screen, "cmdSave");
    Type(*screen, "txtCity", "Eastfield");
    Click(*screen, "cmdSave");
    EXPECT_EQ(LastSent("AddDAdr").Value("LNm"), "Branch");
    EXPECT_EQ(LastSent("UpdDAdr").Value("City"), "Eastfield");
}

} // namespace

} // namespace sysadmin
