#include "core/attribution/UnitLeaders.hpp"

#include <gtest/gtest.h>

namespace ostrivane {
namespace {

TEST(UnitLeaders, areTheFirstOfTheirUnitWhateverTheirPid) {
    // Process ids start anew at the end of their range: the first of a unit need not have the lowest.
    const std::vector<UnitMember> members{{300, 8, "/a"}, {900, 5, "/a"}, {20, 9, "/a"}, {31, 7, "/b"},
                                          {30, 7, "/b"},  {40, 1, ""},    {41, 0, ""}};
    EXPECT_EQ(unitLeaders(members), (std::vector<std::int32_t>{900, 900, 900, 30, 30, 40, 41}));
    EXPECT_TRUE(unitLeaders({}).empty());
}

} // namespace
} // namespace ostrivane
