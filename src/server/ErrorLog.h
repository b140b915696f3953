#pragma once

#include <QHash>
#include <QString>

#include <chrono>
#include <functional>
#include <mutex>

namespace sysadmin::server {

/// The log of what could not be carried out. While the database is away every client tries again and again:
/// the same failure is a line of the log once in ten seconds, which then says how often it came. May be used
/// by several threads at once.
class ErrorLog {
public:
    using Clock = std::chrono::steady_clock;

    explicit ErrorLog(std::function<void(const QString& line)> write = Warn,
                      std::function<Clock::time_point()> now = Clock::now)
        : m_write(std::move(write))
        , m_now(std::move(now)) {}

    void Write(const QString& failure);

private:
    struct Known {
        Clock::time_point written;
        int more = 0; // since then
    };

    static void Warn(const QString& line);

    std::function<void(const QString&)> m_write;
    std::function<Clock::time_point()> m_now;
    std::mutex m_mutex;
    QHash<QString, Known> m_known;
};

} // namespace sysadmin::server
