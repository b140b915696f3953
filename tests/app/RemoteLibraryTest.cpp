#include "app/Programs.h"

#include "server/store/Database.h"
#include "support/JobTest.h"
#include "support/TargetProcess.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QTcpServer>
#include <QTest>

namespace sysadmin {

namespace {

/// The sample library in the program, the partner library behind a server of its own.
class RemoteLibraryTest : public JobTest {
protected:
    void StartPartner(const QString& folder, quint16 port = 0) {
        ASSERT_TRUE(m_partner.Start({"--library", folder, "--create-sample", "partner", "--listen",
                                     "127.0.0.1:" + QString::number(port)}));
    }
    QString Place() const { return "127.0.0.1:" + QString::number(m_port); }
    QString Groups() {
        return Store()
            .FirstValue("SELECT COUNT(*) FROM remote_patron_groups g JOIN search_databases d ON "
                        "d.id=g.database_id WHERE d.code='PARTNER'")
            .toString();
    }
    QString IdOf(const QString& group) {
        return Store().FirstValue("SELECT id FROM remote_patron_groups WHERE code=?", {group}).toString();
    }
    QString Question(const QString& first) const {
        return first + "\r\n\r\nThe fingerprint of its certificate (SHA-256) is\r\n\r\n" +
               m_partner.Fingerprint() +
               "\r\n\r\nThe administrator of that server can tell whether that is right.\r\n\r\nDo you trust "
               "this server, now and in future?";
    }

    /// A line as in stories.
    void Do(const QString& line) { Tell({.file = __FILE__, .title = {}, .note = {}, .lines = {{0, line}}}); }
    QString State() { return Get<QLabel>(*front, "lblState").text(); }

    QTemporaryDir m_there;
    ServerProcess m_partner;
    quint16 m_port = 0;
};

TEST_F(RemoteLibraryTest, ClustersComeFromTheOtherServerAndStayWhenItIsAway) {
    StartPartner(m_there.path());
    m_port = m_partner.Port();
    SignOn("SYSADMIN");
    Store().Run("UPDATE search_databases SET administration_port=? WHERE code='PARTNER'", {m_port});
    Open("Search_DatabaseDefinitions");
    Do("row vsf PARTNER");
    Do("click cmdEdit");
    Do("tab tabDatabase 4");
    // What the sample holds.
    Do("rows vsfRemoteClusters \"City Campus\" \"River Campus\"");
    const QString group = IdOf("undergrad");
    prompter.ExpectBox(Question("This is the first connection to " + Place() + "."), true);
    Do("click cmdRefresh");
    Do("rows vsfRemoteClusters \"City Campus\" \"River Campus\"");
    EXPECT_EQ(Groups(), "8");

    // What changes there changes here, and what stays keeps its id: mappings refer to it.
    {
        server::Database there(server::StoreAddress::InDirectory(m_there.path()));
        there.Run("UPDATE clusters SET name='City Centre' WHERE code='CITY'");
        there.Run("DELETE FROM patron_groups WHERE code='visitor'");
        there.Run("UPDATE patron_groups SET name='Bachelor student' WHERE code='undergrad'");
    }
    Do("click cmdRefresh");
    Do("rows vsfRemoteClusters \"City Centre\" \"River Campus\"");
    EXPECT_EQ(Groups(), "7");
    EXPECT_EQ(Store().FirstValue("SELECT name FROM remote_patron_groups WHERE code='undergrad'").toString(),
              "Bachelor student");
    EXPECT_EQ(LastSent("RefreshClusterCache").fields.value(1), (wire::Field{"CRFSH", "Y"}));

    m_partner.Kill();
    prompter.ExpectBox("Nothing is running at " + Place() + ". What was stored before stays.");
    Do("click cmdRefresh");
    Do("rows vsfRemoteClusters \"City Centre\" \"River Campus\"");
    EXPECT_EQ(Groups(), "7");

    StartPartner(m_there.path(), m_port);
    Do("click cmdRefresh");
    EXPECT_EQ(Groups(), "7");

    // Another server at the same place: nothing goes to it, whatever it would say.
    m_partner.Kill();
    const QTemporaryDir elsewhere;
    StartPartner(elsewhere.path(), m_port);
    prompter.ExpectBox(Question(Place() +
                                " shows another certificate than before. Either the server was set up "
                                "anew, or something else pretends to be it."),
                       false);
    Do("click cmdRefresh");
    EXPECT_EQ(Groups(), "7");
    Do("click cmdCancel");

    // The test of the connection says the same, and signs on once the certificate is accepted.
    Do("row vsf PARTNER");
    prompter.ExpectDialogResult("frmSearch_DatabaseTest", [this](QDialog& dialog) {
        QWidget* before = std::exchange(front, &dialog);
        prompter.ExpectBox(Question(Place() +
                                    " shows another certificate than before. Either the server was set "
                                    "up anew, or something else pretends to be it."),
                           true);
        Do("click cmdTest");
        EXPECT_TRUE(QTest::qWaitFor(
            [&] {
                return Get<QPlainTextEdit>(*front, "txtResult")
                    .toPlainText()
                    .contains("Library: Partner Library");
            },
            60'000));
        EXPECT_EQ(State(), Place() + " accepts the connection.");
        Store().Run("UPDATE search_databases SET user_id='NOBODY' WHERE code='PARTNER'");
        Do("click cmdTest");
        EXPECT_TRUE(QTest::qWaitFor(
            [&] { return State() == Place() + " refuses the user ID or the password."; }, 60'000));
        Do("click cmdClose");
        front = before;
    });
    Do("click cmdTestConnection");
}

TEST_F(RemoteLibraryTest, PatronGroupsAreMappedToThoseOfARunningServer) {
    StartPartner(m_there.path());
    m_port = m_partner.Port();
    SignOn("SYSADMIN");
    Store().Run("UPDATE search_databases SET administration_port=? WHERE code='PARTNER'", {m_port});
    {
        server::Database there(server::StoreAddress::InDirectory(m_there.path()));
        there.Run("UPDATE patron_groups SET name='Fellow' WHERE code='staff'");
    }
    const auto refresh = [this](bool first) {
        Open("Search_DatabaseDefinitions");
        Do("row vsf PARTNER");
        Do("click cmdEdit");
        Do("tab tabDatabase 4");
        if (first)
            prompter.ExpectBox(Question("This is the first connection to " + Place() + "."), true);
        Do("click cmdRefresh");
        Do("click cmdCancel");
    };
    refresh(true);
    prompter.ExpectDialogResult("frmSelectCluster", [this](QDialog& dialog) {
        QWidget* before = std::exchange(front, &dialog);
        Do("row vsfClusters \"University Libraries\"");
        Do("press Return vsfClusters");
        front = before;
    });
    const auto edit = [this] {
        Open("Circulation_PatronGroupMapping");
        Do("row vsf PARTNER");
        Do("click cmdEdit");
    };
    edit();
    // What the other server has got meanwhile is suggested where the name is the same; groups of two of its
    // clusters go out in a request each.
    Do("row vsfLocalGroups \"Fellow - Blank|Fellow\"");
    Do("row vsfLocalGroups \"Visitor - Blank|Visitor\"");
    Do("click cmdSuggestions");
    Do("row vsfLocalGroups \"Faculty Member - Blank\"");
    Do("row vsfRemoteGroups \"River Campus - Teacher\"");
    Do("click cmdAssign");
    Do("row vsfLocalGroups \"Law School guest - Blank\"");
    Do("row vsfRemoteGroups \"<Manual Map>\"");
    Do("click cmdAssign cmdSave");
    Do("tags UpdMap ( UBLPGI UbMm UBMGI ) RCID CID DBI");
    QStringList clusters;
    for (const Sent& sent : Traffic())
        if (sent.name == u"UpdMap")
            clusters << sent.Values("RCID").join('|');
    clusters.sort();
    EXPECT_EQ(clusters, (QStringList{"1", "2"}));
    Do("click cmdCancel");
    const auto mapped = [this] {
        return Store()
            .FirstValue("SELECT COUNT(*) FROM patron_group_mappings m JOIN search_databases d ON "
                        "d.id=m.database_id WHERE d.code='PARTNER'")
            .toInt();
    };
    EXPECT_EQ(mapped(), 6); // both kinds of students are suggested, too

    // What changes its name there keeps its mapping, what is gone there loses it; the rest stays while nobody
    // answers.
    {
        server::Database there(server::StoreAddress::InDirectory(m_there.path()));
        there.Run("DELETE FROM patron_groups WHERE code='visitor'");
        there.Run("UPDATE patron_groups SET name='Lecturer' WHERE code='teacher'");
    }
    refresh(false);
    edit();
    Do("row vsfLocalGroups \"Visitor - Blank|\"");
    Do("row vsfLocalGroups \"Faculty Member - River Campus - Lecturer\"");
    Do("row vsfLocalGroups \"Law School guest - <Manual Map>\"");
    Do("click cmdCancel");
    m_partner.Kill();
    prompter.ExpectBox("Nothing is running at " + Place() + ". What was stored before stays.");
    refresh(false);
    edit();
    Do("row vsfLocalGroups \"Fellow - City Campus - Fellow\"");
    Do("click cmdUnassign cmdSave cmdCancel");
    EXPECT_EQ(mapped(), 4);
}

TEST_F(RemoteLibraryTest, UniversalBorrowingWaitsForTheOtherServerAndTheOperatorMayGiveUp) {
    QTcpServer silent; // takes the connection, and that is all
    ASSERT_TRUE(silent.listen(QHostAddress::LocalHost));
    SignOn("SYSADMIN");
    Store().Run("UPDATE search_databases SET administration_port=?, universal_borrowing='N' WHERE "
                "code='PARTNER'",
                {silent.serverPort()});
    Open("Search_DatabaseDefinitions");
    Do("row vsf PARTNER");
    Do("click cmdEdit");
    Do("check chkUB");
    prompter.ExpectDialogResult("frmWait", [this](QDialog& dialog) {
        QWidget* before = std::exchange(front, &dialog);
        Do("click cmdCancel");
        front = before;
    });
    Do("click cmdSave");
    EXPECT_EQ(LastSent("UpdDB").fields.last(), (wire::Field{"55", "N"}));
    Do("shows chkUB Y");
    const auto stored = [this] {
        return Store()
            .FirstValue("SELECT universal_borrowing FROM search_databases WHERE code='PARTNER'")
            .toString();
    };
    EXPECT_EQ(stored(), "N");
    // Waited for to the end.
    prompter.ExpectBox("Unable to connect to remote database.\r\n\r\nPlease retry after verifying that the "
                       "database address and port numbers are correct. To save your changes anyway, please "
                       "uncheck the UB Database box.");
    Do("click cmdSave");
    EXPECT_EQ(stored(), "N");
    StartPartner(m_there.path());
    Do("type txtPortSysadmin " + QString::number(m_partner.Port()));
    Do("click cmdSave");
    EXPECT_EQ(stored(), "Y");
}

TEST_F(RemoteLibraryTest, ATargetIsDefinedTestedAndRefused) {
    testing::TargetProcess target;
    ASSERT_TRUE(target.IsThere()) << "yaz-ztest (package yaz) does not run";
    SignOn("SYSADMIN");
    Open("Search_DatabaseDefinitions");
    for (const char* line :
         {"click cmdNew", "type txtCode REAL", "type txtName \"Real Target\"", "type txtAddrOpac 127.0.0.1",
          "tab tabDatabase 1", "type txtDatabaseName Default", "type txtUserID guest", "type txtTimeout 20"})
        Do(line);
    Do("type txtPassword " + Secret("target-2041"));
    Do("tab tabDatabase 0");
    Do("type txtPortOpac " + target.Port());
    prompter.ExpectDialogResult("frmSearch_DatabaseAttributesSettings", [this](QDialog& dialog) {
        QWidget* before = std::exchange(front, &dialog);
        Do("type txtSearchCode TITL");
        Do("choose cboUse title");
        Do("click cmdOK");
        front = before;
    });
    Do("tab tabDatabase 2");
    Do("click cmdAdd");
    Do("click cmdSave");
    EXPECT_NE(Store().FirstValue("SELECT password FROM search_databases WHERE code='REAL'").toString(), "");

    QStringList tags;
    for (const wire::Field& field : LastSent("AddDB").fields)
        tags << (field.tag == u"PW" ? "PW=" + field.value : field.tag); // in the trace
    EXPECT_EQ(
        tags.join(' '),
        "NCd Nm Pr PU DBU DBK ADRO POPAC ADRCI PCIRC ADRCA PCALL ADRS PSYS ADRT PTPDS ADRTXWS PTXWS DN OI "
        "PC PW=*** W MH DCTO OS SS DID CSID AS ASC PSC A1 A2 A3 A4 A6 AA LT BE RT AD");

    const QString place = "127.0.0.1:" + target.Port();
    const auto test = [&](const QString& state) {
        prompter.ExpectDialogResult("frmSearch_DatabaseTest", [&, state](QDialog& dialog) {
            QWidget* before = std::exchange(front, &dialog);
            Do("click cmdTest");
            EXPECT_TRUE(QTest::qWaitFor([&] { return State().startsWith(state); }, 60'000))
                << State().toStdString();
            EXPECT_EQ(Get<QPlainTextEdit>(*front, "txtResult").toPlainText().contains("First record:"),
                      state.endsWith("search."));
            Do("click cmdClose");
            front = before;
        });
        Do("row vsf REAL");
        Do("click cmdTestConnection");
    };
    test(place + " accepts the connection and answers the search.");
    Store().Run("UPDATE search_databases SET database_name='Other' WHERE code='REAL'");
    test(place + " was reached, but refused what was asked. It says: ");
    target.End();
    test("Nothing is running at " + place + ".");
}

} // namespace

} // namespace sysadmin
