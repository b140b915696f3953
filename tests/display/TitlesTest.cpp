#include "app/Client.h"
#include "core/AboutDialog.h"
#include "core/Application.h"
#include "core/ErrorDialog.h"
#include "core/PreferencesDialog.h"
#include "core/Prompter.h"
#include "framework/Utility.h"
#include "support/FakeCommunication.h"
#include "support/ScriptedChannel.h"

#include <QApplication>
#include <QProcess>
#include <QTimer>
#include <QWindow>

#include <gtest/gtest.h>

namespace sysadmin {

namespace {

/// What the window system was told to write above a window.
QString ShownTitle(const QWidget& window) {
    QProcess xprop;
    xprop.start("xprop", {"-id", QString::number(window.winId()), "-notype", "_NET_WM_NAME"});
    xprop.waitForFinished();
    return QString::fromUtf8(xprop.readAllStandardOutput()).section('"', 1, 1);
}

/// The title of the modal window that `show` brings up; it is closed again.
QString TitleOf(const std::function<void()>& show) {
    QString title = "(no window)";
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
        QWidget* window = QApplication::activeModalWidget();
        if (!window || !window->windowHandle() || !window->windowHandle()->isExposed())
            return;
        title = ShownTitle(*window);
        window->close();
    });
    poll.start(20);
    show();
    return title;
}

// Other platforms' windows have no title that anybody else could read.
TEST(TitlesTest, BoxesAndDialogsCarryTheirOwnTitlesOnly) {
    SetUpProgram(*qApp, {});
    ScriptedChannel channel;
    FakeCommunication comm{channel};
    WindowPrompter prompter;
    Application application{comm, prompter};
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

} // namespace

} // namespace sysadmin
