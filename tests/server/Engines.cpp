#include "Engines.h"

#include "support/PostgresServer.h"
#include "support/TestServer.h"

namespace sysadmin::testing {

using namespace server;

namespace {

/// One server for all tests of the program: starting it takes longer than they do.
class PostgresEnvironment : public ::testing::Environment {
public:
    PostgresServer& Server() {
        if (!m_server)
            m_server = std::make_unique<PostgresServer>();
        return *m_server;
    }
    void TearDown() override { m_server.reset(); }

private:
    std::unique_ptr<PostgresServer> m_server;
};

auto* const postgres = new PostgresEnvironment;
[[maybe_unused]] auto* const registered = ::testing::AddGlobalTestEnvironment(postgres);

} // namespace

namespace {

void Skip(const QString& reason) {
    GTEST_SKIP() << reason.toStdString();
}

} // namespace

std::optional<StoreAddress> NewPlace(StoreAddress::Engine engine, Beginning content) {
    if (engine == StoreAddress::Engine::Sqlite)
        return {};
    PostgresServer& server = postgres->Server();
    if (!server.Reason().isEmpty()) {
        Skip(server.Reason());
        return {};
    }
    // Filling one takes longer than most tests: it is done once.
    static QString sample;
    if (content == Beginning::Sample && sample.isEmpty()) {
        sample = "sample";
        TestServer({.address = server.MakeDatabase(sample), .signOnAs = ""});
    }
    static int number = 0;
    return server.MakeDatabase(QString("library%1").arg(++number),
                               content == Beginning::Sample ? sample : QString());
}

} // namespace sysadmin::testing
