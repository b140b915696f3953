#include "support/TestServer.h"
#include "wire/Status.h"

#include <gtest/gtest.h>

namespace sysadmin::testing {

namespace {

namespace status = wire::status;

class AcquisitionsCodes : public ::testing::Test {
protected:
    /// The id of the record of this name in a list of ids and names.
    QString IdOf(const QString& list, const QString& nameTag, const QString& name,
                 const QString& key = "ID") {
        QString id;
        for (const wire::Field& field : server.Send(list).fields) {
            if (field.tag == key)
                id = field.value;
            if (field.tag == nameTag && field.value == name)
                return id;
        }
        ADD_FAILURE() << name.toStdString() << " is not in the list";
        return {};
    }

    TestServer server;
};

TEST_F(AcquisitionsCodes, FundRuleThatIsOffKeepsNoPercentage) {
    const QString id = IdOf("LstFndTp", "Nm", "Grant");
    EXPECT_EQ(wire::FirstValue(server.Send("GetFndTp", {{"ID", id}}).fields, "OCWP"), "90");
    ASSERT_EQ(server.StatusOf("UpdFndTp", {{"ID", id}, {"Nm", "Grant"}, {"OCW", "N"}}), 0);
    const wire::Fields record = server.Send("GetFndTp", {{"ID", id}}).fields;
    EXPECT_EQ(wire::FirstValue(record, "OCW"), "N");
    EXPECT_EQ(wire::FirstValue(record, "OCWP"), "");
    EXPECT_EQ(wire::FirstValue(record, "OELP"), "100");
    EXPECT_EQ(server.StatusOf("UpdFndTp", {{"ID", id}, {"OCW", "Y"}}), status::ColumnError);
    EXPECT_EQ(server.StatusOf("UpdFndTp", {{"ID", id}, {"OCW", "Y"}, {"OCWP", "1000"}}), status::ColumnError);
    EXPECT_EQ(server.StatusOf("UpdFndTp", {{"ID", id}, {"OCW", "Y"}, {"OCWP", "999"}}), 0);
}

TEST_F(AcquisitionsCodes, FiscalPeriodsHaveDatesInOrder) {
    const auto add = [&](const QString& start, const QString& end) {
        return server.StatusOf("AddFscPr", {{"Nm", "P " + start + end}, {"StDt", start}, {"EDt", end}});
    };
    EXPECT_EQ(add("2030-07-02", "2030-07-01 23:59:59"), status::ColumnError);
    EXPECT_EQ(add("2030-02-30", "2030-07-01 23:59:59"), status::ColumnError);
    EXPECT_EQ(add("2030-02-01", "2030-07-01"), status::ColumnError);
    EXPECT_EQ(add("", "2030-07-01 23:59:59"), status::ColumnError);
    EXPECT_EQ(add("2030-07-01", "2030-07-01 23:59:59"), 0);
    // An update that brings only one of the dates is checked against the stored other one.
    const QString id = IdOf("LstFscPr", "Nm", "Fiscal Year 2026");
    EXPECT_EQ(server.StatusOf("UpdFscPr", {{"ID", id}, {"StDt", "2026-09-01"}}), status::ColumnError);
}

} // namespace

} // namespace sysadmin::testing
