#include "comm/Transport.h"

#include "comm/Waiting.h"

namespace sysadmin {

void Transport::Pump() {
    if (m_waiting)
        m_waiting->Pump();
}

void Transport::HoldInput() {
    if (m_waiting)
        m_waiting->HoldInput();
}

void Transport::ReleaseInput() {
    if (m_waiting)
        m_waiting->ReleaseInput();
}

void Transport::PauseWaiting() {
    if (m_waiting)
        m_waiting->Pause();
}

QString Transport::Fail(TransportFailure failure, const QString& problem) {
    m_failure = failure;
    m_problem = problem;
    return problem;
}

void Transport::ClearFailure() {
    Fail(TransportFailure::None, {});
}

} // namespace sysadmin
