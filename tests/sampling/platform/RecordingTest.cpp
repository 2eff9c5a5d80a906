#include "core/sampling/MachineCollectors.hpp"
#include "core/sampling/platform/recorded/Playback.hpp"
#include "core/sampling/platform/recorded/RecordedMachine.hpp"
#include "core/sampling/platform/recorded/RecordingMachine.hpp"
#include "core/sampling/platform/recorded/RecordingWriter.hpp"
#include "core/sampling/platform/recorded/TickNotes.hpp"
#include "tests/TemporaryFolder.hpp"
#include "tests/sampling/EngineHarness.hpp"
#include "tests/sampling/FakeMachine.hpp"

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <limits>

namespace ostrivane {
namespace {

constexpr double noWaiting = std::numeric_limits<double>::infinity();

/// A server that works in its project and talks, a process that may not be read, and one whose id goes to another.
void changeProcesses(FakeMachine& machine, int tick) {
    const auto step = static_cast<std::uint64_t>(tick);
    FakeProcesses& list = machine.processList;
    list.readings.clear();
    list.add(5, "node", 501).usage = ProcessUsage{.cpuTicks = step * step * 1000, .footprint = 4096 + step / 3};
    list.paths[5] = "/Applications/Shop \"One\".app/node";
    list.argumentLists[5] = {"node", "run\n\x1b[31m", "dev"};
    list.directories[5] = "/Users/ada/shop";
    list.add(6, "kept away", 0).usage.reset();
    if (tick % 3 != 0)
        list.add(7, tick < 4 ? "first" : "second", 501).info.startTime = Date{tick < 4 ? 100.0 : 200.0};
    list.paths[7] = tick < 4 ? "/Users/ada/first" : "/Users/ada/second";
    machine.existing = {"/Users/ada/shop/package.json"};
    machine.bundles["/Applications/Shop \"One\".app"] = {{"The Shop"}, "org.example.shop", ""};
    machine.systemTotals = PidMap<SystemProcessTotals>{{5, {step, 10}}, {6, {step * 7, 20}}};
    machine.trafficTotals = PidMap<TrafficTotals>{{5, {step * 100'000, step}}};
    machine.graphicsTimes = PidMap<std::uint64_t>{{5, step * 100'000'000}};
    if (tick == 3)
        machine.trafficTotals.reset();
}

/// Ticks over a machine whose answers change from tick to tick, and fail at times; awkward numbers on purpose.
void changeAnswers(FakeMachine& machine, int tick) {
    const auto step = static_cast<std::uint64_t>(tick);
    machine.cpuTicks = CPUTicks{{{step * 7, step * 3, 1000 + step * 90, 1}, {0, 0, step, 0}}, false};
    machine.load = LoadAverage{0.1 * tick, 1.0 / 3, 12345.678901234567};
    machine.upSeconds = 1234.1 + tick / 3.0;
    machine.memoryReading = MemoryReading{.counters = {.free = 5, .wired = step, .swapins = step * step},
                                          .swap = SwapUsage{std::numeric_limits<std::uint64_t>::max(), 1},
                                          .pressureLevel = 2,
                                          .availablePercent = tick % 3 == 0 ? std::nullopt : std::optional(57)};
    machine.chips = {{.name = "Chip \"1\"", .statistics = std::nullopt},
                     {.name = std::nullopt,
                      .statistics = AcceleratorStatistics{.devicePercent = tick / 3.0,
                                                          .rendererPercent = std::nullopt,
                                                          .tilerPercent = 0,
                                                          .memoryInUse = std::numeric_limits<std::uint64_t>::max(),
                                                          .memoryAllocated = std::nullopt}}};
    changeProcesses(machine, tick);
    if (tick == 3)
        machine.cpuTicks.reset();
    if (tick == 4)
        machine.memoryReading.reset();
}

struct Recorded {
    std::vector<SystemSnapshot> snapshots;
    std::string file;
};

Recorded record(const TemporaryFolder& folder, int ticks) {
    boost::asio::io_context context;
    auto notes = std::make_shared<TickNotes>();
    auto fake = std::make_unique<FakeMachine>();
    FakeMachine& machine = *fake;
    machine.hostInfo = {.pageSize = 16384,
                        .physicalMemory = 16ull << 30,
                        .modelIdentifier = "Mac14,9",
                        .cpuBrand = "Quick \"Chip\" 9",
                        .isAppleSilicon = true,
                        .marketingName = "Test Machine",
                        .coreLayout = {1, 1, 2},
                        .coreKinds = {{0, CoreLoad::Kind::efficiency}, {1, CoreLoad::Kind::performance}},
                        .nanosPerTick = 125.0 / 3,
                        .userID = 501,
                        .home = "/Users/ada"};
    auto ownedClock = std::make_unique<ManualClock>();
    ManualClock& clock = *ownedClock;
    Recorded recorded{{}, folder.file("machine.jsonl")};
    RecordingHeader header;
    header.platform = Platform::macOS;
    header.host = machine.hostInfo;
    RecordingWriter writer(recorded.file);
    EXPECT_EQ(writer.open(header, false), std::nullopt);
    SamplingEngine engine(context.get_executor(),
                          std::make_unique<MachineCollectors>(recordingMachine(std::move(fake), notes)),
                          recordingClock(std::move(ownedClock), notes));
    engine.addConsumer([&](const SharedSnapshot& snapshot, const SamplingEngine::Turn&) {
        recorded.snapshots.push_back(*snapshot);
        EXPECT_EQ(writer.append(notes->line()), std::nullopt);
    });
    engine.setDemand({.windowVisible = true}); // all that is asked at all
    for (int tick = 0; tick < ticks; ++tick) {
        changeAnswers(machine, tick);
        if (tick == 0)
            engine.start();
        else
            clock.pass(2.0 + tick / 7.0);
        context.restart();
        context.poll();
    }
    return recorded;
}

struct Played {
    std::vector<SystemSnapshot> snapshots;
    std::vector<double> waited;
    std::optional<std::string> problem;
    bool cutOff = false;
    bool ended = false;
};

Played play(const std::string& file, double speed = noWaiting) {
    Played played;
    auto playback = std::make_shared<Playback>(file);
    played.problem = playback->problem();
    if (played.problem)
        return played;
    boost::asio::io_context context;
    auto ownedClock = std::make_unique<ManualClock>();
    ManualClock& clock = *ownedClock;
    SamplingEngine engine(context.get_executor(), std::make_unique<MachineCollectors>(recordedMachine(playback)),
                          recordedClock(playback, std::move(ownedClock), speed, [&played] { played.ended = true; }));
    engine.addConsumer(
        [&](const SharedSnapshot& snapshot, const SamplingEngine::Turn&) { played.snapshots.push_back(*snapshot); });
    engine.setDemand({.windowVisible = true});
    engine.start();
    do {
        context.restart();
        context.poll();
        clock.pass(0);
    } while (!played.ended && played.snapshots.size() < 1000);
    played.waited = clock.waited;
    played.problem = playback->problem();
    played.cutOff = playback->wasCutOff();
    return played;
}

TEST(Recording, playsIdenticalFigures) {
    const TemporaryFolder folder;
    const Recorded recorded = record(folder, 8);
    ASSERT_EQ(recorded.snapshots.size(), 8u);
    EXPECT_GT(recorded.snapshots[2].cpu.usage, 0);
    EXPECT_EQ(recorded.snapshots[2].applications.at(1).name, "The Shop");
    EXPECT_EQ(recorded.snapshots[3].processes.size(), 2u);
    EXPECT_EQ(recorded.snapshots[4].processes.at(2).path, "/Users/ada/second");
    EXPECT_EQ(recorded.snapshots[2].processes.front().projectKey, "/Users/ada/shop");
    const Played played = play(recorded.file, 4);
    EXPECT_EQ(played.problem, std::nullopt);
    EXPECT_TRUE(played.ended && !played.cutOff);
    EXPECT_EQ(played.snapshots, recorded.snapshots);
    ASSERT_EQ(played.waited.size(), 7u);
    EXPECT_NEAR(played.waited[0], (2 + 1 / 7.0) / 4, 1e-6) << "four recorded seconds in one";
    struct stat status {};
    ASSERT_EQ(::stat(recorded.file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600u);
}

TEST(Recording, keepsWhatBelongsToEachProcess) {
    const TemporaryFolder folder;
    auto notes = std::make_shared<TickNotes>();
    auto fake = std::make_unique<FakeMachine>();
    FakeMachine& set = *fake;
    set.graphicsTimes = {{7, std::numeric_limits<std::uint64_t>::max()}, {2147483647, 0}};
    const auto asked = recordingMachine(std::move(fake), notes);
    asked->graphics().setPageShown(true);
    EXPECT_TRUE(set.graphicsPageShown);
    EXPECT_EQ(asked->graphics().processTimes(), set.graphicsTimes);
    RecordingWriter writer(folder.file("times.jsonl"));
    ASSERT_EQ(writer.open(RecordingHeader{}, false), std::nullopt);
    ASSERT_EQ(writer.append(notes->line()), std::nullopt);
    auto playback = std::make_shared<Playback>(folder.file("times.jsonl"));
    ASSERT_EQ(playback->problem(), std::nullopt);
    const auto replayed = recordedMachine(playback);
    EXPECT_TRUE(replayed->graphics().processTimes().empty()) << "not before the first tick";
    playback->advance();
    EXPECT_EQ(replayed->graphics().processTimes(), set.graphicsTimes);
    EXPECT_TRUE(replayed->graphics().accelerators().empty()) << "never asked";
}

TEST(Recording, isNotTickedBeyondItsEnd) {
    const TemporaryFolder folder;
    auto playback = std::make_shared<Playback>(record(folder, 2).file);
    boost::asio::io_context context;
    int ticks = 0;
    SamplingEngine engine(context.get_executor(), std::make_unique<MachineCollectors>(recordedMachine(playback)),
                          recordedClock(playback, std::make_unique<ManualClock>(), 1, [] {}));
    engine.addConsumer([&](const SharedSnapshot&, const SamplingEngine::Turn&) { ++ticks; });
    engine.start();
    context.run();
    engine.refreshNow(); // moves on to the second tick
    context.restart();
    context.run();
    EXPECT_EQ(ticks, 2);
    // The same answers once more would show a machine that stands still.
    engine.refreshNow();
    engine.setDemand({.popoverVisible = true, .windowVisible = true, .pages = {"gpu"}});
    context.restart();
    context.run();
    EXPECT_EQ(ticks, 2);
}

TEST(Recording, isUsedAsFarAsItIsWhole) {
    const TemporaryFolder folder;
    const Recorded recorded = record(folder, 3);
    const std::string whole = contentOf(recorded.file);
    const std::size_t last = whole.rfind('\n', whole.size() - 2) + 1;
    for (std::size_t size = last; size < whole.size(); size += 13) {
        const Played played = play(folder.write("cut.jsonl", whole.substr(0, size)));
        EXPECT_EQ(played.problem, std::nullopt) << size;
        EXPECT_EQ(played.snapshots.size(), 2u) << size;
        EXPECT_EQ(played.cutOff, size > last) << size;
    }
    const Played unended = play(folder.write("cut.jsonl", whole.substr(0, whole.size() - 1)));
    EXPECT_EQ(unended.snapshots.size(), 3u) << "only the line feed is missing";
    EXPECT_FALSE(unended.cutOff);
}

TEST(Recording, growsWithoutBreakingOldFiles) {
    const TemporaryFolder folder;
    const Played played = play(folder.write(
        "new.jsonl",
        R"({"format":"ostrivane-recording","version":1,"colour":"red","host":{"pageSize":4096,"wheels":4}})"
        "\n"
        R"({"at":10,"future.question":{"a":[1,2]},"processor.ticks":{"perCore":[[50,0,50,0]],"extra":1}})"
        "\n"
        R"({"at":12,"host.uptime":null})"
        "\n"));
    EXPECT_EQ(played.problem, std::nullopt);
    ASSERT_EQ(played.snapshots.size(), 2u);
    EXPECT_EQ(played.snapshots[0].cpu.usage, 0.5);
    EXPECT_EQ(played.snapshots[0].memory, MemorySnapshot::empty) << "never asked in that recording";
    EXPECT_EQ(played.snapshots[1].cpu.cores.size(), 1u) << "not asked in that tick: the last answer stands";
}

TEST(Recording, saysWhatIsWrongWithFileAndLine) {
    const std::string header = R"({"format":"ostrivane-recording","version":1})"
                               "\n";
    struct Case {
        std::string content;
        std::string want;
    };
    const Case cases[] = {
        {"", ": the file is empty"},
        {"\n", ":1: this is no recording"},
        {"hello\n", ":1: this is no recording"},
        {"[1,2]\n", ":1: this is no recording"},
        {"{\"at\":1}\n", ":1: this is no recording"},
        {R"({"format":"ostrivane-recording","version":2})", ":1: version 2 of the recording format is not known; this "
                                                            "program reads version 1"},
        {R"({"format":"ostrivane-recording","version":1,"host":{"pageSize":-1}})", ":1: the line is damaged"},
        {header, ":2: the recording holds no tick"},
        {header + "{\"at\":1}\n{\"at\":\n{\"at\":3}\n", ":3: the line is damaged"},
        {header + "{\"at\":1}\n\n{\"at\":3}\n", ":3: the line is damaged"},
        {header + "{\"at\":1}\n{\"at\":\"late\"}\n", ":3: the line is damaged"},
        {header + "{\"at\":1}\n{\"clock\":[]}", ":3: the line is damaged"},
        {header + std::string("{\"at\":1}\n\0\0\0\n", 13), ":3: the line is damaged"},
        {header + "{\"at\":1}\n{\"at\":2,\"processor.ticks\":\"none\"}\n{\"at\":3}\n",
         ":3: the answer to \"processor.ticks\" is damaged"},
        {header + "{\"at\":1,\"a\":" + std::string(100, '[') + std::string(100, ']') + "}\n{\"at\":2}\n",
         ":2: the line is damaged"},
    };
    const TemporaryFolder folder;
    for (const Case& one : cases) {
        const std::string file = folder.write("bad.jsonl", one.content);
        EXPECT_EQ(play(file).problem, file + one.want) << one.content.substr(0, 100);
    }
    EXPECT_EQ(play(folder.file("none")).problem, folder.file("none") + ": No such file or directory");
    ASSERT_EQ(::mkfifo(folder.file("pipe").c_str(), 0600), 0);
    EXPECT_EQ(play(folder.file("pipe")).problem, folder.file("pipe") + ": this is no file");
    EXPECT_EQ(play(folder.write("emptyLast.jsonl", header + "{\"at\":1}\n\n")).problem, std::nullopt);
    EXPECT_EQ(play(folder.path().string()).problem, folder.path().string() + ": Is a directory");
}

TEST(Recording, aClockThatWasSetBackIsPlayedWithoutAWait) {
    const TemporaryFolder folder;
    const Played played = play(folder.write("back.jsonl", R"({"format":"ostrivane-recording","version":1})"
                                                          "\n{\"at\":5000}\n{\"at\":1400}\n{\"at\":1402}\n"),
                               1);
    EXPECT_EQ(played.waited, (std::vector<double>{0, 2}));
    ASSERT_EQ(played.snapshots.size(), 3u);
    EXPECT_EQ(played.snapshots[1].timestamp, Date{1400});
    EXPECT_EQ(played.snapshots[1].interval, 0);
}

TEST(RecordingWriter, keepsWholeLinesWhenTheDiskIsFull) {
    const TemporaryFolder folder;
    const std::string file = folder.file("full.jsonl");
    RecordingWriter full("/dev/full");
    EXPECT_EQ(full.open({}, false), "/dev/full: No space left on device");

    // A limit on the size of files stands in for the end of the disk.
    ASSERT_NE(std::signal(SIGXFSZ, SIG_IGN), SIG_ERR);
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    RecordingWriter writer(file);
    ASSERT_EQ(writer.open({}, false), std::nullopt);
    const auto headerSize = std::filesystem::file_size(file);
    ASSERT_EQ(writer.append("{\"at\":1}"), std::nullopt);
    const rlimit limit{headerSize + 20, before.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    const auto problem = writer.append("{\"at\":2,\"memory.reading\":null}");
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &before), 0);
    EXPECT_EQ(problem, file + ": File too large");
    EXPECT_EQ(std::filesystem::file_size(file), headerSize + 9) << "half a line was taken back";
    EXPECT_EQ(writer.append("{\"at\":3}"), std::nullopt) << "space returned";
    const Played played = play(file);
    EXPECT_EQ(played.problem, std::nullopt);
    EXPECT_EQ(played.snapshots.size(), 2u);
}

TEST(RecordingWriter, writesOverAFileOnlyWhenToldTo) {
    const TemporaryFolder folder;
    const std::string file = folder.write("precious", "data");
    EXPECT_EQ(RecordingWriter(file).open({}, false), file + ": the file exists already");
    EXPECT_EQ(contentOf(file), "data");
    EXPECT_EQ(RecordingWriter(file).open({}, true), std::nullopt);
    EXPECT_NE(contentOf(file), "data");
    EXPECT_EQ(std::filesystem::status(file).permissions(),
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    EXPECT_EQ(RecordingWriter(folder.file("no/such/folder")).open({}, false),
              folder.file("no/such/folder") + ": No such file or directory");
}

} // namespace
} // namespace ostrivane
