#include "core/AboutDialog.h"
#include "core/ErrorDialog.h"
#include "core/PreferencesDialog.h"
#include "core/Prefs.h"
#include "core/Prompter.h"
#include "framework/Utility.h"
#include "support/FakeCommunication.h"
#include "support/ScriptedChannel.h"

#include "core/Application.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTimer>
#include <QWidget>
#include <QWindow>
#include <gtest/gtest.h>

namespace sysadmin {

namespace {

/// What the window manager writes above a window.
QString ShownTitle(const QWidget& window) {
    QProcess xprop;
    xprop.start("xprop", {"-id", QString::number(window.winId()), "-notype", "_NET_WM_NAME"});
    xprop.waitForFinished();
    const QString answer = QString::fromUtf8(xprop.readAllStandardOutput());
    return answer.section('"', 1, 1);
}

/// Shows a modal window and, once the window manager has given it the focus, does something to it. One that
/// never gets the focus is closed after a while.
void WithModalWindow(const std::function<void()>& show, const std::function<void(QWidget&)>& act) {
    QElapsedTimer waited;
    waited.start();
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
        QWidget* window = QApplication::activeModalWidget();
        if (!window || !window->windowHandle() || !window->windowHandle()->isExposed())
            return;
        if (window->isActiveWindow())
            act(*window);
        else if (waited.elapsed() < 20'000)
            window->activateWindow();
        else
            window->close();
    });
    poll.start(100);
    show();
}

/// The title of the modal window that `show` brings up; it is closed again.
QString TitleOf(const std::function<void()>& show) {
    QString title;
    WithModalWindow(show, [&](QWidget& window) {
        title = ShownTitle(window);
        window.close();
    });
    return title;
}

class TitlesTest : public testing::Test {
protected:
    ScriptedChannel channel;
    FakeCommunication comm{channel};
    WindowPrompter prompter;
    Application application{comm, prompter};
};

TEST_F(TitlesTest, BoxesAndDialogsCarryTheirOwnTitlesOnly) {
    EXPECT_EQ(TitleOf([&] { ConfirmDelete(application, nullptr, "Vendor Type", "Bookseller"); }),
              "Delete Vendor Type");
    EXPECT_EQ(TitleOf([&] { WarnEditInProgress(application, nullptr); }), "System Administration");
    EXPECT_EQ(TitleOf([&] { application.ReportRequestFailure(2, "Save", "Vendor Type"); }), "System Error");
    EXPECT_EQ(TitleOf([&] {
                  PreferencesDialog dialog(application.prefs);
                  prompter.RunDialog(dialog);
              }),
              "Preferences");
    EXPECT_EQ(TitleOf([&] {
                  AboutDialog dialog;
                  prompter.RunDialog(dialog);
              }),
              "About System Administration");
}

TEST_F(TitlesTest, EnterAnswersNoWhereYesDestroys) {
    const auto pressEnter = [](const std::function<bool()>& ask) {
        bool answer = false;
        WithModalWindow([&] { answer = ask(); },
                        [](QWidget&) {
                            QProcess::execute("xdotool", {"key", "Return"});
                        });
        return answer;
    };
    EXPECT_FALSE(
        pressEnter([&] { return ConfirmDelete(application, nullptr, "Vendor Type", "Bookseller"); }));
    EXPECT_TRUE(pressEnter(
        [&] { return prompter.ShowBox(nullptr, {.text = "Go on?", .buttons = Box::Buttons::YesNo}); }));
}

} // namespace

} // namespace sysadmin
