#include "core/sampling/platform/linux/LinuxFiles.hpp"
#include "tests/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace ostrivane {
namespace {

RootFolder treeWith(const TemporaryFolder& folder, const std::string& mountinfo) {
    std::filesystem::create_directories(folder.path() / "proc/self");
    std::ofstream(folder.path() / "proc/self/mountinfo") << mountinfo;
    return RootFolder(folder.path());
}

TEST(MountTable, tellsWhichPathsMayNeverAnswer) {
    const TemporaryFolder folder;
    const RootFolder root = treeWith(folder, "1 0 8:1 / / rw - ext4 /dev/sda1 rw\n"
                                             "2 1 0:50 / /home/ada/far\\040away rw - nfs4 server:/x rw\n"
                                             "3 2 0:51 / /home/ada/far\\040away/near rw - tmpfs tmpfs rw\n"
                                             "4 1 0:52 / /mnt/phone rw - fuse.something thing rw\n"
                                             "5 1 0:53 / /srv rw - nfs server:/y rw\n"
                                             "6 1 8:2 / /srv rw - xfs /dev/sda2 rw\n");
    MountTable mounts(root);
    EXPECT_FALSE(mounts.mayHang("/home/ada/code"));
    EXPECT_TRUE(mounts.mayHang("/home/ada/far away"));
    EXPECT_TRUE(mounts.mayHang("/home/ada/far away/shop/package.json"));
    EXPECT_FALSE(mounts.mayHang("/home/ada/far away/near/x"));
    EXPECT_FALSE(mounts.mayHang("/home/ada/far awayish"));
    EXPECT_TRUE(mounts.mayHang("/mnt/phone/DCIM"));
    EXPECT_FALSE(mounts.mayHang("/srv/data")) << "what was mounted later is seen";
    const RootFolder silent = treeWith(folder, "");
    EXPECT_TRUE(MountTable(silent).mayHang("/home")) << "nothing tells";
}

TEST(LinuxFiles, nothingLiesWhereNobodyMayAnswer) {
    const TemporaryFolder folder;
    const std::string file = folder.file("package.json");
    std::ofstream(file) << "{}";
    const RootFolder root = treeWith(folder, "1 0 8:1 / / rw - ext4 /dev/sda1 rw\n");
    LinuxFiles files(root);
    EXPECT_TRUE(files.exists(file));
    EXPECT_EQ(files.read(file), "{}");
    const RootFolder remote = treeWith(folder, "1 0 8:1 / / rw - nfs4 server:/ rw\n");
    LinuxFiles far(remote);
    EXPECT_FALSE(far.exists(file));
    EXPECT_FALSE(far.read(file));
    EXPECT_TRUE(far.list(folder.path().string()).empty());
}

} // namespace
} // namespace ostrivane
