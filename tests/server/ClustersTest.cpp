#include "server/Engines.h"
#include "support/TestServer.h"
#include "wire/Status.h"

#include <gtest/gtest.h>

namespace sysadmin::testing {
namespace {

using namespace server;

class ClustersTest : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        if (!IsSkipped())
            m_server.emplace(TestServer::Options{.address = Address()});
    }
    wire::Reply Send(const QString& name, const wire::Fields& fields = {}) {
        return m_server->Send(name, fields);
    }
    qint16 StatusOf(const QString& name, const wire::Fields& fields = {}) {
        return Send(name, fields).status;
    }
    wire::Fields List(const QString& operatorId = "SYSADMIN") {
        return Send("GetClusterList", {{"OI", operatorId}}).fields;
    }
    QString IdOf(const QString& code) {
        return m_server->Value("SELECT id FROM clusters WHERE code=?", {code});
    }
    wire::Fields Record(const QString& id) { return Send("GetCluster", {{"CID", id}}).fields; }
    /// The marked location of a cluster's record.
    static QStringList Marked(const wire::Fields& record) {
        QStringList marked;
        const QStringList marks = ValuesOf(record, "COPCDF");
        for (qsizetype i = 0; i < marks.size(); ++i)
            if (marks[i] == u"Y")
                marked << ValuesOf(record, "CLOCID")[i];
        return marked;
    }

    std::optional<TestServer> m_server;
};

TEST_P(ClustersTest, ListSaysWhatIsInUse) {
    const wire::Fields list = List();
    EXPECT_EQ(ValuesOf(list, "CCD"), (QStringList{"MAIN", "PROF"}));
    EXPECT_EQ(ValuesOf(list, "PolExstClu"), (QStringList{"Y", "Y"}));
    EXPECT_EQ(InRecord(list, "CCD", "MAIN", "PatExstClu"), "Y");
    const wire::Reply added =
        Send("AddCluster", {{"CCD", "NEW"}, {"CNM", "New"}, {"CPLID", ""}, {"BLT", "N"}});
    EXPECT_EQ(wire::FirstValue(added.fields, "CCD"), "NEW");
    const wire::Fields fresh = List().mid(List().indexOf({"CID", wire::FirstValue(added.fields, "CID")}));
    EXPECT_EQ(fresh.mid(1), (wire::Fields{{"CCD", "NEW"},
                                          {"CNM", "New"},
                                          {"CPL", ""},
                                          {"PolExstClu", "N"},
                                          {"PatExstClu", "N"},
                                          {"CalExstClu", "N"}}));
}

TEST_P(ClustersTest, FromAddToDelete) {
    const QString id = wire::FirstValue(Send("AddCluster", {{"CCD", "N"}, {"CNM", "New"}}).fields, "CID");
    EXPECT_EQ(
        StatusOf("UpdCluster", {{"CID", id}, {"CCD", "N2"}, {"CNM", "Newer"}, {"CPLID", ""}, {"BLT", "Y"}}),
        status::Ok);
    m_server->Restart();
    m_server->SignOnAs("SYSADMIN");
    EXPECT_EQ(Record(id), (wire::Fields{{"CCD", "N2"}, {"CNM", "Newer"}, {"CPL", ""}, {"BLT", "Y"}}));
    EXPECT_EQ(StatusOf("AddCluster", {{"CCD", "main"}, {"CNM", "X"}}), status::DuplicateCode);
    EXPECT_EQ(StatusOf("UpdCluster", {{"CID", id}, {"CCD", "N2"}, {"CNM", "University Libraries"}}),
              status::DuplicateName);
    EXPECT_EQ(StatusOf("UpdCluster", {{"CID", "999"}, {"CCD", "Q"}, {"CNM", "Q"}}), status::NotFound);
    EXPECT_EQ(StatusOf("AddCluster", {{"CCD", " "}, {"CNM", "X"}}), status::ColumnError);
    EXPECT_EQ(StatusOf("DelCluster", {{"CID", IdOf("MAIN")}}), status::InUse);
    EXPECT_EQ(StatusOf("DelCluster", {{"CID", id}}), status::Ok);
    EXPECT_EQ(StatusOf("DelCluster", {{"CID", id}}), status::NotFound);
}

TEST_P(ClustersTest, OneDeskAndOnePickupLocation) {
    const QString id = IdOf("PROF");
    const wire::Fields record = Record(id);
    const QStringList groups = ValuesOf(record, "CPGID");
    const QStringList desks = ValuesOf(record, "CLOCID");
    const QStringList pickups = ValuesOf(record, "CPLID");
    ASSERT_EQ(desks.size(), 3);
    ASSERT_EQ(Marked(record).size(), 1);
    EXPECT_EQ(wire::FirstValue(record, "CPL"), Marked(record)[0]);
    const auto save = [&](const QStringList& marks, const QString& pickup) {
        wire::Fields fields{{"CID", id}, {"CCD", "PROF"}, {"CNM", "Professional School Libraries"}};
        for (qsizetype i = 0; i < marks.size(); ++i)
            fields += {{"CPGID", groups[i]}, {"CLOCID", desks[i]}, {"COPCDF", marks[i]}};
        return StatusOf("UpdCluster", fields + wire::Fields{{"CPLID", pickup}, {"BLT", "N"}});
    };
    EXPECT_EQ(save({"N", "N", "Y"}, pickups[2]), status::Ok);
    EXPECT_EQ(Marked(Record(id)), QStringList{desks[2]});
    EXPECT_EQ(wire::FirstValue(Record(id), "CPL"), pickups[2]);
    EXPECT_EQ(save({"Y"}, pickups[2]), status::Ok) << "the mark moves, whoever had it";
    EXPECT_EQ(Marked(Record(id)), QStringList{desks[0]});
    EXPECT_EQ(save({"N", "N", "N"}, ""), status::Ok);
    EXPECT_TRUE(Marked(Record(id)).isEmpty());
    EXPECT_EQ(wire::FirstValue(Record(id), "CPL"), "");

    EXPECT_EQ(save({"Y", "Y", "N"}, ""), status::ColumnError);
    EXPECT_EQ(save({"yes"}, ""), status::ColumnError);
    EXPECT_EQ(save({"Y"}, ValuesOf(Record(IdOf("MAIN")), "CPLID")[0]), status::NotFound)
        << "a pickup location of another cluster";
    EXPECT_EQ(StatusOf("UpdCluster", {{"CID", id},
                                      {"CCD", "PROF"},
                                      {"CNM", "P"},
                                      {"CPGID", groups[0]},
                                      {"CLOCID", desks[1]},
                                      {"COPCDF", "Y"}}),
              status::NotFound)
        << "a location of another group";
    EXPECT_EQ(wire::FirstValue(Record(id), "CNM"), "Professional School Libraries") << "all or nothing";
    EXPECT_TRUE(Marked(Record(id)).isEmpty());
}

TEST_P(ClustersTest, RightsOfTheirOwnDecide) {
    const QString id = IdOf("PROF");
    const auto rights = [&](const QString& operatorId) {
        return Send("GetClusterSecurity", {{"SOI", operatorId}}).fields;
    };
    EXPECT_EQ(rights("SYSADMIN"),
              (wire::Fields{{"CluViewOnly", "N"}, {"CluCreate", "Y"}, {"CluEdit", "Y"}, {"CluDelete", "Y"}}));
    EXPECT_EQ(StatusOf("GetClusterSecurity", {{"SOI", "VIEWER"}}), status::NotAuthorised);
    EXPECT_EQ(StatusOf("GetClusterList", {{"OI", "VIEWER"}}), status::NotAuthorised);

    m_server->SignOnAs("VIEWER");
    EXPECT_EQ(wire::FirstValue(rights("VIEWER"), "CluViewOnly"), "Y");
    EXPECT_EQ(ValuesOf(List("VIEWER"), "CID").size(), 2);
    EXPECT_FALSE(Record(id).isEmpty());
    for (const char* name : {"AddCluster", "UpdCluster", "DelCluster"})
        EXPECT_EQ(StatusOf(name, {{"CID", id}, {"CCD", "X"}, {"CNM", "X"}}), status::NotAuthorised) << name;

    m_server->SignOnAs("CIRC");
    EXPECT_EQ(StatusOf("UpdCluster", {{"CID", id}, {"CCD", "PROF"}, {"CNM", "Renamed"}}), status::Ok);
    EXPECT_EQ(StatusOf("AddCluster", {{"CCD", "X"}, {"CNM", "X"}}), status::NotAuthorised);
    EXPECT_EQ(StatusOf("DelCluster", {{"CID", id}}), status::NotAuthorised);
}

TEST_P(ClustersTest, OthersSeeTheClustersOfTheirLocations) {
    m_server->GetDatabase().Run(
        "UPDATE master_profiles SET cluster_edit='N' WHERE name='Circulation Settings'");
    m_server->SignOnAs("CIRC");
    EXPECT_EQ(ValuesOf(List("CIRC"), "CCD"), QStringList{"MAIN"});
    m_server->GetDatabase().Run("DELETE FROM circulation_policy_locations WHERE location_id IN "
                                "(SELECT id FROM locations WHERE code LIKE 'MAIN%')");
    EXPECT_EQ(StatusOf("GetClusterList", {{"OI", "CIRC"}}), status::NoClusterLocation);
    m_server->SignOnAs("GUEST");
    EXPECT_EQ(StatusOf("GetClusterList", {{"OI", "GUEST"}}), status::NoClusterLocation);
    EXPECT_EQ(StatusOf("GetCluster", {{"CID", IdOf("MAIN")}}), status::NotAuthorised);
}

INSTANTIATE_ON_ENGINES(ClustersTest);

} // namespace
} // namespace sysadmin::testing
