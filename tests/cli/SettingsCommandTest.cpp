#include "app/model/AppSettings.hpp"
#include "app/model/FileKeyValueStore.hpp"
#include "cli/SettingsList.hpp"
#include "core/model/JSON.hpp"
#include "core/model/Text.hpp"
#include "tests/TemporaryFolder.hpp"
#include "tests/cli/Program.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace ostrivane {
namespace {

/// `ostrivanectl settings` over a folder of its own.
class SettingsCommand : public testing::Test {
protected:
    SettingsCommand() { ::setenv("OSTRIVANE_CONFIG_DIR", folder.c_str(), 1); }
    ~SettingsCommand() override { ::unsetenv("OSTRIVANE_CONFIG_DIR"); }

    static Finished settings(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "settings");
        return runProgram(arguments);
    }
    Preferences kept() const { return *AppSettings(std::make_unique<FileKeyValueStore>(folder)); }

    const TemporaryFolder temporary;
    const std::string folder = temporary.file("config");
    const std::string file = folder + "/settings.ini";
};

bool holds(const std::string& text, std::string_view part) {
    return text.find(part) != std::string::npos;
}

TEST_F(SettingsCommand, setsWhatIsOffered) {
    EXPECT_EQ(settings({"set", "appearance", "dark"}).out, "appearance: dark\n");
    EXPECT_EQ(settings({"set", "backgroundInterval", "30"}).status, 0);
    EXPECT_EQ(settings({"set", "retentionDays", "90"}).status, 0);
    EXPECT_EQ(settings({"set", "includeSystemProcesses", "false"}).status, 0);
    EXPECT_EQ(settings({"set", "popoverTab", "dev"}).status, 0);
    std::vector<AlertRule> rules = Preferences().alertRules;
    rules[2].threshold = 2.5;
    const Finished list = settings({"set", "alertRules", JSON::text(rules)});
    EXPECT_EQ(list.out, "alertRules: 13 of 13 on\n") << list.err;
    Preferences expected;
    expected.appearance = AppearanceMode::dark;
    expected.backgroundInterval = 30;
    expected.retentionDays = 90;
    expected.includeSystemProcesses = false;
    expected.popoverTab = "dev";
    expected.alertRules = rules;
    EXPECT_EQ(kept(), expected);
    EXPECT_EQ(settings({"get", "appearance"}).out, "dark\n");
    EXPECT_EQ(settings({"get", "appearance", "--json"}).out, "\"dark\"\n");
    EXPECT_EQ(settings({"get", "alertRules"}).out, JSON::text(rules) + "\n");
}

TEST_F(SettingsCommand, refusesWhatIsNot) {
    const std::vector<std::vector<std::string>> refused = {{"set", "appearance", "Dark"},
                                                           {"set", "showInDock", "1"},
                                                           {"set", "backgroundInterval", "1.9"},
                                                           {"set", "backgroundInterval", "5s"},
                                                           {"set", "retentionDays", "91"},
                                                           {"set", "retentionDays", "2.5"},
                                                           {"set", "popoverTab", "all"},
                                                           {"set", "menuBarItems", "[7]"},
                                                           {"set", "alertRules", "none"},
                                                           {"set", "nothing", "1"},
                                                           {"get", "nothing"},
                                                           {"reset", "nothing"},
                                                           {"set", "appearance"},
                                                           {"reset"},
                                                           {}};
    for (const auto& arguments : refused) {
        const Finished finished = settings(arguments);
        EXPECT_EQ(finished.status, 2) << testing::PrintToString(arguments);
        EXPECT_TRUE(finished.out.empty()) << finished.out;
    }
    EXPECT_FALSE(std::filesystem::exists(folder));
    EXPECT_TRUE(holds(settings(refused[0]).err, "appearance takes system, light, dark, not \"Dark\""));
    EXPECT_TRUE(holds(settings(refused[2]).err, "2 to 30 seconds"));
    EXPECT_TRUE(holds(settings(refused[9]).err, "menuBarLayout, menuBarItems")) << "the known ones";
}

TEST_F(SettingsCommand, takesAFileAsItIs) {
    std::filesystem::create_directory(folder);
    temporary.write("config/settings.ini", "[General]\nbackgroundInterval=0.5\nappearance=dark\nrateUnit=knots\n"
                                           "popoverTab=\"\\u001b[2J\"\n");
    EXPECT_EQ(settings({"get", "backgroundInterval"}).out, "0.5\n");
    EXPECT_EQ(settings({"get", "rateUnit"}).out, "bytes\n");
    EXPECT_EQ(settings({"get", "popoverTab"}).out, "␛[2J\n");
    const std::string list = settings({"list"}).out;
    EXPECT_TRUE(holds(list, "* appearance              dark ")) << list;
    EXPECT_TRUE(holds(list, "  rateUnit                bytes")) << list;
    EXPECT_TRUE(holds(list, "Kept in " + file)) << list;
    EXPECT_EQ(settings({"reset", "appearance"}).out, "appearance: system\n");
    EXPECT_FALSE(holds(contentOf(file), "appearance"));
    EXPECT_EQ(settings({"set", "hasOnboarded", "true"}).status, 0);
    EXPECT_EQ(settings({"reset", "--yes"}).status, 0);
    Preferences expected;
    expected.hasOnboarded = true;
    EXPECT_EQ(kept(), expected);
}

TEST_F(SettingsCommand, asksBeforeAllIsSetBack) {
    ASSERT_EQ(settings({"set", "retentionDays", "7"}).status, 0);
    TerminalRun no({"settings", "reset"}, 80, 24);
    ASSERT_TRUE(no.sees("back to its default? [y/N]"));
    no.type("\n");
    EXPECT_EQ(no.wait(), 0);
    EXPECT_EQ(kept().retentionDays, 7);
    TerminalRun yes({"settings", "reset"}, 80, 24);
    ASSERT_TRUE(yes.sees("[y/N]"));
    yes.type("Y\n");
    EXPECT_EQ(yes.wait(), 0);
    EXPECT_EQ(kept().retentionDays, 30);
}

TEST_F(SettingsCommand, saysWhatCouldNotBeKept) {
    temporary.write("config", "no folder");
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"set", "appearance", "dark"}, {"reset", "appearance"}, {"reset", "--yes"}}) {
        const Finished finished = settings(arguments);
        EXPECT_EQ(finished.status, 1);
        EXPECT_EQ(finished.out, "") << "nothing was done";
        EXPECT_TRUE(holds(finished.err, "Not a directory")) << finished.err;
    }
    EXPECT_EQ(settings({"list"}).status, 1);
}

TEST(SettingsList, tellsEachSettingToPeopleAndPrograms) {
    Preferences chosen;
    chosen.alertRules[0].enabled = false;
    chosen.menuBarItems.clear();
    chosen.popoverTab = "a\"b";
    const auto rows = cli::settingRows(chosen);
    const auto json = JSON::parse(cli::settingsJSON(rows));
    ASSERT_TRUE(json && json->is_array());
    ASSERT_EQ(json->get_array().size(), rows.size());
    for (const cli::SettingRow& row : rows) {
        EXPECT_FALSE(row.effect.empty()) << row.key;
        EXPECT_FALSE(row.offered.empty()) << row.key;
        EXPECT_EQ(row.isDefault(), row.key != "alertRules" && row.key != "menuBarItems" && row.key != "popoverTab");
    }
    const std::string text = cli::settingsText(rows, "/a\x1b/b", 60);
    for (const char* part : {"12 of 13 on", "* menuBarItems            none ", "Kept in /a␛/b"})
        EXPECT_TRUE(holds(text, part)) << text;
    for (const std::string_view line : Text::lines(text))
        EXPECT_LE(Text::columns(line), 60) << line;
}

} // namespace
} // namespace ostrivane
