#include "comm/InputGate.h"

#include <QAction>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

namespace sysadmin {
namespace {

class InputGateTest : public ::testing::Test {
protected:
    InputGateTest() {
        auto* layout = new QVBoxLayout(&window);
        layout->addWidget(button);
        action->setShortcut(Qt::CTRL | Qt::Key_S);
        window.addAction(action);
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    void ClickAndPress() {
        QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, button->geometry().center());
        QTest::keyClick(window.windowHandle(), Qt::Key_S, Qt::ControlModifier);
    }

    QWidget window;
    QPushButton* button = new QPushButton("Save", &window);
    QAction* action = new QAction(&window);
    QSignalSpy clicked{button, &QPushButton::clicked};
    QSignalSpy triggered{action, &QAction::triggered};
};

TEST_F(InputGateTest, HoldsClicksAndShortcutsBackAndDeliversThemOnce) {
    {
        const InputGate gate;
        ClickAndPress();
        EXPECT_EQ(clicked.count() + triggered.count(), 0);
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(clicked.count(), 1);
    EXPECT_EQ(triggered.count(), 1);
    EXPECT_FALSE(button->isDown());
    ClickAndPress();
    EXPECT_EQ(clicked.count(), 2);
}

TEST_F(InputGateTest, DropsAndLetsGoOfWhatWasPressedBefore) {
    const QPoint place = button->geometry().center();
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, place);
    EXPECT_TRUE(button->isDown());
    {
        InputGate gate;
        ClickAndPress();
        gate.Drop();
        ClickAndPress();
        EXPECT_FALSE(window.close()) << "leaving has to wait";
        EXPECT_FALSE(button->isDown());
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(triggered.count(), 0);
    EXPECT_TRUE(window.isVisible());
}

} // namespace
} // namespace sysadmin
