#include "support/ControlTest.h"

#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QTest>

namespace sysadmin {

void ControlTest::Click(QWidget& parent, const QString& button) {
    auto& widget = Get<QAbstractButton>(parent, button);
    ASSERT_TRUE(widget.isEnabled()) << button.toStdString() << " is disabled";
    ASSERT_FALSE(widget.isHidden()) << button.toStdString() << " is hidden";
    widget.click();
}

void ControlTest::Type(QWidget& parent, const QString& lineEdit, const QString& text) {
    auto& edit = Get<QLineEdit>(parent, lineEdit);
    ASSERT_TRUE(edit.isEnabled() && !edit.isReadOnly()) << lineEdit.toStdString() << " takes no input";
    edit.setFocus();
    edit.selectAll();
    QTest::keyClick(&edit, Qt::Key_Delete);
    QTest::keyClicks(&edit, text);
    emit edit.editingFinished();
}

void ControlTest::Write(QWidget& parent, const QString& textEdit, const QString& text) {
    auto& edit = Get<QPlainTextEdit>(parent, textEdit);
    ASSERT_TRUE(edit.isEnabled() && !edit.isReadOnly()) << textEdit.toStdString() << " takes no input";
    edit.selectAll();
    edit.insertPlainText(text);
}

void ControlTest::Check(QWidget& parent, const QString& checkBox, bool on) {
    if (Get<QCheckBox>(parent, checkBox).isChecked() != on)
        Click(parent, checkBox);
}

void ControlTest::Choose(QWidget& parent, const QString& comboBox, const QString& entry) {
    auto& box = Get<QComboBox>(parent, comboBox);
    ASSERT_TRUE(box.isEnabled()) << comboBox.toStdString() << " is disabled";
    const int index = box.findText(entry);
    ASSERT_GE(index, 0) << comboBox.toStdString() << " has no entry " << entry.toStdString();
    box.setCurrentIndex(index);
    emit box.activated(index);
}

void ControlTest::Select(QWidget& parent, const QString& beginning, const QString& grid) {
    const QStringList rows = GridRows(parent, grid);
    for (int row = 0; row < rows.size(); ++row)
        if (rows[row].startsWith(beginning)) {
            Grid(parent, grid).SelectKey(Grid(parent, grid).Model().RowAt(row).key);
            return;
        }
    throw std::runtime_error("no row " + beginning.toStdString());
}

QString ControlTest::FrameCaption(QWidget& screen) {
    return Get<QGroupBox>(screen, "fraEdit").title();
}

QStringList ControlTest::GridRows(QWidget& parent, const QString& grid) {
    const GridModel& model = Grid(parent, grid).Model();
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
        EXPECT_EQ(text("lblErrorMessage").remove('\r'), QString(message).remove('\r'));
        EXPECT_EQ(text("lblReturnCodeText"), QString::number(status));
        EXPECT_EQ(text("lblModuleText"), operation);
        EXPECT_EQ(text("lblFormNameText"), screenName);
        dialog.findChild<QAbstractButton*>("cmdOKCompress")->click();
    });
}

} // namespace sysadmin
