#include "app/model/FileKeyValueStore.hpp"

#include "app/model/AppSettings.hpp"
#include "app/model/SettingsText.hpp"
#include "tests/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <limits>
#include <string>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ostrivane {
namespace {

class FileKeyValueStoreTest : public testing::Test {
protected:
    FileKeyValueStore open() const { return FileKeyValueStore(folder); }
    FileKeyValueStore over(std::string_view content) const {
        std::filesystem::create_directories(folder);
        temporary.write("config/ostrivane/settings.ini", content);
        return open();
    }
    std::string content() const { return contentOf(file); }
    static int modeOf(const std::string& path) {
        struct stat status {};
        return ::stat(path.c_str(), &status) == 0 ? static_cast<int>(status.st_mode & 07777) : -1;
    }

    const TemporaryFolder temporary;
    const std::string folder = temporary.file("config/ostrivane");
    const std::string file = folder + "/settings.ini";
};

TEST_F(FileKeyValueStoreTest, keepsEveryKindForTheUserAlone) {
    FileKeyValueStore store = open();
    EXPECT_EQ(store.problem(), std::nullopt) << "nothing is there yet";
    EXPECT_FALSE(std::filesystem::exists(folder));
    const std::string odd = "\"two\nlines\"\\ \x01 [General] \xC3\xA9";
    store.setBoolean("on", true);
    store.setNumber("half", 0.5);
    store.setInteger("many", std::numeric_limits<std::int64_t>::min());
    store.setText("odd", odd);
    store.setText("word", "true");
    store.setJSON("list", "[1,\n {\"a\": null}]");
    store.setNumber("none", std::numeric_limits<double>::infinity());
    EXPECT_EQ(store.problem(), std::nullopt);
    EXPECT_EQ(modeOf(folder), 0700);
    EXPECT_EQ(modeOf(file), 0600);
    EXPECT_EQ(content(), "[General]\non=true\nhalf=0.5\nmany=-9223372036854775808\n"
                         "odd=\"\\\"two\\nlines\\\"\\\\ \\u0001 [General] \xC3\xA9\"\nword=\"true\"\n"
                         "list=[1,  {\"a\": null}]\n");
    const FileKeyValueStore later = open();
    EXPECT_EQ(later.boolean("on"), true);
    EXPECT_EQ(later.number("half"), 0.5);
    EXPECT_EQ(later.integer("many"), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(later.text("odd"), odd);
    EXPECT_EQ(later.text("word"), "true");
    EXPECT_EQ(later.json("list"), "[1,  {\"a\": null}]");
    EXPECT_EQ(later.keys().size(), 6U);
}

TEST_F(FileKeyValueStoreTest, takesWhatAPersonWrote) {
    const FileKeyValueStore store =
        over("[General]\nappearance=dark\npopoverTab=d\xFF v\nshowInDock=1\nbackgroundInterval=7\nretentionDays=7.0\n"
             "foregroundInterval=1e999\nidleThresholdHours=\n");
    EXPECT_EQ(store.json("appearance"), "\"dark\"");
    EXPECT_EQ(store.text("appearance"), "dark");
    EXPECT_EQ(store.text("popoverTab"), "d\xEF\xBF\xBD v");
    EXPECT_EQ(store.number("backgroundInterval"), 7);
    EXPECT_EQ(store.integer("retentionDays"), 7);
    EXPECT_EQ(store.boolean("showInDock"), std::nullopt);
    EXPECT_EQ(store.text("showInDock"), std::nullopt) << "a number is no text";
    EXPECT_EQ(store.integer("appearance"), std::nullopt);
    EXPECT_EQ(store.number("foregroundInterval"), std::nullopt);
    EXPECT_EQ(store.text("idleThresholdHours"), std::nullopt);
    const AppSettings settings(std::make_unique<FileKeyValueStore>(folder));
    Preferences expected;
    expected.appearance = AppearanceMode::dark;
    expected.popoverTab = "d\xEF\xBF\xBD v";
    expected.backgroundInterval = 7;
    expected.retentionDays = 7;
    EXPECT_EQ(*settings, expected);
}

TEST_F(FileKeyValueStoreTest, losesNothingThatAnotherProgramWrites) {
    FileKeyValueStore mine = over("# by hand\n[General]\na=1\n");
    FileKeyValueStore other = open();
    const auto hasChanged = mine.watch();
    EXPECT_FALSE(hasChanged());
    other.setInteger("b", 2);
    mine.setInteger("c", 3);
    EXPECT_EQ(content(), "# by hand\n[General]\na=1\nb=2\nc=3\n");
    EXPECT_EQ(mine.integer("b"), std::nullopt) << "until it is asked to look";
    EXPECT_TRUE(hasChanged());
    EXPECT_FALSE(hasChanged());
    mine.reload();
    EXPECT_EQ(mine.integer("b"), 2);
    other.remove("a");
    mine.reload();
    EXPECT_EQ(mine.integer("a"), std::nullopt);
    std::filesystem::remove(file);
    EXPECT_TRUE(hasChanged());
    mine.reload();
    EXPECT_TRUE(mine.keys().empty());
}

TEST_F(FileKeyValueStoreTest, survivesTwoWritersAtOnce) {
    constexpr int rounds = 40;
    const auto writes = [&](const std::string& name) {
        FileKeyValueStore store = open();
        for (int round = 0; round < rounds; ++round)
            store.setInteger(name + std::to_string(round), round);
        EXPECT_EQ(store.problem(), std::nullopt);
    };
    std::thread other(writes, "other");
    writes("mine");
    other.join();
    EXPECT_EQ(open().keys().size(), 2U * rounds);
}

TEST_F(FileKeyValueStoreTest, writesSeveralChangesAsOne) {
    FileKeyValueStore store = over("[General]\na=1\n");
    store.together([&] {
        store.remove("a");
        store.setInteger("b", 2);
        EXPECT_EQ(content(), "[General]\na=1\n");
        EXPECT_EQ(store.integer("b"), 2);
    });
    EXPECT_EQ(content(), "[General]\nb=2\n");
}

TEST_F(FileKeyValueStoreTest, neverWritesOverWhatItCouldNotRead) {
    std::filesystem::create_directories(file);
    FileKeyValueStore folderThere = open();
    EXPECT_EQ(folderThere.problem(), file + ": Is a directory");
    folderThere.setInteger("a", 1);
    EXPECT_EQ(folderThere.integer("a"), 1);
    std::filesystem::remove(file);
    ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
    EXPECT_EQ(open().problem(), file + ": not an ordinary file");
    std::filesystem::remove(file);

    const std::string huge = "[General]\n#" + std::string(SettingsText::largest, 'x');
    FileKeyValueStore tooLarge = over(huge);
    tooLarge.setInteger("a", 1);
    EXPECT_EQ(tooLarge.problem(), file + ": too large for a file of settings");
    EXPECT_EQ(content(), huge);

    folderThere.setInteger("b", 2);
    EXPECT_NE(folderThere.problem(), std::nullopt);
    std::filesystem::remove(file);
    folderThere.setInteger("c", 3);
    EXPECT_EQ(folderThere.problem(), std::nullopt);
    EXPECT_EQ(content(), "[General]\na=1\nb=2\nc=3\n") << "with what could not be written before";
}

TEST_F(FileKeyValueStoreTest, standsByItsChoicesWhereNothingCanBeWritten) {
    temporary.write("config", "no folder");
    FileKeyValueStore store = open();
    EXPECT_EQ(store.problem(), file + ": Not a directory");
    store.setText("a", "kept in memory");
    store.remove("b");
    store.reload();
    EXPECT_EQ(store.text("a"), "kept in memory");
    EXPECT_EQ(store.problem(), folder + ": Not a directory");

    FileKeyValueStore nowhere(std::nullopt);
    nowhere.setBoolean("a", true);
    EXPECT_EQ(nowhere.boolean("a"), true);
    ASSERT_TRUE(nowhere.problem());
    EXPECT_NE(nowhere.problem()->find("OSTRIVANE_CONFIG_DIR"), std::string::npos);
}

TEST_F(FileKeyValueStoreTest, leavesTheOldFileOnAFullDisk) {
    FileKeyValueStore store = over("[General]\na=1\n");
    rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    const auto onOverflow = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit few{20, before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &few);
    store.setText("a", "longer than what fits on the disk");
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, onOverflow);
    EXPECT_EQ(store.problem(), file + ": File too large");
    EXPECT_EQ(content(), "[General]\na=1\n");
    store.reload();
    EXPECT_EQ(store.text("a"), "longer than what fits on the disk");
    store.setInteger("b", 2);
    EXPECT_EQ(store.problem(), std::nullopt);
    EXPECT_EQ(open().text("a"), "longer than what fits on the disk");
}

TEST_F(FileKeyValueStoreTest, followsALinkAndLeavesIt) {
    std::filesystem::create_directories(folder);
    const std::string target = temporary.write("shared.ini", "[General]\na=1\n");
    ::chmod(target.c_str(), 0640);
    std::filesystem::create_symlink(target, file);
    FileKeyValueStore store = open();
    store.setInteger("a", 2);
    EXPECT_TRUE(std::filesystem::is_symlink(file));
    EXPECT_EQ(contentOf(target), "[General]\na=2\n");
    EXPECT_EQ(modeOf(target), 0640);
}

TEST_F(FileKeyValueStoreTest, doesNotWaitForALockForEver) {
    FileKeyValueStore store = over("");
    const int holder = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    ASSERT_EQ(::flock(holder, LOCK_EX), 0);
    store.setInteger("a", 1);
    EXPECT_EQ(store.problem(), folder + ": another program is changing the settings");
    ::close(holder);
    store.setInteger("b", 2);
    EXPECT_EQ(store.problem(), std::nullopt);
    EXPECT_EQ(open().keys(), (std::vector<std::string>{"a", "b"}));
}

} // namespace
} // namespace ostrivane
