#include "core/sampling/platform/linux/LinuxProcesses.hpp"

#include "tests/Fixtures.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>

#include <sys/wait.h>
#include <unistd.h>

namespace ostrivane {
namespace {

constexpr std::size_t anyNumber = 10'000;

LinuxProcesses::Units units(std::uint32_t user) {
    return {.bootTime = Date{1'000'000}, .ticksPerSecond = 100, .pageSize = 4096, .userID = user};
}

const ProcessReading* find(const std::vector<ProcessReading>& all, std::int32_t pid) {
    const auto found =
        std::ranges::find_if(all, [&](const ProcessReading& reading) { return reading.info.pid == pid; });
    return found == all.end() ? nullptr : &*found;
}

TEST(LinuxProcesses, readsTheLaptopsProcesses) {
    const RootFolder root(fixture("linux/laptop-intel-hybrid"));
    LinuxProcesses processes(root, units(::getuid()), anyNumber);
    const auto& all = processes.all();
    const auto zombies = std::ranges::count_if(
        all, [](const ProcessReading& reading) { return reading.info.status == ProcessInfo::zombie; });
    EXPECT_EQ(static_cast<std::int64_t>(all.size()) - zombies, 33);
    EXPECT_EQ(zombies, 1);

    const ProcessReading* editor = find(all, 4521);
    ASSERT_TRUE(editor && editor->usage);
    EXPECT_EQ(editor->info.startTime, (Date{1'000'000 + 1200}));
    EXPECT_EQ(editor->usage->cpuTicks, 95'000'000'000u) << "nanoseconds";
    EXPECT_GE(editor->usage->footprint, 52'500u * 4096) << "shared memory is left out; what is swapped out counts";
    EXPECT_EQ(editor->usage->diskRead, 300'000'000u);
    EXPECT_EQ(editor->usage->diskWritten, 90'000'000u);
    EXPECT_EQ(editor->threads, 40);
    EXPECT_EQ(find(all, 6400)->info.name, "a) R (b c\nd");
    EXPECT_TRUE(find(all, 6400)->info.hasTerminal);
    EXPECT_EQ(find(all, 1400)->info.name, "tracker-miner-fs-3");
    EXPECT_EQ(find(all, 6430)->info.status, ProcessInfo::stopped);
    EXPECT_TRUE(find(all, 2)->info.isKernelThread);
    EXPECT_EQ(processes.path(6410), "/home/ada/bin/old") << "replaced since it was started";
    ASSERT_TRUE(processes.arguments(3590));
    EXPECT_EQ(processes.arguments(3590)->size(), 5u) << "it wrote all over its arguments";
    EXPECT_FALSE(processes.path(2));
    EXPECT_FALSE(processes.arguments(999'999));
    EXPECT_FALSE(processes.origin(4521).controlGroups.empty());
}

TEST(LinuxProcesses, whatIsHiddenIsRestrictedUnlessItIsTheUsersOwn) {
    const RootFolder root(fixture("linux/laptop-intel-hybrid"));
    LinuxProcesses own(root, units(::getuid()), anyNumber);
    const ProcessReading* hidden = find(own.all(), 1350); // it has no io
    ASSERT_TRUE(hidden && hidden->usage) << "its load and memory are real";
    EXPECT_EQ(hidden->usage->diskRead, 0u);
    LinuxProcesses others(root, units(::getuid() + 1), anyNumber);
    EXPECT_FALSE(find(others.all(), 1350)->usage);
    const auto totals = others.totals();
    ASSERT_TRUE(totals);
    EXPECT_GT(totals->at(1350).rssKB, 0u) << "but anybody may know this much";
}

TEST(LinuxProcesses, followsTheRunningSystemWithManyAndWithFewDescriptors) {
    for (const std::size_t limit : {anyNumber, std::size_t{0}}) {
        const RootFolder root;
        LinuxProcesses processes(root, units(::getuid()), limit);
        const pid_t child = ::fork();
        if (child == 0)
            for (;;)
                ::pause();
        const auto seen = [&](pid_t pid) {
            const ProcessReading* reading = find(processes.all(), pid);
            return reading && reading->info.status != ProcessInfo::zombie;
        };
        EXPECT_TRUE(seen(child));
        EXPECT_EQ(processes.path(child), processes.path(::getpid()));
        const auto before = find(processes.all(), ::getpid())->usage;
        ASSERT_TRUE(before);
        for (volatile std::uint64_t work = 0; find(processes.all(), ::getpid())->usage->cpuTicks <= before->cpuTicks;)
            for (int step = 0; step < 1'000'000; ++step)
                work = work + 1;
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        EXPECT_FALSE(seen(child)) << limit;
        EXPECT_TRUE(std::ranges::is_sorted(processes.all(), {}, [](const auto& one) { return one.info.pid; }));
    }
}

TEST(LinuxProcesses, anIdThatWasReusedIsAnotherProcess) {
    for (const std::size_t limit : {anyNumber, std::size_t{0}}) {
        const TemporaryTree tree = copied("linux/laptop-intel-hybrid");
        const RootFolder root(tree.path());
        LinuxProcesses processes(root, units(::getuid()), limit);
        const ProcessInfo before = find(processes.all(), 6430)->info;
        tree.layOver(fixture("linux/laptop-intel-hybrid/later"));
        const ProcessInfo after = find(processes.all(), 6430)->info;
        EXPECT_NE(before.startTime, after.startTime) << limit;
    }
    const TemporaryTree empty;
    const RootFolder nothing(empty.path());
    LinuxProcesses none(nothing, units(0), anyNumber);
    EXPECT_TRUE(none.all().empty());
    EXPECT_FALSE(none.totals());
}

} // namespace
} // namespace ostrivane
