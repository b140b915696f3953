#include "Engines.h"

#include "support/PostgresServer.h"

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

std::optional<StoreAddress> EmptyPlace(StoreAddress::Engine engine) {
    if (engine == StoreAddress::Engine::Sqlite)
        return {};
    PostgresServer& server = postgres->Server();
    if (!server.Reason().isEmpty()) {
        Skip(server.Reason());
        return {};
    }
    static int number = 0;
    return server.MakeDatabase(QString("library%1").arg(++number));
}

} // namespace sysadmin::testing
