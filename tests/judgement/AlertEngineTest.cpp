#include "core/judgement/AlertEngine.hpp"

#include "core/model/JSON.hpp"
#include "tests/judgement/AlertSnapshots.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <set>

namespace ostrivane {

namespace {

const std::vector<AlertRule> allRules(AlertRule::defaults.begin(), AlertRule::defaults.end());

std::optional<std::vector<AlertRule>> readRules(std::string_view text) {
    const auto json = JSON::parse(text);
    return json ? JSON::read<std::vector<AlertRule>>(*json) : std::nullopt;
}

std::vector<std::string> kindsAndSubjects(const std::vector<Alert>& alerts) {
    std::vector<std::string> found;
    for (const Alert& alert : alerts)
        found.push_back(std::string(rawValue(alert.kind)) + " " + alert.subject.value_or("?"));
    return found;
}

} // namespace

TEST(AlertRule, isReadWholeOrNotAtAll) {
    EXPECT_EQ(readRules(JSON::text(allRules)), allRules);
    const std::string text = JSON::text(std::vector{AlertRule::defaults[0]});
    EXPECT_EQ(text,
              R"([{"kind":"sustainedCPU","enabled":true,"threshold":80,"window":600,"cooldown":3600,"notify":true}])");
    for (const std::string_view member : {R"("kind":"sustainedCPU",)", R"("enabled":true,)", R"("threshold":80,)",
                                          R"("window":600,)", R"("cooldown":3600,)", R"(,"notify":true)"}) {
        std::string without = text;
        without.erase(without.find(member), member.size());
        EXPECT_FALSE(readRules(without)) << without;
    }
    std::string unknown = text;
    unknown.replace(unknown.find("sustained"), 9, "suspended");
    EXPECT_FALSE(readRules(unknown));
}

TEST(AlertEngine, looksAtNothingWithoutAnInterval) {
    AlertFeed feed({ruleAt(AlertKind::excessiveMemory, 1)});
    feed.snapshot.memory = {.total = GiB, .pressure = MemoryPressure::warning};
    feed.app("a").memory = GiB;
    for (const double interval : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN()}) {
        feed.snapshot.interval = interval;
        EXPECT_EQ(told(feed.tick()), "");
        EXPECT_TRUE(feed.engine.memorySeries("a").empty());
        EXPECT_EQ(feed.engine.pressureElevatedSince(), std::nullopt);
    }
    feed.snapshot.interval = 10;
    EXPECT_EQ(feed.tick().size(), 1U);
    const auto since = feed.engine.pressureElevatedSince();
    feed.snapshot.interval = 0;
    feed.snapshot.memory.pressure = MemoryPressure::normal;
    feed.tick();
    EXPECT_EQ(feed.engine.pressureElevatedSince(), since);
}

TEST(AlertEngine, staysSilentForTheCooldownOfEachRuleAndSubject) {
    AlertRule load = defaultRule(AlertKind::sustainedCPU);
    AlertRule share = ruleAt(AlertKind::excessiveMemory, 50);
    share.cooldown = 300;
    AlertFeed feed({load, share});
    feed.snapshot.memory.total = GiB;
    feed.app("a").cpu = 1;
    feed.app("a").memory = GiB;
    feed.pass(300);
    feed.app("b").cpu = 1;
    EXPECT_EQ(kindsAndSubjects(feed.pass(240)), std::vector<std::string>{"excessiveMemory a"});
    EXPECT_EQ(kindsAndSubjects(feed.pass(10)), std::vector<std::string>{"sustainedCPU a"});
    EXPECT_EQ(kindsAndSubjects(feed.pass(300)), (std::vector<std::string>{"excessiveMemory a", "sustainedCPU b"}));
    feed.app("b").cpu = 0;
    feed.app("a").memory = 0;
    EXPECT_TRUE(feed.pass(3290).empty());
    EXPECT_EQ(kindsAndSubjects(feed.tick()), std::vector<std::string>{"sustainedCPU a"}); // to the second
}

TEST(AlertEngine, keepsWhatItKnowsWhenRulesChange) {
    AlertRule rule = defaultRule(AlertKind::sustainedCPU);
    rule.enabled = false;
    AlertFeed feed({rule});
    feed.snapshot.memory.pressure = MemoryPressure::warning;
    const double start = feed.snapshot.timestamp.seconds;
    feed.app("a").cpu = 1;
    EXPECT_TRUE(feed.pass(1200).empty());
    EXPECT_EQ(feed.engine.pressureElevatedSince(), start); // tracked without a rule
    feed.engine.update(std::vector<AlertRule>());
    EXPECT_TRUE(feed.tick().empty());
    rule.enabled = true;
    rule.notify = false;
    feed.engine.update(std::vector{rule});
    const auto alerts = feed.tick();
    ASSERT_EQ(alerts.size(), 1U); // the window has passed meanwhile
    EXPECT_FALSE(alerts[0].notify);
    EXPECT_EQ(alerts[0].date, feed.snapshot.timestamp + -10);
    feed.engine.update(std::vector{defaultRule(AlertKind::sustainedCPU)});
    EXPECT_TRUE(feed.tick().empty()); // and the cooldown goes on
}

TEST(AlertEngine, forgetsApplicationsTenMinutesAfterTheyWereLastSeen) {
    AlertFeed feed(allRules);
    feed.app("gone").cpu = 0.5;
    feed.app("gone").memory = 7;
    feed.tick();
    feed.snapshot.applications.clear();
    feed.pass(600);
    EXPECT_EQ(feed.engine.memorySeries("gone"), (std::vector<TimedValue>{{1'700'000'000, 7}}));
    EXPECT_EQ(feed.engine.cpuSeries("gone"), (std::vector<TimedValue>{{1'700'000'000, 0.5}}));
    feed.tick();
    EXPECT_TRUE(feed.engine.cpuSeries("gone").empty());
}

TEST(AlertEngine, boundsItsSeriesAtAnyRate) {
    AlertFeed feed({}, 0.25);
    feed.app("a").cpu = 1;
    feed.pass(12'000);
    EXPECT_EQ(feed.engine.cpuSeries("a").size(), 390U);
    EXPECT_EQ(feed.engine.memorySeries("a").size(), 360U);
}

TEST(AlertEngine, tellsAFloodInOrder) {
    AlertFeed feed(
        {ruleAt(AlertKind::sustainedCPU, 0), ruleAt(AlertKind::lowStorage, 50), ruleAt(AlertKind::diskWrite, 0)});
    feed.snapshot.disk.volumes = {{.mountPoint = "/", .total = 2, .available = 0, .isRoot = true}};
    for (int at = 400; at > 0; --at)
        feed.app(std::to_string(1000 + at)).name = at % 2 == 0 ? "" : "\xff{}%s"; // as names may be
    EXPECT_EQ(feed.tick().size(), 1U);
    feed.pass(260);
    const auto traffic = feed.tick();
    EXPECT_EQ(traffic.size(), 400U);
    EXPECT_TRUE(std::ranges::is_sorted(traffic, {}, [](const Alert& alert) { return *alert.subject; }));
    std::set<boost::uuids::uuid> ids;
    for (const Alert& alert : traffic)
        ids.insert(alert.id);
    EXPECT_EQ(ids.size(), 400U);
}

TEST(AlertEngine, saysWhatIsTrueOnThePlatform) {
    AlertRule heat = defaultRule(AlertKind::thermalPressure);
    heat.window = 0;
    AlertFeed feed({ruleAt(AlertKind::excessiveMemory, 50), heat, ruleAt(AlertKind::swapGrowth, 0)}, 10,
                   PlatformWords::Linux);
    feed.snapshot.memory.total = GiB;
    feed.snapshot.thermal.state = ThermalLevel::serious;
    feed.app("a").memory = GiB;
    EXPECT_EQ(
        told(feed.tick()),
        "critical a: Name of a is using 1.00 GB | That's 100% of this computer's 1.00 GB of memory, across 1 "
        "processes.\n"
        "warning system: Swap grew by 0 B | Swap went from 0 B to 0 B in 0s. The computer is short on memory.\n"
        "warning thermal: The system reports serious thermal pressure | The system has been at serious or worse for "
        "0s; the system may be reducing performance to cool down.\n");
}

TEST(AlertEngine, survivesAnyNumber) {
    constexpr double infinite = std::numeric_limits<double>::infinity();
    constexpr double largest = std::numeric_limits<double>::max();
    constexpr auto mostBytes = std::numeric_limits<std::uint64_t>::max();
    std::vector<AlertRule> rules = allRules;
    for (AlertRule& rule : rules) {
        rule.threshold = rule.kind == AlertKind::lowStorage ? largest : -largest;
        rule.cooldown = 0;
    }
    AlertFeed feed(rules, 60);
    SystemSnapshot& snapshot = feed.snapshot;
    snapshot.battery = {.isPresent = true,
                        .percent = std::numeric_limits<std::int64_t>::max(),
                        .state = BatterySnapshot::State::discharging};
    snapshot.memory = {.total = 1, .swapUsed = mostBytes, .pressure = MemoryPressure::critical, .availablePercent = -7};
    snapshot.disk.volumes = {{.mountPoint = "/", .total = 1, .available = mostBytes, .isRoot = true}};
    for (const double figure : {largest, -largest, infinite, -infinite, std::nan(""), 1e300, -0.0}) {
        for (const std::string key : {"a", "system", ""}) {
            ApplicationSnapshot& app = feed.app(key);
            app.memory = mostBytes;
            app.cpu = app.diskWriteRate = figure;
            app.netInRate = app.netOutRate = app.powerW = figure;
        }
        snapshot.thermal.cpuTemperature = figure;
        snapshot.thermal.fans = {{.rpm = figure}};
        snapshot.devServers = {{.uptime = figure, .idleFor = figure, .isIdle = true}};
        feed.pass(1200);
        snapshot.battery.percent = std::numeric_limits<std::int64_t>::min();
    }
    EXPECT_EQ(feed.tick().back().body, "9.22 EB free of 1 byte (1844674407370955161600%).");
    for (const double time : {infinite, std::nan(""), largest, -largest, 0.0}) {
        snapshot.timestamp.seconds = time;
        feed.tick();
    }
}

TEST(AlertEngine, neitherFiresNorForgetsWhileTheClockStandsBack) {
    AlertFeed feed({defaultRule(AlertKind::sustainedCPU), defaultRule(AlertKind::memoryPressure)});
    feed.snapshot.memory.pressure = MemoryPressure::warning;
    feed.app("a").cpu = 1;
    feed.app("gone");
    EXPECT_EQ(feed.pass(200).size(), 0U);
    feed.snapshot.applications.pop_back();
    feed.snapshot.timestamp.seconds -= 3600;
    EXPECT_TRUE(feed.pass(3600).empty());
    EXPECT_EQ(feed.engine.cpuSeries("a").size(), 20U);
    EXPECT_EQ(feed.engine.cpuSeries("gone").size(), 20U);
    EXPECT_EQ(kindsAndSubjects(feed.pass(110)), std::vector<std::string>{"memoryPressure system"});
    EXPECT_EQ(kindsAndSubjects(feed.pass(250)), std::vector<std::string>{"sustainedCPU a"});
}

} // namespace ostrivane
