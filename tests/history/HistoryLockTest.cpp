#include "core/history/HistoryLock.hpp"

#include "tests/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ostrivane {
namespace {

using Holder = HistoryLock::Holder;

TEST(HistoryLock, isHeldByOneAndTellsByWhom) {
    const TemporaryFolder folder;
    const std::string path = folder.path().string();
    EXPECT_EQ(HistoryLock::holder(path), std::nullopt) << "no file";
    {
        const auto first = HistoryLock::take(path, "first\nprogram");
        ASSERT_TRUE(std::holds_alternative<HistoryLock>(first));
        const Holder self{::getpid(), "first program", ""};
        EXPECT_EQ(HistoryLock::holder(path), self) << "looking does not drop a lock of the same process";
        EXPECT_EQ(HistoryLock::holder(path), self);
        const auto second = HistoryLock::take(path, "second");
        ASSERT_TRUE(std::holds_alternative<Holder>(second));
        EXPECT_EQ(std::get<Holder>(second), self);

        const auto& lock = std::get<HistoryLock>(first);
        lock.note("disk full\nor so");
        EXPECT_EQ(HistoryLock::holder(path)->note, "disk full or so");
        lock.note("short");
        EXPECT_EQ(HistoryLock::holder(path)->note, "short");
        lock.note({});
        EXPECT_EQ(HistoryLock::holder(path), self);
    }
    EXPECT_EQ(HistoryLock::holder(path), std::nullopt) << "a file left behind";
    EXPECT_TRUE(std::holds_alternative<HistoryLock>(HistoryLock::take(path, "third")));
}

TEST(HistoryLock, goesWithItsProcessThoughAChildLivesOn) {
    const TemporaryFolder folder;
    const std::string path = folder.path().string();
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0);
    const pid_t process = ::fork();
    if (process == 0) {
        const auto lock = HistoryLock::take(path, "writer");
        if (!std::holds_alternative<HistoryLock>(lock))
            ::_exit(1);
        if (::fork() == 0) {
            ::dup2(ends[1], STDOUT_FILENO);
            ::execl("/bin/sh", "sh", "-c", "echo $$; exec sleep 60", nullptr);
            ::_exit(127);
        }
        ::pause();
        ::_exit(1);
    }
    std::array<char, 32> text{};
    ASSERT_GT(::read(ends[0], text.data(), text.size() - 1), 0);
    const pid_t child = std::atoi(text.data());
    ASSERT_GT(child, 1);
    EXPECT_EQ(HistoryLock::holder(path), (Holder{process, "writer", ""}));
    ::kill(process, SIGKILL);
    ::waitpid(process, nullptr, 0);
    EXPECT_EQ(::kill(child, 0), 0);
    EXPECT_EQ(HistoryLock::holder(path), std::nullopt);
    EXPECT_TRUE(std::holds_alternative<HistoryLock>(HistoryLock::take(path, "next")));
    ::kill(child, SIGKILL);
    ::close(ends[0]);
    ::close(ends[1]);
}

TEST(HistoryLock, believesNoTextTooMuch) {
    const TemporaryFolder folder;
    const std::string path = folder.path().string();
    for (const auto& [text, expected] : std::vector<std::pair<std::string, Holder>>{
             {"", {}},
             {"12", {12, "", ""}},
             {"-1\nname", {0, "name", ""}},
             {"0x1\n\n\n\n", {}},
             {"99999999999\nname\nnote\nmore", {0, "name", "note"}},
             {"7\n\xff" + std::string(1 << 20, 'x'), {7, "\uFFFD" + std::string(499, 'x'), ""}}}) {
        const int held = ::open(folder.write("history.lock", text).c_str(), O_RDWR | O_CLOEXEC);
        ASSERT_EQ(::flock(held, LOCK_EX | LOCK_NB), 0);
        EXPECT_EQ(HistoryLock::holder(path), expected);
        const auto refused = HistoryLock::take(path, "me");
        ASSERT_TRUE(std::holds_alternative<Holder>(refused));
        EXPECT_EQ(std::get<Holder>(refused), expected);
        ::close(held);
        EXPECT_EQ(HistoryLock::holder(path), std::nullopt) << "nobody holds it, whatever the text says";
    }
    const auto lock = HistoryLock::take(path, std::string(2000, 'n'));
    ASSERT_TRUE(std::holds_alternative<HistoryLock>(lock));
    std::get<HistoryLock>(lock).note(std::string(5000, 'x'));
    EXPECT_EQ(HistoryLock::holder(path), (Holder{::getpid(), std::string(500, 'n'), std::string(500, 'x')}));
}

TEST(HistoryLock, opensOrdinaryFilesAlone) {
    const TemporaryFolder folder;
    const std::string path = folder.path().string();
    const std::string file = folder.file("history.lock");
    const auto refuses = [&] {
        const bool refused = std::holds_alternative<HistoryLock::Problem>(HistoryLock::take(path, "me"));
        EXPECT_EQ(HistoryLock::holder(path), std::nullopt);
        std::filesystem::remove(file);
        return refused;
    };
    std::filesystem::create_symlink(folder.write("precious", "data"), file);
    EXPECT_TRUE(refuses()) << "a link";
    EXPECT_EQ(contentOf(folder.file("precious")), "data");
    ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
    EXPECT_TRUE(refuses()) << "a pipe";
    std::filesystem::create_directory(file);
    EXPECT_TRUE(refuses()) << "a folder";
    const auto nowhere = HistoryLock::take(folder.file("none"), "me");
    ASSERT_TRUE(std::holds_alternative<HistoryLock::Problem>(nowhere));
    EXPECT_EQ(std::get<HistoryLock::Problem>(nowhere),
              folder.file("none/history.lock") + ": No such file or directory");

    for (const mode_t mask : {0000u, 0777u}) {
        const mode_t before = ::umask(mask);
        const auto lock = HistoryLock::take(path, "me");
        ::umask(before);
        EXPECT_TRUE(std::holds_alternative<HistoryLock>(lock));
        struct stat status {};
        ASSERT_EQ(::stat(file.c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777, 0600u);
        std::filesystem::remove(file);
    }
}

} // namespace
} // namespace ostrivane
