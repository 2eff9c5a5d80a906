#include "core/attribution/BundleInfoCache.hpp"
#include "core/attribution/DesktopEntryIndex.hpp"
#include "core/attribution/InstalledApplicationsReader.hpp"
#include "core/attribution/UnitLeaders.hpp"
#include "core/model/Text.hpp"
#include "tests/Fixtures.hpp"
#include "tests/attribution/Grouping.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>

namespace ostrivane {
namespace {

namespace fs = std::filesystem;
using AppGrouper::Input;

const fs::path root = fixture("linux/laptop-intel-hybrid");

std::optional<std::string> textAt(const fs::path& path) {
    return fs::is_regular_file(path) ? std::optional(contentOf(path.string())) : std::nullopt;
}

std::optional<std::string> linkAt(const fs::path& path) {
    std::error_code error;
    const fs::path target = fs::read_symlink(path, error);
    return error ? std::nullopt : std::optional(target.string());
}

/// Programs are no part of the tree: they lie where the processes run and where the entries say.
const std::set<std::string>& programs() {
    static const std::set<std::string> known{"/usr/lib/firefox-esr/firefox-esr",
                                             "/usr/bin/chromium",
                                             "/usr/share/code/code",
                                             "/usr/bin/gnome-terminal",
                                             "/usr/libexec/gnome-terminal-server",
                                             "/usr/bin/konsole",
                                             "/usr/bin/nautilus",
                                             "/usr/bin/vim",
                                             "/usr/bin/python3.11",
                                             "/usr/bin/gnome-shell",
                                             "/usr/bin/flatpak",
                                             "/home/ada/.local/share/JetBrains/Toolbox/apps/intellij-idea/bin/idea"};
    return known;
}

std::shared_ptr<const DesktopEntryIndex> installed() {
    const auto below = [](const std::string& path) { return root / path.substr(1); };
    DesktopFiles files;
    files.read = [=](const std::string& path) { return textAt(below(path)); };
    files.isFolder = [=](const std::string& path) {
        return path == "/usr/lib/chromium" || fs::is_directory(below(path));
    };
    files.list = [=](const std::string& path) {
        std::vector<std::string> names;
        std::error_code error;
        for (const auto& item : fs::directory_iterator(below(path), error))
            names.push_back(item.path().filename().string());
        return names;
    };
    files.realProgram = [](const std::string& path) {
        if (path == "/snap/bin/firefox")
            return std::optional<std::string>("/usr/bin/snap");
        return programs().contains(path) ? std::optional(path) : std::nullopt;
    };
    DesktopPlaces places;
    places.home = "/home/ada";
    places.dataFolders = DesktopPlaces::defaultDataFolders(places.home, "", "");
    places.programFolders = {"/usr/local/bin", "/usr/bin"};
    places.desktops = {"GNOME"};
    places.locales = {"de_DE.UTF-8"};
    return std::make_shared<const DesktopEntryIndex>(
        std::make_shared<const InstalledApplications>(readInstalledApplications(places, files)));
}

struct Read {
    Input input;
    std::uint64_t start = 0;
};

std::optional<Read> processAt(const fs::path& folder) {
    constexpr std::uint64_t kernelThread = 0x00200000;
    const std::string ours = *linkAt(root / "proc/1200/ns/mnt");
    const auto stat = textAt(folder / "stat");
    const auto fields = Text::words(std::string_view(*stat).substr(stat->rfind(')') + 2));
    if (fields[0] == "Z")
        return std::nullopt;
    Read read;
    Input& input = read.input;
    input.pid = input.responsiblePID = *Text::number<std::int32_t>(folder.filename().string());
    input.ppid = *Text::number<std::int32_t>(fields[1]);
    input.hasTerminal = fields[4] != "0";
    input.isKernelThread = (*Text::number<std::uint64_t>(fields[6]) & kernelThread) != 0;
    read.start = *Text::number<std::uint64_t>(fields[19]);
    input.name = Text::trimmed(*textAt(folder / "comm"));
    input.unit = ControlGroupUnit::parse(*textAt(folder / "cgroup"));
    input.isOwn = textAt(folder / "status")->find("Uid:\t1000\t") != std::string::npos;
    input.path = linkAt(folder / "exe");
    if (input.path && input.path->ends_with(" (deleted)"))
        input.path->resize(input.path->rfind(' '));
    input.foreignRoot = linkAt(folder / "ns/mnt").value_or(ours) != ours;
    const auto arguments = textAt(folder / "cmdline");
    input.firstArgument = arguments->substr(0, arguments->find('\0'));
    if (const auto environment = textAt(folder / "environ")) {
        const std::size_t at = environment->find("APPIMAGE=");
        input.appImage = environment->c_str() + at + 9;
    }
    return read;
}

std::vector<Input> laptop() {
    std::vector<Read> reads;
    for (const auto& item : fs::directory_iterator(root / "proc"))
        if (Text::number<std::int32_t>(item.path().filename().string()))
            if (auto read = processAt(item.path()))
                reads.push_back(*std::move(read));
    std::vector<UnitMember> members;
    for (const Read& read : reads)
        members.push_back({read.input.pid, read.start, read.input.unit.group});
    const auto leaders = unitLeaders(members);
    std::vector<Input> inputs;
    for (std::size_t at = 0; at < reads.size(); ++at) {
        reads[at].input.responsiblePID = leaders[at];
        inputs.push_back(reads[at].input);
    }
    return inputs;
}

TEST(LaptopGrouping, givesEveryProcessTheApplicationAPersonWouldName) {
    const auto index = installed();
    const auto inputs = laptop();
    ASSERT_EQ(inputs.size(), 33U);
    const auto keys = keysOf(inputs, AppRules::forLinux(index));

    const std::string apps = "/usr/share/applications/";
    const std::vector<std::pair<std::string, std::set<std::int32_t>>> want{
        {apps + "firefox-esr.desktop", {3300, 3391, 4610}},
        {apps + "chromium.desktop", {3500, 3520, 3590}},
        {apps + "org.gnome.Terminal.desktop", {2100, 2110, 2150, 2160, 2170, 6400, 6410, 6430}},
        {apps + "code.desktop", {4521, 4600}},
        {"/var/lib/flatpak/exports/share/applications/org.telegram.desktop.desktop", {5100}},
        {"/var/lib/snapd/desktop/applications/firefox_firefox.desktop", {5300}},
        {"/home/ada/Applications/Obsidian-1.5.8.AppImage", {5400}},
        {apps + "org.kde.konsole.desktop", {5500, 5510}},
        {apps + "org.gnome.Nautilus.desktop", {6440}},
        {"exe:Docker", {6100}},
        {"exe:notepad.exe", {6300}},
        {"exe:gnome-shell", {1300}},
        {"exe:tracker-miner-fs-3", {1400}},
        {"exe:kernel", {2, 97}},
        {"system", {1, 880, 1200, 1350, 6000}}};
    std::size_t checked = 0;
    for (const auto& [key, pids] : want)
        for (const std::int32_t pid : pids) {
            ASSERT_TRUE(keys.contains(pid)) << pid;
            EXPECT_EQ(keys.at(pid), key) << pid;
            ++checked;
        }
    EXPECT_EQ(checked, keys.size());
    const auto* java = index->bundleForPath("/home/ada/.local/share/JetBrains/Toolbox/apps/intellij-idea/jbr/bin/java");
    ASSERT_TRUE(java);
    EXPECT_EQ(java->id, "jetbrains-idea.desktop");
}

TEST(LaptopGrouping, namesApplicationsInTheUsersLanguage) {
    const auto index = installed();
    BundleInfoCache cache("System", [&](const std::string& path) { return index->facts(path); });
    const auto shown = [&](const std::string& key) {
        const auto& info = cache.info(key);
        return info.name + " " + info.bundleID.value_or("-");
    };
    EXPECT_EQ(shown("/usr/share/applications/chromium.desktop"), "Chromium-Webbrowser chromium.desktop");
    EXPECT_EQ(shown("/usr/share/applications/org.gnome.Nautilus.desktop"), "Files org.gnome.Nautilus.desktop");
    EXPECT_EQ(shown("/home/ada/Applications/Obsidian-1.5.8.AppImage"), "Obsidian-1.5.8 -");
}

} // namespace
} // namespace ostrivane
