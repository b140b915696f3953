#include "server/ErrorLog.h"

#include <gtest/gtest.h>

namespace sysadmin::testing {
namespace {

using server::ErrorLog;
using namespace std::chrono_literals;

TEST(ErrorLogTest, AFailureThatGoesOnIsALineInTenSeconds) {
    QStringList lines;
    ErrorLog::Clock::time_point now;
    ErrorLog log([&](const QString& line) { lines << line; }, [&] { return now; });
    for (int i = 0; i < 500; ++i, now += 100ms)
        log.Write("LstLoc: away");
    log.Write("GetLoc: away");
    EXPECT_EQ(lines, QStringList("LstLoc: away") +
                         QStringList(4, "LstLoc: away (99 more times since it was last told)") +
                         QStringList("GetLoc: away"));
    // Failures that never come twice take no memory for ever.
    for (int i = 0; i < 10'000; ++i)
        log.Write(QString::number(i));
    EXPECT_EQ(lines.size(), 10'006);
}

} // namespace
} // namespace sysadmin::testing
