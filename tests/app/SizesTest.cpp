#include "support/ClientTest.h"

#include <QAbstractButton>
#include <QGroupBox>
#include <QMdiArea>
#include <QScrollArea>
#include <QScrollBar>
#include <QTabWidget>

#include <QTest>
#include <gtest/gtest.h>

namespace sysadmin {

namespace {

/// Every screen of the program, with and without an open record, in windows of several sizes.
class SizesTest : public ClientTest {
protected:
    void ResizeTo(const QSize& size, const QString& what) {
        Window().resize(size);
        QCoreApplication::processEvents();
        EXPECT_EQ(Window().size(), size) << what.toStdString() << " is larger than the window";
    }

    static void ExpectNoSidewaysScrolling(const QWidget& screen, const QString& what) {
        for (const auto* area : screen.findChildren<QScrollArea*>())
            if (area->isVisible()) {
                EXPECT_EQ(area->horizontalScrollBar()->maximum(), 0)
                    << what.toStdString() << " lacks this width";
            }
    }

    void CheckPages(QWidget& screen, const QString& what) {
        ExpectNoSidewaysScrolling(screen, what);
        for (auto* tabs : screen.findChildren<QTabWidget*>())
            for (int page = 1;
                 tabs->isVisible() && tabs->objectName() != u"tabTables" && page < tabs->count(); ++page) {
                tabs->setCurrentIndex(page);
                QCoreApplication::processEvents();
                ExpectNoSidewaysScrolling(screen, what + ", " + tabs->tabText(page));
            }
    }

    void CheckState(QWidget& screen, const QString& what) {
        ResizeTo({800, 500}, what);
        ResizeTo({1366, 700}, what); // less what the desktop takes
        CheckPages(screen, what);
        ResizeTo({2560, 1440}, what);
        const auto* save = screen.findChild<QAbstractButton*>("cmdSave");
        const auto* frame = screen.findChild<QGroupBox*>("fraEdit");
        if (!save || !frame || !frame->isVisible())
            return;
        EXPECT_LE(frame->width(), 1200) << what.toStdString() << " is too wide to be read";
        const int right = save->mapTo(&screen, save->rect().topRight()).x();
        EXPECT_LE(right, frame->mapTo(&screen, frame->rect().topRight()).x())
            << "Save of " << what.toStdString() << " stands far from its fields";
    }
};

TEST_F(SizesTest, EveryScreenFitsItsWindow) {
    SignOn("SYSADMIN");
    int screens = 0;
    for (const ScreenEntry& entry : App().catalogue.Entries()) {
        if (!entry.screen.make)
            continue;
        if (entry.screen.needsCluster && !App().clusters.Current())
            prompter.ExpectDialogResult("frmSelectCluster",
                                        [this](QDialog& dialog) { Click(dialog, "cmdOK"); });
        Screen& screen = Open(entry.key);
        ++screens;
        CheckState(screen, entry.key);
        if (auto* edit = screen.findChild<QAbstractButton*>("cmdEdit"); edit && edit->isEnabled()) {
            edit->click();
            QCoreApplication::processEvents();
            CheckState(screen, entry.key + " with a record");
            screen.findChild<QAbstractButton*>("cmdCancel")->click();
        }
        Window().findChild<QMdiArea*>("mdiScreens")->closeActiveSubWindow();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    EXPECT_GT(screens, 30);
}

TEST_F(SizesTest, ACaptionLeadsToItsField) {
    SignOn("SYSADMIN");
    auto& box = Get<QLineEdit>(Window(), "txtFindScreen");
    for (const auto& [text, control] : {std::pair{"retain patron id for circ", "chkCircHistory"},
                                        std::pair{"add bibliographic templates", "chkAddMBT"}}) {
        box.setText(text);
        QTest::keyClick(&box, Qt::Key_Return);
        QCoreApplication::processEvents();
        const QWidget* focus = Window().focusWidget();
        EXPECT_EQ(focus ? focus->objectName() : QString(), control);
    }
}

} // namespace

} // namespace sysadmin
