#include "app/model/platform/macos/MacKeyValueStore.hpp"

#include "app/model/AppSettings.hpp"
#include "tests/macsim/MacSimTest.hpp"

#include <boost/json.hpp>

using namespace ostrivane;

namespace {

class MacKeyValueStoreTest : public MacSimTest {
protected:
    static MacKeyValueStore open() { return MacKeyValueStore("Test"); }
    static boost::json::object& values() {
        return macsim::preferences().emplace("Test", boost::json::object()).first->value().as_object();
    }
};

} // namespace

TEST_F(MacKeyValueStoreTest, keepsEveryKindAsTheSystemHasIt) {
    MacKeyValueStore store = open();
    EXPECT_TRUE(store.keys().empty());
    store.setBoolean("on", true);
    store.setBoolean("off", false);
    store.setNumber("whole", 5);
    store.setNumber("half", 0.5);
    store.setNumber("none", INFINITY);
    store.setInteger("days", 30);
    store.setText("tab", "d\xFF"
                         "v");
    store.setJSON("list", "[1]");
    const boost::json::object expected{{"on", true},
                                       {"off", false},
                                       {"whole", 5.0},
                                       {"half", 0.5},
                                       {"days", 30},
                                       {"tab", "d\xEF\xBF\xBDv"},
                                       {"list", {{"$data", "5b315d"}}}};
    EXPECT_EQ(values(), expected);
    EXPECT_EQ(store.boolean("off"), false);
    EXPECT_EQ(store.number("half"), 0.5);
    EXPECT_EQ(store.number("days"), 30);
    EXPECT_EQ(store.integer("whole"), 5);
    EXPECT_EQ(store.integer("half"), std::nullopt);
    EXPECT_EQ(store.boolean("days"), std::nullopt);
    EXPECT_EQ(store.number("on"), std::nullopt) << "a boolean is no number";
    EXPECT_EQ(store.text("list"), std::nullopt);
    EXPECT_EQ(store.json("tab"), std::nullopt);
    EXPECT_EQ(store.json("list"), "[1]");
    EXPECT_EQ(store.keys().size(), 7U);
    store.remove("tab");
    EXPECT_EQ(store.text("tab"), std::nullopt);
    EXPECT_EQ(store.problem(), std::nullopt);
}

TEST_F(MacKeyValueStoreTest, saysWhenTheSystemRefuses) {
    MacKeyValueStore store = open();
    macsim::refuse("CFPreferencesAppSynchronize");
    store.setInteger("days", 30);
    ASSERT_TRUE(store.problem());
    EXPECT_NE(store.problem()->find("Preferences/Test.plist"), std::string::npos);
    EXPECT_EQ(store.integer("days"), 30);
    macsim::refuse("CFNumberCreate");
    store.setInteger("days", 31);
    EXPECT_EQ(store.integer("days"), 30) << "no value is no removal";
    macsim::refuse("CFStringCreateWithBytes");
    EXPECT_EQ(store.integer("days"), std::nullopt);
    store.remove("days");
    EXPECT_TRUE(values().contains("days"));
}

TEST_F(MacKeyValueStoreTest, noticesOtherPrograms) {
    values()["popoverTab"] = "apps";
    std::function<bool()> hasChanged;
    {
        AppSettings settings(std::make_unique<MacKeyValueStore>("Test"));
        EXPECT_EQ(settings->popoverTab, "apps");
        values()["retentionDays"] = 7;
        hasChanged = settings.defaults().watch();
        EXPECT_TRUE(hasChanged()) << "since the values were read";
        EXPECT_FALSE(hasChanged());
        settings.reload();
        EXPECT_EQ(settings->retentionDays, 7);
        settings.resetAll();
        EXPECT_FALSE(values().contains("popoverTab"));
        EXPECT_EQ(values().at("retentionDays"), 30);
    }
    EXPECT_TRUE(hasChanged()) << "and outlives the store";
    EXPECT_FALSE(hasChanged());
}
