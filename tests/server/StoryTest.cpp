#include "Story.h"
#include "Engines.h"

namespace sysadmin::testing {
namespace {

using Engine = server::StoreAddress::Engine;

class StoryTest : public ::testing::TestWithParam<std::tuple<Story, Engine>> {};

TEST_P(StoryTest, GoesAsItIsWritten) {
    const auto& [story, engine] = GetParam();
    const auto place = NewPlace(engine, Beginning::Sample);
    if (IsSkipped())
        return;
    TestServer server({.address = place, .servesOthers = story.note == u"for others"});
    Teller(story, server).Tell();
}

std::vector<std::tuple<Story, Engine>> All() {
    std::vector<std::tuple<Story, Engine>> all;
    for (const Story& story : ReadStories("tests/server/stories")) {
        all.emplace_back(story, Engine::Sqlite);
        if (story.note == u"both engines")
            all.emplace_back(story, Engine::PostgreSql);
    }
    return all;
}

std::string NameOfCase(const ::testing::TestParamInfo<std::tuple<Story, Engine>>& info) {
    const auto& [story, engine] = info.param;
    return NameOf(story) + (engine == Engine::Sqlite ? "_SQLite" : "_PostgreSQL");
}

INSTANTIATE_TEST_SUITE_P(, StoryTest, ::testing::ValuesIn(All()), NameOfCase);

} // namespace
} // namespace sysadmin::testing
