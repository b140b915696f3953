#pragma once

#include "core/Application.h"
#include "core/Screen.h"
#include "framework/ListGrid.h"
#include "support/FakeCommunication.h"
#include "support/ScriptedChannel.h"
#include "support/ScriptedPrompter.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <gtest/gtest.h>

namespace sysadmin {

/// A screen under test with a scripted server and operator. Rights: all areas may be edited unless
/// `SetRights` says otherwise before `Open`.
class ScreenTest : public testing::Test {
protected:
    ScreenTest();
    ~ScreenTest() override;

    /// "edit": every area may be edited; "view": viewed only.
    void SetRights(bool mayEdit);
    /// Makes, loads and shows the screen. Script its load requests first.
    template <class ScreenClass>
    ScreenClass& Open() {
        auto* screen = new ScreenClass(application, nullptr);
        m_screen.reset(screen);
        ShowScreen();
        return *screen;
    }

    /// The same for a screen of the navigation table; `contribute` is its subsystem's contribution.
    Screen& Open(void (*contribute)(ScreenCatalogue&), const QString& key);

    /// Controls by their given names; a missing one fails the test at once by an exception.
    template <class Widget>
    Widget& Get(const QString& name) {
        auto* widget = m_screen->findChild<Widget*>(name);
        if (!widget)
            throw std::runtime_error("no control " + name.toStdString());
        return *widget;
    }
    /// As an operator would; a disabled or hidden control fails the test.
    void Click(const QString& button);
    void Type(const QString& lineEdit, const QString& text);
    void Check(const QString& checkBox, bool on);
    void Choose(const QString& comboBox, const QString& entry);
    bool IsEnabled(const QString& name) { return Get<QWidget>(name).isEnabled(); }
    QString TextOf(const QString& lineEdit) { return Get<QLineEdit>(lineEdit).text(); }
    QString FrameCaption();
    ListGrid& Grid(const QString& name = "vsf");
    /// The shown rows of a grid, visible cells joined by "|".
    QStringList GridRows(const QString& name = "vsf");

    ScriptedChannel channel;
    FakeCommunication comm{channel};
    ScriptedPrompter prompter;
    Application application{comm, prompter};

private:
    void ShowScreen();
    std::unique_ptr<Screen> m_screen;
};

/// The error dialog that a serious failure shows: checks its texts and closes it.
void ExpectErrorDialog(ScriptedPrompter& prompter, const QString& message, qint16 status,
                       const QString& operation, const QString& screenName);

} // namespace sysadmin
