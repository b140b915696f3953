#include "support/ScriptedPrompter.h"

#include <QDialog>
#include <QTest>

#include <gtest/gtest.h>

namespace sysadmin {

namespace {

std::string Printable(const QString& text) {
    return QString(text).replace("\r", "\\r").replace("\n", "\\n").toStdString();
}

} // namespace

ScriptedPrompter::~ScriptedPrompter() {
    for (const Expected& expected : m_expected)
        ADD_FAILURE() << "expected, but never shown: " << Printable(expected.text);
}

void ScriptedPrompter::ExpectBox(const QString& text, bool answer, std::optional<Box::Icon> icon,
                                 std::optional<QString> title, bool more) {
    m_expected.append({Kind::Box, text, answer, icon, title, {}, more});
}

void ScriptedPrompter::ExpectDialog(const QString& objectName, std::function<bool(QDialog&)> drive) {
    m_expected.append({Kind::Dialog, objectName, false, {}, {}, std::move(drive)});
}

void ScriptedPrompter::ExpectDialogResult(const QString& objectName, std::function<void(QDialog&)> drive) {
    ExpectDialog(objectName, [drive = std::move(drive)](QDialog& dialog) {
        drive(dialog);
        return dialog.result() == QDialog::Accepted;
    });
}

void ScriptedPrompter::ExpectSaveFile(const QString& result) {
    m_expected.append({Kind::SaveFile, result, false, {}, {}, {}});
}

void ScriptedPrompter::ExpectFolder(const QString& result) {
    m_expected.append({Kind::Folder, result, false, {}, {}, {}});
}

void ScriptedPrompter::ExpectOpenFile(const QString& result) {
    m_expected.append({Kind::OpenFile, result, false, {}, {}, {}});
}

std::optional<ScriptedPrompter::Expected> ScriptedPrompter::TakeNext(Kind kind, const QString& shown) {
    if (m_expected.isEmpty() || m_expected.front().kind != kind) {
        ADD_FAILURE() << "unexpected: " << Printable(shown) << "\n  expected: "
                      << (m_expected.isEmpty() ? "nothing" : Printable(m_expected.front().text));
        return {};
    }
    return m_expected.takeFirst();
}

bool ScriptedPrompter::ShowBox(QWidget*, const Box& box) {
    const std::optional<Expected> expected = TakeNext(Kind::Box, box.text);
    if (!expected)
        return box.buttons == Box::Buttons::Ok;
    if (expected->text != box.text) {
        ADD_FAILURE() << "box shown: " << Printable(box.text)
                      << "\n  expected: " << Printable(expected->text);
        return box.buttons == Box::Buttons::Ok;
    }
    // What destroys, trusts or goes against a rule is not answered with Yes by an Enter too many.
    const bool mayBeYes = box.buttons != Box::Buttons::YesNo || box.text.endsWith("Change it now?");
    EXPECT_TRUE(mayBeYes || box.careful) << Printable(box.text);
    EXPECT_EQ(int(expected->icon.value_or(box.icon)), int(box.icon)) << "icon of: " << Printable(box.text);
    EXPECT_EQ(expected->title.value_or(box.title), box.title) << "title of: " << Printable(box.text);
    if (expected->more)
        return !box.more.caption.isEmpty() && box.more.show();
    return expected->answer;
}

bool ScriptedPrompter::RunDialog(QDialog& dialog) {
    // One that only waits for the server needs nobody.
    if (dialog.objectName() == u"frmWait" &&
        (m_expected.isEmpty() || m_expected.front().text != u"frmWait")) {
        dialog.show();
        EXPECT_TRUE(QTest::qWaitFor([&] { return !dialog.isVisible(); }, 120'000));
        return dialog.result() == QDialog::Accepted;
    }
    const std::optional<Expected> expected = TakeNext(Kind::Dialog, dialog.objectName());
    if (!expected)
        return false;
    if (expected->text != dialog.objectName()) {
        ADD_FAILURE() << "dialog shown: " << Printable(dialog.objectName())
                      << "\n  expected: " << Printable(expected->text);
        return false;
    }
    dialog.show();
    const bool accepted = expected->drive(dialog);
    dialog.hide();
    return accepted;
}

QString ScriptedPrompter::AskSaveFile(QWidget*, const QString& title, const QString&, const QString&) {
    const std::optional<Expected> expected = TakeNext(Kind::SaveFile, title);
    return expected ? expected->text : QString();
}

QString ScriptedPrompter::AskOpenFile(QWidget*, const QString& title, const QString&) {
    const std::optional<Expected> expected = TakeNext(Kind::OpenFile, title);
    return expected ? expected->text : QString();
}

QString ScriptedPrompter::AskFolder(QWidget*, const QString& title, const QString&) {
    const std::optional<Expected> expected = TakeNext(Kind::Folder, title);
    return expected ? expected->text : QString();
}

} // namespace sysadmin
