#include "comm/InputGate.h"

#include <QAction>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

namespace sysadmin {
namespace {

TEST(InputGate, HoldsInputBackUntilItsEndOrDropsIt) {
    QWidget window;
    auto* layout = new QVBoxLayout(&window);
    auto* button = new QPushButton("Save");
    layout->addWidget(button);
    auto* action = new QAction(&window);
    action->setShortcut(Qt::CTRL | Qt::Key_S);
    window.addAction(action);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    const QSignalSpy clicked(button, &QPushButton::clicked);
    const QSignalSpy triggered(action, &QAction::triggered);
    const auto clickAndPress = [&] {
        QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, button->geometry().center());
        QTest::keyClick(window.windowHandle(), Qt::Key_S, Qt::ControlModifier);
    };
    {
        const InputGate gate;
        clickAndPress();
        EXPECT_EQ(clicked.count() + triggered.count(), 0);
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(clicked.count(), 1);
    EXPECT_EQ(triggered.count(), 1);
    EXPECT_FALSE(button->isDown());

    QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, button->geometry().center());
    EXPECT_TRUE(button->isDown());
    {
        InputGate gate;
        clickAndPress();
        gate.Drop();
        clickAndPress();
        EXPECT_FALSE(window.close()) << "leaving has to wait";
        EXPECT_FALSE(button->isDown()) << "what was pressed before is let go of";
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(triggered.count(), 1);
    EXPECT_TRUE(window.isVisible());
}

} // namespace
} // namespace sysadmin
