#include "core/sampling/platform/Command.hpp"

#include "core/model/Text.hpp"
#include "tests/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <functional>
#include <map>
#include <set>
#include <thread>

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace ostrivane;

namespace {

using Seconds = std::chrono::duration<double>;

Seconds took(const std::function<void()>& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::steady_clock::now() - begin;
}

std::set<int> openDescriptors() {
    std::set<int> found;
    for (int descriptor = 0; descriptor < 1024; ++descriptor)
        if (::fcntl(descriptor, F_GETFD) != -1)
            found.insert(descriptor);
    return found;
}

/// A process that nobody waited for yet has ended all the same.
bool isRunning(pid_t pid) {
    if (::kill(pid, 0) != 0)
        return false;
    const std::string stat = contentOf("/proc/" + std::to_string(pid) + "/stat");
    const std::size_t name = stat.rfind(')');
    return name == std::string::npos || name + 2 >= stat.size() || stat[name + 2] != 'Z';
}

bool endsSoon(pid_t pid) {
    for (int i = 0; i < 200 && isRunning(pid); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return !isRunning(pid);
}

/// Whatever a test runs, neither a child nor a descriptor may be left.
class CommandTest : public testing::Test {
protected:
    void TearDown() override {
        EXPECT_EQ(openDescriptors(), before);
        EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
        EXPECT_EQ(errno, ECHILD);
    }

    std::string script(std::string_view name, std::string_view body) const {
        const std::string path = folder.write(name, "#!/bin/sh\n" + std::string(body) + "\n");
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        return path;
    }
    std::optional<std::string> run(std::string_view body, double timeout) const {
        return Command::run(script("tool", body), {}, timeout);
    }
    /// The process whose number the script wrote to "pid".
    pid_t noted() const { return Text::number<pid_t>(Text::trimmed(contentOf(folder.file("pid")))).value_or(0); }
    std::string noteLast() const { return "echo $! >'" + folder.file("pid") + "'\n"; }

    TemporaryFolder folder;
    std::set<int> before = openDescriptors();
};

TEST_F(CommandTest, givesAllThatWasWrittenWhateverTheExitStatus) {
    EXPECT_EQ(Command::run("/bin/echo", {"a b", "", "$HOME;'\""}, 5), "a b  $HOME;'\"\n");
    EXPECT_EQ(run("echo said; echo complaint >&2; exit 3", 5), "said\n");
    EXPECT_EQ(run("exit 0", 5), "") << "nothing written is output too";
    EXPECT_EQ(run("echo said; kill -9 $$", 5), "said\n");
    EXPECT_EQ(run(R"(printf 'a\377b\303\251\n')", 5), "a\xEF\xBF\xBD"
                                                      "b\xC3\xA9\n");
}

TEST_F(CommandTest, readsFarMoreThanAPipeHolds) {
    const auto text = run("i=0; while [ $i -lt 200 ]; do printf '%05000d\\n' $i; i=$((i+1)); done", 20);
    ASSERT_TRUE(text);
    EXPECT_EQ(text->size(), 200U * 5001U);
    EXPECT_TRUE(text->ends_with("0199\n"));
}

TEST_F(CommandTest, isAbsentForWhatCannotBeRun) {
    const std::string plain = folder.write("plain", "#!/bin/sh\necho no\n");
    std::filesystem::permissions(plain, std::filesystem::perms::owner_read);
    const std::string broken = folder.write("broken", "#!/no/such/interpreter\n");
    const std::string noProgram = folder.write("noProgram", "neither a script nor a program");
    for (const std::string& path : {broken, noProgram})
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    for (const std::string& path : {std::string(), folder.file("missing"), folder.path().string(), plain, broken,
                                    noProgram, std::string("/dev/null")})
        EXPECT_FALSE(Command::run(path, {}, 5)) << path;
}

TEST_F(CommandTest, aLateToolIsGoneWithAllItStartedAndLeavesNoPartialOutput) {
    const std::map<std::string, std::string> late = {
        {"hangs", "echo partial; sleep 60 & " + noteLast() + "wait"},
        {"ignores the request to end", "trap '' TERM; sleep 60 & " + noteLast() + "wait; wait; sleep 60"},
        {"has ended, but its child holds the pipe", "sleep 60 & " + noteLast()},
        {"its child ignores the request", "(trap '' TERM; sleep 60; sleep 60) & " + noteLast() + "exit 0"},
        {"closes its output and stays", "sleep 60 & " + noteLast() + "echo done; exec >/dev/null; wait"},
        {"never stops writing", "sleep 60 & " + noteLast() + "exec yes"},
    };
    for (const auto& [what, body] : late) {
        std::optional<std::string> text;
        const auto seconds = took([&, &lines = body] { text = run(lines, 0.4); });
        EXPECT_FALSE(text) << what;
        EXPECT_LT(seconds.count(), 2.0) << what;
        ASSERT_GT(noted(), 0) << what;
        EXPECT_TRUE(endsSoon(noted())) << what;
    }
}

TEST_F(CommandTest, aFloodEndsBeforeItFillsTheMemory) {
    std::optional<std::string> text = "";
    EXPECT_LT(
        took([&] { text = run("exec yes 'a long line, so that a moment is enough to write very much of it'", 60); }),
        Seconds(30));
    EXPECT_FALSE(text);
}

TEST_F(CommandTest, timeLimitsThatAreNoneEndAtOnce) {
    for (const double timeout : {0.0, -1.0, std::nan("")})
        EXPECT_LT(took([&] { EXPECT_FALSE(run("sleep 60", timeout)) << timeout; }).count(), 2.0);
    EXPECT_EQ(run("echo said", HUGE_VAL), "said\n");
}

TEST_F(CommandTest, startsAChildThatInheritsNothing) {
    const int marked = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    sigset_t blocked;
    sigset_t old;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    ::pthread_sigmask(SIG_BLOCK, &blocked, &old);
    const auto handler = ::signal(SIGTERM, SIG_IGN);
    ::setenv("LC_ALL", "tr_TR.UTF-8", 1);

    // A child that was held back from SIGTERM, or ignores it, would live on and say so.
    EXPECT_EQ(run("sh -c 'kill -TERM $$; echo survived'", 5), "");
    EXPECT_EQ(run("echo $LC_ALL; env | grep -c ^LC_ALL=", 5), "C\n1\n");
    EXPECT_EQ(run("cat; echo end", 5), "end\n");
    EXPECT_EQ(run("[ -t 0 ] || (: </dev/tty) 2>/dev/null || echo none", 5), "none\n");
    EXPECT_EQ(run("[ -e /dev/fd/" + std::to_string(marked) + " ] && echo inherited", 5), "");

    ::unsetenv("LC_ALL");
    ::signal(SIGTERM, handler);
    ::pthread_sigmask(SIG_SETMASK, &old, nullptr);
    ::close(marked);
}

TEST_F(CommandTest, worksInAHostWithoutStandardDescriptors) {
    const pid_t host = ::fork();
    ASSERT_GE(host, 0);
    if (host == 0) {
        ::close(0);
        ::close(1);
        ::close(2);
        ::_exit(run("echo said; echo complaint >&2; cat", 5) == "said\n" ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(::waitpid(host, &status, 0), host);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
}

TEST_F(CommandTest, worksInAHostThatDoesNotWantToKnowOfItsChildren) {
    const auto handler = ::signal(SIGCHLD, SIG_IGN); // the kernel waits for them itself then
    EXPECT_EQ(run("echo said", 5), "said\n");
    EXPECT_FALSE(run("sleep 60", 0.1));
    ::signal(SIGCHLD, handler);
}

TEST_F(CommandTest, threadsDoNotHoldEachOthersPipes) {
    // A child that inherited the other thread's pipe would keep that one from its end until it ends itself.
    const std::string quick = script("quick", "echo said");
    const std::string slow = script("slow", "sleep 60");
    std::thread other([&] {
        for (int i = 0; i < 10; ++i)
            EXPECT_FALSE(Command::run(slow, {}, 0.1));
    });
    for (int i = 0; i < 40; ++i)
        EXPECT_EQ(Command::run(quick, {}, 5), "said\n");
    other.join();
}

} // namespace
