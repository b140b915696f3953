#include "comm/Waiting.h"

#include "comm/InputGate.h"

#include <QCursor>
#include <QGuiApplication>

namespace sysadmin {

Waiting::Waiting(const QString& request, const WaitObserver& observer)
    : m_request(request)
    , m_observer(observer) {
    m_since.start();
}

Waiting::~Waiting() {
    EndLongWait();
}

void Waiting::Pump() {
    if (!m_long && m_since.hasExpired(Patience.count()))
        BeginLongWait();
    if (m_long)
        QCoreApplication::processEvents();
}

void Waiting::Pause() {
    EndLongWait();
    m_since.start();
}

void Waiting::HoldInput() {
    if (!m_gate)
        m_gate = std::make_unique<InputGate>();
}

void Waiting::ReleaseInput() {
    if (!m_long)
        m_gate.reset();
}

void Waiting::BeginLongWait() {
    m_long = true;
    HoldInput();
    m_gate->Drop();
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    if (m_observer)
        m_observer(m_request, true);
}

void Waiting::EndLongWait() {
    if (m_long) {
        // What the operator did up to now is dropped, too.
        QCoreApplication::processEvents();
        QGuiApplication::restoreOverrideCursor();
        if (m_observer)
            m_observer(m_request, false);
    }
    m_long = false;
    m_gate.reset();
}

} // namespace sysadmin
