#include "core/sampling/platform/macos/MacProcesses.hpp"

#include "core/sampling/platform/macos/WallClock.hpp"
#include "tests/macsim/MacSimTest.hpp"

#include <libproc.h>

#include <algorithm>
#include <cstring>

using namespace ostrivane;

namespace {

class MacProcessesTest : public MacSimTest {
protected:
    static constexpr std::int32_t kernel = 0, service = 341, browser = 812, server = 4312, zombie = 5001;

    std::optional<ProcessReading> reading(std::int32_t pid) {
        const auto& all = processes.all();
        const auto found = std::ranges::find(all, pid, [](const ProcessReading& one) { return one.info.pid; });
        return found == all.end() ? std::nullopt : std::optional(*found);
    }

    std::vector<std::int32_t> ids() {
        std::vector<std::int32_t> found;
        for (const ProcessReading& one : processes.all())
            found.push_back(one.info.pid);
        return found;
    }

    /// The process ends just ahead of the call.
    static void endBefore(const char* call, std::int32_t pid) {
        macsim::processTable().meanwhile = [call, pid](const std::string& next, std::int32_t of) {
            if (next == call && of == pid)
                macsim::processTable().processes.erase(pid);
        };
    }

    static macsim::Process& process(std::int32_t pid) { return macsim::processTable().processes.at(pid); }

    static std::ptrdiff_t calls(const char* name) { return std::ranges::count(macsim::processTable().calls, name); }

    MacProcesses processes;
};

template <class Number>
void put(std::vector<std::byte>& record, std::size_t offset, Number value) {
    ASSERT_LE(offset + sizeof(value), record.size());
    std::memcpy(record.data() + offset, &value, sizeof(value));
}

std::vector<std::byte> region(std::int32_t count, std::string_view rest) {
    std::vector<std::byte> bytes(sizeof(count) + rest.size());
    std::memcpy(bytes.data(), &count, sizeof(count));
    std::memcpy(bytes.data() + sizeof(count), rest.data(), rest.size());
    return bytes;
}

} // namespace

TEST_F(MacProcessesTest, readsOwnProcessesWhole) {
    const auto node = reading(server);
    ASSERT_TRUE(node);
    EXPECT_EQ(node->info, (ProcessInfo{.pid = 4312,
                                       .ppid = 4290,
                                       .uid = 501,
                                       .name = "node",
                                       .status = ProcessInfo::running,
                                       .startTime = Date{1714725296.25},
                                       .hasTerminal = true}));
    ASSERT_TRUE(node->usage);
    EXPECT_EQ(*node->usage, (ProcessUsage{.cpuTicks = 1440000000,
                                          .footprint = 150994944,
                                          .diskRead = 10485760,
                                          .diskWritten = 5242880,
                                          .energyNJ = 31500000000,
                                          .wakeups = 2400}));
    EXPECT_EQ(node->threads, 13);
    EXPECT_EQ(calls("KERN_PROC_PID"), 2) << "only for those whose whole record is kept from us";
    EXPECT_EQ(reading(browser)->info.name, "Google Chrome Helper (Renderer)");
    EXPECT_FALSE(reading(browser)->info.hasTerminal);
}

TEST_F(MacProcessesTest, tellsOfOthersOnlyWhatIsTold) {
    const auto shown = reading(service);
    ASSERT_TRUE(shown);
    EXPECT_EQ(shown->info, (ProcessInfo{.pid = 341,
                                        .ppid = 1,
                                        .uid = 88,
                                        .name = "WindowServer",
                                        .status = ProcessInfo::running,
                                        .startTime = Date{1714640400.5}}));
    EXPECT_FALSE(shown->usage);
    EXPECT_FALSE(shown->threads);
    EXPECT_FALSE(processes.arguments(service));
    EXPECT_FALSE(processes.currentDirectory(service));
    EXPECT_TRUE(processes.path(service)->ends_with("/WindowServer"));
    macsim::processTable().userID = 0;
    EXPECT_EQ(reading(service)->threads, 13) << "root is told all";
}

TEST_F(MacProcessesTest, knowsTheKernelByItsID) {
    const auto all = reading(kernel);
    ASSERT_TRUE(all);
    EXPECT_EQ(all->info.name, "kernel_task");
    EXPECT_TRUE(all->info.isKernelThread);
    EXPECT_FALSE(reading(service)->info.isKernelThread);
    EXPECT_FALSE(reading(server)->info.isKernelThread);
    EXPECT_FALSE(processes.path(kernel));
    EXPECT_FALSE(processes.arguments(kernel));
}

TEST_F(MacProcessesTest, listsAscendingWithoutZombiesAndNegativeIDs) {
    macsim::processTable().processes[-7] = process(server);
    EXPECT_EQ(ids(), (std::vector{kernel, service, browser, server}));
    EXPECT_EQ(ids(), (std::vector{kernel, service, browser, server})) << "not added to those of the call before";
    EXPECT_FALSE(processes.path(zombie));
    EXPECT_FALSE(processes.arguments(zombie));
    EXPECT_FALSE(processes.currentDirectory(zombie));
}

TEST_F(MacProcessesTest, listsNothingWhenEitherListIsRefused) {
    for (const char* call : {"proc_listallpids count", "proc_listallpids"}) {
        ASSERT_FALSE(ids().empty());
        macsim::refuse(call);
        EXPECT_TRUE(ids().empty()) << call;
        macsim::reset();
    }
}

TEST_F(MacProcessesTest, keepsToItsRoomWhileProcessesStart) {
    const auto startOthers = [](std::int32_t count) {
        macsim::processTable().meanwhile = [count](const std::string& call, std::int32_t) {
            if (call == "proc_listallpids")
                for (std::int32_t pid = 6000; pid < 6000 + count; ++pid)
                    macsim::processTable().processes[pid] = process(service);
        };
    };
    startOthers(140);
    EXPECT_EQ(processes.all().size(), 4u + 140u) << "room for 20 that the kernel adds and 128 of ours";
    macsim::reset();
    startOthers(1000);
    EXPECT_EQ(processes.all().size(), 5u + 20u + 128u);
}

TEST_F(MacProcessesTest, goesWithoutWhatEndsBetweenTwoCalls) {
    endBefore("PROC_PIDTBSDINFO", server);
    EXPECT_FALSE(reading(server));
    macsim::reset();
    endBefore("PROC_PIDT_SHORTBSDINFO", service);
    EXPECT_FALSE(reading(service));
    macsim::reset();
    endBefore("proc_pid_rusage", server);
    ASSERT_TRUE(reading(server));
    macsim::reset();
    endBefore("proc_pid_rusage", server);
    EXPECT_FALSE(reading(server)->usage);
    macsim::reset();
    endBefore("PROC_PIDTASKINFO", server);
    const auto late = reading(server);
    ASSERT_TRUE(late);
    EXPECT_TRUE(late->usage);
    EXPECT_FALSE(late->threads);
    // It is gone for good by now.
    EXPECT_FALSE(processes.path(server));
    EXPECT_FALSE(processes.arguments(server));
    EXPECT_FALSE(processes.currentDirectory(server));
    EXPECT_EQ(processes.responsiblePID(server), server);
}

TEST_F(MacProcessesTest, takesTheTimeOfTheCallForAStartThatIsNotTold) {
    const auto startsNow = [this] {
        const Date before = wallClock();
        const auto found = reading(service);
        return found && before <= found->info.startTime && found->info.startTime <= wallClock();
    };
    endBefore("KERN_PROC_PID", service); // answered with a length of 0
    EXPECT_TRUE(startsNow());
    macsim::reset();
    macsim::refuse("KERN_PROC_PID");
    EXPECT_TRUE(startsNow());
    macsim::reset();
    process(service).kernelInfo.resize(640);
    EXPECT_TRUE(startsNow());
    process(service).kernelInfo.resize(656); // does not fit
    EXPECT_TRUE(startsNow());
}

TEST_F(MacProcessesTest, tellsAProcessByItsStartWhenItsIDIsUsedAgain) {
    ASSERT_EQ(reading(server)->info.startTime, Date{1714725296.25});
    auto& whole = process(server).records[PROC_PIDTBSDINFO];
    put(whole, 120, std::uint64_t{1714725299});
    put(whole, 16, std::int32_t{1});
    process(server).path = "/bin/zsh";
    EXPECT_EQ(reading(server)->info.startTime, Date{1714725299.25});
    EXPECT_EQ(reading(server)->info.ppid, 1);
    EXPECT_EQ(processes.path(server), "/bin/zsh");
}

TEST_F(MacProcessesTest, fallsBackToTheShortRecord) {
    auto& records = process(server).records;
    const auto whole = records[PROC_PIDTBSDINFO];
    const auto isShort = [this] {
        const auto found = reading(server);
        return found && found->info.name == "WindowServer" && found->info.startTime == Date{1714640400.5};
    };
    ASSERT_FALSE(isShort());
    records[PROC_PIDTBSDINFO].resize(135); // fewer bytes than asked for
    EXPECT_TRUE(isShort());
    EXPECT_EQ(reading(server)->threads, 13) << "what else is readable still is";
    records[PROC_PIDTBSDINFO] = whole;
    records[PROC_PIDTBSDINFO].resize(144); // more than there is room for
    EXPECT_TRUE(isShort());
    records[PROC_PIDTBSDINFO] = whole;
    put(records[PROC_PIDTBSDINFO], 128, std::uint64_t{1'000'000}); // no such fraction of a second
    EXPECT_TRUE(isShort());
    records[PROC_PIDT_SHORTBSDINFO].resize(60);
    EXPECT_FALSE(reading(server));
}

TEST_F(MacProcessesTest, leavesOutFiguresOfAnotherForm) {
    process(server).records[PROC_PIDTASKINFO].resize(95);
    process(server).records[PROC_PIDVNODEPATHINFO].resize(2351);
    ASSERT_TRUE(reading(server));
    EXPECT_TRUE(reading(server)->usage);
    EXPECT_FALSE(reading(server)->threads);
    EXPECT_FALSE(processes.currentDirectory(server));
}

TEST_F(MacProcessesTest, readsPathsToTheLimit) {
    EXPECT_EQ(processes.path(server), "/opt/homebrew/bin/node");
    process(server).path = "/" + std::string(4094, 'a');
    EXPECT_EQ(processes.path(server), process(server).path);
    process(server).path = "/Users/ana/caf\xE9";
    EXPECT_EQ(processes.path(server), "/Users/ana/caf\uFFFD");
    macsim::refuse("proc_pidpath");
    EXPECT_FALSE(processes.path(server));
}

TEST_F(MacProcessesTest, readsArgumentsFromTheBeginningOfTheirRegion) {
    EXPECT_EQ(processes.arguments(server),
              (std::vector<std::string>{"node", "/Users/ana/Projects/shop/node_modules/.bin/vite", "--port", "5173", "",
                                        "--host"}));
    // The longest region that fits, and one that does not: of that only its end is handed out.
    using namespace std::string_literals;
    const std::string beginning = "/bin/ls\0ls\0-l\0"s;
    const auto filledTo = [&](std::size_t size) {
        return region(2, beginning + std::string(size - beginning.size() - 4, 'e'));
    };
    process(server).arguments = filledTo((1 << 20) + 3);
    EXPECT_EQ(processes.arguments(server), (std::vector<std::string>{"ls", "-l"}));
    process(server).arguments = filledTo((1 << 20) + 5);
    EXPECT_FALSE(processes.arguments(server));
    process(server).arguments = region(1, "");
    EXPECT_FALSE(processes.arguments(server));
}

TEST_F(MacProcessesTest, asksWhoIsResponsibleByTheNameOfTheFunction) {
    EXPECT_EQ(processes.responsiblePID(server), browser);
    EXPECT_EQ(processes.responsiblePID(service), service);
    for (const std::int32_t none : {0, -1}) {
        process(server).responsible = none;
        EXPECT_EQ(processes.responsiblePID(server), server) << none;
    }
    EXPECT_EQ(calls("responsibility"), 4);
    EXPECT_EQ(MacProcesses(nullptr).responsiblePID(server), server) << "a system without it";
}

TEST_F(MacProcessesTest, asksForEachUserOnce) {
    EXPECT_EQ(processes.userName(501), "ana");
    EXPECT_EQ(processes.userName(88), "_windowserver");
    EXPECT_EQ(processes.userName(501), "ana");
    EXPECT_EQ(processes.userName(4294967294), "4294967294");
    EXPECT_EQ(processes.userName(4294967294), "4294967294");
    EXPECT_EQ(calls("getpwuid_r"), 3);
    macsim::processTable().userNames[502] = "jos\xE9";
    EXPECT_EQ(processes.userName(502), "jos\uFFFD");
    macsim::processTable().userNames[503] = std::string(100'000, 'x'); // a directory service has no limit
    EXPECT_EQ(processes.userName(503).size(), 100'000u);
    macsim::processTable().userNames[504] = std::string(2'000'000, 'x');
    EXPECT_EQ(processes.userName(504), "504");
    macsim::refuse("getpwuid_r");
    EXPECT_EQ(processes.userName(505), "505");
}

TEST_F(MacProcessesTest, readsTheWorkingDirectory) {
    EXPECT_EQ(processes.currentDirectory(server), "/Users/ana/Projects/shop");
    auto& paths = process(server).records[PROC_PIDVNODEPATHINFO];
    paths.at(152) = std::byte{0}; // the call may succeed with nothing in it
    EXPECT_FALSE(processes.currentDirectory(server));
    EXPECT_EQ(processes.origin(server), ProcessOrigin{});
}
