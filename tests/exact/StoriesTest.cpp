#include "exact/ScreenStory.h"

namespace sysadmin::exact {

namespace {

using sysadmin::testing::Story;

TEST_P(ScreenStory, GoesAsItIsWritten) {
    Tell();
}

INSTANTIATE_TEST_SUITE_P(, ScreenStory,
                         ::testing::ValuesIn(sysadmin::testing::ReadStories("tests/exact/stories")),
                         [](const auto& story) { return sysadmin::testing::NameOf(story.param); });

} // namespace

} // namespace sysadmin::exact
