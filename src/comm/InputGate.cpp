#include "comm/InputGate.h"

#include <QCoreApplication>
#include <QEvent>

namespace sysadmin {

namespace {

bool BeginsSomething(QEvent::Type type) {
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::NonClientAreaMouseButtonPress:
    case QEvent::NonClientAreaMouseButtonDblClick:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::Shortcut:
    case QEvent::ContextMenu:
    case QEvent::TouchBegin:
    case QEvent::TabletPress:
    case QEvent::InputMethod:
    case QEvent::Drop:
        return true;
    default:
        return false;
    }
}

bool EndsSomething(QEvent::Type type) {
    return type == QEvent::MouseButtonRelease || type == QEvent::KeyRelease || type == QEvent::TouchEnd ||
           type == QEvent::TabletRelease;
}

} // namespace

InputGate::InputGate() {
    QCoreApplication::instance()->installEventFilter(this);
}

InputGate::~InputGate() {
    QCoreApplication::instance()->removeEventFilter(this);
    for (Held& held : m_held)
        if (held.receiver)
            QCoreApplication::postEvent(held.receiver, held.event.release());
}

void InputGate::Drop() {
    m_dropping = true;
    m_held.clear();
}

bool InputGate::eventFilter(QObject* receiver, QEvent* event) {
    const QEvent::Type type = event->type();
    if (type == QEvent::Close) {
        // Who wants to leave can do so when the reply is there.
        event->ignore();
        return true;
    }
    if (type == QEvent::ShortcutOverride)
        return true;
    const bool begins = BeginsSomething(type);
    // What was pressed before the wait must be let go; what is held back is let go after it.
    if (!begins && (m_dropping || !EndsSomething(type)))
        return false;
    if (!m_dropping)
        m_held.push_back({receiver, std::unique_ptr<QEvent>(event->clone())});
    return true;
}

} // namespace sysadmin

#include "moc_InputGate.cpp"
