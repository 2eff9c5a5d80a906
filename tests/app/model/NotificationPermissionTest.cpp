#include "app/model/NotificationPermission.hpp"

#include <gtest/gtest.h>

namespace ostrivane {
namespace {

TEST(NotificationPermission, deliversWhatIsAllowedAndAsksOnlyWhoWasNotAsked) {
    EXPECT_EQ(notificationStep(0), NotificationStep::ask);
    EXPECT_EQ(notificationStep(1), NotificationStep::nothing);
    EXPECT_EQ(notificationStep(2), NotificationStep::deliver);
    EXPECT_EQ(notificationStep(3), NotificationStep::deliver);
    for (const long unknown : {-1L, 4L, 1L << 32})
        EXPECT_EQ(notificationStep(unknown), NotificationStep::nothing) << unknown;
}

TEST(NotificationPermission, isForPackagedApplications) {
    EXPECT_TRUE(isApplicationBundle("/Applications/Ostrivane.app"));
    EXPECT_TRUE(isApplicationBundle("/Applications/Ostrivane.app/"));
    for (const char* bare : {"", "/", "/usr/local/bin", "/opt/Ostrivane.app/Contents/MacOS", "/opt/app", "/opt/.app"})
        EXPECT_FALSE(isApplicationBundle(bare)) << bare;
}

} // namespace
} // namespace ostrivane
