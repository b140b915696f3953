#include "app/Robot.h"

#include "framework/ListGrid.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QMessageBox>
#include <QPainter>
#include <QTest>
#include <QTimer>

namespace sysadmin {

namespace {

constexpr int TickMilliseconds = 20;
constexpr int GiveUpMilliseconds = 20000;
constexpr char MessageBox[] = "msgBox";

/// The control of this name in the window that takes the input now; null while there is none.
QWidget* FindControl(const QString& name) {
    QWidget* modal = QApplication::activeModalWidget();
    for (QWidget* window : modal ? QWidgetList{modal} : QApplication::topLevelWidgets()) {
        if (!window->isVisible())
            continue;
        if (window->objectName() == name)
            return window;
        for (QWidget* widget : window->findChildren<QWidget*>(name))
            if (widget->isVisible() && widget->isEnabled())
                return widget;
    }
    return nullptr;
}

} // namespace

QPixmap PictureOfWindows() {
    QWidget* modal = QApplication::activeModalWidget();
    QWidget* base = modal;
    for (QWidget* window : QApplication::topLevelWidgets())
        if (window->isVisible() && window->objectName() == u"frmMain")
            base = window;
    if (!base)
        for (QWidget* window : QApplication::topLevelWidgets())
            if (window->isVisible())
                base = window;
    if (!base)
        return {};
    QPixmap picture = base->grab();
    if (modal && modal != base) {
        QPainter painter(&picture);
        painter.fillRect(base->rect(), QColor(0, 0, 0, 60));
        const QPoint corner = base->rect().center() - modal->rect().center();
        painter.drawPixmap(corner, modal->grab());
        painter.setPen(QPen(base->palette().color(QPalette::Mid), 1));
        painter.drawRect(QRect(corner, modal->size()).adjusted(-1, -1, 0, 0));
    }
    return picture;
}

Robot::Robot(const QString& pictureFolder, QObject* parent)
    : QObject(parent)
    , m_pictureFolder(pictureFolder) {}

void Robot::Then(const QString& control, const Action& action) {
    m_steps.append({control, action});
}

void Robot::Click(const QString& control) {
    Then(control, [](QWidget& widget) {
        QTest::mouseClick(&widget, Qt::LeftButton, {}, QPoint(10, widget.height() / 2));
    });
}

void Robot::Type(const QString& control, const QString& text) {
    Then(control, [text](QWidget& widget) {
        widget.setFocus();
        QTest::keyClick(&widget, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(&widget, Qt::Key_Delete);
        QTest::keyClicks(&widget, text);
    });
}

void Robot::Press(const QString& control, Qt::Key key, Qt::KeyboardModifiers modifiers) {
    Then(control, [=](QWidget& widget) { QTest::keyClick(&widget, key, modifiers); });
}

void Robot::SelectRow(const QString& grid, const QString& text) {
    Then(grid, [this, text](QWidget& widget) {
        auto& list = static_cast<ListGrid&>(widget);
        for (int row = 0; row < list.Model().rowCount(); ++row)
            if (list.Model().CellText(row, 0) == text) {
                const QModelIndex index = list.Model().index(row, 0);
                list.scrollTo(index);
                QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualRect(index).center());
                return;
            }
        Fail("no row \"" + text + "\" in " + widget.objectName());
    });
}

void Robot::Answer(const QString& button) {
    Then(MessageBox, [this, button](QWidget& box) {
        for (QAbstractButton* one : box.findChildren<QAbstractButton*>())
            if (one->text().remove('&') == button) {
                QTest::mouseClick(one, Qt::LeftButton);
                return;
            }
        Fail("no button \"" + button + "\" in the message box");
    });
}

void Robot::Picture(const QString& control, const QString& name) {
    Then(control, [this, name](QWidget&) { SavePicture(name); });
}

void Robot::Start() {
    m_waited = 0;
    ScheduleTick();
}

void Robot::ScheduleTick() {
    // A timer of its own each time: one that is being served does not fire inside the dialogs that open
    // meanwhile.
    QTimer::singleShot(TickMilliseconds, this, &Robot::Tick);
}

void Robot::Tick() {
    if (m_steps.isEmpty()) {
        if (m_problem.isEmpty())
            emit Finished();
        return;
    }
    // An action that opens a dialog does not return before the dialog closes: the next steps run meanwhile.
    ScheduleTick();
    // At a busy cursor it waits, as an operator does: what is clicked and typed then is dropped.
    const bool isBusy = QGuiApplication::overrideCursor();
    QWidget* control = isBusy ? nullptr : FindControl(m_steps.first().control);
    if (!control) {
        m_waited += TickMilliseconds;
        if (m_waited > GiveUpMilliseconds)
            Fail("waited in vain for " + m_steps.first().control);
        return;
    }
    m_waited = 0;
    const Step step = m_steps.takeFirst();
    step.action(*control);
}

void Robot::Fail(const QString& problem) {
    m_problem = problem;
    m_steps.clear();
    SavePicture("failed");
    emit Failed(problem);
}

void Robot::SavePicture(const QString& name) {
    if (m_pictureFolder.isEmpty())
        return;
    const QString number = QString::number(++m_pictures).rightJustified(2, '0');
    if (!PictureOfWindows().save(QDir(m_pictureFolder).filePath(number + "-" + name + ".png")))
        m_problem = "cannot write pictures to " + m_pictureFolder;
}

} // namespace sysadmin

#include "moc_Robot.cpp"
