#include "support/ScreenTest.h"

#include "core/Screen.h"
#include "framework/ListGrid.h"

#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QTest>

namespace sysadmin {

ScreenTest::ScreenTest() {
    SetRights(true);
}

ScreenTest::~ScreenTest() {
    EXPECT_TRUE(channel.AllAnswered()) << "some scripted answers were never asked for";
}

void ScreenTest::SetRights(bool mayEdit) {
    wire::Fields rights;
    for (const char* tag : {"ASPG", "CatPG", "CrcPG", "CrCnv", "Sec", "SysDf"})
        rights += {{tag, mayEdit ? "Y" : "N"}, {QString(tag) + "V", "Y"}};
    rights += {{"ChgPwd", mayEdit ? "Y" : "N"}, {"Dec", "2"}, {"PRB", "Y"}};
    channel.Answer("SAInit", 0, rights);
    channel.Answer("CheckMasterProfile", 0, {{"EditPatGrp", mayEdit ? "Y" : "N"}, {"PatGrpV", "Y"}});
    application.profile.Load(channel, "TESTER");
    channel.sent.clear();
}

Screen& ScreenTest::Open(void (*contribute)(ScreenCatalogue&), const QString& key) {
    contribute(application.catalogue);
    m_screen.reset(application.catalogue.Find(key)->screen.make(application, nullptr));
    ShowScreen();
    return *m_screen;
}

void ScreenTest::ShowScreen() {
    m_screen->LoadScreen();
    m_screen->resize(900, 600);
    m_screen->show();
    QTest::qWait(0);
}

void ScreenTest::Click(const QString& button) {
    auto& widget = Get<QAbstractButton>(button);
    ASSERT_TRUE(widget.isEnabled()) << button.toStdString() << " is disabled";
    ASSERT_FALSE(widget.isHidden()) << button.toStdString() << " is hidden";
    widget.click();
}

void ScreenTest::Type(const QString& lineEdit, const QString& text) {
    auto& edit = Get<QLineEdit>(lineEdit);
    ASSERT_TRUE(edit.isEnabled() && !edit.isReadOnly()) << lineEdit.toStdString() << " takes no input";
    edit.setFocus();
    edit.selectAll();
    QTest::keyClick(&edit, Qt::Key_Delete);
    QTest::keyClicks(&edit, text);
    emit edit.editingFinished();
}

void ScreenTest::Check(const QString& checkBox, bool on) {
    if (Get<QCheckBox>(checkBox).isChecked() != on)
        Click(checkBox);
}

void ScreenTest::Choose(const QString& comboBox, const QString& entry) {
    auto& box = Get<QComboBox>(comboBox);
    ASSERT_TRUE(box.isEnabled()) << comboBox.toStdString() << " is disabled";
    const int index = box.findText(entry);
    ASSERT_GE(index, 0) << comboBox.toStdString() << " has no entry " << entry.toStdString();
    box.setCurrentIndex(index);
    emit box.activated(index);
}

QString ScreenTest::FrameCaption() {
    return Get<QGroupBox>("fraEdit").title();
}

ListGrid& ScreenTest::Grid(const QString& name) {
    return Get<ListGrid>(name);
}

QStringList ScreenTest::GridRows(const QString& name) {
    GridModel& model = Grid(name).Model();
    QStringList rows;
    for (int row = 0; row < model.rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < model.columnCount(); ++column)
            if (!model.Columns()[column].hidden)
                cells.append(model.CellText(row, column));
        rows.append(cells.join('|'));
    }
    return rows;
}

void ExpectErrorDialog(ScriptedPrompter& prompter, const QString& message, qint16 status,
                       const QString& operation, const QString& screenName) {
    prompter.ExpectDialogResult("frmError", [=](QDialog& dialog) {
        const auto text = [&](const char* label) { return dialog.findChild<QLabel*>(label)->text(); };
        EXPECT_EQ(text("lblErrorMessage"), message);
        EXPECT_EQ(text("lblReturnCodeText"), QString::number(status));
        EXPECT_EQ(text("lblModuleText"), operation);
        EXPECT_EQ(text("lblFormNameText"), screenName);
        dialog.findChild<QPushButton*>("cmdOKCompress")->click();
    });
}

} // namespace sysadmin
