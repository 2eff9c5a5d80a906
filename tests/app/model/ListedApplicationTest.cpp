#include "app/model/ListedApplication.hpp"

#include <gtest/gtest.h>

namespace ostrivane {
namespace {

TEST(ListedApplication, isRecognisableWithABundleAndAFace) {
    EXPECT_EQ(recognisable({{.bundlePath = "/A.app", .activationPolicy = 0, .pid = 10},
                            {.bundlePath = "/Menu.app", .activationPolicy = 1, .pid = 11},
                            {.bundlePath = "/Hidden.app", .activationPolicy = 2, .pid = 12},
                            {.bundlePath = std::nullopt, .activationPolicy = 0, .pid = 13},
                            {.bundlePath = "/Ended.app", .activationPolicy = 0, .pid = -1}}),
              (RunningApps{{"/A.app", 10}, {"/Menu.app", 11}}));
}

TEST(ListedApplication, standsOnceForItsBundle) {
    EXPECT_EQ(recognisable({{.bundlePath = "/A.app", .pid = 10},
                            {.bundlePath = "/A.app", .pid = 20},
                            {.bundlePath = "/A.app", .pid = -1}}),
              (RunningApps{{"/A.app", 20}}));
}

} // namespace
} // namespace ostrivane
