#include "tests/cli/Program.hpp"

#include "core/history/HistoryLock.hpp"
#include "core/history/StoredSession.hpp"
#include "core/judgement/SessionSummary.hpp"
#include "core/judgement/SessionSummaryJSON.hpp"
#include "core/model/JSON.hpp"
#include "tests/TemporaryFolder.hpp"
#include "tests/history/StoreHarness.hpp"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <variant>

namespace ostrivane {
namespace {

bool holds(const std::string& text, std::string_view part) {
    return text.find(part) != std::string::npos;
}

/// `ostrivanectl session` over a data folder of its own.
class SessionCommand : public testing::Test {
protected:
    SessionCommand() { ::setenv("OSTRIVANE_DATA_DIR", data.c_str(), 1); }
    ~SessionCommand() override { ::unsetenv("OSTRIVANE_DATA_DIR"); }

    static Finished session(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "session");
        return runProgram(arguments);
    }
    static Finished runs(const std::vector<std::string>& command) {
        std::vector<std::string> arguments{"run", "--interval", "0.1", "--"};
        arguments.insert(arguments.end(), command.begin(), command.end());
        return session(arguments);
    }
    static std::vector<StoredSession> stored() {
        const auto json = JSON::parse(session({"list", "--json"}).out);
        return json ? JSON::read<std::vector<StoredSession>>(*json).value_or(std::vector<StoredSession>())
                    : std::vector<StoredSession>();
    }

    const TemporaryFolder folder;
    const std::string data = folder.file("below/data");
    const std::string file = data + "/history.sqlite";
};

TEST_F(SessionCommand, answersWhatTheCommandAnswers) {
    for (const int status : {0, 3, 255})
        EXPECT_EQ(runs({"sh", "-c", fmt::format("exit {}", status)}).status, status);
    EXPECT_EQ(runs({"sh", "-c", "kill -KILL $$"}).status, 128 + SIGKILL);
    EXPECT_EQ(stored().size(), 4U);
    const Finished missing = runs({"no-such-command"});
    EXPECT_EQ(missing.status, 127);
    EXPECT_EQ(missing.err, "ostrivanectl: no-such-command: command not found\n");
    EXPECT_EQ(runs({""}).status, 127);
    EXPECT_EQ(runs({folder.write("plain", "text")}).status, 126);
    EXPECT_EQ(runs({"/"}).status, 126);
    EXPECT_EQ(stored().size(), 4U) << "what never ran is no session";
    EXPECT_EQ(session({"run"}).status, 2);
    EXPECT_EQ(session({"run", "--"}).status, 2);
    EXPECT_EQ(session({"run", "true"}).status, 2);
}

TEST_F(SessionCommand, leavesTheCommandAlone) {
    const Finished finished = runs(
        {"sh", "-c", "echo \"$@\"; echo words >&2; ulimit -Sn; trap '' PIPE; trap", "sh", "--json", "[a,b]", "--"});
    EXPECT_TRUE(finished.out.starts_with("--json [a,b] --\n")) << finished.out;
    EXPECT_TRUE(finished.err.starts_with("words\nsh\n")) << finished.err;
    const auto script = folder.write("script", "printf 'of %s, %s' \"$1\" \"$0\"");
    std::filesystem::permissions(script, std::filesystem::perms::owner_all);
    EXPECT_EQ(runs({script, "one"}).out, "of one, " + script) << "without a first line that names its shell";
    // What this program ignores for itself is usual for the command: a pipe that nobody reads ends it.
    EXPECT_EQ(runs({"sh", "-c", "kill -PIPE $$; echo ignored"}).out, "");
    const std::string limit = "sh -c 'ulimit -Sn 300; ulimit -Sn; exec \"$0\" session run -- sh -c \"ulimit -Sn\"' '" +
                              std::string(OSTRIVANECTL) + "' 2>/dev/null >'" + folder.file("limits") + "'";
    EXPECT_EQ(std::system(limit.c_str()), 0);
    EXPECT_EQ(contentOf(folder.file("limits")), "300\n300\n");
}

TEST_F(SessionCommand, recordsBesideAWriterAndShowsIt) {
    std::filesystem::create_directories(data);
    auto lock = HistoryLock::take(data, "a writer");
    ASSERT_TRUE(std::holds_alternative<HistoryLock>(lock));
    StoreHarness writer(file);
    const std::string out = folder.file("summary.json");
    const Finished finished = session({"run", "--name", "Bu\x1b[2Jild", "--interval", "0.1", "--out", out, "--", "sh",
                                       "-c", "i=0; while [ $i -lt 150000 ]; do i=$((i+1)); done"});
    EXPECT_EQ(finished.status, 0);
    EXPECT_EQ(finished.out, "");
    EXPECT_TRUE(finished.err.starts_with("Bu␛[2Jild\n")) << finished.err;
    EXPECT_TRUE(holds(finished.err, "\nProcessor   ")) << finished.err;
    const auto summary = readSessionSummary(contentOf(out));
    ASSERT_TRUE(summary);
    EXPECT_GE(summary->samples, 1) << "one reading at least: that after its end";
    const auto sessions = stored();
    ASSERT_EQ(sessions.size(), 1U);
    EXPECT_TRUE(sessions[0].end);
    const std::string id = std::to_string(sessions[0].id);
    const auto figures = [](const std::string& text) { return text.substr(text.find("\nProcessor")); };
    EXPECT_EQ(figures(session({"show", id}).out), figures(finished.err)) << "all but the length, in whole seconds";
    EXPECT_EQ(session({"show", id, "--json"}).out, contentOf(out));
    EXPECT_EQ(session({"list"}).out, runProgram({"history", "sessions"}).out);
    EXPECT_EQ(writer.status().alerts, 0);
    EXPECT_TRUE(writer.systemRows().empty()) << "a row of the session, and nothing else";
    EXPECT_EQ(session({"delete", id}).status, 2) << "nobody to ask";
    EXPECT_EQ(session({"delete", "99", "--yes"}).status, 1);
    EXPECT_EQ(session({"delete", id, "--yes"}).status, 0);
    EXPECT_EQ(session({"show", id}).status, 1);
}

TEST_F(SessionCommand, runsThoughNothingCanBeStored) {
    folder.write("below", "a file");
    const Finished finished = runs({"echo", "done"});
    EXPECT_EQ(finished.status, 0);
    EXPECT_EQ(finished.out, "done\n");
    EXPECT_TRUE(finished.err.starts_with("echo\n")) << finished.err;
    EXPECT_TRUE(holds(finished.err, "ostrivanectl: The session is not in the history: ")) << finished.err;
}

TEST_F(SessionCommand, survivesTheKeyThatEndsTheCommand) {
    TerminalRun run({"session", "run", "--", "sh", "-c", "trap 'echo once; exit 5' INT; echo ready; sleep 20 & wait"},
                    80, 24);
    ASSERT_TRUE(run.sees("ready"));
    run.type("\x03");
    EXPECT_EQ(run.wait(), 5);
    EXPECT_EQ(run.written.find("once"), run.written.rfind("once")) << "the key reached it by itself";
    EXPECT_TRUE(holds(run.written, "Processor   ")) << run.written;
    EXPECT_EQ(stored().size(), 1U);
}

TEST_F(SessionCommand, passesOnWhatReachesItAlone) {
    for (const int number : {SIGTERM, SIGHUP}) {
        TerminalRun run({"session", "run", "--", "sh", "-c", "echo ready; exec sleep 20"}, 80, 24);
        ASSERT_TRUE(run.sees("ready"));
        run.signal(number);
        EXPECT_EQ(run.wait(), 128 + number);
        EXPECT_TRUE(holds(run.written, "sh\r\n")) << run.written;
    }
    EXPECT_EQ(stored().size(), 2U);
}

} // namespace
} // namespace ostrivane
