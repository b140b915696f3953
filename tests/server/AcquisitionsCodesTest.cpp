#include "support/TestServer.h"
#include "wire/Status.h"

#include <gtest/gtest.h>

namespace sysadmin::testing {

namespace {

namespace status = wire::status;

/// A table of named records.
struct CodeTable {
    QString list;
    QString get;
    QString add;
    QString update;
    QString remove;
    QString key;
    QString name;
    wire::Fields details = {}; // of a new record, besides its name
};

void PrintTo(const CodeTable& table, std::ostream* out) {
    *out << table.list.toStdString();
}

class CodeTableRules : public ::testing::TestWithParam<CodeTable> {
protected:
    wire::Fields Record(const QString& name, const wire::Fields& before = {}) const {
        return before + wire::Fields{{GetParam().name, name}} + GetParam().details;
    }

    TestServer server;
};

TEST_P(CodeTableRules, RecordsAreKeptWithTheirUniqueNames) {
    const CodeTable& table = GetParam();
    const wire::Reply list = server.Send(table.list);
    ASSERT_EQ(list.status, status::Ok);
    const QStringList names = ValuesOf(list.fields, table.name);
    ASSERT_GE(names.size(), 5);

    const wire::Reply added = server.Send(table.add, Record("Quite New"));
    ASSERT_EQ(added.status, status::Ok);
    const QString id = wire::FirstValue(added.fields, table.key);
    EXPECT_EQ(InRecord(server.Send(table.list).fields, table.key, id, table.name), "Quite New");
    EXPECT_EQ(server.StatusOf(table.add, Record(" quite NEW")), status::DuplicateName);
    EXPECT_EQ(server.StatusOf(table.add, Record(" ")), status::ColumnError);
    EXPECT_EQ(server.StatusOf(table.add, Record(QString(41, 'x'))), status::ColumnError);
    EXPECT_EQ(server.StatusOf(table.update, Record(names.first(), {{table.key, id}})), status::DuplicateName);
    EXPECT_EQ(server.StatusOf(table.update, Record("Another", {{table.key, "999999"}})), status::NotFound);
    ASSERT_EQ(server.StatusOf(table.update, Record("Quite new", {{table.key, id}})), status::Ok);

    server.Restart();
    server.SignOnAs("SYSADMIN");
    EXPECT_EQ(InRecord(server.Send(table.list).fields, table.key, id, table.name), "Quite new");
    if (!table.get.isEmpty()) {
        const wire::Reply record = server.Send(table.get, {{table.key, id}});
        EXPECT_EQ(record.status, status::Ok);
        for (const wire::Field& field : Record("Quite new"))
            EXPECT_EQ(wire::FirstValue(record.fields, field.tag), field.value);
        EXPECT_EQ(server.StatusOf(table.get, {{table.key, "999999"}}), status::NotFound);
    }
    ASSERT_EQ(server.StatusOf(table.remove, {{table.key, id}}), status::Ok);
    EXPECT_EQ(server.StatusOf(table.remove, {{table.key, id}}), status::NotFound);
    EXPECT_EQ(ValuesOf(server.Send(table.list).fields, table.name), names);
}

TEST_P(CodeTableRules, OnlyWhoMayEditTheAreaChangesThem) {
    const CodeTable& table = GetParam();
    const QString id = ValuesOf(server.Send(table.list).fields, table.key).first();
    server.SignOnAs("VIEWER");
    EXPECT_EQ(server.StatusOf(table.list), status::Ok);
    EXPECT_EQ(server.StatusOf(table.add, Record("Not Mine")), status::NotAuthorised);
    EXPECT_EQ(server.StatusOf(table.update, Record("Not Mine", {{table.key, id}})), status::NotAuthorised);
    EXPECT_EQ(server.StatusOf(table.remove, {{table.key, id}}), status::NotAuthorised);
    server.SignOnAs("GUEST");
    EXPECT_EQ(server.StatusOf(table.list), status::NotAuthorised);
}

INSTANTIATE_TEST_SUITE_P(
    Acquisitions, CodeTableRules,
    ::testing::Values(
        CodeTable{"LstClm", "GetClm", "AddClm", "UpdClm", "DelClm", "ID", "D", {{"E", "QN"}}},
        CodeTable{"LstMark", "GetMark", "AddMark", "UpdMark", "DelMark", "ID", "Nm", {{"C", "2"}}},
        CodeTable{"LstAdj",
                  "GetAdj",
                  "AddAdj",
                  "UpdAdj",
                  "DelAdj",
                  "ID",
                  "T",
                  {{"EC", "QN"}, {"CC", "A"}, {"V", "3"}}},
        CodeTable{"LstPOTp", "GetPOTp", "AddPOTp", "UpdPOTp", "DelPOTp", "T", "D"},
        CodeTable{"LstVRpt", "GetVRpt", "AddVRpt", "UpdVRpt", "DelVRpt", "ID", "Nm", {{"E", "QN"}}},
        CodeTable{"LstFndTp",
                  "GetFndTp",
                  "AddFndTp",
                  "UpdFndTp",
                  "DelFndTp",
                  "ID",
                  "Nm",
                  {{"OCW", "Y"}, {"OCWP", "90"}, {"OEW", "N"}}},
        CodeTable{"LstFscPr",
                  "GetFscPr",
                  "AddFscPr",
                  "UpdFscPr",
                  "DelFscPr",
                  "ID",
                  "Nm",
                  {{"StDt", "2030-01-01"}, {"EDt", "2030-12-31 23:59:59"}}},
        CodeTable{"LstPatNoteTp", "", "AddPatNoteTp", "UpdPatNoteTp", "DelPatNoteTp", "ID", "D"}));

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

TEST_F(AcquisitionsCodes, WhatOtherRecordsUseIsNotDeleted) {
    const auto remove = [&](const QString& request, const QString& list, const QString& tag,
                            const QString& name, const QString& key = "ID") {
        return server.StatusOf(request, {{key, IdOf(list, tag, name, key)}});
    };
    EXPECT_EQ(remove("DelClm", "LstClm", "D", "Wrong Edition"), 74);
    EXPECT_EQ(remove("DelClm", "LstClm", "D", "Not Received"), 101);
    EXPECT_EQ(remove("DelClm", "LstClm", "D", "Index Not Received"), 0);
    EXPECT_EQ(remove("DelMark", "LstMark", "Nm", "Binding Damaged"), 65);
    EXPECT_EQ(remove("DelMark", "LstMark", "Nm", "Duplicate Copy"), 66);
    EXPECT_EQ(remove("DelMark", "LstMark", "Nm", "Price Query"), 0);
    EXPECT_EQ(remove("DelVRpt", "LstVRpt", "Nm", "Out of Stock"), 63);
    EXPECT_EQ(remove("DelVRpt", "LstVRpt", "Nm", "Title Changed"), 64);
    EXPECT_EQ(remove("DelVRpt", "LstVRpt", "Nm", "Title Unknown"), 0);
    EXPECT_EQ(remove("DelPOTp", "LstPOTp", "D", "Gift", "T"), 91);
    EXPECT_EQ(remove("DelPOTp", "LstPOTp", "D", "Patron-Driven Purchase", "T"), 0);
    EXPECT_EQ(remove("DelAdj", "LstAdj", "T", "Freight"), 86);
    EXPECT_EQ(remove("DelAdj", "LstAdj", "T", "Bank Charge"), 0);
    EXPECT_EQ(remove("DelFndTp", "LstFndTp", "Nm", "Gift"), 88);
    EXPECT_EQ(remove("DelFndTp", "LstFndTp", "Nm", "Start-Up Collections"), 0);
    EXPECT_EQ(remove("DelFscPr", "LstFscPr", "Nm", "Fiscal Year 2026"), 89);
    EXPECT_EQ(remove("DelFscPr", "LstFscPr", "Nm", "Fiscal Year 2027"), 57);
    EXPECT_EQ(remove("DelFscPr", "LstFscPr", "Nm", "Fiscal Year 2028"), 0);
    EXPECT_EQ(remove("DelPatNoteTp", "LstPatNoteTp", "D", "General"), 13);
    EXPECT_EQ(remove("DelPatNoteTp", "LstPatNoteTp", "D", "Visiting Scholar"), 0);
    EXPECT_EQ(server.StatusOf("DelPatNoteTp", {{"ID", "999999"}}), status::NotFound);

    // The claim type is free again when no mark reason names it.
    const QString claimType = IdOf("LstClm", "D", "Wrong Edition");
    ASSERT_EQ(server.StatusOf("UpdMark", {{"ID", IdOf("LstMark", "Nm", "Wrong Edition")}, {"C", ""}}), 0);
    EXPECT_EQ(server.StatusOf("DelClm", {{"ID", claimType}}), 0);
}

TEST_F(AcquisitionsCodes, ReasonsReferToWhatIsThere) {
    const wire::Fields vendors = server.Send("LstVen").fields;
    QStringList names = ValuesOf(vendors, "Nm");
    EXPECT_EQ(names.size(), ValuesOf(vendors, "ID").size());
    EXPECT_GE(names.size(), 20);
    EXPECT_EQ(server.StatusOf("AddAdj", {{"T", "Off"}, {"V", "999999"}}), status::ColumnError);
    EXPECT_EQ(server.StatusOf("AddAdj", {{"T", "Off"}, {"CC", "X"}}), status::ColumnError);
    EXPECT_EQ(server.StatusOf("AddMark", {{"Nm", "Off"}, {"C", "999999"}}), status::ColumnError);
    EXPECT_EQ(server.StatusOf("AddMark", {{"Nm", "Off"}, {"C", ""}}), 0);
    server.SignOnAs("CIRC");
    EXPECT_EQ(server.StatusOf("LstVen"), status::NotAuthorised);
    EXPECT_EQ(server.StatusOf("LstFscPr"), status::NotAuthorised);
    EXPECT_EQ(server.StatusOf("AddPatNoteTp", {{"D", "Circulation's Own"}}), 0);
}

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
