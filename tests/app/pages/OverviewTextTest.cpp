#include "app/pages/OverviewText.hpp"

#include "app/model/AppState.hpp"
#include "app/pages/Findings.hpp"
#include "tests/app/pages/PageHarness.hpp"

#include <gtest/gtest.h>

#include <cmath>

namespace ostrivane {

namespace {

using Status = HealthCategory::Status;

constexpr std::uint64_t gibibyte = 1ULL << 30;

ApplicationSnapshot app(const std::string& key, std::uint64_t memory, double cpu) {
    ApplicationSnapshot made;
    made.key = key;
    made.name = "Name of " + key;
    made.memory = memory;
    made.cpu = cpu;
    return made;
}

AppState stateOf(std::vector<ApplicationSnapshot> apps) {
    SystemSnapshot snapshot = SystemSnapshot::empty(Date{1'700'000'000});
    snapshot.applications = std::move(apps);
    AppState state;
    state.hasFirstSample = true;
    state.snapshot = std::make_shared<SystemSnapshot>(std::move(snapshot));
    return state;
}

std::vector<std::string> keys(const std::vector<RankRow>& rows) {
    std::vector<std::string> found;
    for (const RankRow& row : rows)
        found.push_back(row.key);
    return found;
}

HealthCategory category(const std::string& name, Status status) {
    return {.name = name, .status = status, .label = "word", .destination = "memory"};
}

Insight insight(const std::string& id, Insight::Level level, std::optional<std::string> appKey,
                std::optional<std::string> destination) {
    return {.id = id, .level = level, .title = id, .appKey = std::move(appKey), .destination = std::move(destination)};
}

} // namespace

TEST(OverviewRanks, orderApplicationsAndKeepTheSystemToTheProcessor) {
    const AppState state = stateOf({app("small", 100, 0.1), app("system", 900, 0.5), app("large", 400, 0.2),
                                    app("broken", 200, std::nan("")), app("equal", 100, 0.2)});
    const auto memory = presentRanks(state, RankFigure::memory);
    EXPECT_EQ(keys(memory), (std::vector<std::string>{"large", "broken", "equal", "small"}));
    EXPECT_EQ(memory.front().share, 1);
    EXPECT_EQ(memory.back().share, 0.25);
    const auto cpu = presentRanks(state, RankFigure::cpu);
    EXPECT_EQ(keys(cpu), (std::vector<std::string>{"system", "equal", "large", "small", "broken"}));
    EXPECT_EQ(cpu.front().figure, QStringLiteral("50%"));
    EXPECT_EQ(cpu.back().figure, QStringLiteral("—"));
    EXPECT_EQ(cpu.back().share, 0);
}

TEST(OverviewRanks, areSevenAndWaitForTheFirstSample) {
    std::vector<ApplicationSnapshot> apps;
    for (std::uint64_t index = 0; index < 500; ++index)
        apps.push_back(app("app " + std::to_string(index), index, 0));
    AppState state = stateOf(apps);
    const auto rows = presentRanks(state, RankFigure::memory);
    EXPECT_EQ(rows.size(), 7U);
    EXPECT_EQ(rows.back().key, "app 493");
    state.hasFirstSample = false;
    EXPECT_TRUE(presentRanks(state, RankFigure::memory).empty());
}

TEST(OverviewRanks, keepTheirPlacesWhileHeld) {
    const auto before =
        presentRanks(stateOf({app("a", 300, 0), app("b", 200, 0), app("c", 100, 0)}), RankFigure::memory);
    const auto held =
        presentRanks(stateOf({app("a", 100, 0), app("c", 400, 0), app("new", 900, 0)}), RankFigure::memory, before);
    EXPECT_EQ(keys(held), (std::vector<std::string>{"a", "b", "c"}));
    EXPECT_EQ(held[0].figure, QStringLiteral("100 B"));
    EXPECT_TRUE(held[1].isGone);
    EXPECT_EQ(held[1].name, "Name of b");
    EXPECT_EQ(held[1].figure, QStringLiteral("—"));
    EXPECT_FALSE(held[2].isGone);
    EXPECT_LE(held[2].share, 1);
}

TEST(OverviewHead, judgesNothingBeforeTheMachineWasMeasured) {
    AppState state = stateOf({});
    state.hasFirstSample = false;
    state.health = {category("Memory", Status::high)}; // of a first reading, which has no rates
    EXPECT_EQ(presentOverviewHead(state).status, QStringLiteral("Measuring…"));
    EXPECT_EQ(presentOverviewHead(state).condition, std::nullopt);
    EXPECT_TRUE(presentOverviewHead(state).uptime.isEmpty());
    EXPECT_TRUE(presentHealthLines(state).empty());

    state.hasFirstSample = true;
    EXPECT_EQ(presentOverviewHead(state).status, QStringLiteral("Memory needs attention"));
    EXPECT_EQ(presentOverviewHead(state).condition, Condition::high);
    EXPECT_EQ(presentHealthLines(state).front().page, Page::memory);
}

TEST(OverviewHead, namesMachineAndUptime) {
    AppState state = stateOf({});
    auto snapshot = std::make_shared<SystemSnapshot>(*state.snapshot);
    snapshot->macModel = "Laptop";
    snapshot->cpu.uptime = 6 * 86400 + 4 * 3600;
    state.snapshot = snapshot;
    EXPECT_TRUE(presentOverviewHead(state).machine.isEmpty()); // a name from before the first reading is none
    state.tick = 1;
    EXPECT_EQ(presentOverviewHead(state).machine, QStringLiteral("Laptop"));
    EXPECT_EQ(presentOverviewHead(state).uptime, QStringLiteral("· up 6d 4h"));
}

TEST(Findings, theWorstIsWhatNeedsAttentionMost) {
    const auto worst = [](std::vector<Status> statuses) {
        std::vector<HealthCategory> health;
        for (const Status status : statuses)
            health.push_back(category("x", status));
        return worstCondition(health);
    };
    EXPECT_EQ(worst({}), std::nullopt);
    EXPECT_EQ(worst({Status::unknown}), Condition::unknown);
    EXPECT_EQ(worst({Status::unknown, Status::good}), Condition::good);
    EXPECT_EQ(worst({Status::elevated, Status::unknown, Status::good}), Condition::elevated);
    EXPECT_EQ(worst({Status::elevated, Status::high}), Condition::high);
}

TEST(Findings, insightsLeadToTheirPageWithTheirApplication) {
    const auto rows = insightRows({insight("one", Insight::Level::warning, "key", "memory"),
                                   insight("two", Insight::Level::info, std::nullopt, std::nullopt),
                                   insight("three", Insight::Level::notice, "key", std::nullopt)},
                                  2);
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0].condition, Condition::elevated);
    EXPECT_TRUE(rows[0].leadsSomewhere);
    EXPECT_FALSE(rows[1].leadsSomewhere);

    ModelHarness harness;
    AppModel& model = *harness.model;
    model.setWindowVisible(true); // it is judged on every snapshot then
    SystemSnapshot snapshot = SystemSnapshot::empty(harness.now);
    snapshot.interval = 2;
    snapshot.memory.swapUsed = 2 * gibibyte;
    snapshot.applications = {app("hungry", 2 * gibibyte, 0)};
    harness.apply(std::move(snapshot));
    openInsight(model, "mem-share");
    EXPECT_EQ(model.selectedAppKey(), "hungry");
    EXPECT_EQ(model.navigation().selectedPage(), Page::memory);
    openInsight(model, "swap");
    EXPECT_EQ(model.selectedAppKey(), std::nullopt) << "it is about no application";

    model.select(Page::overview);
    model.selectApp("before");
    openInsight(model, "gone by now");
    EXPECT_EQ(model.selectedAppKey(), "before");
    EXPECT_EQ(model.navigation().selectedPage(), Page::overview);
}

TEST(OverviewTotals, showADashWhereNobodyMeasured) {
    AppState state = stateOf({});
    state.todayTotals.diskRead = 42'100'000'000;
    state.monthTotals.energyWh = 1900;
    const auto rows = presentTotals(state);
    ASSERT_EQ(rows.size(), totalsPages.size());
    EXPECT_EQ(rows[0].figures[0], QStringLiteral("42.1 GB"));
    EXPECT_EQ(rows[0].figures[1], QStringLiteral("—"));
    EXPECT_EQ(rows[4].figures[2], QStringLiteral("1.90 kWh"));
    EXPECT_EQ(rows[4].figures[0], QStringLiteral("—"));
}

} // namespace ostrivane
