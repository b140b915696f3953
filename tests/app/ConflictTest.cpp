#include "app/JobTest.h"
#include "core/Screen.h"
#include "support/TestServer.h"
#include "wire/Status.h"

#include <QLabel>
#include <QTableWidget>
#include <QTest>

namespace sysadmin {

namespace {

namespace status = wire::status;
using testing::TestClient;

/// Two programs on one library: the client under test and a colleague's.
class ConflictTest : public JobTest {
protected:
    ConflictTest() {
        SignOn("SYSADMIN");
        server::LibraryOptions options;
        options.address = GetLibrary().GetAddress();
        options.hashCost = GetLibrary().GetHashCost();
        options.now = [this] { return GetLibrary().Now(); };
        QString error;
        m_library = server::Library::Open(options, &error);
        m_colleague = std::make_unique<TestClient>(m_library, "local");
        EXPECT_EQ(m_colleague->SignOn("SYSADMIN", testing::SamplePassword("SYSADMIN")), status::Ok);
    }

    void Colleague(const QString& request, const wire::Fields& fields) {
        EXPECT_EQ(m_colleague->Send(request, fields).status, status::Ok);
    }
    Screen& EditBook(const QString& name) {
        Screen& screen = Open("Acquisitions_VendorTypes");
        Select(screen, "BOOK");
        Click(screen, "cmdEdit");
        Type(screen, "txtName", name);
        return screen;
    }
    void Rename(const QString& name) {
        Colleague("UpdVenTp", {{"Cd", "BOOK"}, {"Nm", name}, {"NNm", "Y"}, {"OCd", "BOOK"}});
    }
    void Answer(const QString& button, const QStringList& row = {}) {
        prompter.ExpectDialogResult("frmConflict", [=, this](QDialog& dialog) {
            if (!row.isEmpty()) {
                auto& table = Get<QTableWidget>(dialog, "vsfDifferences");
                ASSERT_EQ(table.rowCount(), 1);
                for (int column = 0; column < row.size(); ++column)
                    EXPECT_EQ(table.item(0, column)->text(), row[column]);
            }
            Click(dialog, button);
        });
    }

    std::shared_ptr<const server::Library> m_library;
    std::unique_ptr<TestClient> m_colleague;
};

TEST_F(ConflictTest, TheOperatorChoosesBetweenTheVersions) {
    Screen& screen = EditBook("Mine");
    const QString before = Store().FirstValue("SELECT name FROM vendor_types WHERE code='BOOK'").toString();
    Rename("Theirs");
    Answer("cmdBackToEditing", {"Vendor Type Name", before, "Mine", "Theirs"});
    Click(screen, "cmdSave");
    EXPECT_EQ(TextOf(screen, "txtName"), "Mine") << "nothing typed is lost";

    Rename("Theirs again");
    Answer("cmdSaveMine");
    Click(screen, "cmdSave");
    EXPECT_TRUE(Rows(screen).contains("BOOK|Mine"));

    EditBook("Mine once more");
    Rename("Theirs for good");
    Answer("cmdKeepTheirs");
    Click(screen, "cmdSave");
    QTRY_VERIFY(Rows(screen).contains("BOOK|Theirs for good"));
    EXPECT_FALSE(Get<QPushButton>(screen, "cmdSave").isEnabled());
}

TEST_F(ConflictTest, WhatIsGoneCanBeSavedAsNew) {
    Colleague("AddVenTp", {{"Cd", "ZINE"}, {"Nm", "Zines"}});
    Screen& screen = Open("Acquisitions_VendorTypes");
    Select(screen, "ZINE");
    Click(screen, "cmdEdit");
    Type(screen, "txtName", "Magazines");
    Colleague("DelVenTp", {{"Cd", "ZINE"}});
    Answer("cmdSaveMine");
    Click(screen, "cmdSave");
    EXPECT_TRUE(Rows(screen).contains("ZINE|Magazines"));
    EXPECT_EQ(LastSent("AddVenTp").fields.first().value, "ZINE");
}

TEST_F(ConflictTest, OpenListsFollowUnlessSomethingIsOpenOnThem) {
    Screen& screen = Open("Acquisitions_VendorTypes");
    Colleague("AddVenTp", {{"Cd", "ZINE"}, {"Nm", "Zines"}});
    Ask("GetBsCur");
    QTRY_VERIFY(Rows(screen).contains("ZINE|Zines"));

    EditBook("Mine");
    Colleague("DelVenTp", {{"Cd", "ZINE"}});
    Ask("GetBsCur");
    auto& label = Get<QLabel>(screen, "lblChangedByOthers");
    QTRY_VERIFY(!label.isHidden());
    EXPECT_TRUE(Rows(screen).contains("ZINE|Zines"));
    Click(screen, "cmdCancel");
    QTRY_VERIFY(!Rows(screen).contains("ZINE|Zines"));
    EXPECT_TRUE(label.isHidden());
}

TEST_F(ConflictTest, ASettingIsAskedAboutOnlyWhereItDiffers) {
    Screen& screen = Open("System_DefaultAddress");
    const QString city = Store().FirstValue("SELECT city FROM default_address").toString();
    Type(screen, "txtCity", "Westfield");
    Colleague("UpdDAdr", {{"City", "Northfield"}});
    Answer("cmdSaveMine");
    Click(screen, "cmdSave");
    EXPECT_EQ(Store().FirstValue("SELECT city FROM default_address").toString(), "Westfield");
    EXPECT_NE(city, "Westfield");
}

} // namespace

} // namespace sysadmin
