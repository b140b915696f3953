#pragma once

#include "server/store/StoreAddress.h"

#include <gtest/gtest.h>

#include <optional>

namespace sysadmin::testing {

/// What is in a new library's place.
enum class Beginning { Sample, Nothing };

/// A place for a library on the engine; none means a directory of the test's own. Where no server can be
/// started the test is skipped, with the reason.
std::optional<server::StoreAddress> NewPlace(server::StoreAddress::Engine engine, Beginning content);

/// For tests that run on each database engine: a place for a library on the engine under test.
class EngineTest : public ::testing::TestWithParam<server::StoreAddress::Engine> {
protected:
    explicit EngineTest(Beginning content = Beginning::Sample)
        : m_content(content) {}
    void SetUp() override { m_address = NewPlace(GetParam(), m_content); }
    std::optional<server::StoreAddress> Address() const { return m_address; }

private:
    Beginning m_content;
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
