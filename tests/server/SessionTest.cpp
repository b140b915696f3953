#include "Engines.h"

#include "support/TestServer.h"

namespace sysadmin::testing {
namespace {

using namespace server;

class SessionTest : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        if (!IsSkipped())
            m_server = std::make_unique<TestServer>(TestServer::Options{.address = Address()});
    }

    int CountTypes(const QString& code) {
        return m_server->Value("SELECT COUNT(*) FROM vendor_types WHERE code=?", {code}).toInt();
    }

    std::unique_ptr<TestServer> m_server;
};
INSTANTIATE_ON_ENGINES(SessionTest);

const wire::Fields Zine{{"Cd", "ZINE"}, {"Nm", "Zines"}};

TEST_P(SessionTest, ARequestSentAgainIsNotCarriedOutAgain) {
    TestClient& client = m_server->Client();
    ASSERT_EQ(client.Send("LstVenTp").status, status::Ok);
    const auto reply = client.SendNumbered(2, "AddItmTp", {{"Cd", "globe"}, {"Nm", "Globe"}});
    ASSERT_TRUE(reply);
    ASSERT_EQ(reply->status, status::Ok);
    EXPECT_EQ(client.SendNumbered(2, "AddItmTp", {{"Cd", "globe"}, {"Nm", "Globe"}}), reply);

    // The server went down before the reply arrived.
    const QString token = client.Token();
    m_server->Restart();
    ASSERT_EQ(m_server->Client().Resume(token, 1), status::Ok);
    EXPECT_EQ(m_server->Client().SendNumbered(2, "AddItmTp", {{"Cd", "globe"}, {"Nm", "Globe"}}), reply);
    EXPECT_EQ(m_server->Value("SELECT COUNT(*) FROM item_types WHERE code='globe'"), "1");
    EXPECT_EQ(m_server->Value("SELECT COUNT(*) FROM history_records"), "1");
    EXPECT_EQ(m_server->Client().SendNumbered(3, "LstVenTp")->status, status::Ok);
}

TEST_P(SessionTest, NumbersKeepTheirOrder) {
    TestClient& client = m_server->Client();
    EXPECT_EQ(client.SendNumbered(1, "AddVenTp", Zine)->status, status::Ok);
    EXPECT_EQ(client.SendNumbered(2, "AddVenTp", Zine)->status, status::DuplicateCode);
    EXPECT_EQ(client.SendNumbered(2, "AddVenTp", Zine)->status, status::DuplicateCode);
    EXPECT_EQ(client.SendNumbered(3, "LstVenTp")->status, status::Ok);
    EXPECT_EQ(client.SendNumbered(3, "LstVenTp")->status, status::Ok);
    EXPECT_FALSE(client.SendNumbered(2, "DelVenTp", {{"Cd", "ZINE"}}));
    EXPECT_FALSE(client.SendNumbered(4, "LstVenTp")) << "cut off for good";

    // Replies to reads are not kept, so the first number after a resume may be any higher one; then they
    // count on.
    const auto again = m_server->Connect();
    ASSERT_EQ(again->Resume(client.Token(), 3), status::Ok);
    EXPECT_EQ(again->SendNumbered(4, "LstVenTp")->status, status::Ok);
    EXPECT_FALSE(again->SendNumbered(6, "DelVenTp", {{"Cd", "ZINE"}}));
    EXPECT_EQ(CountTypes("ZINE"), 1);
}

TEST_P(SessionTest, OnlyTheLastConnectionHasTheSession) {
    const auto second = m_server->Connect();
    ASSERT_EQ(second->Resume(m_server->Client().Token(), 0), status::Ok);
    // A request that was held up on the old connection must not happen after all.
    EXPECT_FALSE(m_server->Client().SendNumbered(1, "AddVenTp", Zine));
    EXPECT_EQ(CountTypes("ZINE"), 0);
    EXPECT_EQ(second->Send("AddVenTp", Zine).status, status::Ok);
}

TEST_P(SessionTest, TwoServersOnOneLibraryAreOne) {
    TestServer other({.address = Address().value_or(StoreAddress::InDirectory(m_server->Directory()))});
    TestClient& client = m_server->Client();
    ASSERT_EQ(client.Send("LstVenTp").status, status::Ok);
    const auto reply = client.SendNumbered(2, "AddVenTp", Zine);
    ASSERT_EQ(reply->status, status::Ok);

    // The first one is gone; its client goes on at the second, where nothing happens twice.
    const auto moved = other.Connect();
    ASSERT_EQ(moved->Resume(client.Token(), 1), status::Ok);
    EXPECT_EQ(moved->SendNumbered(2, "AddVenTp", Zine), reply);
    EXPECT_EQ(CountTypes("ZINE"), 1);
    EXPECT_FALSE(client.SendNumbered(3, "DelVenTp", {{"Cd", "ZINE"}})) << "the first has it no more";

    // What one of them changes about an operator's rights holds at the other from the next request on.
    other.SignOnAs("VIEWER");
    ASSERT_EQ(other.Send("LstVenTp").status, status::Ok);
    const qint64 row = other.Value("SELECT id FROM operators WHERE operator_id='VIEWER'").toLongLong();
    const QString profile =
        other.Value("SELECT profile_id FROM master_profile_operators WHERE operator_row=?", {row});
    m_server->SignOnAs("SYSADMIN");
    ASSERT_EQ(m_server->StatusOf("DelMPrf", {{"ID", profile}}), status::Ok);
    EXPECT_EQ(other.Send("LstVenTp").status, status::NotAuthorised);
}

TEST_P(SessionTest, SessionsEnd) {
    TestClient& client = m_server->Client();
    const QString token = client.Token();
    m_server->Advance(11 * 3600);
    EXPECT_EQ(client.Send("LstVenTp").status, status::Ok);
    m_server->Advance(11 * 3600); // a request came in between
    EXPECT_EQ(client.Send("LstVenTp").status, status::Ok);
    m_server->Advance(13 * 3600);
    EXPECT_EQ(client.Send("LstVenTp").status, status::CommunicationsFailure);
    EXPECT_EQ(m_server->Connect()->Resume(token, 3), status::InvalidSignOn);

    m_server->SignOnAs("SYSADMIN");
    const QString second = m_server->Client().Token();
    EXPECT_EQ(m_server->Client().Ask("SignOff")->status, status::Ok);
    EXPECT_EQ(m_server->Connect()->Resume(second, 0), status::InvalidSignOn);
    EXPECT_EQ(m_server->Connect()->Resume("", 0), status::InvalidSignOn);

    m_server->SignOnAs("GUEST");
    m_server->GetDatabase().Run("DELETE FROM sessions WHERE operator_row IN (SELECT id FROM operators WHERE "
                                "operator_id='GUEST')");
    EXPECT_EQ(m_server->Client().Send("LstLoc").status, status::CommunicationsFailure);
    // The token is kept as a hash only.
    EXPECT_EQ(m_server->Value("SELECT COUNT(*) FROM sessions WHERE token_hash=?", {second}), "0");
}

TEST_P(SessionTest, BeforeSignOnThereIsNothingToGet) {
    const auto stranger = m_server->Connect();
    EXPECT_EQ(stranger->Ask("LstVenTp")->status, status::UnknownRequest);
    EXPECT_EQ(stranger->Ask("ChgOwnPwd")->status, status::InvalidSignOn);
    EXPECT_FALSE(stranger->SendNumbered(1, "LstVenTp"));
    EXPECT_FALSE(stranger->Connection().Handle("garbage"));
    EXPECT_FALSE(stranger->Ask("Hello", {{"X", QString(70'000, 'x')}})) << "too long before sign-on";
    EXPECT_EQ(m_server->Send("AddVenTp", {{"Cd", "X"}, {"Nm", QString(70'000, 'x')}}).status,
              status::ColumnError);
}

} // namespace
} // namespace sysadmin::testing
