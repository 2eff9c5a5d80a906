#include "core/attribution/AppTables.hpp"

#include <algorithm>
#include <array>

namespace ostrivane {

namespace {

using Name = std::string_view;

bool matches(Name pattern, Name name) {
    std::size_t at = 0, read = 0, star = Name::npos, resume = 0;
    while (read < name.size()) {
        if (at < pattern.size() && pattern[at] == '*') {
            star = at++;
            resume = read;
        } else if (at < pattern.size() && pattern[at] == name[read]) {
            ++at;
            ++read;
        } else if (star != Name::npos) { // let the last star take one more
            at = star + 1;
            read = ++resume;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', at) == Name::npos;
}

constexpr auto macOSNotable = std::to_array<Name>({"kernel_task", "WindowServer", "Spotlight", "mds_stores", "backupd",
                                                   "photoanalysisd", "softwareupdated", "coreaudiod"});
constexpr auto macOSSystemFolders = std::to_array<Name>(
    {"/System/", "/usr/", "/sbin/", "/bin/", "/Library/Apple/", "/private/var/", "/Library/Frameworks/"});

constexpr auto linuxNotable =
    std::to_array<Name>({"Xorg", "Xwayland", "gnome-shell", "plasmashell", "kwin_wayland", "kwin_x11",
                         "tracker-miner-fs-3", "localsearch-3", "baloo_file", "packagekitd", "fwupd", "unattended-upgr",
                         "pipewire", "wireplumber", "pulseaudio", "dockerd"});
constexpr auto linuxSystemFolders = std::to_array<Name>({"/usr/", "/bin/", "/sbin/", "/lib/", "/lib64/", "/etc/",
                                                         "/var/lib/", "/nix/store/", "/gnu/store/", "/run/", "/boot/"});
constexpr auto linuxUserFolders = std::to_array<Name>({"/usr/local/"});
constexpr auto linuxCommandFolders = std::to_array<Name>({"/usr/bin", "/bin", "/usr/games"});
constexpr auto linuxNeverOwners =
    std::to_array<Name>({"gnome-shell", "plasmashell", "kwin_*", "cinnamon", "budgie-panel", "xfce4-panel", "xfdesktop",
                         "xfce4-session", "lxpanel", "lxsession", "mate-panel", "sway", "openbox", "rofi", "wofi",
                         "fuzzel", "krunner", "albert", "ulauncher"});
constexpr auto linuxSessionManagers = std::to_array<Name>({"systemd"});
constexpr auto linuxWineServices = std::to_array<Name>({"wineserver*", "services.exe", "winedevice.exe", "explorer.exe",
                                                        "plugplay.exe", "rpcss.exe", "svchost.exe", "conhost.exe"});

constexpr auto launchers = std::to_array<Name>(
    {"sh",   "bash",   "dash",      "zsh",    "fish",         "busybox",     "env",      "python*",
     "perl", "perl5*", "ruby",      "ruby2*", "ruby3*",       "node",        "nodejs",   "java",
     "gjs",  "gjs-*",  "electron*", "mono",   "mono-sgen*",   "dotnet",      "wine*",    "flatpak",
     "snap", "bwrap",  "xdg-open",  "gio",    "gapplication", "gtk-launch",  "exo-open", "dbus-launch",
     "sudo", "pkexec", "nohup",     "nice",   "setsid",       "systemd-run", "true",     "false"});
constexpr auto privateParents =
    std::to_array<Name>({"/opt", "/usr/lib", "/usr/lib64", "/usr/libexec", "/usr/share", "/usr/local/lib", "/snap"});
constexpr auto wrappedIn = std::to_array<Name>({"/usr/lib", "/usr/lib64", "/usr/share", "/opt"});
// A runtime, a toolkit or a tool chain with an entry of its own (jconsole, designer, git-gui) would else own every
// program that runs on it.
constexpr auto sharedFolders =
    std::to_array<Name>({"bin",    "libexec",  "jvm",      "qt4",    "qt5",      "qt6",     "kf5",          "kf6",
                         "python", "python2*", "python3*", "perl",   "perl5",    "ruby",    "node_modules", "nodejs",
                         "mono",   "dotnet",   "wine",     "wine-*", "git-core", "systemd", "gcc",          "llvm-*"});
constexpr auto sharedHomeFolders = std::to_array<Name>(
    {"bin", ".local", ".local/bin", ".local/share", ".local/lib", ".local/libexec", "Applications", ".cargo", "go",
     ".bun", ".deno", ".npm*", ".nix-profile", ".config", ".cache", ".pyenv/*", ".nvm/*", ".sdkman/*"});

} // namespace

bool matchesAny(NamePatterns patterns, std::string_view name) {
    return std::any_of(patterns.begin(), patterns.end(), [&](Name pattern) { return matches(pattern, name); });
}

const AppTables& macOSAppTables() {
    static const AppTables tables{.systemName = "macOS System",
                                  .notableProcesses = macOSNotable,
                                  .systemFolders = macOSSystemFolders,
                                  .userFolders = {},
                                  .commandFolders = {},
                                  .neverOwners = {},
                                  .sessionManagers = {},
                                  .wineServices = {}};
    return tables;
}

const AppTables& linuxAppTables() {
    static const AppTables tables{.systemName = "System",
                                  .notableProcesses = linuxNotable,
                                  .systemFolders = linuxSystemFolders,
                                  .userFolders = linuxUserFolders,
                                  .commandFolders = linuxCommandFolders,
                                  .neverOwners = linuxNeverOwners,
                                  .sessionManagers = linuxSessionManagers,
                                  .wineServices = linuxWineServices};
    return tables;
}

const DesktopTables& desktopTables() {
    static const DesktopTables tables{.launchers = launchers,
                                      .privateParents = privateParents,
                                      .wrappedIn = wrappedIn,
                                      .sharedFolders = sharedFolders,
                                      .sharedHomeFolders = sharedHomeFolders};
    return tables;
}

} // namespace ostrivane
