#include "core/sampling/platform/linux/LinuxGraphics.hpp"

#include "core/sampling/GPUCollector.hpp"
#include "core/sampling/platform/linux/NVMLLoading.hpp"
#include "tests/Fixtures.hpp"
#include "tests/sampling/platform/FakeNVML.hpp"

#include <gtest/gtest.h>

#include <array>
#include <initializer_list>
#include <set>

#include <fcntl.h>
#include <sys/inotify.h>
#include <unistd.h>

using namespace ostrivane;

namespace {

namespace fs = std::filesystem;

/// A machine whose files and time a test moves.
class Computer {
public:
    explicit Computer(const fs::path& path, std::optional<NVMLLibrary> library = std::nullopt)
        : root(path), graphics(
                          root, [this] { return now; },
                          [this, library] {
                              ++loaded;
                              return library;
                          }) {}

    /// A moment later.
    std::vector<AcceleratorReading> accelerators(double seconds = 1) {
        now += seconds;
        return graphics.accelerators();
    }
    PidMap<std::uint64_t> processTimes(double seconds = 1) {
        now += seconds;
        return graphics.processTimes();
    }
    AcceleratorStatistics first(double seconds = 1) {
        const auto found = accelerators(seconds);
        return found.empty() ? AcceleratorStatistics{} : found[0].statistics.value_or(AcceleratorStatistics{});
    }

    double now = 1000;
    int loaded = 0;
    RootFolder root;
    LinuxGraphics graphics;
};

/// Counts how often the files of a folder are opened.
class OpenedFiles {
public:
    explicit OpenedFiles(const fs::path& folder) : descriptor(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
        EXPECT_GE(::inotify_add_watch(descriptor.get(), folder.c_str(), IN_OPEN), 0) << folder;
    }

    /// The names since the last call.
    std::vector<std::string> names() {
        std::vector<std::string> found;
        alignas(inotify_event) std::array<char, 65536> events;
        const ssize_t size = ::read(descriptor.get(), events.data(), events.size());
        for (ssize_t at = 0; at < size;) {
            const auto* event = reinterpret_cast<const inotify_event*>(events.data() + at);
            if (event->len > 0)
                found.emplace_back(event->name);
            at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
        }
        return found;
    }

private:
    FileDescriptor descriptor;
};

const fs::path awakeCard = "sys/devices/pci0000:00/0000:00:03.1/0000:08:00.0/0000:09:00.0/0000:0a:00.0";
const fs::path sleepingCard = "sys/devices/pci0000:00/0000:00:03.2/0000:0b:00.0";
const fs::path intelCard = "sys/devices/pci0000:00/0000:00:02.0";

/// A copy of those parts of a fixture tree in which a test changes something; all of it would take long.
class PartOfTree : public TemporaryTree {
public:
    PartOfTree(const fs::path& machine, std::initializer_list<fs::path> parts) {
        for (const fs::path& part : parts) {
            fs::create_directories((path() / part).parent_path());
            fs::copy(fixture("linux") / machine / part, path() / part,
                     fs::copy_options::recursive | fs::copy_options::copy_symlinks);
        }
    }
};
struct DesktopTree : PartOfTree {
    DesktopTree() : PartOfTree("desktop-amd", {"sys/class/drm", awakeCard, sleepingCard}) {}
};
struct LaptopTree : PartOfTree {
    LaptopTree() : PartOfTree("laptop-intel-hybrid", {"sys/class/drm", intelCard, "proc/1300", "proc/3300"}) {}
};

std::string clientText(int client, std::uint64_t renderNanos) {
    return "drm-driver:\ti915\ndrm-client-id:\t" + std::to_string(client) +
           "\ndrm-pdev:\t0000:00:02.0\ndrm-engine-render:\t" + std::to_string(renderNanos) + " ns\n";
}

void link(const TemporaryTree& tree, const fs::path& name, const fs::path& target) {
    fs::create_directories((tree.path() / name).parent_path());
    fs::create_symlink(target, tree.path() / name);
}

void addClient(const TemporaryTree& tree, const std::string& process, int descriptor, const std::string& text) {
    const std::string number = std::to_string(descriptor);
    link(tree, "proc/" + process + "/fd/" + number, "/dev/dri/renderD128");
    tree.write("proc/" + process + "/fdinfo/" + number, text);
}

/// A tree with a card of NVIDIA's driver at the address "0000:01:00.0".
void addNVIDIA(const TemporaryTree& tree, std::string_view control, std::string_view status) {
    const std::string folder = "sys/bus/pci/drivers/nvidia/0000:01:00.0";
    tree.write(folder + "/vendor", "0x10de\n");
    tree.write(folder + "/device", "0x2684\n");
    tree.write(folder + "/power/control", control);
    tree.write(folder + "/power/runtime_status", status);
    tree.write("sys/bus/pci/drivers/nvidia/new_id", "");
}

} // namespace

TEST(LinuxGraphics, readsWhatAMDsDriverTells) {
    Computer desktop(fixture("linux/desktop-amd"));
    const auto found = desktop.accelerators();
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[0].name, "Radeon RX 6700/6700 XT/6750 XT / 6800M/6850M XT");
    EXPECT_EQ(found[0].statistics->devicePercent, 37.0);
    EXPECT_EQ(found[0].statistics->memoryInUse, 2147483648u);
    EXPECT_FALSE(found[0].statistics->rendererPercent) << "no client can be read";
    EXPECT_EQ(found[1].name, "AMD GPU");
    EXPECT_EQ(GPUCollector::read(found, "Ryzen").utilization, 0.37);
}

TEST(LinuxGraphics, neverTouchesAChipThatSleeps) {
    const DesktopTree tree;
    Computer desktop(tree.path());
    desktop.accelerators();
    OpenedFiles opened(tree.path() / sleepingCard);
    AcceleratorStatistics asleep;
    asleep.devicePercent = 0;
    for (int tick = 0; tick < 3; ++tick)
        EXPECT_EQ(desktop.accelerators().at(1).statistics, asleep);
    EXPECT_EQ(opened.names(), std::vector<std::string>{});

    tree.write(sleepingCard / "power/runtime_status", "active\n");
    EXPECT_EQ(desktop.accelerators().at(1).statistics->devicePercent, 99.0);
    EXPECT_FALSE(opened.names().empty()) << "the count of openings works";
    tree.write(sleepingCard / "power/runtime_status", "suspending\n");
    EXPECT_EQ(desktop.accelerators().at(1).statistics, asleep);
    EXPECT_EQ(opened.names(), std::vector<std::string>{});
}

TEST(LinuxGraphics, letsAnIdleChipFallAsleep) {
    const DesktopTree tree;
    tree.write(awakeCard / "power/autosuspend_delay_ms", "3000\n");
    tree.write(awakeCard / "gpu_busy_percent", "0\n");
    Computer desktop(tree.path());
    EXPECT_EQ(desktop.first().devicePercent, 0.0);
    tree.write(awakeCard / "gpu_busy_percent", "64\n");
    EXPECT_EQ(desktop.first(3.5).devicePercent, 0.0) << "asking would put off its sleep";
    EXPECT_EQ(desktop.first(1).devicePercent, 64.0);
    tree.write(awakeCard / "gpu_busy_percent", "0\n");
    EXPECT_EQ(desktop.first().devicePercent, 0.0);
    tree.write(awakeCard / "gpu_busy_percent", "65\n");
    desktop.graphics.setPageShown(true);
    EXPECT_EQ(desktop.first().devicePercent, 65.0);
    desktop.graphics.setPageShown(false);
    EXPECT_EQ(desktop.first().devicePercent, 65.0) << "it works";
}

TEST(LinuxGraphics, addsSharedMemoryWhereTheProcessorHasTheChip) {
    const DesktopTree tree;
    tree.write(awakeCard / "mem_info_vram_total", "536870912\n");
    tree.write(awakeCard / "mem_info_vram_used", "100\n");
    tree.write(awakeCard / "mem_info_gtt_used", "7\n");
    EXPECT_EQ(Computer(tree.path()).first().memoryInUse, 107u);
    tree.write(awakeCard / "product_name", "A board of its own\n");
    EXPECT_EQ(Computer(tree.path()).first().memoryInUse, 100u);
    tree.remove(awakeCard / "mem_info_vram_total");
    EXPECT_EQ(Computer(tree.path()).first().memoryInUse, 100u);
}

TEST(LinuxGraphics, hasNoFigureForTextThatIsNone) {
    const DesktopTree tree;
    for (const char* text : {"", "-1\n", "<unknown>\n", "busy", "1 2\n"}) {
        tree.write(awakeCard / "gpu_busy_percent", text);
        tree.write(awakeCard / "mem_info_vram_used", text);
        EXPECT_EQ(Computer(tree.path()).first(), AcceleratorStatistics{}) << text;
    }
}

TEST(LinuxGraphics, addsUpTheTimeOfOwnProcesses) {
    Computer laptop(fixture("linux/laptop-intel-hybrid"));
    EXPECT_EQ(laptop.processTimes(), (PidMap<std::uint64_t>{{1300, 25862044495}, {3300, 9000000000}}));
    EXPECT_EQ(laptop.processTimes(), (PidMap<std::uint64_t>{{1300, 25862044495}, {3300, 9000000000}}));
}

TEST(LinuxGraphics, tellsTheBusiestEngineOfClientsThatCanBeRead) {
    const LaptopTree tree;
    Computer laptop(tree.path());
    const auto first = laptop.accelerators();
    ASSERT_EQ(first.size(), 1u);
    EXPECT_EQ(first[0].name, "Intel GPU") << "no list of names is installed";
    EXPECT_EQ(first[0].statistics, AcceleratorStatistics{}) << "nothing to compare with";
    tree.write("proc/3300/fdinfo/70", clientText(31, 9'500'000'000));
    const AcceleratorStatistics half = laptop.first(2);
    EXPECT_EQ(half.devicePercent, 25.0);
    EXPECT_EQ(half.rendererPercent, 25.0);
    EXPECT_FALSE(half.memoryInUse || half.memoryAllocated || half.tilerPercent);
    EXPECT_EQ(laptop.processTimes(0.01).at(3300), 9'500'000'000u);
    tree.remove("proc/1300");
    tree.remove("proc/3300");
    EXPECT_EQ(laptop.first(3), AcceleratorStatistics{}) << "no client to be read";
}

TEST(LinuxGraphics, asksNoClientOfAChipThatSleeps) {
    const LaptopTree tree;
    link(tree, "sys/class/drm/renderD128/device", "../../../devices/pci0000:00/0000:00:02.0");
    Computer laptop(tree.path());
    laptop.accelerators();
    tree.write(intelCard / "power/runtime_status", "suspended\n");
    OpenedFiles shell(tree.path() / "proc/1300/fdinfo"), firefox(tree.path() / "proc/3300/fdinfo");
    EXPECT_EQ(laptop.first().devicePercent, 0.0);
    EXPECT_EQ(laptop.processTimes().at(3300), 9'000'000'000u) << "it stands";
    EXPECT_TRUE(shell.names().empty() && firefox.names().empty());
    tree.write(intelCard / "power/runtime_status", "active\n");
    tree.write("proc/3300/fdinfo/70", clientText(31, 9'250'000'000));
    EXPECT_EQ(laptop.first().devicePercent, 25.0);
}

TEST(LinuxGraphics, findsClientsThatComeAndGo) {
    const LaptopTree tree;
    Computer laptop(tree.path());
    laptop.processTimes();
    addClient(tree, "9001", 4, clientText(90, 5000));
    EXPECT_EQ(laptop.processTimes(3).at(9001), 5000u) << "a new process";
    addClient(tree, "9001", 6, clientText(91, 7000));
    laptop.processTimes(3);
    tree.write("proc/9001/fdinfo/6", clientText(91, 7400));
    EXPECT_EQ(laptop.processTimes(3).at(9001), 5400u) << "a second client, from when it was found";
    addClient(tree, "9001", 7, clientText(90, 6000)); // duplicated, and the first one closed
    tree.remove("proc/9001/fd/4");
    tree.remove("proc/9001/fdinfo/4");
    EXPECT_TRUE(laptop.processTimes(0.3).contains(9001)) << "the other client is left";
    EXPECT_TRUE(laptop.processTimes(0.3).contains(9001));
    tree.write("proc/9001/fdinfo/7", clientText(90, 6500));
    EXPECT_EQ(laptop.processTimes(0.3).at(9001), 5900u) << "found again under another number";
    tree.remove("proc/9001");
    EXPECT_FALSE(laptop.processTimes(3).contains(9001));
}

// Gone through in pieces, so that no tick waits; others have their turn meanwhile.
TEST(LinuxGraphics, isNotHeldUpByAProcessWithManyDescriptors) {
    const LaptopTree tree;
    Computer laptop(tree.path());
    laptop.processTimes();
    constexpr int links = DRMClients::linksPerReading + 600, apart = 40;
    std::size_t clients = 0;
    for (int i = 0; i < links; ++i)
        if (i % apart == 0)
            addClient(tree, "9001", i, clientText(1000 + static_cast<int>(++clients), 1));
        else
            link(tree, "proc/9001/fd/" + std::to_string(i), "/dev/null");
    OpenedFiles asked(tree.path() / "proc/9001/fdinfo");
    std::set<std::string> found;
    const auto read = [&](double seconds) {
        const auto times = laptop.processTimes(seconds);
        for (std::string& name : asked.names())
            found.insert(std::move(name));
        return times;
    };
    read(3);
    EXPECT_LT(found.size(), clients);
    addClient(tree, "9002", 5, clientText(92, 6000));
    EXPECT_TRUE(read(3).contains(9002)) << "a new process need not wait";
    read(1);
    EXPECT_EQ(found.size(), clients);
}

TEST(LinuxGraphics, boundsWhatOneProcessCanCost) {
    const LaptopTree tree;
    constexpr int many = 4 * static_cast<int>(DRMClients::clientsPerProcess);
    for (int i = 0; i < many; ++i)
        addClient(tree, "9001", i, clientText(1000 + i, 1));
    Computer laptop(tree.path());
    EXPECT_EQ(laptop.processTimes().at(9001), DRMClients::clientsPerProcess);
    EXPECT_EQ(laptop.processTimes().at(1300), 25862044495u);
}

TEST(LinuxGraphics, readsABoardsChipByItsDriver) {
    const PartOfTree tree("board-arm-big-little", {"sys/class/drm", "sys/devices/platform/fb000000.gpu"});
    const std::string usage = "drm-driver:\tpanthor\ndrm-client-id:\t5\ndrm-engine-panthor:\t";
    addClient(tree, "700", 3, usage + "1000000000 ns\n");
    Computer board(tree.path());
    EXPECT_EQ(board.accelerators().at(0).name, "panthor");
    tree.write("proc/700/fdinfo/3", usage + "1500000000 ns\n");
    const AcceleratorStatistics half = board.first(1);
    EXPECT_EQ(half.devicePercent, 50.0);
    EXPECT_FALSE(half.rendererPercent) << "no engine by that name";
}

TEST(LinuxGraphics, passesOverWhatOnlyShowsAPicture) {
    const TemporaryTree tree;
    Computer server(tree.path());
    EXPECT_TRUE(server.accelerators().empty());
    EXPECT_TRUE(server.processTimes().empty());
    for (int number = 0; const char* driver : {"ast", "virtio_gpu", "simple-framebuffer"}) {
        const std::string card = "sys/class/drm/card" + std::to_string(number++);
        tree.write(card + "/device/vendor", "0x1a03\n");
        tree.write(card + "/device/uevent", std::string("DRIVER=") + driver + "\n");
        EXPECT_TRUE(server.accelerators().empty()) << driver;
    }
    tree.write("sys/class/drm/card7/device/uevent", "DRIVER=rockchip-drm\n");
    tree.write("sys/class/drm/card7/device/drm/card7/dev", "226:7\n"); // and no node to compute with
    tree.write("sys/class/drm/card9-HDMI-A-1/status", "connected\n");
    EXPECT_TRUE(server.accelerators().empty());
    EXPECT_EQ(GPUCollector::read(server.accelerators(), "Processor").name, "Processor");
    tree.write("sys/class/drm/card8/device/uevent", "DRIVER=xe\n");
    tree.write("sys/class/drm/card8/device/drm/renderD128/dev", "226:128\n");
    EXPECT_EQ(server.accelerators().size(), 1u) << "plugged in";
}

TEST(LinuxGraphics, keepsNVIDIAsLibraryOpenOnlyWhereNothingSleeps) {
    const TemporaryTree tree;
    FakeNVML fake;
    fake.chips[0] = {.name = "Fast", .percent = 70, .memoryUsed = 5};
    Computer computer(tree.path(), FakeNVML::library());
    EXPECT_TRUE(computer.accelerators().empty());
    EXPECT_EQ(computer.loaded, 0) << "no chip, no library";

    addNVIDIA(tree, "on\n", "active\n");
    EXPECT_EQ(computer.accelerators().at(0).name, "Fast");
    EXPECT_EQ(computer.first().devicePercent, 70.0);
    EXPECT_TRUE(fake.isOpen());
    EXPECT_EQ(fake.initialised, 1);

    addNVIDIA(tree, "auto\n", "active\n");
    const auto unseen = computer.accelerators();
    EXPECT_FALSE(fake.isOpen()) << "the chip may sleep now";
    ASSERT_EQ(unseen.size(), 1u);
    EXPECT_EQ(unseen[0], (AcceleratorReading{.name = "NVIDIA GPU", .statistics = AcceleratorStatistics{}}));
    computer.graphics.setPageShown(true);
    EXPECT_EQ(computer.first().devicePercent, 70.0);
    EXPECT_EQ(fake.initialised, 2);
    EXPECT_FALSE(fake.isOpen()) << "closed at once";

    addNVIDIA(tree, "auto\n", "suspended\n");
    EXPECT_EQ(computer.first().devicePercent, 0.0);
    EXPECT_EQ(fake.initialised, 2) << "left asleep";
    EXPECT_EQ(computer.loaded, 1);
}

TEST(LinuxGraphics, joinsTheTimesOfNVIDIAsProcesses) {
    const LaptopTree tree;
    FakeNVML fake;
    const auto sampleAt = [&fake](std::uint64_t seconds) {
        fake.chips[0].samples = {{.pid = 3300, .atMicros = seconds * 1'000'000, .compute = 50},
                                 {.pid = 99999, .atMicros = seconds * 1'000'000, .compute = 50}};
    };
    for (const bool maySleep : {false, true}) {
        addNVIDIA(tree, maySleep ? "auto\n" : "on\n", "active\n");
        Computer laptop(tree.path(), FakeNVML::library());
        laptop.graphics.setPageShown(maySleep);
        sampleAt(10);
        laptop.accelerators();
        EXPECT_EQ(laptop.processTimes(0).at(3300), 9'000'000'000u);
        sampleAt(12);
        EXPECT_EQ(laptop.accelerators(2).size(), 2u);
        const auto times = laptop.processTimes(0);
        EXPECT_EQ(times.at(3300), 10'000'000'000u) << "on both chips";
        EXPECT_FALSE(times.contains(99999)) << "it has ended";
    }
}

TEST(LinuxGraphics, doesWithoutALibraryThatDoesNotOpen) {
    const TemporaryTree tree;
    addNVIDIA(tree, "on\n", "active\n");
    const std::vector<AcceleratorReading> named{{.name = "NVIDIA GPU", .statistics = AcceleratorStatistics{}}};
    Computer without(tree.path());
    EXPECT_EQ(without.accelerators(), named);
    EXPECT_TRUE(without.processTimes().empty());
    FakeNVML fake;
    fake.initResult = 18;
    Computer updated(tree.path(), FakeNVML::library());
    EXPECT_EQ(updated.accelerators(), named);
    fake.initResult = 0;
    for (int i = 0; i < 100; ++i)
        updated.accelerators();
    EXPECT_EQ(fake.initialised, 0) << "until the program starts again";
}

TEST(NVMLLoading, takesAWholeLibraryAndNoOther) {
    EXPECT_FALSE(loadNVML("libostrivane-none.so.1"));
    EXPECT_FALSE(loadNVML("libm.so.6")) << "a library without the functions";
    const auto library = loadNVML(OSTRIVANE_FAKE_NVML);
    ASSERT_TRUE(library);
    EXPECT_FALSE(library->processSamples) << "it has none";
    NVML loaded(*library);
    ASSERT_TRUE(loaded.open());
    AcceleratorReading want{.name = "Loaded Chip", .statistics = AcceleratorStatistics{}};
    want.statistics->devicePercent = 12;
    want.statistics->memoryInUse = 1000;
    EXPECT_EQ(loaded.accelerators(), std::vector{want});
}
