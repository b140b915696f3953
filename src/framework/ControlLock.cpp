#include "framework/ControlLock.h"

#include <QEvent>
#include <QKeyEvent>
#include <QVariant>
#include <QWidget>

namespace sysadmin {

namespace {

/// The style draws a control with it as one that is only shown.
constexpr char ReadOnlyProperty[] = "readOnly";

/// Swallows what would change the control.
class ControlLock : public QObject {
public:
    explicit ControlLock(QWidget& control)
        : QObject(&control)
        , m_control(control) {
        control.installEventFilter(this);
    }

    bool eventFilter(QObject*, QEvent* event) override {
        if (!IsLocked(m_control))
            return false;
        switch (event->type()) {
        case QEvent::MouseButtonPress:
            m_control.setFocus(Qt::MouseFocusReason);
            return true;
        case QEvent::Shortcut: // its caption's mnemonic
            m_control.setFocus(Qt::ShortcutFocusReason);
            return true;
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::KeyRelease:
            return true;
        case QEvent::KeyPress: {
            const int key = static_cast<QKeyEvent*>(event)->key();
            if (key == Qt::Key_Tab || key == Qt::Key_Backtab)
                return false;
            event->ignore(); // may mean something to the screen
            return true;
        }
        case QEvent::Wheel:
            event->ignore(); // scrolls the form
            return true;
        default:
            return false;
        }
    }

private:
    QWidget& m_control;
};

} // namespace

void LockControl(QWidget& control, bool locked) {
    if (IsLocked(control) == locked)
        return;
    if (!control.property(ReadOnlyProperty).isValid())
        new ControlLock(control);
    control.setProperty(ReadOnlyProperty, locked);
    control.update();
}

bool IsLocked(const QWidget& control) {
    return control.property(ReadOnlyProperty).toBool();
}

} // namespace sysadmin
