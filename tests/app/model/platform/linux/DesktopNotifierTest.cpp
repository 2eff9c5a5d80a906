#include "app/model/platform/linux/DesktopNotifier.hpp"

#include "core/judgement/Alert.hpp"
#include "core/sampling/platform/linux/FileDescriptor.hpp"
#include "tests/TemporaryFolder.hpp"
#include "tests/app/model/platform/linux/FakeBus.hpp"
#include "tests/app/model/platform/linux/FakeDesktop.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

namespace ostrivane {
namespace {

using Capabilities = std::vector<std::string>;

constexpr auto forEver = std::chrono::hours(10); // to a test: who waits for its end has failed

Alert alertOf(std::string title, std::optional<std::string> subject = std::nullopt) {
    return {.kind = AlertKind::idleServer, .title = std::move(title), .body = "Body", .subject = std::move(subject)};
}

class DesktopNotifierTest : public testing::Test {
protected:
    void SetUp() override {
        if (!FakeBus::canRun())
            GTEST_SKIP() << "no dbus-daemon here";
        bus.emplace(folder.path());
    }

    SessionBusVariables variables() const { return {.runtimeFolder = folder.path()}; }

    TemporaryFolder folder;
    std::optional<FakeBus> bus;
};

TEST_F(DesktopNotifierTest, tellsTheDesktopAllOfAnAlert) {
    FakeDesktop desktop(bus->address(), {"body", "actions"});
    DesktopNotifier notifier({.address = bus->address()}, forEver);
    Alert alert = alertOf("Low storage\xFF");
    alert.body = "<b>R&D</b>";
    for (const auto severity : {AlertSeverity::info, AlertSeverity::warning, AlertSeverity::critical}) {
        alert.severity = severity;
        notifier.post(alert);
    }
    const auto told = desktop.told(3);
    ASSERT_EQ(told.size(), 3U);
    EXPECT_EQ(told[0].program, "Ostrivane");
    EXPECT_EQ(told[0].icon, "");
    EXPECT_EQ(told[0].summary, "Low storage�");
    EXPECT_EQ(told[0].body, "<b>R&D</b>");
    EXPECT_EQ(told[0].actions, 0U);
    EXPECT_EQ(told[0].desktopEntry, "ostrivane");
    EXPECT_EQ(told[0].time, -1);
    EXPECT_EQ(told[0].urgency, 0);
    EXPECT_EQ(told[1].urgency, 1);
    EXPECT_EQ(told[2].urgency, 2);
    EXPECT_EQ(desktop.questions(), 1);
}

TEST_F(DesktopNotifierTest, replacesWhatTheSameServerShows) {
    DesktopNotifier notifier(variables(), forEver);
    const Alert first = alertOf("First", "/<home>");
    Alert marked = first;
    marked.body = "<i>";
    {
        FakeDesktop desktop(bus->address(), {"body-markup", "body"}, 40);
        for (const Alert& alert : {first, alertOf("Second", "/"), marked})
            notifier.post(alert);
        const auto told = desktop.told(3);
        ASSERT_EQ(told.size(), 3U);
        EXPECT_EQ(told[0].replaces, 0U);
        EXPECT_EQ(told[1].replaces, 0U);
        EXPECT_EQ(told[2].replaces, 40U);
        EXPECT_EQ(told[2].body, "&lt;i&gt;");
    }
    FakeDesktop desktop(bus->address(), {"body"}); // another server: what the first one said is void
    notifier.post(marked);
    const auto told = desktop.told(1);
    ASSERT_EQ(told.size(), 1U);
    EXPECT_EQ(told[0].replaces, 0U);
    EXPECT_EQ(told[0].body, "<i>");
}

TEST_F(DesktopNotifierTest, comesBackWithTheServerAndWithTheBus) {
    DesktopNotifier notifier(variables(), forEver);
    const auto isShownNow = [&](const std::string& title) {
        FakeDesktop desktop(bus->address(), {});
        notifier.post(alertOf(title));
        return desktop.told(title).summary == title;
    };
    notifier.post(alertOf("Without a server"));
    EXPECT_TRUE(isShownNow("With a server"));
    bus.reset();
    notifier.post(alertOf("Without a bus"));
    bus.emplace(folder.path());
    EXPECT_TRUE(isShownNow("With a new bus"));
}

TEST_F(DesktopNotifierTest, keepsTheLatestWhileTheServerIsSlow) {
    FakeDesktop desktop(bus->address(), {});
    DesktopNotifier notifier(variables(), forEver);
    desktop.holdAnswers();
    notifier.post(alertOf("0"));
    ASSERT_EQ(desktop.told(1).size(), 1U);
    constexpr std::size_t posted = 40;
    for (std::size_t i = 1; i <= posted; ++i)
        notifier.post(alertOf(std::to_string(i)));
    desktop.answer();
    std::vector<std::string> expected = {"0"};
    for (std::size_t i = posted - DesktopNotifier::mostWaiting + 1; i <= posted; ++i)
        expected.push_back(std::to_string(i));
    std::vector<std::string> titles;
    for (const auto& notification : desktop.told(expected.size()))
        titles.push_back(notification.summary);
    EXPECT_EQ(titles, expected);
}

TEST_F(DesktopNotifierTest, endsWhileAServerDoesNotAnswer) {
    FakeDesktop desktop(bus->address(), {});
    desktop.holdAnswers();
    DesktopNotifier notifier(variables(), forEver);
    notifier.post(alertOf("First"));
    notifier.post(alertOf("Second"));
    EXPECT_EQ(desktop.told(1).size(), 1U);
}

TEST_F(DesktopNotifierTest, givesUpAServerThatDoesNotAnswer) {
    FakeDesktop desktop(bus->address(), {});
    desktop.holdAnswers();
    DesktopNotifier notifier(variables(), std::chrono::seconds(5)); // for the bus, too, which may be slow
    notifier.post(alertOf("First"));
    ASSERT_EQ(desktop.told(1).size(), 1U);
    notifier.post(alertOf("Second"));
    EXPECT_EQ(desktop.told(2).size(), 2U); // no answer was given to the first
}

/// Accepts, and says nothing.
class SilentBus {
public:
    explicit SilentBus(const std::string& path) : listener(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::ranges::copy(path, address.sun_path);
        EXPECT_EQ(::bind(listener.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
        EXPECT_EQ(::listen(listener.get(), 4), 0);
    }

    bool accepts() {
        pollfd waiting{.fd = listener.get(), .events = POLLIN, .revents = 0};
        if (::poll(&waiting, 1, 30'000) != 1)
            return false;
        accepted.emplace_back(::accept4(listener.get(), nullptr, nullptr, SOCK_CLOEXEC));
        return true;
    }

private:
    FileDescriptor listener;
    std::vector<FileDescriptor> accepted;
};

TEST(DesktopNotifier, givesUpABusThatDoesNotAnswer) {
    const TemporaryFolder folder;
    SilentBus bus(folder.file("bus"));
    DesktopNotifier notifier({.runtimeFolder = folder.path()}, std::chrono::milliseconds(20));
    notifier.post(alertOf("First"));
    EXPECT_TRUE(bus.accepts());
    notifier.post(alertOf("Second"));
    EXPECT_TRUE(bus.accepts());
}

TEST(DesktopNotifier, endsWhileABusDoesNotAnswer) {
    const TemporaryFolder folder;
    SilentBus bus(folder.file("bus"));
    DesktopNotifier notifier({.runtimeFolder = folder.path()}, forEver);
    notifier.post(alertOf("First"));
    EXPECT_TRUE(bus.accepts());
}

} // namespace
} // namespace ostrivane
