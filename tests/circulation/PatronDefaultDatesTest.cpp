#include "circulation/frmCirculation_PatronDefaultDates.h"
#include "support/ScreenTest.h"

#include <QDateEdit>

namespace sysadmin {

namespace {

class PatronDefaultDatesTest : public ScreenTest {
protected:
    void OpenWith(const wire::Fields& stored) {
        channel.Answer("GetPatDefDates", 0, stored);
        Open<frmCirculation_PatronDefaultDates>();
    }
    void Save() {
        channel.Answer("UpdPatDefDates", 0);
        Click("cmdSave");
    }
    static QString Wire(QDate date) { return date.toString("yyyyMMdd"); }

    const QDate m_today = QDate::currentDate();
};

TEST_F(PatronDefaultDatesTest, RelativeDateTravelsAsNumberAndUnit) {
    OpenWith({{"PatExpDate", Wire(m_today.addYears(1))},
              {"PatExpOffset", ""},
              {"PatPurgeDate", ""},
              {"PatPurgeOffset", "18M"}});
    EXPECT_TRUE(Get<QAbstractButton>("optExpirationE").isChecked());
    EXPECT_EQ(Get<QDateEdit>("dtpExpirationDate").date(), m_today.addYears(1));
    EXPECT_FALSE(IsEnabled("txtExpirationOffset"));
    EXPECT_TRUE(Get<QAbstractButton>("optPurgeR").isChecked());
    EXPECT_EQ(TextOf("txtPurgeOffset"), "18");
    EXPECT_EQ(Get<QComboBox>("cboPurgeUnit").currentText(), "Month");

    Click("optExpirationR");
    EXPECT_FALSE(IsEnabled("dtpExpirationDate"));
    Type("txtExpirationOffset", "2");
    Choose("cboExpirationUnit", "Year");
    Save();
    EXPECT_EQ(
        channel.sent.last().fields,
        (wire::Fields{
            {"PatExpDate", ""}, {"PatExpOffset", "2Y"}, {"PatPurgeDate", ""}, {"PatPurgeOffset", "18M"}}));
    EXPECT_FALSE(Get<QDateEdit>("dtpExpirationDate").date() == m_today.addYears(1)) << "it is stored no more";
}

TEST_F(PatronDefaultDatesTest, DatesThatDoNotLieAheadAreAskedFor) {
    OpenWith({{"PatExpOffset", "1Y"}, {"PatPurgeOffset", "2Y"}});
    const QString expired =
        "The expiration date is not a future date; any patron record created with this default "
        "date will be immediatedly expired.\r\nContinue anyway?";
    const QString purged =
        "The purge date is not a future date; any patron record created with this default date "
        "will be purged when the purge job runs.\r\nContinue anyway?";
    Click("optExpirationE");
    Click("optPurgeE");
    Get<QDateEdit>("dtpExpirationDate").setDate(m_today);
    Get<QDateEdit>("dtpPurgeDate").setDate(m_today.addDays(-1));
    prompter.ExpectBox(expired, false);
    Click("cmdSave");
    EXPECT_EQ(channel.sent.size(), 1);
    prompter.ExpectBox(expired, true);
    prompter.ExpectBox(purged, false);
    Click("cmdSave");
    EXPECT_EQ(channel.sent.size(), 1);

    Get<QDateEdit>("dtpExpirationDate").setDate(m_today.addDays(1));
    prompter.ExpectBox(purged, true);
    Save();
    EXPECT_EQ(channel.sent.last().fields, (wire::Fields{{"PatExpDate", Wire(m_today.addDays(1))},
                                                        {"PatExpOffset", ""},
                                                        {"PatPurgeDate", Wire(m_today.addDays(-1))},
                                                        {"PatPurgeOffset", ""}}));
}

TEST_F(PatronDefaultDatesTest, ExactMeansThatThereIsADate) {
    OpenWith({});
    EXPECT_TRUE(Get<QAbstractButton>("optExpirationR").isChecked());
    Click("optExpirationE");
    prompter.ExpectBox("Please enter the expiration date.");
    Click("cmdSave");
    EXPECT_TRUE(Get<QWidget>("dtpExpirationDate").hasFocus());
    Click("optExpirationR");
    Save();
    EXPECT_EQ(channel.sent.last().fields,
              (wire::Fields{
                  {"PatExpDate", ""}, {"PatExpOffset", ""}, {"PatPurgeDate", ""}, {"PatPurgeOffset", ""}}));
}

TEST_F(PatronDefaultDatesTest, FailuresAreReportedUnderTheirCaptions) {
    channel.Answer("GetPatDefDates", 2);
    ExpectErrorDialog(prompter, "Database table error.", 2,
                      "Load Circulation Patron Default Dates - REQ_CIRC_PATRON_DEFAULT_DATES_GET",
                      "Patron Default Dates");
    auto& screen = Open<frmCirculation_PatronDefaultDates>();
    EXPECT_FALSE(IsEnabled("cmdSave"));
    channel.Answer("GetPatDefDates", 0, {{"PatExpOffset", "5D"}});
    screen.LoadScreen();
    channel.Answer("UpdPatDefDates", 3);
    ExpectErrorDialog(prompter, "Database column error.", 3, "Save Circulation Patron Default Dates",
                      "Patron Default Dates");
    Click("cmdSave");
    EXPECT_EQ(TextOf("txtExpirationOffset"), "5");
}

} // namespace

} // namespace sysadmin
