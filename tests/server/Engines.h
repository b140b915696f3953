#pragma once

#include "server/store/StoreAddress.h"

#include <gtest/gtest.h>

#include <optional>

namespace sysadmin::testing {

/// For tests that run on each database engine: an empty place for a library on the engine under test.
/// PostgreSQL tests are skipped, with the reason, where no server can be started.
class EngineTest : public ::testing::TestWithParam<server::StoreAddress::Engine> {
protected:
    void SetUp() override;
    /// None means a directory of the test's own.
    std::optional<server::StoreAddress> Address() const { return m_address; }

private:
    std::optional<server::StoreAddress> m_address;
};

} // namespace sysadmin::testing

#define INSTANTIATE_ON_ENGINES(suite)                                                                        \
    INSTANTIATE_TEST_SUITE_P(                                                                                \
        , suite,                                                                                             \
        ::testing::Values(server::StoreAddress::Engine::Sqlite, server::StoreAddress::Engine::PostgreSql),   \
        [](const auto& engine) {                                                                             \
            return engine.param == server::StoreAddress::Engine::Sqlite ? "SQLite" : "PostgreSQL";           \
        })
