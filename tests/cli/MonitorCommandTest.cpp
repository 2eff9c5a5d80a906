#include "core/history/HistoryLock.hpp"
#include "tests/TemporaryFolder.hpp"
#include "tests/cli/Program.hpp"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <csignal>

#include <sys/stat.h>

namespace ostrivane {
namespace {

/// `ostrivanectl monitor` over a data folder of its own.
class MonitorCommand : public testing::Test {
protected:
    std::unique_ptr<TerminalRun> monitor(const std::vector<std::string>& environment = {}) const {
        std::vector<std::string> settings{"OSTRIVANE_DATA_DIR=" + data};
        settings.insert(settings.end(), environment.begin(), environment.end());
        return std::make_unique<TerminalRun>(std::vector<std::string>{"monitor", "--interval", "0.1"}, 80, 24,
                                             settings);
    }

    const TemporaryFolder folder;
    const std::string data = folder.file("below/data");
};

int modeOf(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 ? static_cast<int>(status.st_mode & 07777) : -1;
}

TEST_F(MonitorCommand, keepsTheHistoryForTheUserAloneUntilASignal) {
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        const auto run = monitor();
        ASSERT_TRUE(run->sees("Keeping the history in " + data + "/history.sqlite, a reading every 0.1 s.")) << number;
        const auto holder = HistoryLock::holder(data);
        ASSERT_TRUE(holder);
        EXPECT_EQ(holder->name, "ostrivanectl monitor");
        run->signal(number);
        EXPECT_EQ(run->wait(), 0) << number;
        EXPECT_EQ(run->written.find("ostrivanectl", 2), std::string::npos) << "says nothing else: " << run->written;
        EXPECT_EQ(modeOf(data), 0700);
        EXPECT_EQ(modeOf(data + "/history.sqlite"), 0600);
        EXPECT_FALSE(std::filesystem::exists(data + "/history.sqlite-wal")) << "closed in order";
        EXPECT_EQ(HistoryLock::holder(data), std::nullopt);
    }
}

TEST_F(MonitorCommand, givesWayToTheOneThatIsThere) {
    const auto first = monitor();
    ASSERT_TRUE(first->sees("Keeping the history"));
    const auto holder = HistoryLock::holder(data);
    ASSERT_TRUE(holder);
    const auto second = monitor();
    EXPECT_EQ(second->wait(), 1);
    EXPECT_EQ(second->written, fmt::format("ostrivanectl: Another program keeps the history: ostrivanectl monitor "
                                           "(process {}).\r\n",
                                           holder->pid));
    first->signal(SIGKILL);
    EXPECT_EQ(first->wait(), 128 + SIGKILL);
    const auto third = monitor();
    EXPECT_TRUE(third->sees("Keeping the history")) << "a killed one left its lock";
    third->signal(SIGTERM);
    EXPECT_EQ(third->wait(), 0);
}

TEST_F(MonitorCommand, goesOnThoughNothingCanBeKept) {
    std::filesystem::create_directories(data + "/history.sqlite");
    const auto run = monitor();
    ASSERT_TRUE(run->sees("The history is not being kept: "));
    const auto holder = HistoryLock::holder(data);
    ASSERT_TRUE(holder);
    EXPECT_NE(holder->note, "");
    run->signal(SIGTERM);
    EXPECT_EQ(run->wait(), 1) << "the last minutes are not written";
}

TEST_F(MonitorCommand, endsThoughTheFileIsStuck) {
    const auto first = monitor();
    ASSERT_TRUE(first->sees("Keeping the history"));
    first->signal(SIGTERM);
    EXPECT_EQ(first->wait(), 0);
    // Whoever opens the database looks into a journal that is there, and this one never answers.
    ASSERT_EQ(::mkfifo((data + "/history.sqlite-journal").c_str(), 0600), 0);
    const auto stuck = monitor();
    ASSERT_TRUE(stuck->sees("Keeping the history"));
    stuck->signal(SIGTERM);
    EXPECT_EQ(stuck->wait(), 1);
    EXPECT_EQ(HistoryLock::holder(data), std::nullopt);
}

TEST_F(MonitorCommand, refusesWithoutAFolder) {
    folder.write("below", "a file");
    const auto run = monitor();
    EXPECT_EQ(run->wait(), 1);
    EXPECT_EQ(run->written, "ostrivanectl: " + data + ": Not a directory\r\n");
    EXPECT_EQ(runProgram({"monitor", "--interval", "61"}).status, 2);
    EXPECT_EQ(runProgram({"monitor", "--replay", "x"}).status, 2);
}

} // namespace
} // namespace ostrivane
