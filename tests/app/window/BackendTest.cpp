#include "app/window/Backend.hpp"

#include "app/window/MainThread.hpp"
#include "core/history/HistoryLock.hpp"
#include "tests/TemporaryFolder.hpp"

#include <QTest>

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <utility>
#include <vector>

namespace ostrivane {

namespace {

constexpr int patience = 30'000;

/// A program over this machine, as the window has one.
class Program {
public:
    Program() : made(home.poster(), {.lossPatience = std::chrono::milliseconds(0)}) {
        model().start();
        made.onHistoryProblem([this](std::optional<std::string> problem) {
            told = std::move(problem);
            hadProblem = hadProblem || told;
        });
    }
    ~Program() { made.finish(std::chrono::milliseconds(patience)); }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    AppModel& model() { return made.model(); }

    /// What `ask(history, answer)` is answered.
    template <class Result, class Ask>
    Result answer(Ask ask) {
        auto given = std::make_shared<std::optional<Result>>(); // an answer may come late
        ask(model().history(), [given, post = home.poster()](Result result) {
            post([given, result = std::move(result)] { *given = result; });
        });
        return QTest::qWaitFor([&] { return given->has_value(); }, patience) ? **given : Result();
    }
    std::vector<StoredSession> sessions() {
        return answer<std::vector<StoredSession>>(
            [](HistoryStore& store, auto got) { store.sessions(std::move(got)); });
    }

    /// Reads the machine until `done`; whether it came to that.
    template <class Done>
    bool readUntil(Done done) {
        return QTest::qWaitFor(
            [&] {
                model().engine().refreshNow();
                return done();
            },
            patience);
    }

    Backend& backend() { return made; }
    const std::optional<std::string>& problem() const { return told; }
    bool hasHadProblem() const { return hadProblem; }

private:
    MainThread home;
    std::optional<std::string> told;
    bool hadProblem = false;
    Backend made;
};

class BackendTest : public testing::Test {
protected:
    BackendTest() {
        qputenv("OSTRIVANE_DATA_DIR", QByteArray::fromStdString(data));
        qputenv("OSTRIVANE_CONFIG_DIR", QByteArray::fromStdString(folder.file("config")));
    }
    ~BackendTest() override {
        qunsetenv("OSTRIVANE_DATA_DIR");
        qunsetenv("OSTRIVANE_CONFIG_DIR");
    }

    const TemporaryFolder folder;
    const std::string data = folder.file("data");
};

} // namespace

TEST_F(BackendTest, WorksBesideAProgramThatKeepsTheHistoryAndTakesOverFromIt) {
    auto first = std::make_unique<Program>();
    ASSERT_TRUE(first->readUntil([&] { return first->model().state().hasFirstSample; }));
    EXPECT_EQ(first->backend().otherKeeper(), std::nullopt);
    Program second;
    EXPECT_NE(second.backend().otherKeeper().value_or("").find("ostrivane (process"), std::string::npos);
    second.model().startSession("beside");
    second.model().stopSession();
    EXPECT_TRUE(second.readUntil([&] {
        const auto kept = second.sessions();
        return kept.size() == 1 && kept.front().end.has_value();
    }));
    EXPECT_FALSE(second.hasHadProblem());

    first.reset();
    EXPECT_TRUE(second.readUntil([&] { return !second.backend().otherKeeper(); }));
    EXPECT_TRUE(HistoryLock::holder(data));
}

TEST_F(BackendTest, TellsOfALostHistoryAndBeginsItAnew) {
    Program program;
    const auto isThere = [&] {
        return program.answer<bool>([](HistoryStore& store, auto got) { store.isAvailable(std::move(got)); });
    };
    ASSERT_TRUE(isThere());
    std::filesystem::remove_all(data);
    std::filesystem::create_directory(data);
    EXPECT_TRUE(program.readUntil([&] { return std::filesystem::exists(data + "/history.sqlite"); }));
    EXPECT_TRUE(HistoryLock::holder(data)) << "and nobody else begins one";
    program.model().startSession("after");
    program.model().stopSession();
    EXPECT_TRUE(program.readUntil([&] { return program.sessions().size() == 1; }));
    EXPECT_EQ(program.problem(), std::nullopt);
}

TEST_F(BackendTest, TellsWhyNothingIsKeptUntilItIs) {
    folder.write("data", "a file where the folder should be");
    Program program;
    ASSERT_TRUE(program.readUntil([&] { return program.problem().has_value(); }));
    EXPECT_NE(program.problem()->find(data), std::string::npos) << *program.problem();
    EXPECT_EQ(program.backend().otherKeeper(), std::nullopt);
    std::filesystem::remove(data);
    EXPECT_TRUE(program.readUntil([&] { return !program.problem(); }));
    program.model().startSession("kept");
    program.model().stopSession();
    EXPECT_TRUE(program.readUntil([&] { return program.sessions().size() == 1; }));
}

} // namespace ostrivane
