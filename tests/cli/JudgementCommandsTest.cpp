#include "tests/cli/Program.hpp"

#include "app/model/AppSettings.hpp"
#include "core/history/HistoryLock.hpp"
#include "core/history/SQLiteDatabase.hpp"
#include "core/history/StoredAlert.hpp"
#include "core/judgement/HealthCategory.hpp"
#include "core/judgement/Insight.hpp"
#include "core/model/JSON.hpp"
#include "tests/Fixtures.hpp"
#include "tests/history/StoreHarness.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <variant>

namespace ostrivane {
namespace {

template <class Record>
std::vector<Record> recordsFrom(const std::string& text) {
    const auto json = JSON::parse(text);
    const auto records = json ? JSON::read<std::vector<Record>>(*json) : std::nullopt;
    EXPECT_TRUE(records) << text;
    return records.value_or(std::vector<Record>());
}

bool holds(const std::string& text, std::string_view part) {
    return text.find(part) != std::string::npos;
}

/// Commands over folders of their own for data and settings.
class JudgementCommands : public testing::Test {
protected:
    JudgementCommands() {
        ::setenv("OSTRIVANE_DATA_DIR", data.c_str(), 1);
        ::setenv("OSTRIVANE_CONFIG_DIR", config.c_str(), 1);
    }
    ~JudgementCommands() override {
        ::unsetenv("OSTRIVANE_DATA_DIR");
        ::unsetenv("OSTRIVANE_CONFIG_DIR");
    }

    static Finished alerts(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "alerts");
        return runProgram(arguments);
    }

    const TemporaryFolder folder;
    const std::string data = folder.file("data");
    const std::string config = folder.file("config");
    const std::string file = data + "/history.sqlite";
    const std::string laptop = fixture("recordings/laptop.jsonl").string();
};

TEST_F(JudgementCommands, judgeARecordingAtItsEnd) {
    const Finished health = runProgram({"health", "--json", "--replay", laptop});
    EXPECT_EQ(health.status, 0) << health.err;
    const auto categories = recordsFrom<HealthCategory>(health.out);
    const auto isCalled = [](const char* id) {
        return [id](const HealthCategory& category) { return category.id == id; };
    };
    EXPECT_TRUE(std::ranges::any_of(categories, isCalled("memory")));
    const auto storage = std::ranges::find_if(categories, isCalled("storage"));
    ASSERT_NE(storage, categories.end());
    EXPECT_EQ(storage->status, HealthCategory::Status::unknown) << "nobody read it";
    EXPECT_EQ(health.out, runProgram({"health", "--json", "--replay", laptop}).out);
    const Finished words = runProgram({"health", "--replay", laptop});
    EXPECT_TRUE(holds(words.out, "[?]  unknown   Storage: Unavailable\n")) << words.out;
    const Finished insights =
        runProgram({"insights", "--json", "--replay", fixture("recordings/developer.jsonl").string()});
    EXPECT_EQ(insights.status, 0) << insights.err;
    EXPECT_FALSE(recordsFrom<Insight>(insights.out).empty());
    EXPECT_FALSE(std::filesystem::exists(data)) << "who only looks makes nothing";
    EXPECT_FALSE(std::filesystem::exists(config));
}

TEST_F(JudgementCommands, judgeThisMachineBesideItsHistory) {
    std::filesystem::create_directory(data);
    StoreHarness writer(file);
    const Finished health = runProgram({"health", "--interval", "0.1"});
    EXPECT_EQ(health.status, 0) << health.err;
    for (const char* part : {"CPU: ", "Memory: ", "of CPU (100% = one core)."})
        EXPECT_TRUE(holds(health.out, part)) << part << " in\n" << health.out;
}

TEST_F(JudgementCommands, tellWhatIsWrongWithARecording) {
    const std::string damaged = folder.write("damaged.jsonl", "{\"format\":\"ostrivane-recording\",\"version\":1}\n"
                                                              "{\"at\":1,\"processor.ticks\":7}\n{\"at\":2}\n");
    for (const char* command : {"health", "insights"}) {
        EXPECT_EQ(runProgram({command, "--replay", "/none"}).status, 1);
        const Finished finished = runProgram({command, "--json", "--replay", damaged});
        EXPECT_EQ(finished.status, 1);
        EXPECT_EQ(finished.out, "") << "no verdict is made of damaged answers";
        EXPECT_TRUE(holds(finished.err, damaged)) << finished.err;
    }
}

TEST_F(JudgementCommands, changeTheRulesForGood) {
    const auto rules = [] { return recordsFrom<AlertRule>(alerts({"rules", "--json"}).out); };
    const std::vector<AlertRule> defaults(AlertRule::defaults.begin(), AlertRule::defaults.end());
    EXPECT_EQ(rules(), defaults);
    const Finished set =
        alerts({"set", "sustainedcpu", "--threshold", "90.5", "--window", "120", "--disable", "--no-notify"});
    EXPECT_EQ(set.status, 0) << set.err;
    EXPECT_TRUE(holds(set.out, "sustainedCPU     off")) << set.out;
    EXPECT_EQ(alerts({"set", "lowStorage", "--cooldown", "60"}).status, 0);
    auto wanted = defaults;
    wanted[0] = {AlertKind::sustainedCPU, false, 90.5, 120, 3600, false};
    wanted[12].cooldown = 60;
    EXPECT_EQ(rules(), wanted);
    EXPECT_EQ(alerts({"reset", "sustainedCPU"}).status, 0);
    wanted[0] = defaults[0];
    EXPECT_EQ(rules(), wanted);
    EXPECT_EQ(alerts({"reset"}).status, 0);
    EXPECT_EQ(rules(), defaults);
    for (const auto& wrong : std::vector<std::vector<std::string>>{{"set"},
                                                                   {"set", "lowStorage"},
                                                                   {"set", "lowStorage", "--threshold", "nan"},
                                                                   {"set", "lowStorage", "--threshold", "-1"},
                                                                   {"set", "lowStorage", "--threshold", "101"},
                                                                   {"set", "lowStorage", "--enable", "--disable"},
                                                                   {"reset", "everything"},
                                                                   {"--limit", "0"}})
        EXPECT_EQ(alerts(wrong).status, 2);
    EXPECT_TRUE(holds(alerts({"set", "heat", "--enable"}).err, "highTemperature")) << "the known ones are named";
}

TEST_F(JudgementCommands, sayThatRulesCannotBeKept) {
    folder.write("config", "a file where the folder should be");
    const Finished set = alerts({"set", "lowStorage", "--threshold", "5"});
    EXPECT_EQ(set.status, 1);
    EXPECT_TRUE(holds(set.err, config)) << set.err;
    EXPECT_EQ(set.out, "");
}

TEST_F(JudgementCommands, listAndClearAlertsBesideAWriter) {
    EXPECT_TRUE(holds(alerts({}).out, "There is no history yet."));
    std::filesystem::create_directory(data);
    auto lock = HistoryLock::take(data, "a writer");
    ASSERT_TRUE(std::holds_alternative<HistoryLock>(lock));
    StoreHarness writer(file);
    for (const char* title : {"Old", "Hot"})
        writer.answer<std::int64_t>([&](HistoryStore& store, auto to) {
            store.recordAlert(Date{1000}, "highTemperature", "warning", title, "Very hot", "cpu", std::move(to));
        });
    const Finished listed = alerts({"--limit", "1"});
    EXPECT_TRUE(holds(listed.out, "Very hot\n    About: cpu\n")) << listed.out;
    EXPECT_EQ(listed.out, runProgram({"history", "alerts", "--limit", "1"}).out);
    EXPECT_EQ(recordsFrom<StoredAlert>(alerts({"--json"}).out).size(), 2U);
    EXPECT_EQ(alerts({"clear"}).status, 2) << "nobody to ask";
    EXPECT_EQ(alerts({"clear", "--yes"}).status, 0);
    EXPECT_EQ(alerts({"--json"}).out, "[]\n");
}

} // namespace
} // namespace ostrivane
