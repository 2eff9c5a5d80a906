#include "tests/history/Misfortune.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include <sched.h>
#include <sys/mount.h>

namespace ostrivane {
namespace {

using misfortune::inChild;
using misfortune::integrity;
using misfortune::live;
using misfortune::snapshotAt;
using misfortune::start;

TEST(HistoryMisfortune, waitsForSpaceAndThenWritesWhatWaited) {
    TemporaryFolder folder;
    const bool allowed = inChild([&] {
        if (::unshare(CLONE_NEWNS) != 0 && ::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0)
            return false;
        ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr);
        if (::mount("none", folder.path().c_str(), "tmpfs", 0, "size=1m") != 0)
            return false;
        StoreHarness harness(folder.file("history.sqlite"));
        live(harness, 0, 3);
        const std::string ballast = folder.file("ballast");
        {
            std::ofstream fill(ballast, std::ios::binary);
            const std::string block(4096, 'x');
            while (fill.write(block.data(), static_cast<std::streamsize>(block.size())).flush())
                ;
        }
        live(harness, 4, 200);
        EXPECT_EQ(harness.problem(), "database or disk is full");
        const auto rows = harness.systemRows();
        EXPECT_EQ(rows.size(), 200U) << "those that wait are read like those in the file";
        std::filesystem::remove(ballast);
        harness.now = harness.now + 60;
        harness.ingest(snapshotAt(start + 201 * 60));
        EXPECT_EQ(harness.problem(), std::nullopt);
        EXPECT_EQ(harness.status().pendingSystem, 0);
        EXPECT_EQ(harness.systemRows().size(), 201U);
        harness.open();
        EXPECT_EQ(harness.systemRows().size(), 201U);
        EXPECT_EQ(integrity(harness.path), "ok");
        return true;
    });
    if (!allowed)
        GTEST_SKIP() << "no file system may be mounted here";
}

} // namespace
} // namespace ostrivane
