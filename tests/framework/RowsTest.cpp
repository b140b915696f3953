#include "framework/FieldEditor.h"
#include "framework/FormDialog.h"
#include "framework/ListGrid.h"
#include "framework/forms/ListFields.h"
#include "framework/forms/ValueFields.h"
#include "support/ControlTest.h"
#include "support/ScriptedChannel.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

namespace sysadmin {

namespace {

const QList<GridColumn> Columns{{.caption = "Name", .tag = "Nm"}, {.caption = "Days", .tag = "Dy"}};

struct RuleForm : RowForm {
    TextField txtName{*this, {.name = "txtName", .tag = "Nm", .caption = "Name:", .required = true}};
    NumberField txtDays{*this, {.name = "txtDays", .tag = "Dy", .caption = "Days:", .most = 99}};
    Layout Draw() override { return Below({txtName, txtDays}); }
};

RowsSpec SpecOf(bool ranked, bool onlyChanged) {
    return {
        .marker = "ID",
        .puts = {PutKey("ID"), PutCell("Nm", 0), PutCell("Dy", 1), PutState("St")},
        .codes = {.added = "A", .changed = "C", .removed = "R", .unchanged = "U"},
        .onlyChanged = onlyChanged,
        .ranked = ranked,
        .edits = {{1, {.kind = CellEdit::Kind::Number, .most = 99}}},
        .add = {"cmdAdd", "Add"},
        .modify = {"cmdModify", "Modify"},
        .remove = {"cmdRemove", "Remove"},
        .up = {"cmdUp", "Up"},
        .down = {"cmdDown", "Down"},
        .ask = AskInForm({.name = "frmRule", .title = "Rule"}, Columns, std::make_shared<RuleForm>()),
        .check = [](const GridRow& row,
                    const GridRow*) { return row.cells[0] == "bad" ? QString("Not that one.") : QString(); },
        .removeQuestion = "Remove it?",
        .removeTitle = "Rules"};
}

struct ListForm : Form {
    explicit ListForm(bool ranked = false, bool onlyChanged = false)
        : vsfRules(*this, {.name = "vsfRules"}, Columns, SpecOf(ranked, onlyChanged)) {
        ScriptedChannel channel;
        channel.Answer("Get", 0,
                       {{"ID", "1"},
                        {"Nm", "one"},
                        {"Dy", "10"},
                        {"ID", "2"},
                        {"Nm", "two"},
                        {"Dy", "20"},
                        {"ID", "3"},
                        {"Nm", "three"}});
        channel.SendRequest("Get");
        Load(channel);
    }
    /// "key name days state" of each row that goes out.
    QStringList Sent() const {
        ScriptedChannel channel;
        vsfRules.Put(channel);
        channel.Answer("Save", 0);
        channel.SendRequest("Save");
        QStringList rows;
        const wire::Fields& fields = channel.sent.last().fields;
        for (qsizetype i = 0; i + 3 < fields.size(); i += 4)
            rows.append(fields[i].value + ' ' + fields[i + 1].value + ' ' + fields[i + 2].value + ' ' +
                        fields[i + 3].value);
        return rows;
    }
    RowsField vsfRules;
};

TEST(RowCellsTest, StayInTheReplyUntilTheyAreChanged) {
    ScriptedChannel channel;
    const wire::Fields fields{{"Before", "x"}, {"ID", "1"},    {"Nm", "one"},
                              {"Nm", "again"}, {"ID", "2"},    {"Dy", "20"},
                              {"Nm", "zwölf"}, {"Other", "3"}, {"Nm", "nobody's"}};
    channel.Answer("Get", 0, fields);
    channel.Answer("Get", 0, fields);
    channel.SendRequest("Get");
    // Of repeated tags the first value counts; what a record does not have is empty; a tag may be asked for
    // twice.
    const QStringList tags{"Nm", "Dy", "None", "Nm", {}};
    const QList<QStringList> expected{{"one", "", "", "one", ""}, {"zwölf", "20", "", "zwölf", ""}};
    QList<GridRow> rows = ReadRows(channel, "ID", {}, tags, "Other");
    const QList<GridRow> before = rows;
    channel.SendRequest("Get"); // the first reply is with the rows only
    ASSERT_EQ(rows.size(), 2);
    for (int i = 0; i < 2; ++i) {
        const RowCells& cells = before[i].cells;
        EXPECT_EQ(before[i].key, QString::number(i + 1));
        EXPECT_EQ(cells.Texts(), expected[i]);
        EXPECT_EQ(cells, RowCells(expected[i]));
        EXPECT_EQ(cells.size(), tags.size());
        EXPECT_EQ(cells[0], expected[i][0]);
        EXPECT_EQ(cells.value(1), expected[i][1]);
        EXPECT_EQ(cells.value(5) + cells.value(-1), "");
    }
    EXPECT_EQ(rows, before);
    EXPECT_EQ(rows, ReadRows(channel, "ID", {}, tags, "Other")) << "of another reply";
    EXPECT_FALSE(rows[0].cells == rows[1].cells);
    EXPECT_FALSE(rows[0].cells == RowCells());
    rows[1].cells[1] = "21";
    rows[1].cells.Own().append("more");
    EXPECT_EQ(rows[1].cells.Texts(), (QStringList{"zwölf", "21", "", "zwölf", "", "more"}));
    EXPECT_EQ(before[1].cells.Texts(), expected[1]);
    EXPECT_FALSE(rows[1].cells == before[1].cells);
}

TEST(RowsFieldTest, StatesAreComputedAndTravel) {
    ListForm form;
    EXPECT_EQ(form.Sent(), (QStringList{"1 one 10 U", "2 two 20 U", "3 three  U"}));
    form.vsfRules.SetCells({"2", "3", "none"}, 1, "9");
    form.vsfRules.SetCells({"2"}, 1, "20");
    form.vsfRules.RemoveRow("1");
    const QString added = form.vsfRules.NewKey();
    form.vsfRules.PutRow({added, {"new", "1"}, {}});
    const QString passing = form.vsfRules.NewKey();
    form.vsfRules.PutRow({passing, {"passing", ""}, {}});
    form.vsfRules.RemoveRow(passing);
    const QStringList sent{"1 one 10 R", "2 two 20 U", "3 three 9 C", " new 1 A"};
    EXPECT_EQ(form.Sent(), sent);
    EXPECT_TRUE(form.IsChanged());
    form.Accept();
    EXPECT_FALSE(form.IsChanged());
    form.vsfRules.RemoveRows({"2", "3"});
    form.Revert();
    EXPECT_EQ(form.vsfRules.Rows().size(), 3);
    form.BecomeNew();
    for (const QString& row : form.Sent())
        EXPECT_TRUE(row.startsWith(' ') && row.endsWith('A')) << row.toStdString();
}

TEST(RowsFieldTest, RankedRowsKeepTheirOrderAndSendWhatMoved) {
    ListForm form(true, true);
    form.vsfRules.Behaviour().puts.append(PutRank("Rk"));
    form.vsfRules.MoveRow("3", 0);
    EXPECT_TRUE(form.IsChanged()) << "the order counts";
    form.vsfRules.MoveRow("3", 99);
    EXPECT_FALSE(form.IsChanged());
    form.vsfRules.MoveRow("3", 1);
    ScriptedChannel channel;
    form.vsfRules.Put(channel);
    channel.Answer("Save", 0);
    channel.SendRequest("Save");
    EXPECT_EQ(channel.sent.last().Values("ID"), (QStringList{"3", "2"})) << "the first row stayed";
    EXPECT_EQ(channel.sent.last().Values("Rk"), (QStringList{"2", "3"}));
    EXPECT_EQ(channel.sent.last().Values("St"), (QStringList{"C", "C"}));
}

class RowsEditorTest : public ControlTest {
protected:
    void Show(bool ranked) {
        form = std::make_unique<ListForm>(ranked);
        view = std::make_unique<FormView>(*form, Below({form->vsfRules}));
        front = view.get();
        grid = &Grid("vsfRules");
        grid->SetPrompter(prompter);
        view->resize(500, 400);
        view->show();
    }
    QString Names() {
        QStringList names;
        for (const QString& row : GridRows("vsfRules"))
            names.append(row.section('|', 0, 0));
        return names.join(' ');
    }

    std::unique_ptr<ListForm> form;
    std::unique_ptr<FormView> view;
    ListGrid* grid = nullptr;
};

TEST_F(RowsEditorTest, RankedRowsMoveByKeyAndButton) {
    Show(true);
    grid->SelectKey("1");
    QTest::keyClick(grid, Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(Names(), "one two three") << "it is at the end";
    QTest::keyClick(grid, Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(Names(), "two one three");
    EXPECT_EQ(grid->SelectedKey(), "1");
    Click("cmdDown");
    EXPECT_FALSE(IsEnabled("cmdDown"));
    EXPECT_EQ(Names(), "two three one");
    view->SetReadOnly(true);
    QTest::keyClick(grid, Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(Names(), "two three one");
}

TEST_F(RowsEditorTest, CellsAreEditedInPlace) {
    Show(false);
    const auto type = [this](const QString& text) {
        grid->setFocus();
        QTest::keyClick(grid, Qt::Key_F2);
        auto* edit = grid->findChild<QLineEdit*>();
        ASSERT_TRUE(edit);
        edit->setText(text);
        QTest::keyClick(edit, Qt::Key_Return);
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
    };
    grid->SelectKey("2");
    type("7");
    EXPECT_EQ(form->vsfRules.FindRow("2")->cells[1], "7");
    EXPECT_EQ(grid->SelectedKey(), "2");
    view->SetReadOnly(true);
    QTest::keyClick(grid, Qt::Key_F2);
    EXPECT_FALSE(grid->findChild<QLineEdit*>() && grid->findChild<QLineEdit*>()->isVisible());
}

TEST_F(RowsEditorTest, CellsAreCheckedAndChosen) {
    Show(false);
    grid->SetEdits({{0, {.kind = CellEdit::Kind::Check}},
                    {1, {.kind = CellEdit::Kind::Choice, .items = {{"10", "Ten"}, {"20", "Twenty"}}}}});
    const auto edit = [this](int column, Qt::Key key) {
        grid->setCurrentIndex(grid->Model().index(grid->Model().DisplayRow("1"), column));
        QTest::keyClick(grid, key);
        QCoreApplication::processEvents();
    };
    for (const char* mark : {"Y", "N"}) {
        edit(0, Qt::Key_Space);
        EXPECT_EQ(form->vsfRules.FindRow("1")->cells[0], mark);
    }
    edit(1, Qt::Key_F2);
    auto* box = grid->findChild<QComboBox*>();
    ASSERT_TRUE(box);
    EXPECT_EQ(box->currentText(), "Ten");
    box->setCurrentIndex(1);
    QTest::keyClick(box, Qt::Key_Return);
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    EXPECT_EQ(form->vsfRules.FindRow("1")->cells[1], "20");
    view->SetReadOnly(true);
    edit(0, Qt::Key_Space);
    EXPECT_EQ(form->vsfRules.FindRow("1")->cells[0], "N");
}

// The grid must not be told of each row by itself: its time would grow with the square of their number.
TEST_F(RowsEditorTest, ABatchOfChangesIsToldOnce) {
    Show(false);
    QSignalSpy resets(&grid->Model(), &GridModel::modelReset);
    QSignalSpy inserts(&grid->Model(), &GridModel::rowsInserted);
    QSignalSpy changes(form.get(), &Form::Changed);
    QSignalSpy edits(form.get(), &Form::Edited);
    QList<GridRow> rows;
    QStringList keys;
    for (int i = 0; i < 12000; ++i) {
        rows.append({QString::number(i + 10), {"row", "1"}, {}});
        if (i % 4 == 0 && keys.size() < 2500)
            keys.append(rows.last().key);
    }
    form->vsfRules.PutRows(rows);
    EXPECT_EQ(grid->Model().rowCount(), 12003);
    form->vsfRules.SetCells(keys, 1, "5");
    EXPECT_EQ(resets.count(), 2);
    EXPECT_EQ(inserts.count(), 0);
    EXPECT_EQ(changes.count(), 2);
    EXPECT_EQ(edits.count(), 2);
    EXPECT_EQ(form->vsfRules.Changes().size(), 12003);
    grid->PutRows(rows);
    EXPECT_EQ(resets.count(), 3);
}

TEST(FormDialogTest, CancelLeavesTheFormAsItWasAndSeveralWritesChosenFields) {
    ScriptedPrompter prompter;
    RuleForm form;
    form.txtName.SetStored("kept");
    form.txtName.SetDraft("draft");
    {
        FormDialog dialog(prompter, form, form.Draw(), {.name = "dlg", .title = "Rule"}, nullptr);
        form.txtName.SetDraft("other");
        dialog.reject();
    }
    EXPECT_EQ(form.txtName.Draft(), "draft");
    FormDialog dialog(prompter, form, form.Draw(), {.name = "dlg", .several = true}, nullptr);
    dialog.show();
    auto& days = *dialog.findChild<QLineEdit*>("txtDays");
    auto& box = *dialog.findChild<QAbstractButton*>("chkModifyDays");
    EXPECT_EQ(box.accessibleName(), "Modify Days");
    EXPECT_FALSE(days.isEnabled());
    EXPECT_FALSE(dialog.findChild<QPushButton*>("cmdOK")->isEnabled());
    box.click();
    EXPECT_TRUE(days.isEnabled());
    QTest::keyClicks(&days, "3");
    dialog.findChild<QPushButton*>("cmdOK")->click();
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(form.Chosen(), QList<Field*>{&form.txtDays});
    EXPECT_EQ(form.txtDays.Draft(), "3");
}

TEST(PickedFieldTest, VetoSettingsAndOrder) {
    ScriptedPrompter prompter;
    Form form;
    Form settings;
    TextField limit(settings, {.name = "txtLimit", .tag = "Lm", .caption = "Limit:"});
    PickedField picked(
        form, {.name = "movAll"},
        {.availableGrid = "vsfA", .availableCaption = "A", .selectedGrid = "vsfS", .selectedCaption = "S"},
        {.more = {{.caption = "Limit", .tag = "Lm"}},
         .ranked = true,
         .veto =
             [](const QList<GridRow>& rows, bool toSelected) {
                 return !toSelected && rows.first().key == "3" ? QString("It is in use.") : QString();
             },
         .settings = &settings});
    picked.LoadLists({{"1", {"b", ""}, {}}, {"2", {"a", ""}, {}}},
                     {{"3", {"c", "9"}, {}}, {"4", {"d", "8"}, {}}});
    FormView view(form, Below({picked}));
    view.show();
    auto& available = *view.findChild<ListGrid*>("vsfA");
    auto& selected = *view.findChild<ListGrid*>("vsfS");
    selected.SetPrompter(prompter);
    auto& edit = *view.findChild<QLineEdit*>("txtLimit");
    EXPECT_EQ(edit.text(), "9") << "the first row is selected";
    selected.SelectKey("4");
    EXPECT_EQ(edit.text(), "8");
    EXPECT_FALSE(form.IsChanged()) << "looking is no edit";
    edit.selectAll();
    QTest::keyClicks(&edit, "77");
    EXPECT_EQ(picked.Lists().Altered(), (QList<GridRow>{{"4", {"d", "77"}, PickedLists::LoadedSelected}}));
    EXPECT_EQ(selected.SelectedKey(), "4");

    selected.SelectKey("3");
    prompter.ExpectBox("It is in use.");
    view.findChild<QPushButton*>("cmdDiscard")->click();
    EXPECT_EQ(picked.Lists().Selected().size(), 2);
    available.sortByColumn(0, Qt::AscendingOrder);
    view.findChild<QPushButton*>("cmdSelectAll")->click();
    QStringList keys;
    for (const GridRow& row : picked.Lists().Added())
        keys.append(row.key);
    EXPECT_EQ(keys, (QStringList{"2", "1"})) << "in the order in which the grid showed them";
    selected.SelectKey("4");
    QTest::keyClick(&selected, Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(picked.Lists().Selected().first().key, "4");
    form.Revert();
    EXPECT_FALSE(form.IsChanged());
}

TEST(PickedFieldTest, LoadsAndPutsItselfWithSettingsInADialog) {
    ScriptedPrompter prompter;
    Form form;
    PickedField picked(
        form, {.name = "movAll", .tag = "SI"},
        {.availableGrid = "vsfA", .availableCaption = "A", .selectedGrid = "vsfS", .selectedCaption = "S"},
        {.tags = {"AI", "AN", "SI", "SN", "St"},
         .more = {{.caption = "Days", .tag = "Dy"}},
         .modify = {"cmdModify", "Modify..."},
         .ask = AskInForm({.name = "frmRule", .title = "Rule"}, Columns, std::make_shared<RuleForm>())});
    ScriptedChannel channel;
    channel.Answer("Get", 0, {{"AI", "1"}, {"AN", "b"}, {"SI", "3"}, {"SN", "c"}, {"Dy", "9"}});
    channel.SendRequest("Get");
    form.Load(channel);
    EXPECT_EQ(picked.Lists().Available().first().cells, (QStringList{"b", ""})) << "9 is the other row's";
    FormView view(form, Below({picked}));
    view.show();
    view.findChild<ListGrid*>("vsfS")->SetPrompter(prompter);
    prompter.ExpectDialogResult("frmRule", [](QDialog& dialog) {
        auto& days = *dialog.findChild<QLineEdit*>("txtDays");
        EXPECT_EQ(days.text(), "9");
        days.clear();
        QTest::keyClicks(&days, "12");
        dialog.findChild<QPushButton*>("cmdOK")->click();
    });
    view.findChild<QPushButton*>("cmdModify")->click();
    EXPECT_EQ(picked.Lists().Altered(), (QList<GridRow>{{"3", {"c", "12"}, PickedLists::LoadedSelected}}));
    view.findChild<QPushButton*>("cmdSelectAll")->click();
    picked.Put(channel);
    channel.Answer("Save", 0);
    channel.SendRequest("Save");
    EXPECT_EQ(channel.sent.last().fields, (wire::Fields{{"SI", "1"}, {"St", "1"}}));
}

} // namespace

} // namespace sysadmin
