#include "app/window/AppDelegate.hpp"

#include "app/model/WayBack.hpp"
#include "app/widgets/Banner.hpp"
#include "app/widgets/Buttons.hpp"
#include "app/widgets/Theme.hpp"
#include "app/window/AutostartEntry.hpp"
#include "app/window/MainThread.hpp"
#include "app/window/MainWindow.hpp"
#include "tests/TemporaryFolder.hpp"
#include "tests/app/pages/PageHarness.hpp"
#include "tests/app/pages/Widgets.hpp"

#include <QApplication>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

namespace ostrivane {

namespace {

class ChangingDesktop final : public DesktopAppearance {
public:
    explicit ChangingDesktop(ChangingDesktop*& known) { known = this; }
    bool prefersDark() const override { return isDark; }
    void onChange(std::function<void()> observer) override { changed = std::move(observer); }
    void turn(bool dark) {
        isDark = dark;
        changed();
    }

private:
    bool isDark = false;
    std::function<void()> changed;
};

class BrokenFileManager final : public FileManager {
public:
    void reveal(const std::string&, std::function<void()> failed) override { failed(); }
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
    void open(const std::string& recording = {}) {
        close();
        mainThread.emplace();
        backend.emplace(mainThread->poster(), BackendOptions{});
        DelegateParts parts;
        parts.loginItem = std::make_unique<ObedientLoginItem>();
        parts.appearance = std::make_unique<ChangingDesktop>(desktop);
        parts.fileManager = std::make_unique<BrokenFileManager>();
        parts.wayBack = [this] { return wayBack; };
        parts.recording = recording;
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
    ChangingDesktop* desktop = nullptr;
    WayBack wayBack = WayBack::icon;
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

TEST_F(AppDelegateTest, AsksOnceWhatClosingMeansWhereOnlyAFurtherStartLeadsBack) {
    wayBack = WayBack::furtherStart;
    launch({});
    const auto closeAndAnswer = [&](const char* answer) {
        int questions = 0;
        QTimer::singleShot(0, [&] {
            QWidget* question = QApplication::activeModalWidget();
            if (!question)
                return;
            ++questions;
            if (answer)
                button(*question, answer)->click();
            else
                QTest::keyClick(question, Qt::Key_Escape);
        });
        delegate->windows().window()->close();
        QApplication::processEvents();
        return questions;
    };
    const auto kept = [&] { return model().settings().defaults().boolean(keepRunningKey); };
    EXPECT_EQ(closeAndAnswer(nullptr), 1);
    EXPECT_TRUE(isShown()) << "no answer";
    EXPECT_EQ(kept(), std::nullopt);

    EXPECT_EQ(closeAndAnswer("Keep running in the background"), 1);
    EXPECT_FALSE(isShown());
    EXPECT_EQ(kept(), true);
    delegate->windows().showMainWindow();
    EXPECT_EQ(closeAndAnswer("Quit"), 0) << "it was told";
    EXPECT_FALSE(isShown());
    EXPECT_EQ(quits, 0);

    model().settings().defaults().remove(keepRunningKey);
    delegate->windows().showMainWindow();
    EXPECT_EQ(closeAndAnswer("Quit"), 1);
    EXPECT_EQ(kept(), false);
    EXPECT_EQ(quits, 1);
    delegate->windows().showMainWindow();
    EXPECT_EQ(closeAndAnswer("Quit"), 0);
    EXPECT_EQ(quits, 2);
}

TEST_F(AppDelegateTest, NeverRunsWithoutAWindowWhereNothingLeadsBack) {
    wayBack = WayBack::none;
    launch({"--background"});
    EXPECT_TRUE(isShown());
    model().settings().defaults().setBoolean(keepRunningKey, true); // chosen where there was a way
    delegate->windows().window()->close();
    EXPECT_EQ(quits, 1);
}

TEST_F(AppDelegateTest, FollowsTheChosenThemeElseTheDesktop) {
    launch({});
    EXPECT_FALSE(Theme::current().isDark);
    desktop->turn(true);
    EXPECT_TRUE(Theme::current().isDark);
    model().settings().set(&Preferences::appearance, AppearanceMode::light);
    EXPECT_FALSE(Theme::current().isDark);
    desktop->turn(false);
    model().settings().set(&Preferences::appearance, AppearanceMode::dark);
    EXPECT_TRUE(Theme::current().isDark);
    model().settings().set(&Preferences::appearance, AppearanceMode::system);
    EXPECT_FALSE(Theme::current().isDark);
}

TEST_F(AppDelegateTest, SaysSoWhenNoFileManagerAnswers) {
    launch({});
    QString said;
    QTimer::singleShot(0, [&] {
        if (QWidget* message = QApplication::activeModalWidget()) {
            said = message->accessibleName();
            message->close();
        }
    });
    delegate->pages().reveal("/usr/bin/env");
    EXPECT_TRUE(said.contains(QStringLiteral("No file manager answered"))) << said.toStdString();
}

TEST_F(AppDelegateTest, SaysThatARecordingIsShownAndWhenItHasEnded) {
    open("/some/where/laptop.jsonl");
    delegate->applicationDidFinishLaunching({});
    const auto says = [&](const QString& words) {
        const auto banners = delegate->windows().window()->findChildren<Banner*>();
        return std::ranges::any_of(banners, [&](const Banner* banner) {
            return banner->isVisible() && banner->accessibleLabel().contains(words);
        });
    };
    EXPECT_TRUE(says(QStringLiteral("This is a recording, laptop.jsonl")));
    EXPECT_FALSE(says(QStringLiteral("It has ended")));
    delegate->recordingDidEnd();
    EXPECT_TRUE(says(QStringLiteral("It has ended")));
}

TEST_F(AppDelegateTest, KeepsTheWindowsSize) {
    launch({});
    const QSize chosen = delegate->windows().window()->minimumSize() + QSize(17, 13);
    delegate->windows().window()->resize(chosen);
    launch({});
    EXPECT_EQ(delegate->windows().window()->size(), chosen);
    KeyValueStore& kept = model().settings().defaults();
    delegate.reset(); // which keeps the frame
    kept.setText("OstrivaneMainWindow", "not a frame at all");
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
