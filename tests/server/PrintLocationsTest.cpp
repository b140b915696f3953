#include "support/TestServer.h"
#include "wire/Status.h"

#include <gtest/gtest.h>

namespace sysadmin::testing {

namespace {

namespace status = wire::status;

class PrintLocations : public ::testing::Test {
protected:
    /// The names of the locations that are marked as the default.
    QStringList Defaults() {
        const wire::Fields list = server.Send("LstPL").fields;
        const QStringList names = ValuesOf(list, "Nm");
        const QStringList marks = ValuesOf(list, "DP");
        QStringList defaults;
        for (qsizetype i = 0; i < names.size(); ++i)
            if (marks.value(i) == "Y")
                defaults << names[i];
        return defaults;
    }

    TestServer server;
};

TEST_F(PrintLocations, ThereIsOneDefault) {
    EXPECT_EQ(Defaults(), QStringList{"Main Circulation Desk"});
    const wire::Reply added =
        server.Send("AddPL", {{"Cd", "MAIL"}, {"Nm", "Mail Room"}, {"DP", "Y"}, {"CG", "Y"}});
    ASSERT_EQ(added.status, 0);
    EXPECT_EQ(Defaults(), QStringList{"Mail Room"});
    const QString id = wire::FirstValue(added.fields, "ID");
    EXPECT_EQ(server.StatusOf("UpdPL", {{"ID", id}, {"Nm", "Post Room"}, {"NNm", "Y"}}), 0);
    EXPECT_EQ(Defaults(), QStringList{"Post Room"});
    EXPECT_EQ(server.StatusOf("UpdPL", {{"ID", id}, {"DP", "N"}}), 0);
    EXPECT_TRUE(Defaults().isEmpty());

    server.Restart();
    server.SignOnAs("SYSADMIN");
    const wire::Fields record = server.Send("GetPL", {{"ID", id}}).fields;
    EXPECT_EQ(record, (wire::Fields{{"Cd", "MAIL"},
                                    {"Nm", "Post Room"},
                                    {"DP", "N"},
                                    {"CG", "Y"},
                                    {"AG", "N"},
                                    {"MSG", "N"},
                                    {"CtG", "N"}}));
}

TEST_F(PrintLocations, RefusedSaveLeavesTheDefaultWhereItWas) {
    EXPECT_EQ(server.StatusOf("AddPL", {{"Cd", "law"}, {"Nm", "New"}, {"DP", "Y"}}), status::DuplicateCode);
    EXPECT_EQ(server.StatusOf("AddPL", {{"Cd", "NEW"}, {"Nm", "Law library"}, {"DP", "Y"}}),
              status::DuplicateName);
    EXPECT_EQ(server.StatusOf("UpdPL", {{"ID", "999999"}, {"DP", "Y"}}), status::NotFound);
    server.SignOnAs("CIRC");
    EXPECT_EQ(server.StatusOf("AddPL", {{"Cd", "NEW"}, {"Nm", "New"}, {"DP", "Y"}}), status::NotAuthorised);
    EXPECT_EQ(server.StatusOf("GetPL", {{"ID", "1"}}), status::NotAuthorised);
    EXPECT_EQ(server.StatusOf("DelPL", {{"ID", "1"}}), status::NotAuthorised);
    EXPECT_EQ(Defaults(), QStringList{"Main Circulation Desk"}) << "whoever chooses one may list them";
}

TEST_F(PrintLocations, DefaultAndThoseInUseAreNotDeleted) {
    const auto remove = [this](const QString& id) { return server.StatusOf("DelPL", {{"ID", id}}); };
    const wire::Fields list = server.Send("LstPL").fields;
    const auto idOf = [&list](const QString& code) {
        return ValuesOf(list, "ID").value(ValuesOf(list, "Cd").indexOf(code));
    };
    EXPECT_EQ(remove(idOf("LAW")), status::InUse);
    EXPECT_EQ(remove(idOf("CLASSICS")), 0);
    EXPECT_EQ(remove(idOf("CLASSICS")), status::NotFound);

    const QString unused = idOf("INST");
    ASSERT_EQ(server.StatusOf("UpdPL", {{"ID", unused}, {"DP", "Y"}}), 0);
    EXPECT_EQ(remove(unused), status::InUse);
    ASSERT_EQ(server.StatusOf("UpdPL", {{"ID", idOf("LAW")}, {"DP", "Y"}}), 0);
    EXPECT_EQ(remove(unused), 0);
    EXPECT_EQ(Defaults(), QStringList{"Law Library"});
}

} // namespace

} // namespace sysadmin::testing
