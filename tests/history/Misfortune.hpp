#pragma once

#include "core/history/SQLiteDatabase.hpp"
#include "tests/history/StoreHarness.hpp"

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include <sys/wait.h>
#include <unistd.h>

/// What tests share in which something happens to the file of the history.
namespace ostrivane::misfortune {

inline constexpr double start = 1'000'000'020; // of a minute

inline SystemSnapshot snapshotAt(double seconds, int apps = 20) {
    SystemSnapshot snapshot = SystemSnapshot::empty(Date{seconds});
    snapshot.interval = 60;
    snapshot.cpu.usage = 0.5;
    for (int index = 0; index < apps; ++index)
        snapshot.applications.push_back(
            {.key = "exe:application-" + std::to_string(index), .name = "Application", .cpu = 0.5, .memory = 100});
    return snapshot;
}

/// Minutes `first` to `last`, each finished; the last one is under way.
inline void live(StoreHarness& harness, int first, int last, int apps = 20) {
    for (int minute = first; minute <= last; ++minute) {
        harness.now = Date{start + minute * 60};
        harness.ingest(snapshotAt(start + minute * 60, apps));
    }
}

inline std::string integrity(const std::string& path) {
    SQLiteDatabase database(path);
    std::string words;
    database.each("PRAGMA integrity_check", {}, [&](const SQLiteDatabase::Row& row) { words += row.view(0); });
    return words;
}

/// Runs `body` in a process of its own, where it may give up rights and break what it likes; its failed expectations
/// fail the test here. Answers false where `body` did: it was not allowed what it needs.
inline bool inChild(const std::function<bool()>& body) {
    constexpr int notAllowed = 77;
    const pid_t child = ::fork();
    if (child == 0) {
        const bool allowed = body();
        ::_exit(testing::Test::HasFailure() ? 1 : allowed ? 0 : notAllowed);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status)) << "signal " << WTERMSIG(status);
    EXPECT_NE(WEXITSTATUS(status), 1) << "see above";
    return WEXITSTATUS(status) != notAllowed;
}

} // namespace ostrivane::misfortune
