#include "core/sampling/platform/MountInfo.hpp"

#include <gtest/gtest.h>

#include <string>

using namespace ostrivane;

namespace {

std::string procWith(std::string_view options) {
    return "22 28 0:21 / /sys rw,nosuid shared:7 - sysfs sysfs rw\n"
           "23 28 0:22 / /proc rw,nosuid,relatime shared:13 master:2 - proc proc " +
           std::string(options) + "\n28 1 0:25 /@ / rw - btrfs /dev/sda1 rw\n";
}

bool hides(const std::string& text, const std::vector<std::uint32_t>& groups = {1000}) {
    return MountInfo::hidesProcesses(MountInfo::parse(text), groups);
}

TEST(MountInfo, tellsWhetherProcHidesProcesses) {
    for (const char* options : {"rw,hidepid=1", "rw,hidepid=2", "rw,hidepid=4", "rw,hidepid=noaccess",
                                "rw,gid=4,hidepid=invisible", "hidepid=ptraceable,subset=pid"})
        EXPECT_TRUE(hides(procWith(options))) << options;
    for (const char* options : {"rw", "rw,hidepid=0", "rw,hidepid=off", "rw,xhidepid=2", "rw,hidepid", "hidepid=12"})
        EXPECT_FALSE(hides(procWith(options))) << options;
    EXPECT_FALSE(hides(procWith("rw,gid=1000,hidepid=2"))) << "this group is spared";
    EXPECT_FALSE(hides(procWith("rw,hidepid=2"), {0})) << "root's group is, when no other is named";
    EXPECT_TRUE(hides(procWith("rw,gid=1000,hidepid=4"))) << "but from this way nobody";
    const std::string over = "90 28 0:70 / /proc rw - ";
    EXPECT_FALSE(hides(procWith("rw,hidepid=2") + over + "proc proc rw\n")) << "the later mount is the one seen";
    EXPECT_FALSE(hides(procWith("rw,hidepid=2") + over + "tmpfs tmpfs rw\n"));
    EXPECT_FALSE(hides("23 28 0:22 / /home/ada/proc rw - proc proc rw,hidepid=2\n"));
    EXPECT_FALSE(hides(""));
}

TEST(MountInfo, readsWholeLinesAlone) {
    const std::string whole = "48 43 8:1 / /run/media/My\\040Stick rw - fuse.sshfs me@host:/a rw,user_id=1";
    for (std::size_t size = 0; size < whole.find(" rw,user"); ++size)
        EXPECT_TRUE(MountInfo::parse(whole.substr(0, size)).empty()) << size;
    const std::string text = "\n\n" + whole + "\nnonsense\n";
    const auto mounts = MountInfo::parse(text);
    ASSERT_EQ(mounts.size(), 1u);
    EXPECT_EQ(mounts[0].point, "/run/media/My\\040Stick");
    EXPECT_EQ(mounts[0].type, "fuse.sshfs");
    EXPECT_TRUE(mounts[0].mayHang());
    EXPECT_FALSE(MountInfo::seenAt("/", mounts));
}

} // namespace
