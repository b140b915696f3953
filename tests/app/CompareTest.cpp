#include "security/DifferenceModel.h"
#include "support/JobTest.h"

#include <QAbstractButton>
#include <QAbstractItemModelTester>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QTreeView>

namespace sysadmin {

namespace {

/// "Compare Configurations" on the sample library.
class CompareTest : public JobTest {
protected:
    CompareTest() { SignOn("SYSADMIN"); }

    QString Folder() const { return m_folder.path(); }
    void Export(Screen& screen) {
        prompter.ExpectFolder(Folder());
        prompter.ExpectBox(QString("The settings are in %1: %2 files.")
                               .arg(QDir::toNativeSeparators(Folder()))
                               .arg(GetLibrary().GetRegistry().GetTables().size() - OtherTables()));
        Click(screen, "cmdExport");
    }
    /// Tables that are no settings.
    qsizetype OtherTables() const {
        qsizetype count = 0;
        for (const server::Table& table : GetLibrary().GetRegistry().GetTables())
            count += table.content == server::Content::Settings ? 0 : 1;
        return count;
    }
    void Replace(const QString& table, const QByteArray& before, const QByteArray& after) {
        QFile file(Folder() + '/' + table + ".csv");
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        QByteArray text = file.readAll();
        ASSERT_TRUE(text.contains(before));
        text.replace(before, after);
        file.resize(0);
        file.write(text);
    }
    static QString TextOf(const Screen& screen, const char* label) {
        return screen.findChild<QLabel*>(label)->text();
    }
    /// The shown tree, a line for each node: depth, texts.
    static QStringList Lines(const QAbstractItemModel& model, const QModelIndex& parent = {}, int depth = 0) {
        QStringList lines;
        for (int row = 0; row < model.rowCount(parent); ++row) {
            QStringList cells;
            for (int column = 0; column < DifferenceModel::ColumnCount; ++column)
                cells << model.index(row, column, parent).data().toString();
            lines << QString(depth * 2, ' ') + cells.join('|');
            lines << Lines(model, model.index(row, 0, parent), depth + 1);
        }
        return lines;
    }

private:
    QTemporaryDir m_folder;
};

TEST_F(CompareTest, DifferencesAreShownAndChosenOnesCopied) {
    Screen& screen = Open("Tools_CompareConfigurations");
    auto& model = *screen.findChild<QTreeView*>("tvwDifferences")->model();
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    Export(screen);
    prompter.ExpectFolder(Folder());
    Click(screen, "cmdFolder");
    EXPECT_EQ(TextOf(screen, "lblSummary"),
              "Sample Library and " + QDir::toNativeSeparators(Folder()) + " have the same settings.");
    EXPECT_EQ(TextOf(screen, "lblCounts"), "0 differences: 0 added, 0 changed, 0 removed");

    Replace("vendor_types", "Audiovisual Supplier", "Films");
    Replace("vendor_types", "SOC,Learned Society\r\n", "SOC,Learned Society\r\nZINE,Zines\r\n");
    Replace("vendors", "ALDERGATE,BOOK,", "ALDERGATE,ZINE,");
    Replace("location_phones", "+1 555 0110", "+1 555 0199");
    Click(screen, "cmdCompare");
    EXPECT_EQ(Lines(model),
              (QStringList{"Acquisitions > Vendor Types||", "  AV||changed",
                           "    Vendor Type Name|Audiovisual Supplier|Films", "  ZINE||added",
                           "    Vendor Type Code||ZINE", "    Vendor Type Name||Zines",
                           "System > Locations||", "  ART-ATCIRCDESK||", "    Location phones: #1||changed",
                           "      Number|+1 555 0110|+1 555 0199", "Vendors||", "  ALDERGATE||changed",
                           "    Vendor type|BOOK|ZINE"}));
    // The filter finds values; boxes above stand for those below.
    Type(screen, "txtFilter", "zine");
    EXPECT_EQ(Lines(model).size(), 7);
    EXPECT_TRUE(TextOf(screen, "lblCounts").contains("2 shown"));
    const QModelIndex vendors = model.index(1, 0);
    EXPECT_TRUE(model.setData(vendors, Qt::Checked, Qt::CheckStateRole));
    Type(screen, "txtFilter", "");
    EXPECT_TRUE(TextOf(screen, "lblCounts").endsWith(", 1 chosen"));
    // The vendor brings its type along.
    prompter.ExpectDialogResult("frmCopyPreview", [this](QDialog& dialog) {
        EXPECT_EQ(dialog.findChild<QLabel*>("lblNote")->text().section('\n', 1),
                  "1 of them come along because others need them.");
        Click(dialog, "cmdCopy");
    });
    Click(screen, "cmdCopy");
    EXPECT_EQ(TextOf(screen, "lblCounts"), "2 differences: 0 added, 2 changed, 0 removed");
    EXPECT_EQ(Store().FirstValue("SELECT t.code FROM vendors v JOIN vendor_types t ON t.id=v.vendor_type_id "
                                 "WHERE v.code='ALDERGATE'"),
              "ZINE");
    // What somebody changed since the preview is not overwritten.
    Click(screen, "cmdAll");
    prompter.ExpectDialogResult("frmCopyPreview", [this](QDialog& dialog) {
        Store().Run("UPDATE vendor_types SET name='Other' WHERE code='AV'");
        Click(dialog, "cmdCopy");
    });
    prompter.ExpectBox("Nothing was copied: the settings have changed since the preview. What differs now is "
                       "shown.");
    Click(screen, "cmdCopy");
    EXPECT_TRUE(Lines(model).contains("    Vendor Type Name|Other|Films"));
    // A refusal names the record; nothing can be copied then.
    Replace("vendor_types", "AV,Films", QByteArray("AV,") + QByteArray(300, 'x'));
    Click(screen, "cmdCompare");
    Click(screen, "cmdAll");
    prompter.ExpectDialogResult("frmCopyPreview", [this](QDialog& dialog) {
        EXPECT_FALSE(dialog.findChild<QAbstractButton*>("cmdCopy")->isEnabled());
        Click(dialog, "cmdCancel");
    });
    Click(screen, "cmdCopy");
}

TEST_F(CompareTest, AnotherLibraryIsComparedInBothDirections) {
    const QTemporaryDir other;
    otherLibrary = other.path();
    const auto signOn = [&](QDialog& dialog) {
        Type(dialog, "txtFolder", other.path());
        Type(dialog, "txtOperator", "SYSADMIN");
        Type(dialog, "txtPassword", "sample-admin-1");
        Click(dialog, "cmdOK");
        EXPECT_EQ(dialog.result(), QDialog::Accepted)
            << dialog.findChild<QWidget*>("lblProblem")->property("text").toString().toStdString();
    };
    Store().Run("UPDATE vendor_types SET name='Here' WHERE code='AV'");
    Screen& screen = Open("Tools_CompareConfigurations");
    auto& model = *screen.findChild<QTreeView*>("tvwDifferences")->model();
    prompter.ExpectDialogResult("frmSignOn", signOn);
    Click(screen, "cmdLibrary");
    EXPECT_TRUE(Lines(model).contains("    Vendor Type Name|Here|Audiovisual Supplier"));
    auto* direction = screen.findChild<QComboBox*>("cboDirection");
    ASSERT_EQ(direction->count(), 2);
    direction->setCurrentIndex(1);
    emit direction->activated(1);
    EXPECT_TRUE(Lines(model).contains("    Vendor Type Name|Audiovisual Supplier|Here"));
    Click(screen, "cmdAll");
    prompter.ExpectDialogResult("frmCopyPreview", [this](QDialog& dialog) { Click(dialog, "cmdCopy"); });
    Click(screen, "cmdCopy");
    EXPECT_EQ(TextOf(screen, "lblCounts"), "0 differences: 0 added, 0 changed, 0 removed");
}

TEST_F(CompareTest, WhoMayOnlyViewCopiesNothing) {
    SignOn("VIEWER");
    Screen& screen = Open("Tools_CompareConfigurations");
    Export(screen);
    Replace("vendor_types", "Audiovisual Supplier", "Films");
    prompter.ExpectFolder(Folder());
    Click(screen, "cmdFolder");
    Click(screen, "cmdAll");
    EXPECT_FALSE(screen.findChild<QAbstractButton*>("cmdCopy")->isEnabled());
}

} // namespace

} // namespace sysadmin
