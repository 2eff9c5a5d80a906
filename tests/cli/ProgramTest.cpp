#include "tests/cli/Program.hpp"

#include "core/model/JSON.hpp"
#include "core/model/SystemSnapshot.hpp"
#include "core/model/Text.hpp"
#include "tests/TemporaryFolder.hpp"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <thread>

namespace ostrivane {
namespace {

std::optional<SystemSnapshot> snapshotFrom(std::string_view line) {
    const auto json = JSON::parse(line);
    return json ? JSON::read<SystemSnapshot>(*json) : std::nullopt;
}

/// A recording of three ticks, one after the other.
std::string recording(const TemporaryFolder& folder, const std::string& extra = {}) {
    return folder.write("played.jsonl",
                        R"({"format":"ostrivane-recording","version":1,"platform":"linux","host":{"pageSize":4096,)"
                        R"("physicalMemory":8589934592,"cpuBrand":"Swift\u001b[31m 9","marketingName":"Lab Machine",)"
                        R"("coreLayout":{"performance":2,"efficiency":1,"logical":3},)"
                        R"("coreKinds":{"0":"performance","1":"performance","2":"efficiency"}}})"
                        "\n"
                        R"({"at":1000,"host.uptime":90061,"processor.ticks":{"perCore":[[0,0,0,0],[0,0,0,0],)"
                        R"([0,0,0,0]],"wraps32":true},"processor.loadAverage":[1.5,0.25,3],"memory.reading":)"
                        R"({"counters":{"internalPages":524288},"pressureLevel":2,"availablePercent":40}})"
                        "\n"
                        R"({"at":1001,"processor.ticks":{"perCore":[[50,0,50,0],[0,25,75,0],[0,0,100,0]],)"
                        R"("wraps32":true}})"
                        "\n"
                        R"({"at":1002,"processor.ticks":{"perCore":[[150,0,50,0],[0,125,75,0],[0,0,200,0]],)"
                        R"("wraps32":true}})"
                        "\n" +
                            extra);
}

TEST(SnapshotCommand, printsTheWholeSnapshotAsJSON) {
    const Finished finished = runProgram({"snapshot", "--json", "--interval", "0.1"});
    EXPECT_EQ(finished.status, 0) << finished.err;
    const auto lines = Text::lines(finished.out);
    ASSERT_EQ(lines.size(), 1u);
    const auto snapshot = snapshotFrom(lines[0]);
    ASSERT_TRUE(snapshot);
    EXPECT_GT(snapshot->interval, 0) << "a figure of now, not of the time since boot";
    EXPECT_FALSE(snapshot->cpu.cores.empty());
    EXPECT_GT(snapshot->memory.total, 0u);
    EXPECT_NE(lines[0].find("\"docker\":null"), std::string_view::npos);
}

TEST(SnapshotCommand, printsOneObjectATick) {
    const Finished finished = runProgram({"snapshot", "--ticks", "3", "--interval", "0.1"});
    EXPECT_EQ(finished.status, 0) << finished.err;
    const auto lines = Text::lines(finished.out);
    ASSERT_EQ(lines.size(), 3u);
    const auto first = snapshotFrom(lines[0]), last = snapshotFrom(lines[2]);
    ASSERT_TRUE(first && last);
    EXPECT_EQ(first->interval, 0);
    EXPECT_GT(last->interval, 0);
}

TEST(SnapshotCommand, readsWellForAPerson) {
    const TemporaryFolder folder;
    const Finished finished = runProgram({"snapshot", "--replay", recording(folder)});
    EXPECT_EQ(finished.status, 0) << finished.err;
    for (const char* text : {"Lab Machine", "up 1d 1h", "Swift␛[31m 9", "3 cores: 2 performance, 1 efficiency",
                             "67% (user 33%, system 33%, idle 33%)", "1.50, 0.25, 3.00", "0 P 100%", "2 E   0%",
                             "2.00 GB of 8.00 GB (25%)", "Elevated, 40% available", "none"})
        EXPECT_NE(finished.out.find(text), std::string::npos) << text << " in\n" << finished.out;
    EXPECT_EQ(finished.out.find('\x1b'), std::string::npos) << "what a name holds moves no cursor";
}

TEST(SnapshotCommand, playsWhatItRecorded) {
    const TemporaryFolder folder;
    const std::string file = folder.file("machine.jsonl");
    const Finished recorded = runProgram({"record", file, "--ticks", "2", "--interval", "0.1"});
    EXPECT_EQ(recorded.status, 0);
    EXPECT_EQ(recorded.err, "2 ticks in " + file + "\n");
    const Finished once = runProgram({"snapshot", "--replay", file, "--ticks", "9"});
    const Finished twice = runProgram({"snapshot", "--replay", file, "--ticks", "9"});
    EXPECT_EQ(once.status, 0) << once.err;
    EXPECT_EQ(Text::lines(once.out).size(), 2u) << "a recording ends when it ends";
    EXPECT_EQ(once.out, twice.out);
    const auto snapshot = snapshotFrom(Text::lines(once.out)[1]);
    ASSERT_TRUE(snapshot);
    EXPECT_GT(snapshot->interval, 0.09);
    EXPECT_GT(snapshot->cpu.uptime, 0);
}

TEST(SnapshotCommand, tellsWhatIsWrong) {
    const TemporaryFolder folder;
    const Finished missing = runProgram({"snapshot", "--replay", folder.file("none")});
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.err, "ostrivanectl: " + folder.file("none") + ": No such file or directory\n");
    const std::string damaged = recording(folder, "rubbish\n{\"at\":1004}\n");
    const Finished finished = runProgram({"snapshot", "--replay", damaged});
    EXPECT_EQ(finished.status, 1);
    EXPECT_EQ(finished.err, "ostrivanectl: " + damaged + ":5: the line is damaged\n");
    EXPECT_EQ(finished.out, "");
    const Finished cut = runProgram({"snapshot", "--replay", recording(folder, "{\"at\":10")});
    EXPECT_EQ(cut.status, 0);
    EXPECT_NE(cut.err.find("cut off"), std::string::npos);
    EXPECT_NE(cut.out.find("Lab Machine"), std::string::npos);
}

TEST(SnapshotCommand, saysWhatCouldNotBeRead) {
    const TemporaryFolder folder;
    const std::string file =
        folder.write("silent.jsonl", "{\"format\":\"ostrivane-recording\",\"version\":1}\n"
                                     "{\"at\":1,\"memory.reading\":null,\"processor.ticks\":null}\n{\"at\":2}\n");
    const Finished finished = runProgram({"snapshot", "--replay", file});
    EXPECT_EQ(finished.status, 0);
    for (const char* guess : {"0 B", "Normal", "none", "idle", "0%", "up 0s"})
        EXPECT_EQ(finished.out.find(guess), std::string::npos) << guess << " in\n" << finished.out;
    EXPECT_NE(finished.out.find("Unavailable"), std::string::npos);
    const std::string damaged = folder.write("damaged.jsonl", "{\"format\":\"ostrivane-recording\",\"version\":1}\n"
                                                              "{\"at\":1,\"processor.ticks\":7}\n{\"at\":2}\n");
    const Finished ticks = runProgram({"snapshot", "--replay", damaged, "--ticks", "5"});
    EXPECT_EQ(ticks.status, 1);
    EXPECT_EQ(ticks.out, "") << "no snapshot is made of damaged answers";
}

TEST(SnapshotCommand, endsQuietlyWhenNobodyReads) {
    const TemporaryFolder folder;
    const std::string errors = folder.file("errors");
    const std::string status = folder.file("status");
    const std::string command =
        fmt::format("{{ '{}' snapshot --ticks 1000000 --interval 0.1 2>'{}'; echo $? >'{}'; }} | "
                    "head -n 1 >/dev/null",
                    OSTRIVANECTL, errors, status);
    EXPECT_EQ(std::system(command.c_str()), 0);
    EXPECT_EQ(contentOf(errors), "");
    EXPECT_EQ(contentOf(status), "0\n");
    const Finished full = runProgram({"snapshot", "--replay", recording(folder)}, "/dev/full");
    EXPECT_EQ(full.status, 1);
    EXPECT_EQ(full.err, "ostrivanectl: standard output: No space left on device\n");
}

TEST(UsageCommands, printTablesAndRecords) {
    const TemporaryFolder folder;
    const std::string file = recording(folder);
    for (const char* command : {"processes", "apps"}) {
        const Finished table = runProgram({command, "--replay", file, "--sort", "memory", "--limit", "3"});
        EXPECT_EQ(table.status, 0) << table.err;
        EXPECT_NE(table.out.find("MEMORY▾"), std::string::npos) << table.out;
        EXPECT_NE(table.out.find("Unavailable"), std::string::npos) << "a recording without processes";
        EXPECT_EQ(runProgram({command, "--replay", file, "--json"}).out, "[]\n");
        const Finished full = runProgram({command, "--replay", file}, "/dev/full");
        EXPECT_EQ(full.status, 1);
        EXPECT_EQ(full.err, "ostrivanectl: standard output: No space left on device\n");
        EXPECT_EQ(WEXITSTATUS(std::system(
                      fmt::format("'{}' {} --replay '{}' >&- 2>/dev/null", OSTRIVANECTL, command, file).c_str())),
                  1);
        const Finished missing = runProgram({command, "--replay", "/none"});
        EXPECT_EQ(missing.status, 1);
        EXPECT_NE(missing.err.find("/none"), std::string::npos);
    }
    TerminalRun narrow({"processes", "--replay", file}, 50, 24);
    EXPECT_EQ(narrow.wait(), 0);
    EXPECT_NE(narrow.written.find("MEMORY\r\n"), std::string::npos) << "as wide as the terminal: " << narrow.written;
}

TEST(RecordCommand, tellsOfAFullDiskAndKeepsWhatIsThere) {
    const Finished full = runProgram({"record", "/dev/full"});
    EXPECT_EQ(full.status, 1);
    EXPECT_EQ(full.err, "ostrivanectl: /dev/full: No space left on device\n");
    const TemporaryFolder folder;
    const std::string precious = folder.write("precious", "data");
    const Finished refused = runProgram({"record", precious, "--ticks", "1"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_NE(refused.err.find("exists already"), std::string::npos);
    EXPECT_EQ(contentOf(precious), "data");
}

TEST(RecordCommand, writesNothingForPeopleIntoTheRecording) {
    const TemporaryFolder folder;
    for (const std::string closed : {">&- 2>&-", "<&- >&- 2>&-", "2>&-", "2>/dev/full"}) {
        const std::string file = folder.file("machine.jsonl");
        const std::string command =
            fmt::format("'{}' record --force --ticks 2 --interval 0.1 '{}' {}", OSTRIVANECTL, file, closed);
        EXPECT_EQ(std::system(command.c_str()), 0) << closed;
        const Finished played = runProgram({"snapshot", "--replay", file});
        EXPECT_EQ(played.status, 0) << closed << ": " << played.err;
    }
    EXPECT_EQ(WEXITSTATUS(std::system(fmt::format("'{}' snapshot --replay /none 2>&-", OSTRIVANECTL).c_str())), 1);
    EXPECT_EQ(WEXITSTATUS(std::system(fmt::format("'{}' snapshot >&- 2>/dev/null", OSTRIVANECTL).c_str())), 1);
    EXPECT_EQ(runProgram({"--help"}, "/dev/full").status, 1);
}

TEST(Commands, refuseWrongArguments) {
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{},
                                                      {"nonsense"},
                                                      {"snapshot", "--ticks", "0"},
                                                      {"snapshot", "--ticks", "many"},
                                                      {"snapshot", "--ticks", "99999999999999999999"},
                                                      {"snapshot", "--replay", ""},
                                                      {"snapshot", "--interval", "0"},
                                                      {"snapshot", "--interval", "nan"},
                                                      {"record"},
                                                      {"processes", "--sort", "colour"},
                                                      {"apps", "--limit", "0"},
                                                      {"apps", "--interval", "2", "--replay", "x"},
                                                      {"watch", "--speed", "-1"},
                                                      {"watch", "--speed", "0"},
                                                      {"snapshot", "--unknown"},
                                                      {"snapshot", "--interval", "2", "--replay", "x"}}) {
        const Finished finished = runProgram(arguments);
        EXPECT_EQ(finished.status, 2) << (arguments.empty() ? "nothing" : arguments.back());
        EXPECT_FALSE(finished.err.empty());
        EXPECT_TRUE(finished.out.empty());
    }
    const Finished help = runProgram({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_NE(help.out.find("snapshot"), std::string::npos);
}

TEST(WatchCommand, needsATerminal) {
    const Finished finished = runProgram({"watch"});
    EXPECT_EQ(finished.status, 1);
    EXPECT_NE(finished.err.find("needs a terminal"), std::string::npos);
    TerminalRun strange({"watch"}, 80, 24, {"TERM=no-such-terminal"});
    EXPECT_TRUE(strange.sees("is TERM set?"));
    EXPECT_EQ(strange.wait(), 1);
    TerminalRun dumb({"watch"}, 80, 24, {"TERM=dumb"});
    EXPECT_EQ(dumb.wait(), 1);
    EXPECT_NE(dumb.written.find("cannot place its cursor"), std::string::npos) << dumb.written;
}

void expectTerminalAsItWas(TerminalRun& run) {
    const termios now = run.settings();
    EXPECT_EQ(now.c_lflag, run.before.c_lflag);
    EXPECT_EQ(now.c_iflag, run.before.c_iflag);
    EXPECT_EQ(now.c_oflag, run.before.c_oflag);
    EXPECT_FALSE(run.isNonBlocking());
    EXPECT_NE(run.written.find("\x1b[?1049l"), std::string::npos) << "the screen from before is back";
    EXPECT_NE(run.written.find("\x1b[?2004l"), std::string::npos) << "pastes are no longer marked";
    EXPECT_NE(run.written.find("\x1b[?25h", run.written.rfind("\x1b[?25l")), std::string::npos) << "so is the cursor";
}

TEST(WatchCommand, drawsLivelyAndQuitsOnQ) {
    TerminalRun run({"watch", "--interval", "0.1"}, 60, 24);
    ASSERT_TRUE(run.sees("quit"));
    run.readUntilQuiet();
    ASSERT_TRUE(run.sees("\x1b")) << "a further tick is drawn";
    run.resize(100, 40);
    run.signal(SIGWINCH);
    ASSERT_TRUE(run.sees("\x1b[40;")) << "the last line of the window now";
    run.resize(60, 33'000); // more than the terminal library can count
    run.signal(SIGWINCH);
    ASSERT_TRUE(run.sees("\x1b[512;"));
    run.type("r");
    run.type("q");
    EXPECT_EQ(run.wait(), 0);
    expectTerminalAsItWas(run);
}

TEST(WatchCommand, followsTheKeysThatTerminalsSend) {
    const TemporaryFolder folder;
    TerminalRun run({"watch", "--speed", "1000", "--replay", recording(folder)}, 110, 24);
    ASSERT_TRUE(run.sees("has ended"));
    run.type("\x1bOP\x1b[15~\x1b[17~\x1b[18~\x1b[19~\x1b[20~\x1b[21~\x1b[23~\x1b[24~\xff\xff"); // none of ours
    run.type("\t");
    ASSERT_TRUE(run.sees("[Applications]"));
    run.type("\x1b[200~q\rq\x1b[201~/\xe6\x97\xa5\x1b[200~one\rq\x1b[201~");
    ASSERT_TRUE(run.sees("日one q")) << run.written;
    run.type("\x1b[B\x1bOB\x7f\x7f\r\f"); // Ctrl-L draws all of it anew
    ASSERT_TRUE(run.sees("Esc all"));
    run.type("\x1b[Z\f"); // Shift-Tab
    ASSERT_TRUE(run.sees("Tab applications"));
    run.type("q");
    EXPECT_EQ(run.wait(), 0);
    expectTerminalAsItWas(run);
}

TEST(WatchCommand, givesTheTerminalBackOnSignals) {
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        TerminalRun run({"watch"}, 80, 24);
        ASSERT_TRUE(run.sees("quit"));
        if (number == SIGINT)
            run.type("\x03"); // Ctrl-C, as a person sends it
        else
            run.signal(number);
        EXPECT_EQ(run.wait(), 0) << number;
        expectTerminalAsItWas(run);
    }
}

TEST(WatchCommand, endsThoughTheTerminalTakesNoMore) {
    TerminalRun run({"watch", "--interval", "0.1"}, 250, 100);
    ASSERT_TRUE(run.sees("quit"));
    run.type("\x13"); // Ctrl-S: the output stands still
    std::this_thread::sleep_for(std::chrono::milliseconds(400));
    run.signal(SIGTERM);
    EXPECT_EQ(run.wait(), 0);
    expectTerminalAsItWas(run);
}

TEST(WatchCommand, playsARecordingAndSaysHowItEnded) {
    const TemporaryFolder folder;
    TerminalRun run({"watch", "--speed", "100", "--replay", recording(folder, "{\"at\"")}, 100, 30);
    ASSERT_TRUE(run.sees("cut off"));
    EXPECT_NE(run.written.find("Lab Machine"), std::string::npos);
    run.type("q");
    EXPECT_EQ(run.wait(), 0);
    EXPECT_NE(run.written.find("ostrivanectl: The recording was cut off"), std::string::npos);

    const std::string damaged = recording(folder, "x\n{\"at\":1004}\n");
    TerminalRun failing({"watch", "--speed", "100", "--replay", damaged}, 100, 30);
    EXPECT_EQ(failing.wait(), 1);
    EXPECT_NE(failing.written.find(damaged + ":5: the line is damaged"), std::string::npos);
    expectTerminalAsItWas(failing);
}

TEST(WatchCommand, respectsTheWishForNoColour) {
    const TemporaryFolder folder;
    const std::string file = recording(folder);
    const auto colours = [&](const std::vector<std::string>& environment) {
        TerminalRun run({"watch", "--speed", "1000", "--replay", file}, 80, 24, environment);
        EXPECT_TRUE(run.sees("has ended"));
        run.type("q");
        run.wait();
        return run.written.find("\x1b[32m") != std::string::npos || run.written.find("\x1b[36m") != std::string::npos;
    };
    EXPECT_TRUE(colours({}));
    EXPECT_FALSE(colours({"NO_COLOR=1"}));
}

} // namespace
} // namespace ostrivane
