#include "app/window/AppDelegate.hpp"

#include "app/model/KeepRunning.hpp"
#include "app/window/AutostartEntry.hpp"
#include "app/window/MainThread.hpp"
#include "app/window/MainWindow.hpp"
#include "tests/TemporaryFolder.hpp"
#include "tests/app/pages/PageHarness.hpp"

#include <QApplication>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

namespace ostrivane {

namespace {

class LightDesktop final : public DesktopAppearance {
public:
    bool prefersDark() const override { return false; }
    void onChange(std::function<void()>) override {}
};

/// The application over this machine, with its own folders.
class AppDelegateTest : public testing::Test {
protected:
    AppDelegateTest() {
        qputenv("OSTRIVANE_DATA_DIR", QByteArray::fromStdString(folder.file("data")));
        qputenv("OSTRIVANE_CONFIG_DIR", QByteArray::fromStdString(folder.file("config")));
        open();
    }
    ~AppDelegateTest() override {
        close();
        qunsetenv("OSTRIVANE_DATA_DIR");
        qunsetenv("OSTRIVANE_CONFIG_DIR");
    }

    /// Another start of the program, over the same folders.
    void open() {
        close();
        mainThread.emplace();
        backend.emplace(mainThread->poster(), BackendOptions{});
        DelegateParts parts;
        parts.loginItem = std::make_unique<ObedientLoginItem>();
        parts.appearance = std::make_unique<LightDesktop>();
        parts.hasTray = [this] { return hasTray; };
        parts.onMainThread = mainThread->poster();
        parts.quit = [this] { ++quits; };
        delegate.emplace(*backend, std::move(parts));
    }

    void close() {
        delegate.reset();
        backend.reset();
        mainThread.reset();
    }

    void launch(const std::vector<std::string>& arguments) {
        open();
        delegate->applicationDidFinishLaunching(parseLaunchArguments(arguments));
    }

    AppModel& model() { return backend->model(); }
    std::vector<StoredSession> storedSessions() {
        std::optional<std::vector<StoredSession>> kept;
        model().history().sessions([&kept, post = mainThread->poster()](std::vector<StoredSession> told) {
            post([&kept, told = std::move(told)]() mutable { kept = std::move(told); });
        });
        return QTest::qWaitFor([&] { return kept.has_value(); }) ? *kept : std::vector<StoredSession>();
    }
    bool isShown() { return delegate->windows().isWindowVisible(); }

    TemporaryFolder folder;
    bool hasTray = true;
    int quits = 0;
    std::optional<MainThread> mainThread;
    std::optional<Backend> backend;
    std::optional<AppDelegate> delegate;
};

} // namespace

TEST_F(AppDelegateTest, WelcomesOnceAndNeverAtLogin) {
    launch({"--login"});
    EXPECT_FALSE(isShown());
    EXPECT_FALSE(model().showsWelcome()) << "a first start with the session uses up the welcome";
    launch({});
    EXPECT_TRUE(isShown());
    EXPECT_FALSE(model().showsWelcome());
    model().settings().set(&Preferences::hasOnboarded, false);
    launch({"--background"});
    EXPECT_FALSE(isShown());
    EXPECT_TRUE(model().showsWelcome());
    launch({"--login", "--page", "cpu"});
    EXPECT_TRUE(isShown());
    EXPECT_EQ(model().navigation().selectedPage(), Page::cpu);
}

TEST_F(AppDelegateTest, ClosesToTheTrayAndComesBack) {
    launch({"--page", "memory"});
    MainWindow* window = delegate->windows().window();
    EXPECT_TRUE(QTest::qWaitFor([&] { return model().demand().windowVisible; }));
    EXPECT_EQ(model().demand().pages, PageSet{"memory"});
    window->close();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !model().demand().windowVisible; }));
    EXPECT_EQ(model().demand().pages, PageSet{});
    EXPECT_EQ(quits, 0);
    delegate->applicationShouldHandleReopen(std::nullopt);
    EXPECT_TRUE(isShown());
    EXPECT_EQ(model().navigation().selectedPage(), Page::memory) << "it selects nothing new";
    delegate->applicationShouldHandleReopen(Page::cpu);
    EXPECT_EQ(model().navigation().selectedPage(), Page::cpu);
}

TEST_F(AppDelegateTest, QuitsWithTheWindowWhereNothingBringsItBack) {
    hasTray = false;
    launch({});
    model().settings().defaults().setBoolean(keepRunningKey, true);
    delegate->windows().window()->close();
    EXPECT_EQ(quits, 0) << "as was chosen";
    delegate->windows().showMainWindow();
    model().settings().defaults().setBoolean(keepRunningKey, false);
    delegate->windows().window()->close();
    EXPECT_EQ(quits, 1);
}

TEST_F(AppDelegateTest, StaysOpenWhileItsQuestionHasNoAnswer) {
    hasTray = false;
    launch({});
    QTimer::singleShot(0, [] { QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape); });
    delegate->windows().window()->close();
    EXPECT_TRUE(isShown());
    EXPECT_EQ(quits, 0);
    EXPECT_EQ(model().settings().defaults().boolean(keepRunningKey), std::nullopt);
}

TEST_F(AppDelegateTest, KeepsTheWindowsSize) {
    launch({});
    const QSize chosen = delegate->windows().window()->minimumSize() + QSize(17, 13);
    delegate->windows().window()->resize(chosen);
    launch({});
    EXPECT_EQ(delegate->windows().window()->size(), chosen);
    model().settings().defaults().setText("OstrivaneMainWindow", "not a frame at all");
    close();
    launch({});
    EXPECT_TRUE(isShown());
}

TEST_F(AppDelegateTest, SavesItsWorkWithNobodyLooking) {
    launch({"--page", "sessions"});
    model().startSession("Work");
    ASSERT_EQ(storedSessions().size(), 1U);
    int heard = 0;
    const Subscription hearing = model().observe([&](const ModelChanges&) { ++heard; });
    delegate->saveWork(); // where the display has gone, nothing can be shown
    EXPECT_EQ(heard, 0);
    EXPECT_FALSE(model().state().session);
    const auto kept = storedSessions();
    ASSERT_EQ(kept.size(), 1U);
    EXPECT_TRUE(kept.front().end);
}

TEST_F(AppDelegateTest, ReadsBesideAProgramThatKeepsTheHistory) {
    const auto isThere = [](AppModel& asked, const MainThread& home) {
        std::optional<bool> told;
        asked.history().isAvailable(
            [&told, post = home.poster()](bool available) { post([&told, available] { told = available; }); });
        return QTest::qWaitFor([&] { return told.has_value(); }) && *told;
    };
    launch({});
    ASSERT_TRUE(isThere(model(), *mainThread));
    const MainThread other;
    Backend second(other.poster(), {});
    EXPECT_TRUE(isThere(second.model(), other));
    EXPECT_TRUE(second.finish(std::chrono::seconds(2)));
    EXPECT_TRUE(backend->finish(std::chrono::seconds(2)));
}

TEST(MainThread, DoesTheWorkOfOthersInItsOrder) {
    std::vector<int> done;
    std::function<void(std::function<void()>)> late;
    {
        MainThread mainThread;
        late = mainThread.poster();
        std::thread other([post = mainThread.poster(), &done] {
            for (int i = 0; i < 100; ++i)
                post([&done, i] { done.push_back(i); });
        });
        other.join();
        EXPECT_TRUE(done.empty());
        EXPECT_TRUE(QTest::qWaitFor([&] { return done.size() == 100; }));
        EXPECT_TRUE(std::ranges::is_sorted(done));
        late([&] { done.clear(); });
    }
    late([&] { done.clear(); }); // whoever it was for has gone
    QApplication::processEvents();
    EXPECT_EQ(done.size(), 100U);
}

TEST(AutostartEntry, BearsAnyPathAndTellsWhetherItIsOn) {
    const std::string entry = autostartEntry("/opt/50% \"off\"/a$b\\c");
    EXPECT_NE(entry.find(R"(Exec="/opt/50%% \\"off\\"/a\\$b\\\\c" --login)"), std::string::npos) << entry;
    EXPECT_TRUE(isEnabledEntry(entry));
    EXPECT_FALSE(isEnabledEntry("[Desktop Entry]\nHidden=true\n"));
    EXPECT_FALSE(isEnabledEntry("[Desktop Entry]\nExec=a\nX-GNOME-Autostart-enabled=false"));
    EXPECT_TRUE(isEnabledEntry("[Other]\nHidden=true\n[Desktop Entry]\nExec=a\n"));
}

} // namespace ostrivane
