#include "server/ErrorLog.h"

#include <QDebug>

namespace sysadmin::server {

namespace {

constexpr std::chrono::seconds SameErrorPause{10};
constexpr qsizetype MostKnown = 200; // failures carry what clients sent: their number has no end

} // namespace

void ErrorLog::Warn(const QString& line) {
    qWarning("%s", qPrintable(line));
}

void ErrorLog::Write(const QString& failure) {
    QString line = failure;
    {
        const std::lock_guard lock(m_mutex);
        const Clock::time_point now = m_now();
        const auto known = m_known.find(failure);
        if (known != m_known.end() && now - known->written < SameErrorPause) {
            ++known->more;
            return;
        }
        if (known != m_known.end() && known->more > 0)
            line += QString(" (%1 more times since it was last told)").arg(known->more);
        if (known == m_known.end() && m_known.size() >= MostKnown)
            m_known.clear();
        m_known.insert(failure, {now});
    }
    m_write(line);
}

} // namespace sysadmin::server
