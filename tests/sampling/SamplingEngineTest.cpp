#include "core/sampling/SamplingEngine.hpp"

#include "tests/sampling/EngineHarness.hpp"

#include <boost/asio/thread_pool.hpp>
#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <map>
#include <thread>

namespace ostrivane {
namespace {

using Names = std::vector<std::string>;

SamplingDemand window(PageSet pages = {}) {
    return {.popoverVisible = false, .windowVisible = true, .pages = std::move(pages)};
}

TEST(SamplingEngine, asksInTheFixedOrderAndFiresEveryCadenceFirst) {
    EngineHarness harness;
    harness.start();
    EXPECT_EQ(harness.collectors->asked,
              (Names{"hostInfo", "cpu",      "load",        "uptime",      "memory",  "gpu",           "disk",
                     "volumes",  "netmeta",  "primary",     "netcounters", "network", "batteryHealth", "battery",
                     "thermal",  "nettop",   "gpuProcs",    "processes",   "sockets", "applications",  "devServers",
                     "projects", "aiModels", "aiWorkloads", "bluetooth"}));
    harness.tick();
    EXPECT_EQ(harness.collectors->asked,
              (Names{"cpu", "load", "uptime", "memory", "gpu", "disk", "netcounters", "network", "battery", "thermal",
                     "processes", "applications", "devServers", "projects", "aiWorkloads"}));
    ASSERT_EQ(harness.snapshots.size(), 2u);
    EXPECT_EQ(harness.snapshots[0]->interval, 0);
    EXPECT_EQ(harness.snapshots[1]->interval, 5);
    EXPECT_EQ(harness.snapshots[1]->macModel, "Test Machine");
    EXPECT_EQ(harness.snapshots[1]->macModelIdentifier, "TM1,1");
    EXPECT_EQ(harness.snapshots[1]->cpu.brand, "Test Processor");
    EXPECT_EQ(harness.snapshots[1]->cpu.loadAverage, (LoadAverage{1, 2, 3}));
    EXPECT_EQ(harness.snapshots[1]->disk.volumes.size(), 1u) << "kept from the tick before";
    EXPECT_EQ(harness.engine->latest(), harness.snapshots[1]);
}

/// How often each reading runs in an hour of ticks.
std::map<std::string, int> hourOf(SamplingDemand demand, SamplingSettings settings = {}) {
    EngineHarness harness;
    harness.engine->setSettings(settings);
    harness.engine->setDemand(std::move(demand));
    harness.start();
    std::map<std::string, int> counts;
    const Date begin = harness.clock->time;
    for (;;) {
        for (const std::string& name : harness.collectors->asked)
            ++counts[name];
        if (harness.clock->time - begin + harness.clock->waited.back() >= 3600)
            return counts;
        harness.tick();
    }
}

TEST(SamplingEngine, keepsEveryCadenceOverAnHour) {
    struct Case {
        const char* what;
        SamplingDemand demand;
        std::map<std::string, int> want;
    };
    // With ticks every 2 s a cadence of 5 s fires every third tick.
    const Case cases[] = {
        {"background",
         {},
         {{"processes", 720},
          {"volumes", 60},
          {"netmeta", 120},
          {"batteryHealth", 2},
          {"nettop", 120},
          {"ps", 0},
          {"gpuProcs", 360},
          {"sockets", 180},
          {"aiModels", 60},
          {"docker", 0},
          {"bluetooth", 12}}},
        {"popover",
         {.popoverVisible = true, .windowVisible = false, .pages = {}},
         {{"processes", 1800},
          {"volumes", 360},
          {"nettop", 900},
          {"ps", 600},
          {"gpuProcs", 900},
          {"sockets", 360},
          {"aiModels", 0},
          {"docker", 0},
          {"bluetooth", 60}}},
        {"window on the processor page",
         window({"cpu"}),
         {{"processes", 3600}, {"ps", 900}, {"gpuProcs", 900}, {"sockets", 360}, {"aiModels", 0}}},
        {"window with demanding pages",
         window({"gpu", "projects", "devices"}),
         {{"processes", 1800},
          {"ps", 900},
          {"gpuProcs", 1800},
          {"sockets", 900},
          {"aiModels", 600},
          {"docker", 600},
          {"bluetooth", 180}}},
        {"pages without a window",
         {.popoverVisible = false, .windowVisible = false, .pages = {"ports", "cpu"}},
         {{"processes", 720}, {"sockets", 180}}},
    };
    for (const Case& one : cases) {
        auto counts = hourOf(one.demand);
        for (const auto& [name, want] : one.want)
            EXPECT_EQ(counts[name], want) << one.what << ": " << name;
    }
}

TEST(SamplingEngine, settingsSwitchReadingsOff) {
    SamplingSettings settings;
    settings.includeSystemProcesses = settings.perProcessNetwork = settings.projectDetection = false;
    auto counts = hourOf(window({"ports"}), settings);
    EXPECT_EQ(counts["ps"], 0);
    EXPECT_EQ(counts["nettop"], 0);
    EXPECT_EQ(counts["sockets"], 0);
    EXPECT_EQ(counts["projects"], 0);
    EXPECT_EQ(counts["devServers"], 1800) << "runs on what is cached";

    EngineHarness harness;
    harness.engine->setSettings(settings);
    harness.demand(window());
    harness.start();
    const ProcessRequest& request = harness.collectors->requests.back();
    EXPECT_FALSE(request.systemEntries || request.network || request.refreshProjects);
    EXPECT_FALSE(harness.snapshots[0]->systemProcessMetricsIncluded ||
                 harness.snapshots[0]->perProcessNetworkAvailable);
    harness.engine->setSettings({});
    harness.settle();
    harness.tick();
    EXPECT_TRUE(harness.collectors->requests.back().systemEntries && harness.collectors->requests.back().network);
    EXPECT_TRUE(harness.snapshots[1]->systemProcessMetricsIncluded && harness.snapshots[1]->perProcessNetworkAvailable);
    harness.collectors->networkAvailable = false;
    harness.tick();
    EXPECT_FALSE(harness.snapshots[2]->perProcessNetworkAvailable) << "the sampler found no source";
}

TEST(SamplingEngine, batteryHealthIsAskedForUntilItIsKnown) {
    EngineHarness harness;
    harness.collectors->health.reset();
    harness.start();
    harness.tick();
    EXPECT_TRUE(harness.askedFor("batteryHealth"));
    harness.collectors->health = BatteryHealth{};
    harness.tick();
    harness.tick();
    EXPECT_FALSE(harness.askedFor("batteryHealth"));
    harness.tick(1800);
    EXPECT_TRUE(harness.askedFor("batteryHealth"));
}

TEST(SamplingEngine, waitsAsLongAsTheDemandAllows) {
    EngineHarness harness;
    harness.engine->setSettings({.backgroundInterval = 7, .foregroundInterval = 3});
    harness.start();
    EXPECT_EQ(harness.clock->waited.back(), 7);
    harness.demand({.popoverVisible = true, .windowVisible = false, .pages = {"cpu"}});
    EXPECT_EQ(harness.clock->waited.back(), 3) << "the page needs the window";
    harness.demand(window({"cpu", "gpu"}));
    EXPECT_EQ(harness.clock->waited.back(), 1);
    harness.demand({});
    harness.tick();
    EXPECT_EQ(harness.clock->waited.back(), 7);
}

// A chip may be kept awake for one who looks at its figures, and for nobody else.
TEST(SamplingEngine, tellsGraphicsWhetherSomeoneLooks) {
    EngineHarness harness;
    harness.start();
    EXPECT_FALSE(harness.collectors->gpuPageShown);
    harness.demand(window({"gpu"}));
    EXPECT_TRUE(harness.collectors->gpuPageShown);
    harness.demand(window({"cpu"}));
    EXPECT_FALSE(harness.collectors->gpuPageShown);
    harness.demand({.popoverVisible = false, .windowVisible = false, .pages = {"gpu"}});
    EXPECT_FALSE(harness.collectors->gpuPageShown);
}

TEST(SamplingEngine, wakesForMoreAndNotForLess) {
    EngineHarness harness;
    harness.start();
    const auto ticksAfter = [&](SamplingDemand demand) {
        const std::size_t before = harness.snapshots.size();
        harness.demand(std::move(demand));
        return harness.snapshots.size() - before;
    };
    EXPECT_EQ(ticksAfter(window()), 1u) << "an interface appears";
    EXPECT_EQ(ticksAfter(window({"gpu"})), 1u) << "a page appears";
    EXPECT_EQ(ticksAfter(window({"gpu"})), 0u) << "nothing changes";
    EXPECT_EQ(ticksAfter({.popoverVisible = true, .windowVisible = true, .pages = {"gpu"}}), 0u) << "seen already";
    EXPECT_EQ(ticksAfter(window({"disk"})), 1u) << "one page goes, another comes";
    EXPECT_EQ(ticksAfter(window()), 0u) << "a page goes";
    EXPECT_EQ(ticksAfter({}), 0u) << "the window goes";
    EXPECT_EQ(ticksAfter({.popoverVisible = false, .windowVisible = false, .pages = {"gpu"}}), 1u)
        << "a page, though nothing is visible";
    harness.engine->setSettings({.backgroundInterval = 1});
    harness.settle();
    EXPECT_EQ(harness.clock->waited.back(), 5) << "a new interval counts from the next wait";
    EXPECT_TRUE(harness.clock->isWaiting());
}

TEST(SamplingEngine, refreshReadsSocketsAtOnce) {
    EngineHarness harness;
    harness.start();
    harness.tick();
    EXPECT_FALSE(harness.askedFor("sockets"));
    harness.collectors->asked.clear();
    harness.engine->refreshNow();
    harness.settle();
    EXPECT_EQ(harness.snapshots.size(), 3u);
    EXPECT_TRUE(harness.askedFor("sockets"));
    harness.tick();
    EXPECT_FALSE(harness.askedFor("sockets"));
}

TEST(SamplingEngine, stopsAndGoesOnWithWhatItKnew) {
    EngineHarness harness;
    harness.start();
    harness.engine->start();
    harness.settle();
    EXPECT_EQ(harness.snapshots.size(), 1u) << "a second start does nothing";
    harness.engine->stop();
    harness.settle();
    EXPECT_FALSE(harness.clock->isWaiting());
    harness.engine->refreshNow();
    harness.demand(window());
    EXPECT_EQ(harness.snapshots.size(), 1u) << "nothing wakes a stopped loop";
    harness.clock->time = harness.clock->time + 40;
    harness.collectors->asked.clear();
    harness.start();
    ASSERT_EQ(harness.snapshots.size(), 2u);
    EXPECT_EQ(harness.snapshots[1]->interval, 40) << "the rates cover the pause";
    EXPECT_FALSE(harness.askedFor("hostInfo") || harness.askedFor("batteryHealth"));
}

TEST(SamplingEngine, consumersAreAwaitedInOrderAndTicksNeverOverlap) {
    EngineHarness harness;
    Names calls;
    SamplingEngine::Turn held;
    harness.engine->addConsumer([&](const SharedSnapshot&, SamplingEngine::Turn turn) {
        calls.push_back("slow");
        held = std::move(turn);
    });
    harness.engine->addConsumer([&](const SharedSnapshot&, const SamplingEngine::Turn&) { calls.push_back("last"); });
    harness.start();
    EXPECT_EQ(calls, (Names{"slow"}));
    EXPECT_EQ(harness.engine->latest(), harness.snapshots.back()) << "known before the consumers have it";
    EXPECT_FALSE(harness.clock->isWaiting());
    // Whatever is asked for meanwhile, the next tick waits for the consumer; then it comes at once.
    harness.engine->stop();
    harness.engine->start();
    harness.engine->refreshNow();
    harness.demand(window({"gpu"}));
    EXPECT_EQ(harness.snapshots.size(), 1u);
    held.reset();
    harness.settle();
    EXPECT_EQ(calls, (Names{"slow", "last", "slow"}));
    EXPECT_EQ(harness.snapshots.size(), 2u);
    harness.engine->stop();
    harness.settle();
    held.reset();
    harness.settle();
    EXPECT_EQ(calls.back(), "last") << "a stop lets the tick end";
    EXPECT_FALSE(harness.clock->isWaiting());
}

TEST(SamplingEngine, theQuestionForModelsIsTheOnePauseWithinATick) {
    EngineHarness harness;
    harness.collectors->holdModels = true;
    harness.start();
    EXPECT_EQ(harness.collectors->asked.back(), "aiModels");
    EXPECT_TRUE(harness.snapshots.empty());
    harness.demand(window({"ai"}));
    EXPECT_TRUE(harness.snapshots.empty()) << "no second tick begins within the first";
    harness.collectors->heldModels({{1, {}}, {2, {}}});
    harness.collectors->holdModels = false;
    harness.settle();
    ASSERT_EQ(harness.snapshots.size(), 2u);
    EXPECT_EQ(harness.snapshots[0]->aiWorkloads.size(), 2u);
    EXPECT_TRUE(harness.snapshots[0]->processes.empty() && !harness.snapshots[0]->systemProcessMetricsIncluded)
        << "the demand is that of the tick's begin";
    EXPECT_EQ(harness.snapshots[1]->aiWorkloads.size(), 2u) << "the last models stand until they are asked for again";
}

TEST(SamplingEngine, aFailedReadingLeavesItsRecordEmptyAndItsBaseline) {
    EngineHarness harness;
    harness.start();
    harness.collectors->ticks.reset();
    harness.collectors->memoryReading.reset();
    harness.tick();
    EXPECT_EQ(harness.snapshots[1]->cpu, CPUSnapshot::empty);
    EXPECT_EQ(harness.snapshots[1]->memory, MemorySnapshot::empty);
    harness.collectors->ticks = CPUTicks{{{160, 80, 860, 0}}, false};
    harness.tick();
    EXPECT_DOUBLE_EQ(harness.snapshots[2]->cpu.usage, 0.9) << "since the last reading that worked";
}

TEST(SamplingEngine, diskRatesComeFromTheTimeBetweenTheReadings) {
    EngineHarness harness;
    harness.collectors->disk = {1000, 5000};
    harness.start();
    EXPECT_EQ(harness.snapshots[0]->disk.readBytesPerSec, 0);
    harness.collectors->disk = {3000, 4000};
    harness.tick(4);
    EXPECT_EQ(harness.snapshots[1]->disk.readBytesPerSec, 500);
    EXPECT_EQ(harness.snapshots[1]->disk.writeBytesPerSec, 0) << "a drive went";
    EXPECT_EQ(harness.snapshots[1]->disk.totalWritten, 4000u);
}

TEST(SamplingEngine, clockThatStepsGivesNoNegativeAndNoMissingReadings) {
    EngineHarness harness;
    harness.start();
    harness.tick();
    harness.collectors->disk = {1000, 1000};
    harness.collectors->asked.clear();
    harness.tick(0);
    EXPECT_EQ(harness.snapshots.back()->interval, 0);
    EXPECT_EQ(harness.snapshots.back()->disk.readBytesPerSec, 0) << "no time passed";

    harness.clock->time = harness.clock->time + -3600;
    harness.tick(0);
    EXPECT_EQ(harness.snapshots.back()->interval, 0);
    EXPECT_EQ(harness.collectors->networkIntervals.back(), 0);
    // No cadence waits for the clock to catch up: one interval later each is due again.
    harness.tick(60);
    EXPECT_TRUE(harness.askedFor("volumes") && harness.askedFor("sockets") && harness.askedFor("nettop"));

    harness.collectors->disk = {1000 + 86400, 1000};
    harness.tick(86400);
    EXPECT_EQ(harness.snapshots.back()->interval, 86400);
    EXPECT_EQ(harness.snapshots.back()->disk.readBytesPerSec, 1) << "rate times interval is what was read";
    EXPECT_EQ(harness.snapshots.size(), 6u) << "a day forward is one tick, not many";
}

TEST(SamplingEngine, aCadenceHasALittleSlackAndStartsAtOnceWhateverTheClock) {
    EngineHarness harness;
    harness.clock->time = Date{10}; // a board whose clock has no battery
    harness.start();
    EXPECT_TRUE(harness.askedFor("volumes") && harness.askedFor("bluetooth"));
    harness.tick(59.94);
    EXPECT_FALSE(harness.askedFor("volumes"));
    harness.tick(0.02); // 59.96 s after the first
    EXPECT_TRUE(harness.askedFor("volumes"));
}

TEST(SamplingEngine, whatFailsLeavesWhatWasKnown) {
    EngineHarness harness;
    harness.collectors->disk = {1000, 1000};
    harness.demand(window({"docker"}));
    harness.start();
    harness.collectors->mounted.reset();
    harness.collectors->dockerStatus.reset();
    harness.collectors->health.reset();
    harness.collectors->disk.reset();
    harness.tick(1800);
    EXPECT_TRUE(harness.askedFor("volumes") && harness.askedFor("docker") && harness.askedFor("batteryHealth"));
    EXPECT_EQ(harness.snapshots.back()->disk.volumes.size(), 1u);
    EXPECT_TRUE(harness.snapshots.back()->docker);
    EXPECT_EQ(harness.snapshots.back()->disk.totalRead, 0u) << "not read in this tick";
    harness.collectors->disk = {2800, 1000};
    harness.tick(0);
    harness.tick(1800);
    EXPECT_NEAR(harness.snapshots.back()->disk.readBytesPerSec, 0, 1e-9) << "no boot's worth of bytes in one tick";
}

TEST(SamplingEngine, handsOnWhatTheInterfaceSets) {
    EngineHarness harness;
    harness.engine->setRunningApps({{"/Applications/Editor.app", 42}});
    harness.engine->setSettings({.idleServerThreshold = 60});
    harness.start();
    EXPECT_EQ(harness.collectors->runningApps, (RunningApps{{"/Applications/Editor.app", 42}}));
    EXPECT_EQ(harness.collectors->idleThreshold, 60);
}

TEST(SamplingEngine, networkIsToldTheReadingBefore) {
    EngineHarness harness;
    harness.start();
    EXPECT_EQ(harness.collectors->networkIntervals.back(), 0);
    EXPECT_EQ(harness.collectors->previousInterfaces, 0u);
    harness.tick(3);
    EXPECT_EQ(harness.collectors->networkIntervals.back(), 3);
    EXPECT_EQ(harness.collectors->previousInterfaces, 1u);
}

TEST(SamplingEngine, batteryTemperatureComesFromItsSensorsWhenItHasNone) {
    EngineHarness harness;
    harness.collectors->thermalState.sensors = {{"TB0T", SensorReading::Group::battery, 30},
                                                {"TB1T", SensorReading::Group::battery, 32},
                                                {"Tp01", SensorReading::Group::cpu, 80}};
    harness.start();
    EXPECT_FALSE(harness.snapshots.back()->battery.temperatureC) << "no battery";
    harness.collectors->batteryState.isPresent = true;
    harness.tick();
    EXPECT_EQ(harness.snapshots.back()->battery.temperatureC, 31);
    harness.collectors->batteryState.temperatureC = 25;
    harness.tick();
    EXPECT_EQ(harness.snapshots.back()->battery.temperatureC, 25);
}

ProcessSnapshot process(std::int32_t pid, std::uint32_t uid = 1000, bool restricted = false) {
    ProcessSnapshot process;
    process.pid = pid;
    process.uid = uid;
    process.isRestricted = restricted;
    return process;
}

TEST(SamplingEngine, socketsAreThoseOfTheUsersReadableLivingProcesses) {
    EngineHarness harness;
    harness.collectors->output.processes = {process(1), process(2, 0), process(3, 1000, true), process(4)};
    harness.collectors->lists.listening = {{3000, "*", "TCP", 1}, {3000, "*", "TCP", 1}, {5432, "::1", "TCP", 4}};
    harness.collectors->lists.connections.resize(2);
    harness.demand(window({"ports"}));
    harness.start();
    EXPECT_EQ(harness.collectors->socketPIDs, (std::vector<std::int32_t>{1, 4}));
    EXPECT_TRUE(harness.collectors->withConnections);
    EXPECT_EQ(harness.snapshots.back()->ports.size(), 2u) << "no port twice";
    EXPECT_EQ(harness.snapshots.back()->connections.size(), 2u);

    // A process that ends takes its port along at once; one that stops listening is looked at anew.
    harness.collectors->output.processes.pop_back();
    harness.tick();
    EXPECT_FALSE(harness.askedFor("sockets"));
    EXPECT_EQ(harness.snapshots.back()->ports.size(), 1u);
    EXPECT_EQ(harness.collectors->requests.back().listeningPIDs, (PIDSet{1, 4})) << "as known when the tick began";
    harness.collectors->lists = {};
    harness.demand(window());
    harness.tick(10);
    EXPECT_EQ(harness.collectors->refreshed, (std::vector<std::int32_t>{1}));
    EXPECT_TRUE(harness.snapshots.back()->ports.empty() && harness.snapshots.back()->connections.empty());
    EXPECT_FALSE(harness.collectors->withConnections);
}

TEST(SamplingEngine, backgroundLeavesIdleProcessesOutButCountsThem) {
    EngineHarness harness;
    std::vector<ProcessSnapshot>& processes = harness.collectors->output.processes;
    for (std::int32_t pid = 1; pid <= 8; ++pid)
        processes.push_back(process(pid));
    processes[0].cpu = 0.0011;
    processes[1].cpu = 0.001;
    processes[2].memory = 52'428'801;
    processes[3].memory = 52'428'800;
    processes[4].isDevProcess = true;
    processes[5].diskWriteRate = 1;
    processes[6] = process(7, 0, true);
    processes[6].diskWriteRate = 1;
    harness.collectors->output.restrictedCount = 1;
    harness.start();
    std::vector<std::int32_t> kept;
    for (const ProcessSnapshot& one : harness.snapshots.back()->processes)
        kept.push_back(one.pid);
    EXPECT_EQ(kept, (std::vector<std::int32_t>{1, 3, 5, 6}));
    EXPECT_EQ(harness.snapshots.back()->processCount, 8);
    EXPECT_EQ(harness.snapshots.back()->restrictedProcessCount, 1);
    EXPECT_EQ(harness.collectors->attributedProcesses, 8u) << "applications are summed over all of them";
    harness.demand({.popoverVisible = true, .windowVisible = false, .pages = {}});
    EXPECT_EQ(harness.snapshots.back()->processes.size(), 8u);
}

TEST(SamplingEngine, aCollectorThatIsNotThereLeavesItsRecordEmpty) {
    boost::asio::io_context context;
    auto clock = std::make_unique<ManualClock>();
    const Date now = clock->time;
    SamplingEngine engine(context.get_executor(), std::make_unique<Collectors>(), std::move(clock));
    EXPECT_EQ(*engine.latest(), SystemSnapshot::empty(now));
    engine.setDemand(window({"docker", "devices"}));
    engine.start();
    context.poll();
    SystemSnapshot want = SystemSnapshot::empty(now);
    want.systemProcessMetricsIncluded = true;
    EXPECT_EQ(*engine.latest(), want);
}

TEST(SamplingEngine, mayGoWhileItTicksAndIsReachedFromManyThreads) {
    for (int round = 0; round < 20; ++round) {
        boost::asio::thread_pool pool(2);
        std::atomic<int> seen = 0;
        SamplingEngine::Turn kept; // let go of after the engine has gone
        std::mutex keptMutex;
        {
            auto collectors = std::make_unique<Collectors>();
            SamplingEngine engine(pool.get_executor(), std::move(collectors), std::make_unique<ManualClock>());
            engine.addConsumer([&](const SharedSnapshot& snapshot, SamplingEngine::Turn turn) {
                seen += snapshot ? 1 : 0;
                const std::scoped_lock lock(keptMutex);
                if (round % 2 == 0)
                    kept = std::move(turn);
            });
            engine.start();
            std::vector<std::thread> callers;
            for (int caller = 0; caller < 3; ++caller)
                callers.emplace_back([&] {
                    for (int call = 0; call < 50; ++call) {
                        engine.setDemand(call % 2 == 0 ? window({"gpu"}) : SamplingDemand{});
                        engine.refreshNow();
                        EXPECT_NE(engine.latest(), nullptr);
                    }
                });
            for (std::thread& caller : callers)
                caller.join();
            while (seen == 0)
                std::this_thread::yield();
        }
        {
            const std::scoped_lock lock(keptMutex);
            kept.reset();
        }
        pool.join();
    }
}

} // namespace
} // namespace ostrivane
