#include "circulation/LoanAnswer.h"
#include "circulation/LoanQuestion.h"
#include "circulation/LoanTimeline.h"
#include "circulation/PolicyReader.h"
#include "circulation/frmCirculation_Matrix.h"
#include "server/store/Database.h"
#include "support/JobTest.h"
#include "support/LoanWords.h"

#include <QAction>
#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QLabel>
#include <QTest>
#include <QTextBrowser>

namespace sysadmin {

namespace {

QDateTime At(const QString& text) {
    return QDateTime::fromString(text, "yyyy-MM-dd/HH:mm");
}

QString TextOfId(const QList<PickItem>& items, const QString& id) {
    for (const PickItem& item : items)
        if (item.id == id)
            return item.text;
    return {};
}

/// Loans by what is stored in the sample library, in the whole client.
class RealLoansTest : public JobTest {
protected:
    RealLoansTest() {
        SignOn("SYSADMIN");
        prompter.ExpectDialogResult("frmSelectCluster", [this](QDialog& dialog) { Click(dialog, "cmdOK"); });
    }

    QString IdOf(const QString& sql, const QVariantList& values) {
        return Store().FirstValue(sql, values).toString();
    }
    /// Makes the cluster of the policy group the current one.
    void GoToClusterOf(const QString& group) {
        const QString cluster =
            IdOf("SELECT cluster_id FROM circulation_policy_groups WHERE name=?", {group});
        if (App().clusters.Current()->sClusterID == cluster)
            return;
        App().clusters.SetCurrent(cluster);
        emit App().notices.CurrentClusterChanged();
        m_reader.reset();
    }
    const PolicyReader& Reader() {
        if (!m_reader) {
            m_reader.emplace(App().channel, App().clusters.Current()->sClusterID);
            EXPECT_EQ(m_reader->ReadGroups(), 0);
        }
        return *m_reader;
    }
    void TypeMoment(Screen& screen, const QString& role, const QDateTime& at) {
        Type(screen, "txt" + role + "Date", at.isValid() ? at.date().toString(Qt::ISODate) : QString());
        Type(screen, "txt" + role + "Time", at.isValid() ? at.toString("HH:mm") : QString());
    }
    /// Asks about a loan as an operator does.
    void AskAbout(Screen& screen, const QString& group, const QString& patron, const QString& item,
                  const loan::Request& request) {
        GoToClusterOf(group);
        QString location;
        for (const loan::Group& candidate : Reader().Policy().groups)
            if (candidate.name == group)
                location =
                    candidate.locations.first().name + (candidate.locations.first().isDesk ? " (c)" : "");
        Choose(screen, "cboLocation", location);
        Choose(screen, "cboPatronGroup",
               TextOfId(Reader().PatronGroups(),
                        IdOf("SELECT id FROM patron_groups WHERE code=? AND cluster_id=?",
                             {patron, Reader().ClusterId()})));
        Choose(screen, "cboItemType",
               TextOfId(Reader().ItemTypes(), IdOf("SELECT id FROM item_types WHERE code=?", {item})));
        TypeMoment(screen, "Loan", request.charged);
        TypeMoment(screen, "Renewal1", request.renewals.value(0));
        TypeMoment(screen, "Recall", request.recalled.value_or(QDateTime()));
        TypeMoment(screen, "Return", request.returned.value_or(QDateTime()));
    }
    QString Headline(Screen& screen) { return Get<QLabel>(screen, "lblAnswer").text(); }

private:
    std::optional<PolicyReader> m_reader;
};

/// By hand, from the rules as they stand in data/sample-library.
TEST_F(RealLoansTest, ReckonedByHand) {
    struct Case {
        const char* group;
        const char* patron;
        const char* item;
        const char* happens; ///< the loan, then renew=, recall=, return=
        const char* expected;
    };
    const QList<Case> cases{
        {"Engineering Library", "faculty", "m-map", "2026-10-05/10:00", "2026-11-02/23:00"},
        {"Engineering Library", "undergrad", "m-game", "2026-11-12/10:00", "2026-11-28/18:00"},
        {"Engineering Library", "faculty", "m-laptop", "2026-12-17/10:00", "2026-12-26/16:00"},
        {"Engineering Library", "visitor", "m-multimedia", "2026-12-08/10:00", "2026-12-10/02:00"},
        {"Engineering Library", "faculty", "m-accessories-1", "2026-10-05/10:00", "2026-10-05/14:00"},
        {"Engineering Library", "faculty", "m-accessories-1", "2026-10-05/20:30", "2026-10-06/10:00"},
        {"Engineering Library", "faculty", "m-accessories-1", "2026-10-09/19:00", "2026-10-10/11:00"},
        {"Engineering Library", "faculty", "m-accessories-1", "2026-11-25/21:00", "2026-11-28/11:00"},
        {"Engineering Library", "visitor", "m-library-equipment-1", "2026-10-05/10:00",
         "2026-11-02/23:00 lost 2026-11-30/23:00"},
        {"Media Center", "faculty", "m-av-equipment-3", "2026-10-05/22:00", "2026-10-06/11:00"},
        {"Media Center", "undergrad", "m-game", "2026-11-16/10:00", "2026-12-02/23:00"},
        {"Law Library", "faculty", "m-periodical", "2026-10-05/10:00", "2026-10-13/21:00"},
        {"Law Library", "visitor", "m-accessories-1", "2026-10-09/15:00", "2026-10-11/14:00"},
        {"Law Library", "visitor", "m-accessories-1", "2026-10-09/16:30", "2026-10-11/15:30"},
        {"Law Library", "faculty", "m-map",
         "2026-10-05/10:00 recall=2026-10-12/10:00 return=2026-10-26/10:00", "2026-10-20/21:00 15.00"},
        {"Medical Library", "faculty", "1-day-reserve", "2026-10-05/10:00", "2026-12-12/01:00"},
        {"Medical Library", "faculty", "1-day-reserve", "2026-11-30/10:00", "2027-03-21/21:00"},
        {"Business Library", "undergrad", "1-day-reserve", "2026-10-05/10:00 renew=2026-12-10/10:00",
         "2027-03-21/21:00"},
        {"Medical Library", "visitor", "2-hour-reserve", "2026-10-05/10:00 return=2026-10-05/15:30",
         "2026-10-05/12:00 4.00"},
        {"Medical Library", "visitor", "2-hour-reserve", "2026-10-05/10:00 return=2026-10-06/12:00",
         "2026-10-05/12:00 24.00"},
        {"Medical Library", "visitor", "28-day-reserve", "2026-10-05/10:00 return=2026-11-09/10:00",
         "2026-11-02/21:00"},
        {"Medical Library", "visitor", "28-day-reserve", "2026-10-05/10:00 return=2026-11-11/10:00",
         "2026-11-02/21:00 9.00"},
    };
    Screen& screen = Open("Tools_LoanTest");
    for (const Case& one : cases) {
        loan::Request request;
        testing::ReadHappenings(one.happens, At, request);
        AskAbout(screen, one.group, one.patron, one.item, request);
        const QStringList expected = QString(one.expected).split(' ');
        QString headline = "Due on " + ShownMoment(At(expected[0]));
        if (const qsizetype lost = expected.indexOf("lost"); lost > 0)
            headline += ", lost on " + ShownMoment(At(expected[lost + 1]));
        else if (expected.size() > 1)
            headline += ", fine " + expected[1];
        EXPECT_TRUE(Headline(screen).startsWith(headline))
            << one.group << ' ' << one.patron << ' ' << one.item << ' ' << one.happens << ": expected "
            << headline.toStdString() << ", but " << Headline(screen).toStdString() << '\n'
            << Get<QTextBrowser>(screen, "txtAnswer").toPlainText().toStdString();
    }
}

TEST_F(RealLoansTest, TheAnswerFollowsEachEditAndAsksTheServerOncePerGroup) {
    Screen& screen = Open("Tools_LoanTest");
    AskAbout(screen, "Engineering Library", "faculty", "m-map", {.charged = At("2026-10-05/10:00")});
    const qsizetype asked = Traffic().size();
    TypeMoment(screen, "Return", At("2026-10-06/10:00"));
    Type(screen, "txtLoanTime", "11x");
    EXPECT_FALSE(Headline(screen).startsWith("Due"));
    EXPECT_FALSE(IsEnabled("cmdCopy"));
    Type(screen, "txtLoanTime", "11:00");
    EXPECT_TRUE(Headline(screen).startsWith("Due on " + ShownMoment(At("2026-11-02/23:00"))));
    Type(screen, "txtReturnDate", "2026-10-01");
    EXPECT_EQ(Headline(screen), "The return lies before the loan.");
    Type(screen, "txtReturnDate", "");
    Check("chkAlways", true);
    EXPECT_FALSE(IsEnabled("txtRenewal1Date"));
    Check("chkAlways", false);
    EXPECT_EQ(Traffic().size(), asked) << "an edit asked the server";

    // The line of time goes from event to event.
    auto& line = Get<LoanTimeline>(screen, "picLoan");
    line.setFocus();
    QTest::keyClick(&line, Qt::Key_Home);
    EXPECT_TRUE(line.InWords().contains("Lent (1 of"));
    QTest::keyClick(&line, Qt::Key_End);
    EXPECT_EQ(line.accessibleDescription(), line.InWords());
    EXPECT_FALSE(line.InWords().contains("Lent"));
    QTest::keyClick(&line, Qt::Key_Left);
    Click(screen, "cmdCopy");
    const QString copied = QGuiApplication::clipboard()->text();
    EXPECT_TRUE(copied.startsWith(Headline(screen)) && copied.contains("The loan period is 28 days."));

    const QTemporaryDir folder;
    const QString pdf = folder.filePath("loan.pdf");
    prompter.ExpectSaveFile(pdf);
    Click(screen, "cmdPdf");
    QFile written(pdf);
    EXPECT_TRUE(written.open(QIODevice::ReadOnly) && written.read(4) == "%PDF" && written.size() > 5000);

    // What others store is followed; what an edit elsewhere has read stays what it has read.
    const QString group =
        IdOf("SELECT id FROM circulation_policy_groups WHERE name=?", {"Engineering Library"});
    const QString rule =
        IdOf("SELECT id FROM circulation_matrix WHERE group_id=? AND patron_group_id=(SELECT id FROM "
             "patron_groups WHERE code='faculty' AND cluster_id=?) AND item_type_id=(SELECT id FROM "
             "item_types WHERE code='m-map')",
             {group, App().clusters.Current()->sClusterID});
    Store().Run("UPDATE circulation_matrix SET may_charge='N' WHERE id=?", {rule});
    emit App().notices.SubjectChanged("Mat");
    QCoreApplication::processEvents();
    EXPECT_TRUE(Headline(screen).contains("does not allow to charge"));
    Store().Run("DELETE FROM circulation_matrix WHERE id=?", {rule});
    QTest::keyClick(&screen, Qt::Key_F5);
    EXPECT_TRUE(Headline(screen).contains("has no matrix entry"));
    EXPECT_TRUE(IsEnabled("cmdRule"));
    prompter.ExpectDialogResult("frmPrintPreview", [](QDialog& dialog) { dialog.reject(); });
    Click(screen, "cmdPrint");
}

TEST_F(RealLoansTest, DemeritsComeFromThePatronGroup) {
    Store().Run("UPDATE circulation_miscellaneous SET uses_demerits='Y'");
    Store().Run("UPDATE patron_groups SET demerits_apply='Y', most_demerits=10, suspension_days=30 WHERE "
                "code='faculty'");
    Screen& screen = Open("Tools_LoanTest");
    loan::Request request;
    testing::ReadHappenings("2026-10-05/10:00 recall=2026-10-12/10:00 return=2026-10-26/10:00", At, request);
    AskAbout(screen, "Law Library", "faculty", "m-map", request);
    EXPECT_TRUE(Headline(screen).endsWith(", 15 demerits")) << Headline(screen).toStdString();
    EXPECT_TRUE(Get<QTextBrowser>(screen, "txtAnswer").toPlainText().contains("is suspended for 30 days"));
    AskAbout(screen, "Law Library", "fellow", "m-map", request);
    EXPECT_TRUE(Get<QTextBrowser>(screen, "txtAnswer")
                    .toPlainText()
                    .contains("Demerits do not apply to this patron group"))
        << Get<QTextBrowser>(screen, "txtAnswer").toPlainText().toStdString();
}

TEST_F(RealLoansTest, FindingsLeadToTheirPlaces) {
    const QString faculty =
        "(SELECT id FROM patron_groups WHERE code='faculty' AND cluster_id=(SELECT cluster_id FROM "
        "circulation_policy_groups WHERE name='Law Library'))";
    const QString map = "(SELECT id FROM item_types WHERE code='m-map')";
    const QString law = "(SELECT id FROM circulation_policy_groups WHERE name='Law Library')";
    const QString entry = " WHERE group_id=" + law + " AND patron_group_id=" + faculty + " AND item_type_id=";
    Store().Run("DELETE FROM circulation_matrix" + entry + map);
    Store().Run("UPDATE circulation_matrix SET loan_period='0'" + entry +
                "(SELECT id FROM item_types WHERE code='m-periodical')");
    Screen& screen = Open("Tools_RuleCheck");
    const auto choose = [&](const QString& finding, const QString& place) {
        for (const GridRow& row : Grid(screen).Model().Rows())
            if (row.cells[1] == u"Law Library" && row.cells[2] == finding && row.cells[3].contains(place))
                return Grid(screen).SelectKey(row.key);
        return false;
    };
    // The entry that is missing is begun for its pair, the one that contradicts itself is shown.
    ASSERT_TRUE(choose("No entry", "Faculty"));
    prompter.ExpectDialogResult("frmCirculation_PolicyMatrixRecordSettingsCopy",
                                [](QDialog& dialog) { dialog.reject(); });
    Click(screen, "cmdOpen");
    ASSERT_TRUE(choose("Loan period 0", "Faculty"));
    prompter.ExpectDialogResult("frmCirculation_PolicyMatrixRecordSettings",
                                [](QDialog& dialog) { dialog.reject(); });
    emit Grid(screen).RowActivated(Grid(screen).SelectedKey());
    Click(screen, "cmdTestLoan");
    Screen& test = *Window().ActiveScreen();
    EXPECT_EQ(test.objectName(), "frmCirculation_LoanTest");
    EXPECT_TRUE(Get<QTextBrowser>(test, "txtAnswer").toPlainText().contains("The loan period is 0 days."));
    EXPECT_EQ(App().clusters.Current()->sClusterID,
              Store()
                  .FirstValue("SELECT cluster_id FROM "
                              "circulation_policy_groups WHERE name='Law Library'")
                  .toString());
    emit App().notices.SubjectChanged("Mat");
    EXPECT_TRUE(Get<QLabel>(screen, "lblSummary").text().contains("have changed"));
}

TEST_F(RealLoansTest, AGapLeadsToTheCalendarBeforeIt) {
    Store().Run("UPDATE calendars SET end_date='20261210' WHERE name='Autumn Term 2026'");
    Screen& screen = Open("Tools_RuleCheck");
    const auto rows = Grid(screen).Model().Rows();
    const auto gap = std::find_if(rows.begin(), rows.end(),
                                  [](const GridRow& row) { return row.cells[2] == u"Gap of calendars"; });
    ASSERT_NE(gap, rows.end());
    Grid(screen).SelectKey(gap->key);
    Click(screen, "cmdOpen");
    Screen& calendars = *Window().ActiveScreen();
    EXPECT_EQ(calendars.objectName(), "frmCirculation_Calendars");
    EXPECT_EQ(FrameCaption(calendars), "Edit " + gap->cells[3] + ":");
}

TEST_F(RealLoansTest, ADeskLeadsToItsPolicyGroup) {
    Screen& screen = Open("Tools_RuleCheck");
    const auto rows = Grid(screen).Model().Rows();
    const auto desk = std::find_if(rows.begin(), rows.end(),
                                   [](const GridRow& row) { return row.cells[2] == u"No pickup location"; });
    ASSERT_NE(desk, rows.end());
    Grid(screen).SelectKey(desk->key);
    Click(screen, "cmdOpen");
    Screen& policies = *Window().ActiveScreen();
    ASSERT_EQ(policies.objectName(), "frmCirculation_PolicyDef");
    EXPECT_EQ(FrameCaption(policies), "Edit " + desk->cells[1] + ":");
    const GridRow* row = Grid(policies, "vsfSelectedLocations").SelectedRow();
    ASSERT_TRUE(row);
    EXPECT_TRUE(row->cells[0].startsWith(desk->cells[3])) << row->cells[0].toStdString();
}

TEST_F(RealLoansTest, ARuleIsTestedFromTheMatrixAndFromADialog) {
    Open("Tools_RuleCheck"); // has the cluster chosen
    const QString cluster = App().clusters.Current()->sClusterID;
    const QString group = IdOf("SELECT group_id FROM circulation_matrix WHERE group_id IN (SELECT id FROM "
                               "circulation_policy_groups WHERE cluster_id=?)",
                               {cluster});
    QStringList tested;
    MatrixPages pages(App(), nullptr);
    QDialog around;
    QWidget* page = pages.MakePage(MatrixKind::Regular, &around);
    around.show();
    pages.SetGroup(MatrixGroup{.id = group, .name = "Group", .clusterId = cluster});
    ASSERT_TRUE(pages.Load());
    const auto takeAnswer = [&](QDialog& dialog) {
        tested << Get<QTextBrowser>(dialog, "txtAnswer").toPlainText();
        Click(dialog, "cmdClose");
    };
    prompter.ExpectDialogResult("dlgLoanTest", takeAnswer);
    prompter.ExpectDialogResult("frmCirculation_MatrixMap", [&](QDialog& dialog) {
        Click(dialog, "cmdTestLoan");
        dialog.reject();
    });
    prompter.ExpectDialogResult("dlgLoanTest", takeAnswer);
    auto& grid = Grid(*page, "vsfMatrix");
    grid.SelectKeys({grid.Model().ShownKeys().first()});
    Get<QAction>(*page, "mnuTestLoan").trigger();
    Click(*page, "cmdMapMatrix");
    EXPECT_EQ(tested.filter("Its matrix entry for ").size(), 2) << tested.join('\n').toStdString();
}

TEST_F(RealLoansTest, WhatTheCheckFinds) {
    Screen& screen = Open("Tools_RuleCheck");
    QMap<QString, int> found;
    for (const GridRow& row : Grid(screen).Model().Rows())
        ++found[row.cells[2]];
    EXPECT_EQ(found.keys(), QStringList({"No entry", "No pickup location", "No rules"}));
    EXPECT_EQ(found["No rules"], 4);
    EXPECT_TRUE(Get<QLabel>(screen, "lblSummary").text().startsWith("23 policy groups"));
    qsizetype rules = 0;
    for (const auto& [id, cluster] : App().clusters) {
        PolicyReader reader(App().channel, id);
        ASSERT_EQ(reader.ReadAll(), 0);
        for (const loan::Group& group : reader.Policy().groups)
            rules += group.rules.size();
    }
    EXPECT_EQ(rules, 3444);
}

} // namespace

} // namespace sysadmin
