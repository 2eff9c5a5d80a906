#include "core/attribution/AppGrouper.hpp"
#include "core/attribution/AppRules.hpp"
#include "tests/attribution/DesktopTree.hpp"
#include "tests/attribution/Grouping.hpp"

#include <gtest/gtest.h>

#include <optional>
#include <set>
#include <string>

namespace ostrivane {
namespace {

using AppGrouper::Input;

Input processOf(std::int32_t pid, std::int32_t ppid, std::string name, std::optional<std::string> path) {
    Input input;
    input.pid = input.responsiblePID = pid;
    input.ppid = ppid;
    input.name = std::move(name);
    input.path = std::move(path);
    return input;
}

std::optional<std::string> bundleOf(std::string_view path, const std::set<std::string>& files = {}) {
    return AppGrouper::outermostAppBundle(
        path, [&](const std::string& asked) { return files.contains(asked); }, "/Users/ada");
}

TEST(OutermostAppBundle, isTheOuterOneAndTheOriginalOfACopy) {
    EXPECT_EQ(bundleOf("/Applications/Foo.app/Contents/Frameworks/Bar.app/Contents/MacOS/Bar"),
              "/Applications/Foo.app");
    EXPECT_EQ(bundleOf("/Applications/Foo.app"), "/Applications/Foo.app");
    EXPECT_EQ(bundleOf("//Applications/Foo.app//"), "/Applications/Foo.app");
    EXPECT_EQ(bundleOf("Foo.app/x"), "/Foo.app");
    for (const char* path : {"/usr/bin/foo", "/Applications/Foo.apps/x", "/Applications/Foo.app.txt", ""})
        EXPECT_FALSE(bundleOf(path)) << path;

    const std::string copy = "/private/var/folders/x/code_sign_clone.1/Foo.app.bundle/Contents/MacOS/Foo";
    EXPECT_EQ(bundleOf(copy, {"/Applications/Foo.app", "/Users/ada/Applications/Foo.app"}), "/Applications/Foo.app");
    EXPECT_EQ(bundleOf(copy, {"/Users/ada/Applications/Foo.app"}), "/Users/ada/Applications/Foo.app");
    EXPECT_FALSE(bundleOf(copy));
    EXPECT_FALSE(bundleOf("/opt/Foo.app.bundle/Foo", {"/Applications/Foo.app"})); // no copy of the system's making
}

AppRules macOSRules() {
    return AppRules::forMacOS([](const std::string&) { return false; }, "/Users/ada");
}

TEST(MacOSRules, giveEveryProcessItsApplication) {
    Input helper = processOf(50, 1, "WebContent", "/System/Library/Frameworks/WebKit.framework/WebContent");
    helper.responsiblePID = 40;
    Input orphan = processOf(51, 40, "child", "/usr/bin/child");
    orphan.responsiblePID = 9999; // gone: the ancestors decide
    Input led = processOf(52, 1, "Bar", "/Applications/Bar.app/Contents/MacOS/Bar");
    led.responsiblePID = 40; // before its own bundle
    Input byTool = processOf(53, 1, "x", "/opt/x");
    byTool.responsiblePID = 60; // who has a path and no bundle
    const auto keys = keysOf(
        {processOf(0, 0, "anything", std::nullopt), processOf(1, 0, "launchd", "/sbin/launchd"),
         processOf(40, 1, "Foo", "/Applications/Foo.app/Contents/MacOS/Foo"), helper, orphan, led, byTool,
         processOf(41, 40, "zsh", "/bin/zsh"), processOf(42, 41, "node", "/opt/homebrew/bin/node"),
         processOf(60, 1, "node", "/opt/homebrew/bin/node"),
         processOf(61, 1, "WindowServer", "/System/Library/WindowServer"), processOf(62, 1, "secret", std::nullopt),
         processOf(63, 1, "cfprefsd", "/usr/sbin/cfprefsd"), processOf(64, 64, "self", "/opt/self")},
        macOSRules());
    const std::map<std::int32_t, std::string> want{{0, "exe:kernel_task"},
                                                   {1, "system"},
                                                   {40, "/Applications/Foo.app"},
                                                   {41, "/Applications/Foo.app"},
                                                   {42, "/Applications/Foo.app"},
                                                   {50, "/Applications/Foo.app"},
                                                   {51, "/Applications/Foo.app"},
                                                   {52, "/Applications/Foo.app"},
                                                   {53, "exe:x"},
                                                   {60, "exe:node"},
                                                   {61, "exe:WindowServer"},
                                                   {62, "system"},
                                                   {63, "system"},
                                                   {64, "exe:self"}};
    EXPECT_EQ(keys, want);
}

TEST(MacOSRules, lookUpSixteenAncestorsAndNoFurther) {
    std::vector<Input> line{processOf(100, 1, "Foo", "/Applications/Foo.app/Contents/MacOS/Foo")};
    for (std::int32_t pid = 101; pid <= 117; ++pid)
        line.push_back(processOf(pid, pid - 1, "tool", "/opt/tool"));
    const auto keys = keysOf(line, macOSRules());
    EXPECT_EQ(keys.at(116), "/Applications/Foo.app");
    EXPECT_EQ(keys.at(117), "exe:tool");
}

TEST(SystemPaths, areThoseOfThePlatform) {
    for (const char* path : {"/System/x", "/usr/local/bin/x", "/private/var/x", "/Library/Apple/x"})
        EXPECT_TRUE(AppGrouper::isSystemPath(path, macOSAppTables())) << path;
    for (const char* path : {"/Library/x", "/opt/x", "/Systemx", "/usrx"})
        EXPECT_FALSE(AppGrouper::isSystemPath(path, macOSAppTables())) << path;
    for (const char* path : {"/usr/sbin/x", "/nix/store/x", "/run/x", "/lib64/x"})
        EXPECT_TRUE(AppGrouper::isSystemPath(path, linuxAppTables())) << path;
    for (const char* path : {"/usr/local/bin/x", "/opt/x", "/home/ada/x", "/var/x"})
        EXPECT_FALSE(AppGrouper::isSystemPath(path, linuxAppTables())) << path;
    EXPECT_TRUE(AppGrouper::isSystemPath(std::nullopt, macOSAppTables()));
}

const std::string apps = "/usr/share/applications/";
const std::string userSession = "0::/user.slice/user-1000.slice/user@1000.service";

/// A session of GNOME with a browser, an editor and a terminal installed.
AppRules linuxRules() {
    DesktopTree tree;
    tree.program("/usr/lib/firefox-esr/firefox-esr").program("/usr/share/code/code").program("/usr/bin/konsole");
    tree.program("/opt/google/chrome/google-chrome").program("/home/ada/Applications/Known.AppImage");
    tree.program("/usr/bin/rofi").program("/usr/bin/fuzzel").program("/opt/shell/gnome-shell");
    tree.entry("firefox-esr.desktop", "Exec=/usr/lib/firefox-esr/firefox-esr %u\n")
        .entry("code.desktop", "Exec=/usr/share/code/code %F\n")
        .entry("google-chrome.desktop", "Exec=/opt/google/chrome/google-chrome %U\n")
        .entry("org.kde.konsole.desktop", "Exec=konsole\n")
        .entry("org.telegram.desktop.desktop", "Exec=/usr/bin/flatpak run org.telegram.desktop\n")
        .entry("firefox_firefox.desktop", "Exec=/snap/bin/firefox %u\n")
        .entry("known.desktop", "Exec=/home/ada/Applications/Known.AppImage\n")
        .entry("rofi.desktop", "Exec=rofi\n")
        .entry("gnome-shell.desktop", "Exec=/opt/shell/gnome-shell\n");
    return AppRules::forLinux(std::make_shared<const DesktopEntryIndex>(tree.index()));
}

Input own(std::int32_t pid, std::int32_t ppid, std::string name, std::optional<std::string> path,
          const std::string& group) {
    Input input = processOf(pid, ppid, std::move(name), std::move(path));
    input.isOwn = true;
    input.unit = ControlGroupUnit::parse(group);
    return input;
}

std::string keyOf(const Input& input) {
    return keysOf({input}, linuxRules()).at(input.pid);
}

TEST(LinuxRules, putTheSandboxBeforeThePath) {
    Input flatpak = own(7, 1, "telegram", "/app/bin/telegram",
                        userSession + "/app.slice/app-flatpak-org.telegram.desktop-1295.scope");
    flatpak.foreignRoot = true;
    EXPECT_EQ(keyOf(flatpak), apps + "org.telegram.desktop.desktop");
    Input noted = own(7, 1, "telegram", "/app/bin/telegram", "0::/");
    noted.flatpakID = "org.telegram.desktop";
    EXPECT_EQ(keyOf(noted), apps + "org.telegram.desktop.desktop");
    noted.flatpakID = "org.unknown.App";
    EXPECT_EQ(keyOf(noted), "exe:org.unknown.App");

    const std::string uuid = "-3dcfaa86-bf58-4d3e-a7c6-4e34dfdb050f.scope";
    EXPECT_EQ(
        keyOf(own(7, 1, "firefox", "/snap/firefox/5239/usr/lib/firefox/firefox", "0::/snap.firefox.firefox" + uuid)),
        apps + "firefox_firefox.desktop");
    EXPECT_EQ(keyOf(own(7, 1, "lxd", "/snap/lxd/1/bin/lxd", "0::/system.slice/snap.lxd.daemon.service")), "exe:lxd");

    Input postgres = processOf(7, 6, "postgres", std::nullopt); // of another user
    postgres.unit = ControlGroupUnit::parse("0::/system.slice/docker-4f9c1d7a2b3e4c5d.scope");
    EXPECT_EQ(keyOf(postgres), "exe:Docker");
    postgres.unit = ControlGroupUnit::parse("0::/libpod-4f9c1d7a2b3e4c5d.scope");
    EXPECT_EQ(keyOf(postgres), "exe:Podman");
    postgres.unit = ControlGroupUnit::parse("0::/kubepods/pod1");
    EXPECT_EQ(keyOf(postgres), "exe:Containers");
}

TEST(LinuxRules, putAnInstalledProgramBeforeTheUnitItWasStartedIn) {
    const std::string tab = userSession + "/app.slice/app-org.kde.konsole-39967.scope/tab(5).scope";
    Input konsole = own(10, 2, "konsole", "/usr/bin/konsole", tab);
    Input shell = own(11, 10, "zsh", "/usr/bin/zsh", tab);
    Input browser = own(12, 11, "Isolated Web Co", "/usr/lib/firefox-esr/firefox-esr", tab);
    Input plugin = own(13, 1200, "helper", "/home/ada/.cache/helper", tab);
    Input foreign = own(14, 1200, "firefox-esr", "/usr/lib/firefox-esr/firefox-esr", "0::/");
    foreign.foreignRoot = true; // the image's file, not the one here
    foreign.hasTerminal = true;
    for (Input* member : {&shell, &browser, &plugin})
        member->responsiblePID = konsole.pid;
    const auto keys = keysOf({konsole, shell, browser, plugin, foreign}, linuxRules());
    EXPECT_EQ(keys.at(11), apps + "org.kde.konsole.desktop");
    EXPECT_EQ(keys.at(12), apps + "firefox-esr.desktop");
    EXPECT_EQ(keys.at(13), apps + "org.kde.konsole.desktop");
    EXPECT_EQ(keys.at(14), "system");

    // Its leader ended: the name of the unit still tells.
    EXPECT_EQ(
        keyOf(own(15, 1200, "rust-analyzer", "/home/ada/ra", userSession + "/app.slice/app-gnome-Code-4521.scope")),
        apps + "code.desktop");
    EXPECT_EQ(keyOf(own(16, 1200, "chrome_crashpad", "/opt/google/chrome/chrome_crashpad_handler", "0::/")),
              apps + "google-chrome.desktop");
}

TEST(LinuxRules, knowAnAppImageByItsFile) {
    Input app = own(7, 1, "obsidian", "/tmp/.mount_ObsidiXYZ/obsidian", "0::/");
    app.hasTerminal = true;
    EXPECT_EQ(keyOf(app), "exe:obsidian");
    app.appImage = "/home/ada/Applications/Obsidian.AppImage";
    EXPECT_EQ(keyOf(app), "/home/ada/Applications/Obsidian.AppImage");
    app.appImage = "/home/ada/Applications/Known.AppImage";
    EXPECT_EQ(keyOf(app), apps + "known.desktop");
    app.appImage = "relative.AppImage"; // from the environment: anyone can write it
    EXPECT_EQ(keyOf(app), "exe:obsidian");
    app.appImage = "/home/ada/Applications/Obsidian.AppImage";
    app.path = "/home/ada/tool"; // inherited by what the application started
    EXPECT_EQ(keyOf(app), "exe:tool");
    app.path = "/home/ada/Applications/Other.AppImage"; // keeps the mount
    EXPECT_EQ(keyOf(app), "/home/ada/Applications/Other.AppImage");
}

TEST(LinuxRules, giveNothingToShellsAndLaunchersNorBeyondTheSession) {
    const std::string scope = "0::/user.slice/user-1000.slice/session-3.scope";
    const auto keys =
        keysOf({own(20, 1, "konsole", "/usr/bin/konsole", scope), own(21, 20, "rofi", "/usr/bin/rofi", scope),
                own(22, 21, "a", "/home/ada/a", scope), own(23, 20, "systemd", "/usr/lib/systemd/systemd", scope),
                own(24, 23, "b", "/home/ada/b", scope), own(25, 23, "gnome-shell", "/opt/shell/gnome-shell", scope),
                own(26, 25, "c", "/home/ada/c", scope), own(27, 20, "d", "/home/ada/d", scope)},
               linuxRules());
    EXPECT_EQ(keys.at(22), apps + "org.kde.konsole.desktop"); // past the launcher
    EXPECT_EQ(keys.at(24), "exe:b");
    EXPECT_EQ(keys.at(25), apps + "gnome-shell.desktop"); // its own it is
    EXPECT_EQ(keys.at(26), "exe:c");
    EXPECT_EQ(keys.at(27), apps + "org.kde.konsole.desktop");
}

TEST(LinuxRules, tellTheSystemFromWhatAUserStarted) {
    const std::string login = "0::/user.slice/user-1000.slice/session-3.scope", service = "0::/system.slice/x.service";
    Input sshd = processOf(7, 1, "sshd", std::nullopt);
    EXPECT_EQ(keyOf(sshd), "system");
    sshd.path = "/usr/sbin/sshd";
    EXPECT_EQ(keyOf(sshd), "system");
    sshd.path = "/opt/server/server";
    EXPECT_EQ(keyOf(sshd), "exe:server");

    struct {
        const char* path; // null: hidden
        std::string group;
        bool hasTerminal;
        const char* want;
    } cases[] = {
        {"/usr/bin/tmux", login, false, "exe:tmux"},
        {"/usr/bin/make", login, true, "exe:make"},
        {"/usr/bin/python3.11", "0::/", true, "exe:python3.11"},
        {"/usr/bin/python3.11", "0::/", false, "system"},
        {"/usr/bin/daemon", service, false, "system"},
        {"/usr/bin/daemon", service, true, "system"},
        {"/usr/libexec/daemon", login, true, "system"},
        {"/usr/local/bin/tool", service, false, "exe:tool"},
        {nullptr, login, false, "exe:agent"},
        {nullptr, service, false, "system"},
        {nullptr, "0::/", false, "system"},
        {"/home/ada/a b", service, false, "exe:a b"},
    };
    for (const auto& c : cases) {
        Input input = own(7, 1, "agent", c.path ? std::optional<std::string>(c.path) : std::nullopt, c.group);
        input.hasTerminal = c.hasTerminal;
        EXPECT_EQ(keyOf(input), c.want) << (c.path ? c.path : "hidden") << " " << c.group << " " << c.hasTerminal;
    }
}

TEST(LinuxRules, nameKernelNotableAndWindowsPrograms) {
    Input kernel = processOf(2, 0, "kthreadd", std::nullopt);
    kernel.isKernelThread = true;
    EXPECT_EQ(keyOf(kernel), "exe:kernel");
    EXPECT_EQ(keyOf(processOf(7, 1, "dockerd", std::nullopt)), "exe:dockerd");
    EXPECT_EQ(keyOf(own(7, 1, "tracker-miner-f", "/usr/libexec/tracker-miner-fs-3", "0::/")), "exe:tracker-miner-fs-3");
    EXPECT_EQ(keyOf(own(7, 1, "tracker-miner", "/usr/libexec/tracker-miner", "0::/")), "system");

    const auto wine = [](const char* program, std::optional<std::string> argument) {
        Input input = own(7, 1, "start.exe", std::string("/usr/lib/wine/") + program, "0::/");
        input.firstArgument = std::move(argument);
        return keyOf(input);
    };
    EXPECT_EQ(wine("wine64-preloader", "C:\\windows\\system32\\notepad.exe"), "exe:notepad.exe");
    EXPECT_EQ(wine("wine-preloader", "Z:\\home\\ada/game.exe"), "exe:game.exe");
    EXPECT_EQ(wine("wine64-preloader", "C:\\windows\\Explorer.EXE"), "exe:Wine");
    EXPECT_EQ(wine("wine64-preloader", std::nullopt), "exe:start.exe");
    EXPECT_EQ(wine("wineserver64", "wineserver"), "exe:Wine");
    EXPECT_EQ(wine("winedump", "winedump"), "system");
}

} // namespace
} // namespace ostrivane
