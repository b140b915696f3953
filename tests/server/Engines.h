#pragma once

#include "server/store/StoreAddress.h"

#include <gtest/gtest.h>

#include <optional>

namespace sysadmin::testing {

/// An empty database for a library on the engine; none means a directory of the test's own. Where no server
/// can be started the test is skipped, with the reason.
std::optional<server::StoreAddress> EmptyPlace(server::StoreAddress::Engine engine);

/// For tests that run on each database engine: an empty place for a library on the engine under test.
class EngineTest : public ::testing::TestWithParam<server::StoreAddress::Engine> {
protected:
    void SetUp() override { m_address = EmptyPlace(GetParam()); }
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
