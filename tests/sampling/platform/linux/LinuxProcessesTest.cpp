#include "core/sampling/platform/linux/LinuxProcesses.hpp"

#include "tests/Fixtures.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <functional>
#include <utility>

#include <fcntl.h>
#include <linux/sched.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ostrivane {
namespace {

constexpr std::size_t anyNumber = 10'000;

LinuxProcesses::Units units(std::uint32_t user) {
    return {.bootTime = Date{1'000'000}, .ticksPerSecond = 100, .pageSize = 4096, .userID = user};
}

const ProcessReading* find(const std::vector<ProcessReading>& all, std::int32_t pid) {
    const auto found =
        std::ranges::find_if(all, [&](const ProcessReading& reading) { return reading.info.pid == pid; });
    return found == all.end() ? nullptr : &*found;
}

TEST(LinuxProcesses, readsTheLaptopsProcesses) {
    const RootFolder root(fixture("linux/laptop-intel-hybrid"));
    LinuxProcesses processes(root, units(::getuid()), anyNumber);
    const auto& all = processes.all();
    const auto zombies = std::ranges::count_if(
        all, [](const ProcessReading& reading) { return reading.info.status == ProcessInfo::zombie; });
    EXPECT_EQ(static_cast<std::int64_t>(all.size()) - zombies, 33);
    EXPECT_EQ(zombies, 1);

    const ProcessReading* editor = find(all, 4521);
    ASSERT_TRUE(editor && editor->usage);
    EXPECT_EQ(editor->info.startTime, (Date{1'000'000 + 1200}));
    EXPECT_EQ(editor->usage->cpuTicks, 95'000'000'000u) << "nanoseconds";
    EXPECT_GE(editor->usage->footprint, 52'500u * 4096) << "shared memory is left out; what is swapped out counts";
    EXPECT_EQ(editor->usage->diskRead, 300'000'000u);
    EXPECT_EQ(editor->usage->diskWritten, 90'000'000u);
    EXPECT_EQ(editor->threads, 40);
    EXPECT_EQ(find(all, 6400)->info.name, "a) R (b c\nd");
    EXPECT_TRUE(find(all, 6400)->info.hasTerminal);
    EXPECT_EQ(find(all, 1400)->info.name, "tracker-miner-fs-3");
    EXPECT_EQ(find(all, 6430)->info.status, ProcessInfo::stopped);
    EXPECT_TRUE(find(all, 2)->info.isKernelThread);
    EXPECT_EQ(processes.path(6410), "/home/ada/bin/old") << "replaced since it was started";
    ASSERT_TRUE(processes.arguments(3590));
    EXPECT_EQ(processes.arguments(3590)->size(), 5u) << "it wrote all over its arguments";
    EXPECT_FALSE(processes.path(2));
    EXPECT_FALSE(processes.arguments(999'999));
    EXPECT_FALSE(processes.origin(4521).controlGroups.empty());
}

TEST(LinuxProcesses, whatIsHiddenIsRestrictedUnlessItIsTheUsersOwn) {
    const RootFolder root(fixture("linux/laptop-intel-hybrid"));
    LinuxProcesses own(root, units(::getuid()), anyNumber);
    const ProcessReading* hidden = find(own.all(), 1350); // it has no io
    ASSERT_TRUE(hidden && hidden->usage) << "its load and memory are real";
    EXPECT_EQ(hidden->usage->diskRead, 0u);
    LinuxProcesses others(root, units(::getuid() + 1), anyNumber);
    EXPECT_FALSE(find(others.all(), 1350)->usage);
    const auto totals = others.totals();
    ASSERT_TRUE(totals);
    EXPECT_GT(totals->at(1350).rssKB, 0u) << "but anybody may know this much";
}

TEST(LinuxProcesses, followsTheRunningSystemWithManyAndWithFewDescriptors) {
    for (const std::size_t limit : {anyNumber, std::size_t{0}}) {
        const RootFolder root;
        LinuxProcesses processes(root, units(::getuid()), limit);
        const pid_t child = ::fork();
        if (child == 0)
            for (;;)
                ::pause();
        const auto seen = [&](pid_t pid) {
            const ProcessReading* reading = find(processes.all(), pid);
            return reading && reading->info.status != ProcessInfo::zombie;
        };
        EXPECT_TRUE(seen(child));
        EXPECT_EQ(processes.path(child), processes.path(::getpid()));
        const auto before = find(processes.all(), ::getpid())->usage;
        ASSERT_TRUE(before);
        for (volatile std::uint64_t work = 0; find(processes.all(), ::getpid())->usage->cpuTicks <= before->cpuTicks;)
            for (int step = 0; step < 1'000'000; ++step)
                work = work + 1;
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        EXPECT_FALSE(seen(child)) << limit;
        EXPECT_TRUE(std::ranges::is_sorted(processes.all(), {}, [](const auto& one) { return one.info.pid; }));
    }
}

TEST(LinuxProcesses, anIdThatWasReusedIsAnotherProcess) {
    for (const std::size_t limit : {anyNumber, std::size_t{0}}) {
        const TemporaryTree tree = copied("linux/laptop-intel-hybrid");
        const RootFolder root(tree.path());
        LinuxProcesses processes(root, units(::getuid()), limit);
        const ProcessInfo before = find(processes.all(), 6430)->info;
        tree.layOver(fixture("linux/laptop-intel-hybrid/later"));
        const ProcessInfo after = find(processes.all(), 6430)->info;
        EXPECT_NE(before.startTime, after.startTime) << limit;
    }
    const TemporaryTree empty;
    const RootFolder nothing(empty.path());
    LinuxProcesses none(nothing, units(0), anyNumber);
    EXPECT_TRUE(none.all().empty());
    EXPECT_FALSE(none.totals());
}

TEST(LinuxProcesses, givesTheSameFiguresHoweverManyFilesItKeepsOpen) {
    const RootFolder root(fixture("linux/laptop-intel-hybrid"));
    LinuxProcesses all(root, units(::getuid()), anyNumber), some(root, units(::getuid()), 5),
        none(root, units(::getuid()), 0);
    for (int reading = 0; reading < 2; ++reading) {
        EXPECT_EQ(some.all(), all.all());
        EXPECT_EQ(none.totals(), all.totals());
    }
}

TEST(LinuxProcesses, aListThatCannotBeWholeIsNone) {
    const RootFolder root;
    LinuxProcesses keeping(root, units(::getuid()), anyNumber), late(root, units(::getuid()), anyNumber);
    const std::size_t count = keeping.all().size();
    std::vector<FileDescriptor> taken;
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
    const rlimit low{.rlim_cur = std::min<rlim_t>(before.rlim_cur, 4096), .rlim_max = before.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &low), 0);
    for (;;) {
        FileDescriptor another(::open("/dev/null", O_RDONLY | O_CLOEXEC));
        if (!another.isOpen())
            break;
        taken.push_back(std::move(another));
    }
    EXPECT_TRUE(late.all().empty()) << "no descriptor is left";
    taken.resize(taken.size() - 3);
    EXPECT_GT(late.all().size(), count / 2) << "one at a time is enough";
    taken.clear();
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &before), 0);
}

/// A tree with a single process, of the user who runs the test.
class LinuxProcessTree : public testing::Test {
protected:
    static constexpr std::int32_t pid = 77;

    void writeStat(const std::string& name, int start = 500, int ppid = 1) const {
        write("stat", "77 (" + name + ") S " + std::to_string(ppid) + " 77 77 0 -1 0 9 8 7 6 100 0 0 0 20 0 1 0 " +
                          std::to_string(start) + " 1000 10 1\n");
    }
    void write(const std::string& file, std::string_view text) const { tree.write("proc/77/" + file, text); }
    void link(const std::string& name, const std::string& target) const {
        const std::filesystem::path path = tree.path() / "proc" / name;
        std::filesystem::create_directories(path.parent_path());
        std::filesystem::remove(path);
        std::filesystem::create_symlink(target, path);
    }
    const ProcessReading* reading() { return find(processes.all(), pid); }

    const TemporaryTree tree;
    const bool hasFolder = std::filesystem::create_directory(tree.path() / "proc");
    const RootFolder root{tree.path()};
    LinuxProcesses processes{root, units(::getuid()), anyNumber};
};

TEST_F(LinuxProcessTree, aProcessMayEndBetweenAnyTwoReadings) {
    std::filesystem::create_directories(tree.path() / "proc/77");
    EXPECT_FALSE(reading()) << "listed, and gone";
    write("stat", "");
    EXPECT_FALSE(reading());
    write("stat", "77 (half");
    EXPECT_FALSE(reading());
    writeStat("make");
    ASSERT_TRUE(reading());
    EXPECT_EQ(reading()->usage->footprint, 0u) << "statm is gone";
    EXPECT_FALSE(processes.path(pid) || processes.arguments(pid) || processes.currentDirectory(pid));
    EXPECT_EQ(processes.origin(pid), ProcessOrigin{});
    write("stat", "77 (half");
    ASSERT_TRUE(reading());
    EXPECT_EQ(reading()->info.name, "make") << "what was known stands";
    tree.remove("proc/77");
    EXPECT_FALSE(reading());
}

TEST_F(LinuxProcessTree, aLaterProcessWithTheSameIdIsToldApartByItsStart) {
    writeStat("make");
    const ProcessInfo before = reading()->info;
    EXPECT_EQ(before.rawStart, 500u);
    writeStat("make", 501);
    EXPECT_EQ(reading()->info.rawStart, 501u) << "a hundredth of a second later";
    EXPECT_LT(reading()->info.startTime - before.startTime, 1);
    EXPECT_EQ(processes.totals()->at(pid).rawStart, 501u);
}

TEST_F(LinuxProcessTree, whatWasHiddenShowsOnceTheProcessIsAnotherProgram) {
    writeStat("sudo");
    EXPECT_EQ(reading()->usage->diskRead, 0u);
    write("io", "read_bytes: 300\nwrite_bytes: 90\n");
    writeStat("make");
    EXPECT_EQ(reading()->usage->diskRead, 300u);
}

TEST_F(LinuxProcessTree, foldersAndProgramsThatWereRemoved) {
    link("77/exe", "/opt/tool (deleted)");
    link("77/cwd", "/home/ada/shop (deleted)");
    EXPECT_EQ(processes.path(pid), "/opt/tool");
    EXPECT_FALSE(processes.currentDirectory(pid)) << "what lies at that path is another folder, if anything";
    tree.write("opt/tool (deleted)", "");
    tree.write("home/ada/shop (deleted)/x", "");
    EXPECT_EQ(processes.path(pid), "/opt/tool (deleted)") << "a strange name, but the file's own";
    EXPECT_EQ(processes.currentDirectory(pid), "/home/ada/shop (deleted)");
    link("77/cwd", "/home/\xFF");
    EXPECT_EQ(processes.currentDirectory(pid), "/home/\uFFFD");
}

TEST_F(LinuxProcessTree, notesOfASandboxAreReadInsideIt) {
    const std::string notes = "[Application]\nname=org.example.Player\n";
    link("self/ns/mnt", "mnt:[1]");
    link("77/ns/mnt", "mnt:[1]");
    write("mountinfo", "1 2 0:1 / / ro - tmpfs tmpfs rw\n");
    write("root/.flatpak-info", notes);
    EXPECT_FALSE(processes.origin(pid).flatpakInfo) << "its files are ours";
    link("77/ns/mnt", "mnt:[2]");
    EXPECT_EQ(processes.origin(pid).flatpakInfo, notes);
    write("root/.flatpak-info", std::string(1 << 20, 'x'));
    EXPECT_EQ(processes.origin(pid).flatpakInfo->size(), 64u << 10);
    write("mountinfo", "1 2 0:1 / / ro - fuse.overlay overlay rw\n");
    EXPECT_FALSE(processes.origin(pid).flatpakInfo) << "it may never answer";
    write("mountinfo", "1 2 0:1 / / ro - tmpfs tmpfs rw\n");
    link("77/root/.flatpak-info", "/etc/passwd");
    EXPECT_FALSE(processes.origin(pid).flatpakInfo) << "a link would lead out of the sandbox";
}

TEST_F(LinuxProcessTree, anAppImageIsNamedByItsEnvironmentOrByWhatMountedIt) {
    link("77/exe", "/tmp/.mount_ObsidiXYZ/obsidian");
    writeStat("obsidian", 500, 60);
    link("60/exe", "/home/ada/Obsidian.AppImage");
    write("environ", "A=" + std::string(200'000, 'a') + '\0' + "APPIMAGE=/home/ada/Other.AppImage" + '\0');
    EXPECT_EQ(processes.origin(pid).appImage, "/home/ada/Other.AppImage");
    write("environ", std::string("APPIMAGE=\0B=1\0", 14));
    EXPECT_EQ(processes.origin(pid).appImage, "/home/ada/Obsidian.AppImage");
    tree.remove("proc/77/environ");
    EXPECT_EQ(processes.origin(pid).appImage, "/home/ada/Obsidian.AppImage");
    link("60/exe", "/usr/bin/bash");
    EXPECT_FALSE(processes.origin(pid).appImage);
    link("77/exe", "/usr/bin/obsidian");
    link("60/exe", "/home/ada/Obsidian.AppImage");
    EXPECT_FALSE(processes.origin(pid).appImage) << "started by one, but not out of it";
}

/// A child of the running system that a test may do anything to. It has ended when the object goes.
class Child {
public:
    explicit Child(const std::function<void()>& work) : pid(::fork()) {
        if (pid == 0) {
            work();
            for (;;)
                ::pause();
        }
    }
    ~Child() { end(); }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    void end() {
        if (pid > 0) {
            ::kill(pid, SIGKILL);
            ::waitpid(std::exchange(pid, -1), nullptr, 0);
        }
    }

    pid_t pid;
};

/// Asks until the child has come as far as the answer tells.
template <class Ask>
bool becomesTrue(Ask ask) {
    for (int time = 0; time < 1000 && !ask(); ++time)
        ::usleep(10'000);
    return ask();
}

TEST(LinuxProcesses, standsHostileNamesAndEndlessArguments) {
    const TemporaryFolder folder;
    const std::string program = folder.file("a) R (b\n\xFF");
    std::filesystem::copy_file("/bin/sleep", program);
    std::filesystem::create_directory(folder.path() / "work");
    Child child([&] {
        ::chdir(folder.file("work").c_str()) == 0 ? void() : ::_exit(1);
        std::vector<std::string> words{"\xFE", "60"};
        while (words.size() < 20) // 2 MB with all of them; "sleep" adds them up
            words.push_back(std::string(100'000, '0'));
        std::vector<char*> pointers;
        pointers.reserve(words.size() + 1);
        for (std::string& word : words)
            pointers.push_back(word.data());
        pointers.push_back(nullptr);
        ::execv(program.c_str(), pointers.data());
        ::_exit(1);
    });
    const RootFolder root;
    LinuxProcesses processes(root, units(::getuid()), anyNumber);
    std::vector<std::string> arguments; // of one reading: another may find the program still being loaded
    ASSERT_TRUE(becomesTrue([&] {
        arguments = processes.arguments(child.pid).value_or(std::vector<std::string>());
        return arguments.size() == 3 && arguments[0] == "\uFFFD";
    }));
    EXPECT_LT(arguments[2].size(), 64u << 10) << "no more than the beginning is read";
    const ProcessReading* reading = find(processes.all(), child.pid);
    ASSERT_TRUE(reading);
    EXPECT_EQ(reading->info.name, "a) R (b\n\uFFFD");
    EXPECT_EQ(reading->info.ppid, ::getpid());
    EXPECT_EQ(processes.currentDirectory(child.pid), folder.file("work"));

    std::filesystem::remove(program);
    std::filesystem::remove(folder.path() / "work");
    EXPECT_EQ(processes.path(child.pid), folder.file("a) R (b\n\uFFFD"));
    EXPECT_FALSE(processes.currentDirectory(child.pid));
}

TEST(LinuxProcesses, anIdThatTheKernelGivesAgainAtOnceIsANewProcess) {
    Child first([] {
        for (volatile std::uint64_t work = 0;;)
            work = work + 1;
    });
    const RootFolder root;
    LinuxProcesses processes(root, units(::getuid()), anyNumber);
    const pid_t pid = first.pid;
    const auto time = [&](pid_t process) {
        const ProcessReading* reading = find(processes.all(), process);
        return reading ? reading->usage->cpuTicks : 0;
    };
    ASSERT_TRUE(becomesTrue([&] { return time(pid) > 100'000'000; }));
    const std::uint64_t start = find(processes.all(), pid)->info.rawStart;
    first.end();
    pid_t wanted = pid;
    clone_args arguments{};
    arguments.exit_signal = SIGCHLD;
    arguments.set_tid = reinterpret_cast<std::uintptr_t>(&wanted);
    arguments.set_tid_size = 1;
    const auto second = static_cast<pid_t>(::syscall(SYS_clone3, &arguments, sizeof(arguments)));
    if (second == 0)
        for (;;)
            ::pause();
    if (second < 0)
        GTEST_SKIP() << "only some users may choose an id";
    const auto& all = processes.all();
    const ProcessReading* reading = find(all, pid);
    EXPECT_TRUE(reading && reading->info.rawStart != start);
    EXPECT_TRUE(reading && reading->usage->cpuTicks < 50'000'000) << "its own time, not that of the one before";
    ::kill(second, SIGKILL);
    ::waitpid(second, nullptr, 0);
}

} // namespace
} // namespace ostrivane
