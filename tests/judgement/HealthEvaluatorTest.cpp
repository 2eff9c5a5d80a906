#include "core/judgement/HealthEvaluator.hpp"

#include "core/model/Formatters.hpp"
#include "core/model/PlatformWords.hpp"
#include "tests/judgement/Snapshots.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <tuple>

namespace ostrivane {

namespace {

using Status = HealthCategory::Status;
using Sentences = std::vector<std::string>;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

struct Given {
    std::optional<double> cpuAverage5m;
    std::optional<double> pressureElevatedFor;
    const PlatformWords& words = PlatformWords::macOS;
};

HealthCategory judged(std::string_view id, const SystemSnapshot& snapshot, const Given& given = {}) {
    const auto all = HealthEvaluator::evaluate(snapshot, given.cpuAverage5m, given.pressureElevatedFor, given.words);
    const auto found = std::ranges::find(all, id, &HealthCategory::id);
    return found == all.end() ? throw std::out_of_range(std::string(id)) : *found;
}

std::pair<Status, std::string> verdict(std::string_view id, const SystemSnapshot& snapshot, const Given& given = {}) {
    const HealthCategory category = judged(id, snapshot, given);
    return {category.status, category.label};
}

class HealthEvaluatorTest : public testing::Test {
protected:
    void TearDown() override {
        Formatters::cpuScale = CPUScale::perCore;
        Formatters::logicalCores = 1;
        Formatters::temperatureUnit = TemperatureUnit::celsius;
    }

    SystemSnapshot snapshot = quietSnapshot();
};

TEST_F(HealthEvaluatorTest, listsTheCategoriesInOrder) {
    snapshot.battery.isPresent = true;
    snapshot.disk.volumes = {rootVolume(1, 1)};
    const auto list = [&] {
        std::vector<std::tuple<std::string, std::string, std::string, std::string>> all;
        for (const auto& category : HealthEvaluator::evaluate(snapshot, {}, {}, PlatformWords::macOS))
            all.emplace_back(category.id, category.name, category.symbol, category.destination);
        return all;
    };
    decltype(list()) expected = {{"cpu", "CPU", "cpu", "cpu"},
                                 {"memory", "Memory", "memorychip", "memory"},
                                 {"storage", "Storage", "internaldrive", "storage"},
                                 {"battery", "Battery", "battery.75percent", "battery"},
                                 {"thermal", "Thermals", "thermometer.medium", "thermal"},
                                 {"background", "Background Activity", "gearshape.2", "processes"}};
    EXPECT_EQ(list(), expected);

    snapshot.battery.isPresent = false; // a desktop machine has no battery, rather than one of unknown health
    expected.erase(expected.begin() + 3);
    EXPECT_EQ(list(), expected);
}

TEST_F(HealthEvaluatorTest, judgesLoadByTheAverage) {
    snapshot.cpu.usage = 0.9;
    snapshot.cpu.logicalCoreCount = 8;
    snapshot.cpu.loadAverage = {1.236, 5, 9};
    const std::pair<double, Status> borders[] = {
        {0.59, Status::good}, {0.6, Status::elevated}, {0.849, Status::elevated}, {0.85, Status::high}};
    for (const auto& [load, status] : borders)
        EXPECT_EQ(judged("cpu", snapshot, {load}).status, status) << load;
    EXPECT_EQ(judged("cpu", snapshot, {0.42}).evidence,
              Sentences({"42% average over the last 5 minutes on 8 cores.", "Load average 1.24 (1 min)."}));

    EXPECT_EQ(judged("cpu", snapshot).label, "High"); // without an average, the load now
    EXPECT_EQ(judged("cpu", snapshot).evidence.front(), "90% average over the last 5 minutes on 8 cores.");
    EXPECT_EQ(verdict("cpu", snapshot, {nan}), std::pair(Status::unknown, std::string("Unavailable")));
}

TEST_F(HealthEvaluatorTest, namesTheBusiestApplication) {
    const auto named = [&](std::vector<ApplicationSnapshot> apps) {
        snapshot.applications = std::move(apps);
        const Sentences evidence = judged("cpu", snapshot).evidence;
        return evidence.size() > 2 ? evidence[2] : "";
    };
    EXPECT_EQ(named({}), "");
    EXPECT_EQ(named({application("Idle", 0.2)}), "");
    EXPECT_EQ(named({application("Idle", 0.1), application("First", 1.5), openApplication("Second", 1.5)}),
              "First is the busiest app at 150%.");
    EXPECT_EQ(named({application("Broken", nan), application("Whole", 0.25), application("Endless", infinity)}),
              "Whole is the busiest app at 25%.");
}

TEST_F(HealthEvaluatorTest, judgesMemoryByPressure) {
    snapshot.memory.total = 16 * gibibyte;
    snapshot.memory.used = 12 * gibibyte;
    snapshot.memory.compressed = 512 * mebibyte;
    snapshot.memory.availablePercent = 30;
    EXPECT_EQ(verdict("memory", snapshot), std::pair(Status::good, std::string("Normal")));
    EXPECT_EQ(judged("memory", snapshot).evidence,
              Sentences({"Memory pressure 70% (Normal).", "12.0 GB used of 16.0 GB, 512 MB compressed."}));

    snapshot.memory.pressure = MemoryPressure::warning;
    snapshot.memory.swapUsed = gibibyte;
    EXPECT_EQ(verdict("memory", snapshot), std::pair(Status::elevated, std::string("Elevated")));
    EXPECT_EQ(judged("memory", snapshot, {{}, 60}).evidence.front(), "Memory pressure 70% (Elevated).");
    EXPECT_EQ(judged("memory", snapshot, {{}, 61}).evidence,
              Sentences({"Pressure has stayed elevated for 1 min.", "Memory pressure 70% (Elevated).",
                         "12.0 GB used of 16.0 GB, 512 MB compressed.", "1.00 GB of swap in use."}));

    snapshot.memory.pressure = MemoryPressure::critical;
    EXPECT_EQ(verdict("memory", snapshot), std::pair(Status::high, std::string("Critical")));
    EXPECT_EQ(judged("memory", snapshot, {{}, 3700}).evidence.front(), "Pressure has stayed critical for 1h 1m.");
}

TEST_F(HealthEvaluatorTest, judgesStorageByShareAndByAmount) {
    constexpr std::uint64_t gigabyte = 1'000'000'000;
    const auto status = [&](std::uint64_t available, std::uint64_t total) {
        snapshot.disk.volumes = {rootVolume(available, total)};
        return judged("storage", snapshot).status;
    };
    EXPECT_EQ(status(9 * gigabyte, 1000 * gigabyte), Status::high);
    EXPECT_EQ(status(99 * gigabyte, 1000 * gigabyte), Status::high);
    EXPECT_EQ(status(100 * gigabyte, 1000 * gigabyte), Status::good);
    EXPECT_EQ(status(7'680'000'000, 64 * gigabyte), Status::high); // 12%, and yet little
    EXPECT_EQ(status(10 * gigabyte, 64 * gigabyte), Status::good);
    EXPECT_EQ(judged("storage", snapshot).evidence, Sentences({"10 GB available of 64 GB on Disk (15% free)."}));
    EXPECT_EQ(judged("storage", snapshot).label, "Healthy");

    EXPECT_EQ(status(0, 0), Status::unknown);
    EXPECT_EQ(judged("storage", snapshot).destination, "storage");
    snapshot.disk.volumes.front().isRoot = false;
    EXPECT_EQ(verdict("storage", snapshot), std::pair(Status::unknown, std::string("Unavailable")));
    EXPECT_EQ(judged("storage", snapshot).destination, "disk");
    EXPECT_TRUE(judged("storage", snapshot).evidence.empty());
}

TEST_F(HealthEvaluatorTest, judgesTheBattery) {
    snapshot.battery.isPresent = true;
    EXPECT_EQ(verdict("battery", snapshot), std::pair(Status::good, std::string("Healthy")));
    EXPECT_TRUE(judged("battery", snapshot).evidence.empty());

    snapshot.battery.healthPercent = 80;
    snapshot.battery.healthCondition = "";
    EXPECT_EQ(judged("battery", snapshot).status, Status::good);
    EXPECT_EQ(judged("battery", snapshot).evidence, Sentences({"Maximum capacity 80% of the original design."}));
    snapshot.battery.healthPercent = 79;
    snapshot.battery.healthCondition = "Good";
    EXPECT_EQ(verdict("battery", snapshot), std::pair(Status::elevated, std::string("Aging")));

    snapshot.battery.healthPercent = 95;
    snapshot.battery.cycleCount = 300;
    for (const char* condition : {"Replace Now", "battery SERVICE"}) {
        snapshot.battery.healthCondition = condition;
        EXPECT_EQ(verdict("battery", snapshot), std::pair(Status::high, std::string("Service Recommended")));
    }
    EXPECT_EQ(judged("battery", snapshot).evidence,
              Sentences({"Maximum capacity 95% of the original design.", "300 charge cycles.",
                         "macOS reports the condition as “battery SERVICE”."}));
    EXPECT_EQ(judged("battery", snapshot, {{}, {}, PlatformWords::Linux}).evidence.back(),
              "The system reports the condition as “battery SERVICE”.");
}

TEST_F(HealthEvaluatorTest, judgesHeat) {
    EXPECT_EQ(verdict("thermal", snapshot), std::pair(Status::good, std::string("Normal")));
    EXPECT_EQ(judged("thermal", snapshot).evidence,
              Sentences({"macOS thermal state: Nominal.", "CPU temperature is unavailable on this Mac."}));
    EXPECT_EQ(judged("thermal", snapshot, {{}, {}, PlatformWords::Linux}).evidence,
              Sentences({"System thermal state: Nominal.", "CPU temperature is unavailable on this computer."}));

    snapshot.thermal.state = ThermalLevel::fair;
    snapshot.thermal.cpuTemperature = 61.4;
    EXPECT_EQ(verdict("thermal", snapshot), std::pair(Status::elevated, std::string("Elevated")));
    EXPECT_EQ(judged("thermal", snapshot).evidence[1], "CPU 61 °C average.");

    for (const ThermalLevel level : {ThermalLevel::serious, ThermalLevel::critical}) {
        snapshot.thermal.state = level;
        EXPECT_EQ(verdict("thermal", snapshot), std::pair(Status::high, std::string("High")));
    }
    snapshot.thermal.cpuHottest = 100;
    snapshot.thermal.fans = {fan(1999.9), fan(-0.5), fan(nan)};
    Formatters::temperatureUnit = TemperatureUnit::fahrenheit;
    EXPECT_EQ(judged("thermal", snapshot).evidence,
              Sentences({"macOS thermal state: Critical.", "CPU 143 °F average, 212 °F hottest sensor.",
                         "Fans: 1999 rpm, 0 rpm, — rpm."}));
}

TEST_F(HealthEvaluatorTest, sumsWhatRunsInTheBackground) {
    snapshot.applications = {openApplication("Editor", 4), application("Indexer", 0.5), systemApplication(0.25)};
    EXPECT_EQ(verdict("background", snapshot), std::pair(Status::elevated, std::string("Elevated")));
    EXPECT_EQ(judged("background", snapshot).evidence,
              Sentences({"Background processes are using 75% of CPU (100% = one core).",
                         "Busiest: Indexer 50%, System 25%."}));

    snapshot.applications[1].cpu = 0.49;
    EXPECT_EQ(verdict("background", snapshot), std::pair(Status::good, std::string("Normal")));

    snapshot.applications.clear();
    snapshot.systemProcessMetricsIncluded = false;
    EXPECT_EQ(judged("background", snapshot).evidence,
              Sentences({"Background processes are using 0.0% of CPU (100% = one core).",
                         "System processes are measured while the window or menu is open."}));
}

TEST_F(HealthEvaluatorTest, namesThreeBackgroundApplications) {
    snapshot.applications = {application("A", 0.05), application("B", 0.06),       application("NaN", nan),
                             application("C", 1),    application("Inf", infinity), application("D", 0.06),
                             application("E", 0.06)};
    EXPECT_EQ(judged("background", snapshot).evidence,
              Sentences({"Background processes are using 123% of CPU (100% = one core).",
                         "Busiest: C 100%, B 6.0%, D 6.0%."}));
    Formatters::cpuScale = CPUScale::perMac;
    Formatters::logicalCores = 4;
    EXPECT_EQ(judged("background", snapshot).evidence[1], "Busiest: C 25%, B 1.5%, D 1.5%.");
}

} // namespace

} // namespace ostrivane
