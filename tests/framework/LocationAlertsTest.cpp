#include "framework/LocationAlerts.h"

#include <gtest/gtest.h>

namespace sysadmin {

namespace {

TEST(LocationAlertsTest, AreReadBackByIndex) {
    clsLocationAlerts alerts;
    alerts.AddData({"3", "1", "Y", "N", "N"});
    alerts.AddData({"5", "2", "N", "Y", "Y"});
    EXPECT_EQ(alerts.GetColCount(), 2);
    EXPECT_EQ(alerts.GetAlertID(1), "5");
    EXPECT_EQ(alerts.GetDisplay(0), "1");
    EXPECT_EQ(alerts.GetName(0), "Y");
    EXPECT_EQ(alerts.GetBarcode(1), "Y");
    EXPECT_EQ(alerts.GetPhone(0), "N");
    EXPECT_EQ(alerts.GetName(2), "");
}

} // namespace

} // namespace sysadmin
