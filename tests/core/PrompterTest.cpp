#include "core/Prompter.h"
#include "core/HelpWindow.h"
#include "core/ScreenCatalogue.h"
#include "look/Appearance.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QMessageBox>
#include <QTest>
#include <QTextBrowser>
#include <QTimer>
#include <gtest/gtest.h>

#include <cmath>

namespace sysadmin {

namespace {

// Shows the box and lets `act` work on the real window.
bool Show(const Box& box, const std::function<void(QMessageBox&)>& act) {
    QTimer::singleShot(0, [&] { act(*qobject_cast<QMessageBox*>(QApplication::activeModalWidget())); });
    return WindowPrompter().ShowBox(nullptr, box);
}

TEST(WindowPrompter, ShowsTheTextAsItIs) {
    Show({"You will delete X:\r\n\"<b>A</b>\"\r\n\r\nAre you sure?"}, [](QMessageBox& window) {
        EXPECT_EQ(window.text(), "You will delete X:\n\"<b>A</b>\"\n\nAre you sure?");
        EXPECT_EQ(window.textFormat(), Qt::PlainText);
        EXPECT_EQ(window.windowTitle(), "System Administration");
        EXPECT_EQ(window.icon(), QMessageBox::Warning);
        window.button(QMessageBox::Ok)->click();
    });
}

TEST(WindowPrompter, ADialogHasItsHelpWhileItIsOpen) {
    WindowPrompter prompter;
    const ScreenCatalogue catalogue;
    prompter.showHelp = [&](QDialog& dialog, int topic) { HelpWindow::ShowOver(dialog, catalogue, topic); };
    QDialog dialog;
    dialog.setProperty(HelpContextProperty, 50812);
    QTimer::singleShot(0, [&] {
        EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
        QTest::keyClick(&dialog, Qt::Key_F1);
        auto* help = dialog.findChild<HelpWindow*>();
        ASSERT_TRUE(help);
        EXPECT_TRUE(help->findChild<QTextBrowser*>()->toPlainText().startsWith("Phone Numbers"));
        // Which a window behind a modal one never becomes.
        EXPECT_TRUE(QTest::qWaitFor([&] { return QApplication::activeWindow() == help; }));
        QTest::keyClick(help->findChild<QTextBrowser*>(), Qt::Key_Escape);
        EXPECT_FALSE(help->isVisible());
        EXPECT_TRUE(dialog.isVisible()) << "Esc closes the help alone";
        dialog.accept();
    });
    EXPECT_TRUE(prompter.RunDialog(dialog));
}

TEST(WindowPrompter, AnswersByTheButtonAndLeavingIsNoOrCancel) {
    const struct {
        Box::Buttons buttons;
        QMessageBox::StandardButton clicked; // the Escape key when none
        bool answer;
    } cases[] = {
        {Box::Buttons::YesNo, QMessageBox::Yes, true},
        {Box::Buttons::YesNo, QMessageBox::No, false},
        {Box::Buttons::YesNo, QMessageBox::NoButton, false},
        {Box::Buttons::OkCancel, QMessageBox::Ok, true},
        {Box::Buttons::OkCancel, QMessageBox::Cancel, false},
        {Box::Buttons::OkCancel, QMessageBox::NoButton, false},
    };
    for (const auto& [buttons, clicked, answer] : cases)
        EXPECT_EQ(Show({"Sure?", Box::Icon::Question, buttons},
                       [clicked = clicked](QMessageBox& window) {
                           if (QAbstractButton* button = window.button(clicked))
                               button->click();
                           else
                               QTest::keyClick(&window, Qt::Key_Escape);
                       }),
                  answer)
            << int(buttons) << ' ' << clicked;
}

double Luminance(const QColor& colour) {
    const auto linear = [](double share) {
        return share <= 0.03928 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

double Contrast(const QPalette& palette, QPalette::ColorRole text, QPalette::ColorRole surface) {
    const auto [low, high] = std::minmax({Luminance(palette.color(text)), Luminance(palette.color(surface))});
    return (high + 0.05) / (low + 0.05);
}

TEST(Appearance, TextIsReadableOnEverySurfaceOfBothPalettes) {
    for (const QPalette& palette : {LightPalette(), DarkPalette()}) {
        for (const auto surface : {QPalette::Window, QPalette::Base, QPalette::AlternateBase}) {
            EXPECT_GE(Contrast(palette, QPalette::WindowText, surface), 7.0);
            EXPECT_GE(Contrast(palette, QPalette::PlaceholderText, surface), 4.2);
            EXPECT_GE(Contrast(palette, QPalette::Link, surface), 4.5);
        }
        EXPECT_GE(Contrast(palette, QPalette::ButtonText, QPalette::Button), 7.0);
        EXPECT_GE(Contrast(palette, QPalette::HighlightedText, QPalette::Highlight), 4.5);
        EXPECT_GE(Contrast(palette, QPalette::ToolTipText, QPalette::ToolTipBase), 7.0);
    }
    EXPECT_EQ(AppearanceOf("dark"), Appearance::Dark);
    EXPECT_FALSE(AppearanceOf("blue"));
}

} // namespace

} // namespace sysadmin
