#include "app/ServedTest.h"
#include "server/store/Database.h"

#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>

namespace sysadmin {
namespace {

constexpr char VendorTypes[] = "Acquisitions_VendorTypes";
constexpr char DefaultAddress[] = "System_DefaultAddress";

/// Two programs, each with a window and a session of its own, on one server in a process of its own.
class ConflictTest : public ServedTest {
protected:
    void SetUp() override {
        const auto address = server::StoreAddress::InDirectory(m_directory.path());
        Serve(address, {"--library", m_directory.path()});
        m_mine = StartClient();
        m_theirs = StartClient();
    }
    void TearDown() override {
        for (auto* client : {&m_mine, &m_theirs}) {
            if (*client && (*client)->Window())
                (*client)->Window()->Abort = true;
            client->reset();
        }
        ServedTest::TearDown();
    }

    Screen& Mine(const QString& key) { return Open(*m_mine, key); }
    Screen& Theirs(const QString& key) { return Open(*m_theirs, key); }
    /// My program hears of what others did with the reply to its next request, whatever that is.
    void LetMineHear() {
        m_mine->App().channel.SendRequest("GetBsCur");
        QCoreApplication::processEvents();
    }
    /// The other one's whole work on the vendor type "BOOK".
    void TheyRename(const QString& name) {
        Screen& screen = Theirs(VendorTypes);
        PressF5(screen);
        Select(screen, "BOOK");
        Click(screen, "cmdEdit");
        Type(screen, "txtName", name);
        Click(screen, "cmdSave");
    }
    Screen& EditBook(const QString& name) {
        Screen& screen = Mine(VendorTypes);
        Select(screen, "BOOK");
        Click(screen, "cmdEdit");
        Type(screen, "txtName", name);
        return screen;
    }
    void PressF5(Screen& screen) {
        screen.window()->activateWindow();
        QTRY_VERIFY(screen.window()->isActiveWindow());
        QTest::keyClick(&screen, Qt::Key_F5);
    }
    /// The question: what it shows, and the answer.
    void Expect(const QString& button, const QStringList& shown) {
        prompter.ExpectDialogResult("frmConflict", [=, this](QDialog& dialog) {
            EXPECT_TRUE(Get<QLabel>(dialog, "lblConflict").text().contains("changed this record"));
            QStringList lines;
            auto& table = Get<QTableWidget>(dialog, "vsfDifferences");
            for (int row = 0; row < table.rowCount(); ++row) {
                QStringList cells;
                for (int column = 0; column < table.columnCount(); ++column)
                    cells << table.item(row, column)->text();
                lines << cells.join('|');
            }
            EXPECT_EQ(lines, shown);
            Click(dialog, button);
        });
    }
    bool SaysChanged(Screen& screen) { return !Get<QLabel>(screen, "lblChangedByOthers").isHidden(); }

private:
    Screen& Open(Client& client, const QString& key) {
        client.Window()->OpenScreen(key);
        Screen* screen = client.Window()->FindScreen(key);
        if (!screen)
            throw std::runtime_error("no screen " + key.toStdString());
        return *screen;
    }

    QTemporaryDir m_directory;
    std::unique_ptr<Client> m_mine;
    std::unique_ptr<Client> m_theirs;
};

TEST_F(ConflictTest, TwoWindowsOnOneRecordOfAList) {
    Screen& mine = EditBook("Mine");
    const QString before = GridRows(mine).filter("BOOK|").value(0).mid(5);
    TheyRename("Theirs");
    Expect("cmdBackToEditing", {"Vendor Type Name|" + before + "|Mine|Theirs"});
    Click(mine, "cmdSave");
    EXPECT_EQ(TextOf(mine, "txtName"), "Mine") << "nothing typed is lost";

    // What was shown is known: only what is newer is asked about.
    TheyRename("Theirs again");
    Expect("cmdSaveMine", {"Vendor Type Name|Theirs|Mine|Theirs again"});
    Click(mine, "cmdSave");
    EXPECT_EQ(GridRows(mine).filter("BOOK|"), QStringList{"BOOK|Mine"});

    EditBook("Mine once more");
    TheyRename("Theirs for good");
    Expect("cmdKeepTheirs", {"Vendor Type Name|Mine|Mine once more|Theirs for good"});
    Click(mine, "cmdSave");
    QTRY_COMPARE(GridRows(mine).filter("BOOK|"), QStringList{"BOOK|Theirs for good"});
    EXPECT_FALSE(Get<QWidget>(mine, "cmdSave").isEnabled());
}

TEST_F(ConflictTest, AListFollowsUnlessSomethingIsOpenOnIt) {
    Screen& mine = Mine(VendorTypes);
    TheyRename("First");
    LetMineHear();
    QTRY_COMPARE(GridRows(mine).filter("BOOK|"), QStringList{"BOOK|First"});

    EditBook("Mine");
    TheyRename("Second");
    LetMineHear();
    QTRY_VERIFY(SaysChanged(mine));
    EXPECT_EQ(TextOf(mine, "txtName"), "Mine");
    PressF5(mine);
    EXPECT_TRUE(SaysChanged(mine)) << "an open edit stays as it is";
    EXPECT_EQ(TextOf(mine, "txtName"), "Mine");
    Click(mine, "cmdCancel");
    QTRY_COMPARE(GridRows(mine).filter("BOOK|"), QStringList{"BOOK|Second"});
    EXPECT_FALSE(SaysChanged(mine));

    TheyRename("Third"); // not heard of yet
    EXPECT_EQ(GridRows(mine).filter("BOOK|"), QStringList{"BOOK|Second"});
    PressF5(mine);
    EXPECT_EQ(GridRows(mine).filter("BOOK|"), QStringList{"BOOK|Third"});
}

TEST_F(ConflictTest, TwoWindowsOnASetting) {
    Screen& mine = Mine(DefaultAddress);
    Screen& theirs = Theirs(DefaultAddress);
    const auto theySave = [&](const QString& city) {
        PressF5(theirs);
        Type(theirs, "txtCity", city);
        Click(theirs, "cmdSave");
    };
    const QString before = TextOf(mine, "txtCity");
    theySave("Northfield");
    LetMineHear();
    QTRY_COMPARE(TextOf(mine, "txtCity"), QString("Northfield"));

    Type(mine, "txtCity", "Westfield");
    theySave("Eastfield");
    LetMineHear();
    QTRY_VERIFY(SaysChanged(mine));
    EXPECT_EQ(TextOf(mine, "txtCity"), "Westfield");
    Expect("cmdBackToEditing", {"City|Northfield|Westfield|Eastfield"});
    Click(mine, "cmdSave");
    Expect("cmdSaveMine", {"City|Eastfield|Westfield|Southfield"});
    theySave("Southfield");
    Click(mine, "cmdSave");
    PressF5(theirs);
    EXPECT_EQ(TextOf(theirs, "txtCity"), "Westfield");

    Type(mine, "txtCity", "Nowhere");
    theySave(before);
    Expect("cmdKeepTheirs", {"City|Westfield|Nowhere|" + before});
    Click(mine, "cmdSave");
    EXPECT_EQ(TextOf(mine, "txtCity"), before);
}

} // namespace
} // namespace sysadmin
