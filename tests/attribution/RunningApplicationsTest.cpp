#include "core/attribution/RunningApplications.hpp"

#include "tests/attribution/DesktopTree.hpp"

#include <gtest/gtest.h>

namespace ostrivane {
namespace {

using Running = std::map<std::string, std::int32_t>;

constexpr std::string_view browser = "/usr/share/applications/browser.desktop";
constexpr std::string_view hidden = "/usr/share/applications/hidden.desktop";
const std::string session = "0::/user.slice/user-1000.slice/user@1000.service/app.slice/";

DesktopEntryIndex installed() {
    DesktopTree tree;
    tree.entry("browser.desktop", "Name=Browser\n").entry("hidden.desktop", "NoDisplay=true\n");
    return tree.index();
}

ControlGroupUnit unitNamed(const std::string& name) {
    return ControlGroupUnit::parse(session + name);
}

TEST(RunningApplications, areWhatAPersonHasOpen) {
    const ControlGroupUnit none, own = unitNamed("app-gnome-browser-7.scope"),
                                 hiddenOnLogin = unitNamed("app-gnome-hidden@autostart.service"),
                                 shownOnLogin = unitNamed("app-gnome-browser@autostart.service"),
                                 unknownOnLogin = unitNamed("app-gnome-else@autostart.service");
    const auto index = installed();
    const auto running = [&](std::string_view key, const ControlGroupUnit& unit) {
        const GroupedProcess process{.key = key, .pid = 5, .start = {100}, .leader = 5, .unit = &unit};
        return runningApplications(std::span(&process, 1), index);
    };
    EXPECT_EQ(running(browser, own), (Running{{std::string(browser), 5}}));
    EXPECT_EQ(running("/home/ada/Notes.AppImage", none), (Running{{"/home/ada/Notes.AppImage", 5}}));
    EXPECT_EQ(running("exe:make", none), Running{});
    EXPECT_EQ(running("system", none), Running{});
    EXPECT_EQ(running(hidden, own), Running{}) << "in no menu";
    EXPECT_EQ(running(browser, hiddenOnLogin), Running{}) << "its service, which the session started";
    EXPECT_EQ(running(browser, shownOnLogin).size(), 1U) << "as the user wished";
    EXPECT_EQ(running(browser, unknownOnLogin).size(), 1U);
}

TEST(RunningApplications, areStoodForByWhatLeadsTheirUnit) {
    const ControlGroupUnit none, terminal = unitNamed("app-org.gnome.Terminal.slice/vte-spawn-1.scope"),
                                 first = unitNamed("app-gnome-browser-30.scope"),
                                 second = unitNamed("app-gnome-browser-20.scope"),
                                 service = unitNamed("app-gnome-hidden@autostart.service");
    const auto index = installed();
    const auto standsFor = [&](std::vector<GroupedProcess> processes) {
        for (GroupedProcess& process : processes)
            process.key = browser;
        const Running running = runningApplications(processes, index);
        return running.empty() ? 0 : running.begin()->second;
    };
    const GroupedProcess leader{.key = {}, .pid = 30, .start = {50}, .leader = 30, .unit = &first};
    const GroupedProcess laterLeader{.key = {}, .pid = 20, .start = {60}, .leader = 20, .unit = &second};
    const GroupedProcess helper{.key = {}, .pid = 31, .start = {40}, .leader = 30, .unit = &first};
    const GroupedProcess inTerminal{.key = {}, .pid = 10, .start = {30}, .leader = 9, .unit = &terminal};
    const GroupedProcess inNone{.key = {}, .pid = 8, .start = {20}, .leader = 8, .unit = &none};
    const GroupedProcess onLogin{.key = {}, .pid = 7, .start = {10}, .leader = 7, .unit = &service};
    EXPECT_EQ(standsFor({laterLeader, inNone, inTerminal, helper, leader, onLogin}), 30);
    EXPECT_EQ(standsFor({helper, inTerminal, onLogin}), 10) << "led by a shell";
    EXPECT_EQ(standsFor({inTerminal, inNone}), 8);
    EXPECT_EQ(standsFor({onLogin}), 0);
}

} // namespace
} // namespace ostrivane
