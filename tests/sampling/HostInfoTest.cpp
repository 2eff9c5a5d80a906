#include "core/sampling/HostInfo.hpp"

#include <gtest/gtest.h>

namespace ostrivane {
namespace {

TEST(HostInfo, marketingNameIsTheSystemsOwnOrThatOfTheFamily) {
    EXPECT_EQ(marketingName("MacBook Pro (14-inch, 2023)", "Mac14,9"), "MacBook Pro (14-inch, 2023)");
    EXPECT_EQ(marketingName("", "MacBookPro18,3"), "MacBook Pro");
    EXPECT_EQ(marketingName("", "MacBookAir10,1"), "MacBook Air");
    EXPECT_EQ(marketingName("", "Macmini9,1"), "Mac mini");
    EXPECT_EQ(marketingName("", "iMac21,1"), "iMac");
    EXPECT_EQ(marketingName("", "MacPro7,1"), "Mac Pro");
    EXPECT_EQ(marketingName("", "Mac14,2"), "Mac");
    EXPECT_EQ(marketingName("", "VirtualMachine1,1"), "VirtualMachine1,1");
}

} // namespace
} // namespace ostrivane
