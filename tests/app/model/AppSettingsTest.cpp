#include "app/model/AppSettings.hpp"

#include "core/model/Formatters.hpp"
#include "core/model/JSON.hpp"
#include "tests/app/model/MemoryKeyValueStore.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

namespace ostrivane {
namespace {

using Content = MemoryKeyValueStore::Content;
using Document = MemoryKeyValueStore::JSONDocument;

/// Settings over a store that the test, as another program would, can look into and change.
class AppSettingsTest : public testing::Test {
protected:
    ~AppSettingsTest() override {
        Formatters::temperatureUnit = TemperatureUnit::celsius;
        Formatters::rateUnit = RateUnit::bytes;
        Formatters::cpuScale = CPUScale::perCore;
    }

    AppSettings open() const { return AppSettings(std::make_unique<MemoryKeyValueStore>(content)); }

    const std::shared_ptr<Content> content = std::make_shared<Content>();
};

TEST_F(AppSettingsTest, areTheDefaultsOverAnEmptyStoreAndWriteNothing) {
    const AppSettings settings = open();
    EXPECT_EQ(*settings, Preferences());
    EXPECT_EQ(settings->alertRules.size(), alertKindCount);
    EXPECT_TRUE(content->written.empty());
    EXPECT_EQ(settings.sampling(), SamplingSettings());
}

TEST_F(AppSettingsTest, surviveAsTheyWereSet) {
    Preferences wanted;
    wanted.menuBarLayout = MenuBarLayout::separate;
    std::ranges::reverse(wanted.menuBarItems);
    wanted.appearance = AppearanceMode::dark;
    wanted.rateUnit = RateUnit::bits;
    wanted.includeSystemProcesses = false;
    wanted.backgroundInterval = 0.5;
    wanted.retentionDays = 90;
    wanted.popoverTab = "dev";
    wanted.organizerGrouping = OrganizerGrouping::kindAndMonth;
    wanted.alertRules[3].threshold = 1.1;
    {
        AppSettings settings = open();
        boost::mp11::mp_for_each<JSON::MembersOf<Preferences>>(
            [&](auto member) { settings.set(member.pointer, wanted.*member.pointer); });
        EXPECT_EQ(*settings, wanted);
    }
    EXPECT_EQ(content->values.size(), 23U);
    EXPECT_EQ(content->values.at("appearance"), MemoryKeyValueStore::Value(Document{"\"dark\""}));
    EXPECT_EQ(content->values.at("popoverTab"), MemoryKeyValueStore::Value(std::string("dev")));
    EXPECT_EQ(content->values.at("retentionDays"), MemoryKeyValueStore::Value(std::int64_t(90)));
    EXPECT_EQ(*open(), wanted);
    EXPECT_EQ(open().sampling().backgroundInterval, 0.5) << "below what the controls offer";
}

TEST_F(AppSettingsTest, fallBackOneByOne) {
    content->values = {{"showInDock", std::string("yes")},
                       {"includeSystemProcesses", std::int64_t(0)},
                       {"backgroundInterval", std::string("fast")},
                       {"foregroundInterval", std::int64_t(3)},
                       {"idleThresholdHours", std::numeric_limits<double>::infinity()},
                       {"retentionDays", 30.5},
                       {"appearance", Document{"\"darker\""}},
                       {"temperatureUnit", Document{"{damaged"}},
                       {"rateUnit", Document{"\"bits\""}},
                       {"organizerGrouping", std::string("byMonth")},
                       {"popoverTab", true},
                       {"perProcessNetwork", false},
                       {"unknown", true}};
    Preferences expected;
    expected.foregroundInterval = 3;
    expected.rateUnit = RateUnit::bits;
    expected.perProcessNetwork = false; // a stored false is no absent value
    EXPECT_EQ(*open(), expected);
}

TEST_F(AppSettingsTest, fillListsUp) {
    content->values = {
        {"menuBarItems", Document{R"([{"metric":"power","enabled":true,"style":"both","showCaption":false},
            {"metric":"cpu","enabled":false,"style":"graph","showCaption":true},
            {"metric":"cpu","enabled":true,"style":"value","showCaption":true},
            {"metric":"disk","enabled":true,"style":"value","showCaption":true}])"}},
        {"alertRules", Document{R"([{"kind":"lowStorage","enabled":false,"threshold":5,"window":0,"cooldown":60,
                                     "notify":false}])"}}};
    const AppSettings settings = open();
    std::vector<MenuMetric> order;
    for (const MenuBarItemConfig& item : settings->menuBarItems)
        order.push_back(item.metric);
    using M = MenuMetric;
    EXPECT_EQ(order, (std::vector{M::power, M::cpu, M::cpu, M::disk, M::memory, M::gpu, M::network, M::temperature,
                                  M::battery}));
    EXPECT_EQ(settings->menuBarItems[1].style, MenuItemStyle::graph);
    EXPECT_EQ(settings->menuBarItems[4], (MenuBarItemConfig{M::memory, false, MenuItemStyle::value, true}));
    ASSERT_EQ(settings->alertRules.size(), alertKindCount);
    EXPECT_EQ(settings->alertRules[0].threshold, 5);
    EXPECT_TRUE(std::equal(settings->alertRules.begin() + 1, settings->alertRules.end(), AlertRule::defaults.begin()));
}

TEST_F(AppSettingsTest, takeAListWholeOrNotAtAll) {
    for (const char* damaged :
         {R"([{"metric":"cpu","enabled":true,"style":"value"}])", R"([{"metric":"weather","enabled":true,
          "style":"value","showCaption":true}])",
          R"([7])", R"({})", ""}) {
        content->values["menuBarItems"] = Document{damaged};
        EXPECT_EQ(open()->menuBarItems, Preferences().menuBarItems) << damaged;
    }
    content->values["alertRules"] = Document{R"([{"kind":"lowStorage","enabled":false,"threshold":5,"window":0,
        "cooldown":60,"notify":false},{"kind":"sunburn","enabled":true,"threshold":5,"window":0,"cooldown":60,
        "notify":false}])"};
    EXPECT_EQ(open()->alertRules, Preferences().alertRules);
}

TEST_F(AppSettingsTest, showTheirUnitsEverywhere) {
    content->values = {{"temperatureUnit", Document{"\"fahrenheit\""}}, {"cpuScale", Document{"\"perMac\""}}};
    AppSettings settings = open();
    EXPECT_EQ(Formatters::temperatureUnit, TemperatureUnit::fahrenheit);
    EXPECT_EQ(Formatters::cpuScale, CPUScale::perMac);
    settings.set(&Preferences::rateUnit, RateUnit::bits);
    EXPECT_EQ(Formatters::rateUnit, RateUnit::bits);
    content->values["rateUnit"] = Document{"\"bytes\""};
    settings.reload();
    EXPECT_EQ(Formatters::rateUnit, RateUnit::bytes);
    settings.resetAll();
    EXPECT_EQ(Formatters::cpuScale, CPUScale::perCore);
}

TEST_F(AppSettingsTest, tellTheirObserversAndStandEvenUnkept) {
    AppSettings settings = open();
    int calls = 0;
    {
        const Subscription subscription = settings.observe([&] {
            EXPECT_EQ(settings->retentionDays, 7);
            ++calls;
        });
        settings.set(&Preferences::retentionDays, 7);
        EXPECT_EQ(calls, 1);
    }
    content->problem = "the disk is full";
    settings.set(&Preferences::retentionDays, 8);
    EXPECT_EQ(calls, 1) << "nobody listens any more";
    EXPECT_EQ(settings->retentionDays, 8);
    EXPECT_EQ(open()->retentionDays, 7);
}

TEST_F(AppSettingsTest, resetAllLeavesWhatIsNotAChoice) {
    content->values = {{"NSWindow Frame", std::string("0 0")},
                       {"AppleLocale", std::string("en")},
                       {"hasOnboarded", true},
                       {"leftover", std::int64_t(1)},
                       {"showInDock", true},
                       {"popoverTab", std::string("dev")},
                       {"organizerGrouping", std::string("kindAndMonth")}};
    AppSettings settings = open();
    settings.set(&Preferences::foregroundInterval, 9);
    int calls = 0;
    const Subscription subscription = settings.observe([&] { ++calls; });
    content->written.clear();
    settings.resetAll();
    Preferences expected;
    expected.hasOnboarded = true;
    expected.popoverTab = "dev";
    expected.organizerGrouping = OrganizerGrouping::kindAndMonth;
    EXPECT_EQ(*settings, expected);
    EXPECT_EQ(calls, 19);
    const std::vector<std::string> assigned(content->written.end() - 19, content->written.end());
    EXPECT_EQ(assigned.front(), "menuBarLayout");
    EXPECT_EQ(assigned.back(), "checkForUpdates");
    for (const char* gone : {"leftover", "popoverTab", "organizerGrouping"})
        EXPECT_FALSE(content->values.contains(gone)) << gone;
    for (const char* kept : {"NSWindow Frame", "AppleLocale", "hasOnboarded"})
        EXPECT_TRUE(content->values.contains(kept)) << kept;
    settings.reload();
    EXPECT_EQ(settings->popoverTab, "dev") << "until the next start";
    EXPECT_EQ(open()->popoverTab, "overview");
}

TEST_F(AppSettingsTest, followWhatAnotherProgramChanged) {
    AppSettings mine = open();
    AppSettings other = open();
    const auto hasChanged = mine.defaults().watch();
    EXPECT_FALSE(hasChanged());
    other.set(&Preferences::popoverTab, "apps");
    other.set(&Preferences::perProcessNetwork, false);
    int calls = 0;
    const Subscription subscription = mine.observe([&] { ++calls; });
    EXPECT_TRUE(hasChanged());
    EXPECT_FALSE(hasChanged());
    mine.reload();
    EXPECT_EQ(*mine, *other);
    EXPECT_EQ(calls, 1);
    mine.reload();
    EXPECT_EQ(calls, 1) << "nothing is new";
}

TEST(Preferences, haveTitles) {
    EXPECT_EQ(title(TemperatureSource::hottest), "Hottest sensor");
    EXPECT_EQ(title(MenuBarLayout::combined), "One item, several values");
}

} // namespace
} // namespace ostrivane
