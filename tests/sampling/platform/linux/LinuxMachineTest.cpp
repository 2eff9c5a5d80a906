#include "core/sampling/platform/linux/LinuxMachine.hpp"

#include "core/sampling/platform/NativeMachine.hpp"
#include "core/sampling/platform/UserNames.hpp"
#include "core/sampling/platform/linux/KeptFile.hpp"
#include "tests/Fixtures.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <fstream>
#include <numeric>
#include <string>

#include <signal.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

namespace ostrivane {

namespace {

using Kind = CoreLoad::Kind;
constexpr const char* laptop = "linux/laptop-intel-hybrid";
constexpr const char* desktop = "linux/desktop-amd";
constexpr const char* board = "linux/board-arm-big-little";
constexpr CPUTicks::Core off{};

/// The trees were made for pages of 4 KiB; the page size is the running system's.
class LinuxTrees : public testing::Test {
protected:
    void SetUp() override {
        if (::sysconf(_SC_PAGESIZE) != 4096)
            GTEST_SKIP() << "the expected pages have 4 KiB";
    }
};

std::uint64_t all(const CPUTicks::Core& core) {
    return std::accumulate(core.begin(), core.end(), std::uint64_t(0));
}

std::uint64_t busy(const CPUTicks::Core& core) {
    return all(core) - core[CPUTicks::idle];
}

/// The value of a line of the running system's /proc/meminfo, in bytes, by other means than the ones under test.
std::uint64_t meminfoLine(const std::string& wanted) {
    std::ifstream file("/proc/meminfo");
    std::string name, unit;
    for (std::uint64_t value = 0; file >> name >> value; std::getline(file, unit))
        if (name == wanted)
            return value * 1024;
    return 0;
}

} // namespace

TEST_F(LinuxTrees, laptopTellsItselfAndItsCores) {
    LinuxMachine machine(fixture(laptop));
    const HostInfo info = machine.host().info();
    EXPECT_EQ(info.marketingName, "ThinkPad X1 Carbon Gen 10");
    EXPECT_EQ(info.modelIdentifier, "21CBCTO1WW");
    EXPECT_EQ(info.cpuBrand, "12th Gen Intel(R) Core(TM) i7-1260P");
    EXPECT_EQ(info.physicalMemory, 32594416u * 1024ull);
    EXPECT_EQ(info.coreLayout, (CoreLayout{.performance = 8, .efficiency = 8, .logical = 16}));
    ASSERT_EQ(info.coreKinds.size(), 16u);
    for (const auto& [core, kind] : info.coreKinds)
        EXPECT_EQ(kind, core < 8 ? Kind::performance : Kind::efficiency) << core;
    EXPECT_EQ(machine.host().uptime(), 17421.55);
    EXPECT_EQ(machine.processor().loadAverage(), (LoadAverage{1.42, 1.10, 0.87}));
}

TEST_F(LinuxTrees, aHostTellsWhoseItIsAndWhatItHides) {
    const TemporaryTree tree;
    LinuxMachine machine(tree.path());
    EXPECT_FALSE(machine.host().info().hidesProcesses);
    tree.write("proc/self/mountinfo", "23 28 0:22 / /proc rw - proc proc rw,hidepid=invisible\n");
    EXPECT_TRUE(machine.host().info().hidesProcesses);
    EXPECT_EQ(machine.host().info().home, homeFolder());
}

TEST_F(LinuxTrees, laptopCountsTicksBetweenTwoReadings) {
    const TemporaryTree tree = copied(laptop);
    LinuxMachine machine(tree.path());
    const auto before = machine.processor().ticks();
    tree.layOver(fixture(laptop) / "later");
    const auto after = machine.processor().ticks(); // from the file that stayed open
    ASSERT_TRUE(before && after);
    ASSERT_EQ(before->perCore.size(), 16u);
    ASSERT_EQ(after->perCore.size(), 16u);
    EXPECT_FALSE(after->wraps32);
    EXPECT_EQ(busy(after->perCore[0]) - busy(before->perCore[0]), 60u);
    EXPECT_EQ(all(after->perCore[0]) - all(before->perCore[0]), 160u);
    EXPECT_LT(after->perCore[5][CPUTicks::idle], before->perCore[5][CPUTicks::idle]) << "the kernel settles it late";
    EXPECT_EQ(busy(after->perCore[5]) - busy(before->perCore[5]), 50u);
}

TEST_F(LinuxTrees, laptopFillsItsMemory) {
    LinuxMachine machine(fixture(laptop));
    const auto reading = machine.memory().reading();
    ASSERT_TRUE(reading);
    EXPECT_EQ(reading->counters.internalPages, 2782366u);
    EXPECT_EQ(reading->counters.externalPages, 3383515u);
    EXPECT_EQ(reading->counters.compressor, 20480u) << "zswap as it lies in memory; the zram device is not set up";
    EXPECT_EQ(reading->counters.wired, 909660u);
    EXPECT_EQ(reading->counters.free, 4210332u / 4);
    EXPECT_EQ(reading->availablePercent, 57);
    EXPECT_EQ(reading->swap, (SwapUsage{.total = 8388604ull * 1024, .used = 268435456}));
    EXPECT_EQ(reading->pressureLevel, 1);

    const TemporaryTree next = overlaid(laptop);
    const auto later = LinuxMachine(next.path()).memory().reading();
    ASSERT_TRUE(later);
    EXPECT_EQ(later->counters.swapins - reading->counters.swapins, 20u);
    EXPECT_EQ(later->counters.swapouts, reading->counters.swapouts);
}

TEST_F(LinuxTrees, laptopUnderPressure) {
    const TemporaryTree tree = copied(laptop);
    LinuxMachine machine(tree.path());
    const auto levelWith = [&](const char* state) {
        std::filesystem::copy_file(fixture(laptop) / "odd/proc/pressure" / state, tree.path() / "proc/pressure/memory",
                                   std::filesystem::copy_options::overwrite_existing);
        return machine.memory().reading()->pressureLevel;
    };
    EXPECT_EQ(machine.memory().reading()->pressureLevel, 1);
    EXPECT_EQ(levelWith("memory-warning"), 2);
    EXPECT_EQ(levelWith("memory-critical"), 4);
}

TEST_F(LinuxTrees, desktopHasPlaceholdersForANameAndCoresOfOneKind) {
    const HostInfo info = LinuxMachine(fixture(desktop)).host().info();
    EXPECT_EQ(info.marketingName, "ASUSTeK COMPUTER INC. TUF GAMING B550-PLUS");
    EXPECT_EQ(info.modelIdentifier, "PC");
    EXPECT_EQ(info.cpuBrand, "AMD Ryzen 5 5600X 6-Core Processor");
    EXPECT_EQ(info.coreLayout.logical, 11);
    EXPECT_EQ(info.coreLayout.efficiency, 0);
    EXPECT_EQ(info.coreKinds.size(), 32u) << "one for each that may ever come";
    for (const auto& [core, kind] : info.coreKinds)
        EXPECT_EQ(kind, Kind::unknown) << core;
}

TEST_F(LinuxTrees, desktopSwitchesACoreOffAndOn) {
    const TemporaryTree tree = copied(desktop);
    LinuxMachine machine(tree.path());
    const auto without = machine.processor().ticks();
    ASSERT_TRUE(without);
    ASSERT_EQ(without->perCore.size(), 12u) << "those that were seen, not the 32 that are possible";
    EXPECT_EQ(without->perCore[3], off);
    EXPECT_EQ(without->perCore[4][CPUTicks::user], 200040u) << "the cores behind keep their index";

    tree.layOver(fixture(desktop) / "later");
    const auto with = machine.processor().ticks();
    EXPECT_EQ(with->perCore[3][CPUTicks::user], 150000u);
    EXPECT_EQ(with->perCore[4][CPUTicks::user], 200060u);

    tree.write("proc/stat", "cpu  1 1 1 1\ncpu0 1 1 1 1\nintr 0\n");
    EXPECT_EQ(machine.processor().ticks()->perCore.size(), 12u) << "the last ones are off, and may come back";
    tree.write("proc/stat", "cpu0 1 1 1 1\ncpu14 1 1 1 1\ncpu32 1 1 1 1\n");
    EXPECT_EQ(machine.processor().ticks()->perCore.size(), 15u) << "more came; the machine can have no cpu32";
    EXPECT_FALSE(machine.processor().ticks()->perCore[14] == off);
}

TEST_F(LinuxTrees, desktopCountsTheCacheOfZFSAsCacheAndZRAMAsCompressed) {
    const TemporaryTree tree = copied(desktop);
    LinuxMachine machine(tree.path());
    const auto reading = machine.memory().reading();
    ASSERT_TRUE(reading);
    EXPECT_EQ(reading->counters.internalPages, 3712866u);
    EXPECT_EQ(reading->counters.externalPages, 8355080u);
    EXPECT_EQ(reading->counters.compressor, 271360u);
    EXPECT_EQ(reading->counters.wired, 1825436u);
    EXPECT_EQ(reading->availablePercent, 65);
    EXPECT_EQ(reading->swap, (SwapUsage{.total = 16777212ull * 1024, .used = 4194304ull * 1024, .isMemory = true}));

    tree.write("sys/devices/virtual/block/zram0/initstate", "0\n");
    EXPECT_EQ(machine.memory().reading()->counters.compressor, 0u) << "a device that was taken down";
}

TEST_F(LinuxTrees, boardTellsKindsByCapacityAndPressureByWhatIsAvailable) {
    LinuxMachine machine(fixture(board));
    const HostInfo info = machine.host().info();
    EXPECT_EQ(info.marketingName, "Radxa ROCK 5B");
    EXPECT_EQ(info.modelIdentifier, "radxa,rock-5b");
    EXPECT_EQ(info.cpuBrand, "Cortex-A76 + Cortex-A55");
    EXPECT_EQ(info.coreLayout, (CoreLayout{.performance = 4, .efficiency = 4, .logical = 8}));
    ASSERT_EQ(info.coreKinds.size(), 8u);
    for (const auto& [core, kind] : info.coreKinds)
        EXPECT_EQ(kind, core < 4 ? Kind::efficiency : Kind::performance) << core;
    const auto reading = machine.memory().reading();
    ASSERT_TRUE(reading);
    EXPECT_EQ(reading->availablePercent, 91);
    EXPECT_EQ(reading->pressureLevel, 1);
    EXPECT_EQ(reading->swap, SwapUsage{});
}

TEST(LinuxMachine, toldNothingSaysNothing) {
    for (const std::filesystem::path& path : {TemporaryTree().path(), std::filesystem::path("/nonexistent")}) {
        LinuxMachine machine(path);
        EXPECT_FALSE(machine.processor().ticks());
        EXPECT_FALSE(machine.processor().loadAverage());
        EXPECT_FALSE(machine.memory().reading());
        EXPECT_FALSE(machine.host().uptime());
        const HostInfo info = machine.host().info();
        EXPECT_EQ(info.marketingName, "PC");
        EXPECT_EQ(info.cpuBrand, "CPU");
        EXPECT_TRUE(info.coreKinds.empty());
    }
}

TEST(LinuxMachine, livesThroughFilesThatComeLateAndGo) {
    const TemporaryTree tree;
    LinuxMachine machine(tree.path());
    EXPECT_FALSE(machine.memory().reading());
    tree.write("proc/meminfo", "MemTotal: 4000 kB\nMemFree: 1000 kB\n");
    const auto bare = machine.memory().reading();
    ASSERT_TRUE(bare);
    EXPECT_FALSE(bare->pressureLevel);
    EXPECT_EQ(bare->counters.swapins, 0u);

    tree.write("proc/vmstat", "pswpin 10\npswpout 20\n");
    EXPECT_EQ(machine.memory().reading()->counters.swapins, 10u);
    tree.write("proc/vmstat", "");
    EXPECT_EQ(machine.memory().reading()->counters.swapins, 10u) << "else the next reading would be a burst";

    tree.write("proc/pressure/memory", "some avg10=20.00 avg60=0\nfull avg10=0.00 avg60=0\n");
    std::filesystem::create_directories(tree.path() / "sys/block");
    tree.write("sys/block/zram0/initstate", "1\n");
    tree.write("sys/block/zram0/mm_stat", "1 1 4096 1\n");
    std::optional<MemoryReading> reading;
    for (int count = 0; count <= KeptFile::restingReadings + 1; ++count)
        reading = machine.memory().reading();
    EXPECT_EQ(reading->pressureLevel, 2) << "an optional file is tried again now and then";
    EXPECT_GT(reading->counters.compressor, 0u) << "and devices are looked for";

    tree.write("proc/meminfo", "");
    EXPECT_FALSE(machine.memory().reading());
}

TEST(RootFolder, staysInsideWhateverThePath) {
    const TemporaryTree tree;
    tree.write("proc/version", "ours\n");
    tree.write("dev/disk/by-label/MY\\x20STICK", "");
    std::filesystem::create_symlink("../nowhere", tree.path() / "leads");
    const RootFolder root(tree.path());
    EXPECT_EQ(root.read("proc/version"), "ours\n");
    EXPECT_EQ(root.read("/proc/version"), "ours\n");
    EXPECT_FALSE(root.read("proc"));
    EXPECT_FALSE(root.read("leads"));
    EXPECT_EQ(root.link("leads"), "../nowhere");
    EXPECT_FALSE(root.link("proc/version"));
    EXPECT_FALSE(root.exists("leads"));
    EXPECT_TRUE(root.exists("proc"));
    EXPECT_EQ(root.list("dev/disk/by-label"), std::vector<std::string>{"MY\\x20STICK"});
    EXPECT_TRUE(root.list("proc/version").empty());
    EXPECT_TRUE(root.list("none").empty());
}

TEST(RootFolder, readsFilesOfAnySizeToTheirEnd) {
    const TemporaryTree tree;
    const RootFolder root(tree.path());
    for (const std::size_t size : {0u, 1u, 4095u, 4096u, 4097u, 100'000u}) {
        tree.write("file", std::string(size, 'x'));
        EXPECT_EQ(root.read("file"), std::string(size, 'x')) << size;
    }
    std::filesystem::create_symlink("/dev/zero", tree.path() / "endless");
    EXPECT_FALSE(root.read("endless"));
}

TEST(KeptFile, readsWhatTheFileHoldsNow) {
    const TemporaryTree tree;
    const RootFolder root(tree.path());
    KeptFile file(root, "text");
    EXPECT_FALSE(file.read());
    tree.write("text", "a longer text");
    EXPECT_EQ(file.read(), "a longer text") << "an expected file is tried every time";
    tree.write("text", "short");
    EXPECT_EQ(file.read(), "short") << "nothing of the text before is left";
}

TEST(KeptFile, opensAnewWhatCannotBeReadAnyMore) {
    // What /proc tells about a process that is gone is such a file: its descriptor answers ESRCH for good.
    const pid_t child = ::fork();
    if (child == 0) {
        ::pause();
        ::_exit(0);
    }
    ASSERT_GT(child, 0);
    const TemporaryTree tree;
    std::filesystem::create_symlink("/proc/" + std::to_string(child) + "/comm", tree.path() / "name");
    const RootFolder root(tree.path());
    KeptFile file(root, "name");
    EXPECT_TRUE(file.read());
    ::kill(child, SIGKILL);
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_FALSE(file.read());
    tree.remove("name");
    tree.write("name", "another");
    EXPECT_EQ(file.read(), "another");
}

TEST(LinuxNative, agreesWithWhatTheSystemSaysOtherwise) {
    const auto machine = nativeMachine();
    const HostInfo info = machine->host().info();
    EXPECT_EQ(nativeMachine()->platform(), Platform::Linux);
    EXPECT_EQ(info.pageSize, static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE)));
    EXPECT_EQ(info.physicalMemory, meminfoLine("MemTotal:"));
    EXPECT_GT(info.physicalMemory, 0u);
    EXPECT_EQ(info.coreLayout.logical, ::sysconf(_SC_NPROCESSORS_ONLN));
    EXPECT_EQ(info.nanosPerTick, 1) << "what processes used is told in nanoseconds";
    EXPECT_EQ(info.userID, ::getuid());
    EXPECT_FALSE(info.cpuBrand.empty());
    EXPECT_FALSE(info.marketingName.empty());

    timespec sinceBoot{};
    ASSERT_EQ(::clock_gettime(CLOCK_BOOTTIME, &sinceBoot), 0);
    EXPECT_GE(machine->host().uptime().value_or(0), static_cast<double>(sinceBoot.tv_sec));

    std::array<double, 3> load{};
    ASSERT_EQ(::getloadavg(load.data(), 3), 3);
    const auto averages = machine->processor().loadAverage();
    ASSERT_TRUE(averages);
    EXPECT_NEAR((*averages)[2], load[2], 0.5);
}

TEST(LinuxNative, countersOfCoresGoOn) {
    const auto machine = nativeMachine();
    const auto before = machine->processor().ticks();
    ASSERT_TRUE(before);
    EXPECT_GE(static_cast<long>(before->perCore.size()), ::sysconf(_SC_NPROCESSORS_ONLN));
    const double hertz = static_cast<double>(::sysconf(_SC_CLK_TCK));
    const double sinceBoot = machine->host().uptime().value_or(0);
    // A core's counters are all of its time: none has more than there was since boot, in the unit that is claimed.
    EXPECT_LE(static_cast<double>(all(before->perCore[0])) / hertz, sinceBoot * 1.1 + 1);
    for (int count = 0; count < 3; ++count) {
        const auto after = machine->processor().ticks();
        ASSERT_TRUE(after);
        EXPECT_GE(after->perCore[0][CPUTicks::user], before->perCore[0][CPUTicks::user]);
        EXPECT_GE(after->perCore[0][CPUTicks::system], before->perCore[0][CPUTicks::system]);
    }
}

TEST(LinuxNative, memoryAddsUp) {
    const auto machine = nativeMachine();
    const HostInfo info = machine->host().info();
    const auto reading = machine->memory().reading();
    ASSERT_TRUE(reading);
    const VMCounters& pages = reading->counters;
    EXPECT_EQ(pages.free + pages.internalPages + pages.externalPages + pages.compressor + pages.wired,
              info.physicalMemory / info.pageSize);
    const double free = static_cast<double>(meminfoLine("MemFree:"));
    EXPECT_NEAR(static_cast<double>(pages.free * info.pageSize), free, static_cast<double>(info.physicalMemory) / 10);
    ASSERT_TRUE(reading->availablePercent);
    EXPECT_GE(*reading->availablePercent, 0);
    EXPECT_LE(*reading->availablePercent, 100);
    EXPECT_EQ(reading->swap.value_or(SwapUsage()).total, meminfoLine("SwapTotal:"));
}

} // namespace ostrivane
