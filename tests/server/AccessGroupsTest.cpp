#include "support/TestServer.h"
#include "wire/Status.h"

#include <gtest/gtest.h>

namespace sysadmin::testing {
namespace {

using namespace server;

const QString V4 = "0000:0000:0000:0000:0000:ffff:";
const QString V6 = "2001:0db8:0000:0000:0000:0000:0000:";

class AccessGroupsTest : public ::testing::Test {
protected:
    wire::Reply Send(const QString& name, const wire::Fields& fields = {}) {
        return m_server.Send(name, fields);
    }
    /// Adds a group of the type with these members; its id.
    QString AddGroup(const QString& type, const wire::Fields& members) {
        const wire::Reply reply =
            Send("AddAG", wire::Fields{{"T", type}, {"C", "NEW"}, {"N", "New"}} + members);
        EXPECT_EQ(reply.status, status::Ok);
        return wire::FirstValue(reply.fields, "I");
    }
    qint16 Update(const QString& id, const QString& type, const wire::Fields& members) {
        return Send("UpdAG", wire::Fields{{"T", type}, {"I", id}, {"C", "NEW"}, {"N", "New"}} + members +
                                 wire::Fields{{"NCd", "N"}, {"NNm", "N"}})
            .status;
    }
    /// The members of a group as they were sent.
    wire::Fields Members(const QString& id) {
        wire::Fields members;
        for (const wire::Field& field : Send("GetAG", {{"I", id}}).fields)
            if (QStringList{"DN", "IP", "MI", "XI", "SI"}.contains(field.tag))
                members << field;
        return members;
    }

    TestServer m_server;
};

TEST_F(AccessGroupsTest, MembersOfEachTypeAreKeptInOrder) {
    const wire::Fields domains{{"DN", "b.example.org"}, {"DN", "a.example.org"}};
    const wire::Fields addresses{{"IP", V6 + "0001"}, {"IP", V4 + "0a00:0001"}};
    const wire::Fields ranges{
        {"MI", V6 + "0001"}, {"XI", V6 + "00ff"}, {"MI", V4 + "0a00:0000"}, {"XI", V4 + "0a00:00ff"}};
    const QStringList patrons = ValuesOf(Send("AvlAG").fields, "AI");
    ASSERT_EQ(patrons.size(), 21);
    const wire::Fields groups{{"SI", patrons[0]}, {"SI", patrons[3]}};

    const QString id = AddGroup("D", domains);
    EXPECT_EQ(Members(id), domains);
    for (const auto& [type, members] :
         QList<QPair<QString, wire::Fields>>{{"I", addresses}, {"R", ranges}, {"P", groups}, {"R", ranges}}) {
        EXPECT_EQ(Update(id, type, members), status::Ok) << type.toStdString();
        m_server.Restart();
        m_server.SignOnAs("SYSADMIN");
        EXPECT_EQ(Members(id), members) << "members of another type are gone";
        EXPECT_EQ(InRecord(Send("LstAG").fields, "I", id, "T"), type);
    }
    EXPECT_EQ(ValuesOf(Send("GetAG", {{"I", id}}).fields, "AI").size(), 21);
    EXPECT_EQ(Update(id, "R", {}), status::Ok);
    EXPECT_EQ(Members(id), wire::Fields{});
    EXPECT_EQ(m_server.Value("SELECT COUNT(*) FROM access_group_members WHERE group_id=" + id), "0");
}

TEST_F(AccessGroupsTest, RefusesWhatIsNotInOrder) {
    const QString id = AddGroup("I", {{"IP", V4 + "0a00:0001"}});
    const QList<QPair<QString, wire::Fields>> wrong{
        {"D", {{"DN", "nodot"}}},
        {"D", {{"DN", "a.org"}, {"DN", "A.org"}}},
        {"I", {{"IP", "10.0.0.1"}}},
        {"I", {{"IP", (V4 + "0A00:0001")}}},
        {"I", {{"IP", V6 + "0001"}, {"IP", V4 + "0a00:0001"}, {"IP", V6 + "0001"}}},
        {"R", {{"MI", V4 + "0a00:0001"}, {"XI", V4 + "0a00:0001"}}},
        {"R", {{"MI", V4 + "0a00:0001"}}},
        {"R",
         {{"MI", V4 + "0a00:0010"},
          {"XI", V4 + "0a00:0020"},
          {"MI", V4 + "0a00:0001"},
          {"XI", V4 + "0a00:0010"}}},
        {"X", {}},
        {"", {}},
    };
    for (const auto& [type, members] : wrong)
        EXPECT_EQ(Update(id, type, members), status::ColumnError)
            << type.toStdString() << ' ' << members.value(0).value.toStdString();
    EXPECT_EQ(Update(id, "P", {{"SI", "99999"}}), status::NotFound);
    EXPECT_EQ(Members(id), (wire::Fields{{"IP", V4 + "0a00:0001"}})) << "all or nothing";
    EXPECT_EQ(Send("AddAG", {{"T", "D"}, {"C", "campus"}, {"N", "X"}}).status, status::DuplicateCode);
    EXPECT_EQ(Send("AddAG", {{"T", "D"}, {"C", "X"}, {"N", "campus networks"}}).status,
              status::DuplicateName);
    EXPECT_EQ(Send("UpdAG", {{"T", "D"}, {"I", "999"}, {"C", "X"}, {"N", "X"}}).status, status::NotFound);
    EXPECT_EQ(Send("GetAG", {{"I", "999"}}).status, status::NotFound);
}

TEST_F(AccessGroupsTest, AdjacentRangesAndRights) {
    const QString id = AddGroup("R", {{"MI", V4 + "0a00:0000"},
                                      {"XI", V4 + "0a00:00ff"},
                                      {"MI", V4 + "0a00:0100"},
                                      {"XI", V4 + "0a00:01ff"}});
    const auto remove = [&](const QString& group) { return Send("DelAG", {{"I", group}}).status; };
    m_server.SignOnAs("VIEWER");
    EXPECT_EQ(Members(id).size(), 4);
    EXPECT_EQ(remove(id), status::NotAuthorised);
    EXPECT_EQ(Update(id, "R", {}), status::NotAuthorised);
    m_server.SignOnAs("CIRC");
    EXPECT_EQ(Send("LstAG").status, status::NotAuthorised);
    m_server.SignOnAs("SYSADMIN");
    EXPECT_EQ(remove(m_server.Value("SELECT id FROM access_groups WHERE code='FACSTAFF'")), status::InUse);
    EXPECT_EQ(remove(id), status::Ok);
    EXPECT_EQ(remove(id), status::NotFound);
    EXPECT_EQ(m_server.Value("SELECT COUNT(*) FROM access_group_members WHERE group_id=" + id), "0");
}

} // namespace
} // namespace sysadmin::testing
