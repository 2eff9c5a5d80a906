#include "core/attribution/ControlGroupUnit.hpp"

#include <gtest/gtest.h>

#include <string>

namespace ostrivane {
namespace {

using Kind = ControlGroupUnit::Kind;

const std::string session = "0::/user.slice/user-1000.slice/user@1000.service";
const std::string hex = "4f9c1d7a2b3e4c5d6e7f8091a2b3c4d5e6f708192a3b4c5d6e7f8091a2b3c4d5";
const std::string uuid = "3dcfaa86-bf58-4d3e-a7c6-4e34dfdb050f";

ControlGroupUnit inApps(const std::string& group) {
    return ControlGroupUnit::parse(session + "/app.slice/" + group + "\n");
}

TEST(ControlGroupUnit, namesTheApplicationOfEveryLauncher) {
    struct {
        std::string group, id, launcher;
    } cases[] = {
        {"app-gnome-firefox\\x2desr-3300.scope", "firefox-esr", "gnome"},
        {"app-org.kde.konsole-39967.scope", "org.kde.konsole", ""},
        {"app-org.kde.konsole-39967.scope/tab(5510).scope", "org.kde.konsole", ""},
        {"app-KDE-org.kde.dolphin@d8eddbf4.service", "org.kde.dolphin", "KDE"},
        {"app-org.gnome.Terminal.slice/vte-spawn-" + uuid + ".scope", "org.gnome.Terminal", ""},
        {"app-org.gnome.Terminal.slice/gnome-terminal-server.service", "org.gnome.Terminal", ""},
        {"app-niri-fuzzel-812.scope", "fuzzel", "niri"},
        {"app-gnome-visual-studio-77.scope", "visual-studio", "gnome"}, // a launcher that does not escape
        {"app-gnome-\\xc3\\xa9diteur-5.scope", "éditeur", "gnome"},
        {"dbus-:1.2-org.gnome.Nautilus@0.service", "org.gnome.Nautilus", ""},
        {"dbus-:1.14-org.example.My\\x2dApp@3.service", "org.example.My-App", ""},
    };
    for (const auto& c : cases) {
        const auto unit = inApps(c.group);
        EXPECT_EQ(unit.kind, Kind::application) << c.group;
        EXPECT_EQ(unit.id, c.id) << c.group;
        EXPECT_EQ(unit.launcher, c.launcher) << c.group;
        EXPECT_FALSE(unit.isAutostart) << c.group;
    }
    EXPECT_TRUE(inApps("app-org.kde.kdeconnect.daemon@autostart.service").isAutostart);
}

TEST(ControlGroupUnit, givesAllProcessesOfAnApplicationOneGroup) {
    const std::string slice = "app-org.gnome.Terminal.slice";
    EXPECT_EQ(inApps(slice + "/vte-spawn-" + uuid + ".scope").group, session.substr(3) + "/app.slice/" + slice);
    EXPECT_EQ(inApps(slice + "/gnome-terminal-server.service").group, session.substr(3) + "/app.slice/" + slice);
    EXPECT_NE(inApps("app-gnome-code-1.scope").group, inApps("app-gnome-code-2.scope").group);
}

TEST(ControlGroupUnit, knowsSandboxesAndContainers) {
    const auto flatpak = inApps("app-flatpak-org.telegram.desktop-1295026887.scope");
    EXPECT_EQ(flatpak.kind, Kind::flatpak);
    EXPECT_EQ(flatpak.id, "org.telegram.desktop");
    EXPECT_EQ(inApps("app-flatpak-com.example.A\\x2db@17.service").id, "com.example.A-b");

    for (const std::string& group :
         {"snap.firefox.firefox-" + uuid + ".scope", "snap.firefox.firefox." + uuid + ".scope",
          std::string("snap.firefox.firefox.service")}) {
        const auto snap = inApps(group);
        EXPECT_EQ(snap.kind, Kind::snap) << group;
        EXPECT_EQ(snap.id + " " + snap.snapApp, "firefox firefox") << group;
    }

    struct {
        std::string text;
        Kind kind;
    } cases[] = {
        {"0::/system.slice/docker-" + hex + ".scope", Kind::docker},
        {"0::/system.slice/docker-" + hex + ".scope/system.slice/ssh.service", Kind::docker}, // a system in a container
        {"0::/docker/" + hex, Kind::docker},
        {"12:cpuset:/\n1:name=systemd:/docker/" + hex + "\n", Kind::docker},
        {"1:name=systemd:/docker/" + hex + "\n0::/system.slice/containerd.service\n", Kind::docker},
        {"0::/user.slice/libpod-" + hex + ".scope/container", Kind::podman},
        {"0::/kubepods.slice/kubepods-pod7.slice/cri-containerd-" + hex + ".scope", Kind::container},
        {"0::/kubepods/besteffort/pod7/" + hex, Kind::container},
        {"0::/lxc.payload.web/init.scope", Kind::container},
        {"0::/user.slice/libpod-conmon-" + hex + ".scope", Kind::scope}, // the container's keeper is outside of it
        {session + "/app.slice/docker-desktop.service", Kind::service},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ControlGroupUnit::parse(c.text).kind, c.kind) << c.text;
}

TEST(ControlGroupUnit, tellsServicesFromWhatAUserStarted) {
    struct {
        std::string text;
        Kind kind;
    } cases[] = {
        {"0::/init.scope\n", Kind::service},
        {"0::/system.slice/ssh.service\n", Kind::service},
        {"0::/system.slice/foo.service/worker\n", Kind::service},
        {session + "/init.scope", Kind::service},
        {session + "/session.slice/org.gnome.Shell@wayland.service", Kind::service},
        {session + "/background.slice/tracker-miner-fs-3.service (deleted)", Kind::service},
        {session + "/app.slice/ssh-agent.service", Kind::service},
        {session + "/app.slice/vte-spawn-" + uuid + ".scope", Kind::scope}, // below "user@1000.service" all the same
        {"0::/user.slice/user-1000.slice/session-3.scope", Kind::scope},
        {session + "/app.slice", Kind::none},
        {"0::/\n", Kind::none},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ControlGroupUnit::parse(c.text).kind, c.kind) << c.text;
}

TEST(ControlGroupUnit, takesNothingFromDamagedText) {
    for (const char* text :
         {"", "\n\n", "0:", "0::", ":::", "::::", "0::app-gnome-", "0::/app-.scope", "0::/app-1.scope",
          "0::/app-gnome--1.scope", "0::/app-flatpak--1.scope", "0::/snap.a.b.scope", "0::/snap..x.service",
          "0::/dbus-:1.2-@0.service", "0::/dbus-:.service", "0::/docker/beef", "9:cpu:/docker/4f9c1d7a2b3e4c5d"})
        EXPECT_TRUE(ControlGroupUnit::parse(text).id.empty() && !ControlGroupUnit::parse(text).isContainer()) << text;
    EXPECT_EQ(inApps("app-gnome-a\\x00b\\x0a\\x7f\\xzz\\x2-1.scope").id, "a\\x00b\\x0a\\x7f\\xzz\\x2");
    EXPECT_EQ(inApps("app-gnome-\\xff-1.scope").id, "\xEF\xBF\xBD"); // a key is valid UTF-8
    EXPECT_EQ(ControlGroupUnit::parse("0::" + std::string(1 << 20, '/')).kind, Kind::none);
}

} // namespace
} // namespace ostrivane
