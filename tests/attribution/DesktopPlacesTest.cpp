#include "core/attribution/DesktopPlaces.hpp"

#include <gtest/gtest.h>

#include <map>

namespace ostrivane {
namespace {

using Texts = std::map<std::string, std::string>;

DesktopPlaces session(const Texts& variables, const Texts& files = {}) {
    return DesktopPlaces::ofSession(
        [&](const std::string& name) { return variables.contains(name) ? variables.at(name) : std::string(); },
        [&](const std::string& path) { return files.contains(path) ? std::optional(files.at(path)) : std::nullopt; });
}

TEST(DesktopPlaces, addFoldersOfSandboxesOnce) {
    EXPECT_EQ(DesktopPlaces::defaultDataFolders("/home/ada", "", ""),
              (std::vector<std::string>{"/home/ada/.local/share", "/usr/local/share", "/usr/share",
                                        "/home/ada/.local/share/flatpak/exports/share",
                                        "/var/lib/flatpak/exports/share", "/var/lib/snapd/desktop"}));
    EXPECT_EQ(DesktopPlaces::defaultDataFolders("/home/ada", "/data", "/var/lib/snapd/desktop/:relative::/usr/share"),
              (std::vector<std::string>{"/data", "/var/lib/snapd/desktop", "/usr/share", "/data/flatpak/exports/share",
                                        "/var/lib/flatpak/exports/share"}));
}

TEST(DesktopPlaces, comeFromTheSession) {
    const auto places = session({{"HOME", "/home/ada/"},
                                 {"XDG_DATA_DIRS", "/usr/share"},
                                 {"XDG_CONFIG_HOME", "/home/ada/conf"},
                                 {"XDG_CURRENT_DESKTOP", "ubuntu:GNOME"},
                                 {"PATH", "/usr/bin/:.::/home/ada/bin:/usr/bin"}},
                                {{"/home/ada/conf/user-dirs.dirs", "# folders\n"
                                                                   "XDG_DOWNLOAD_DIR=\"$HOME/Downloads\"\n"
                                                                   " XDG_MUSIC_DIR = \"/data/My \\\"Songs\\\"\" \n"
                                                                   "XDG_DESKTOP_DIR=\"$HOME/\"\n"
                                                                   "XDG_VIDEOS_DIR=\"relative\"\n"
                                                                   "XDG_PICTURES_DIR=$HOME/unquoted\n"
                                                                   "OTHER=\"$HOME/other\"\n"
                                                                   "XDG_TEMPLATES_DIR=\"\n"}});
    EXPECT_EQ(places.home, "/home/ada");
    EXPECT_EQ(places.dataFolders[0], "/home/ada/.local/share");
    EXPECT_EQ(places.programFolders, (std::vector<std::string>{"/usr/bin", "/home/ada/bin"}));
    EXPECT_EQ(places.desktops, (std::vector<std::string>{"ubuntu", "GNOME"}));
    EXPECT_EQ(places.userFolders, (std::vector<std::string>{"/home/ada/Downloads", "/data/My \"Songs\"", "/home/ada"}));
}

TEST(DesktopPlaces, inventNothingWithoutASession) {
    const auto places = session({}, {{"/.config/user-dirs.dirs", "XDG_MUSIC_DIR=\"/music\"\n"}});
    EXPECT_EQ(places.dataFolders,
              (std::vector<std::string>{"/usr/local/share", "/usr/share", "/var/lib/flatpak/exports/share",
                                        "/var/lib/snapd/desktop"}));
    EXPECT_TRUE(places.home.empty() && places.userFolders.empty() && places.desktops.empty() && places.locales.empty());
}

TEST(DesktopPlaces, nameLanguagesInTheOrderOfGettext) {
    using List = std::vector<std::string>;
    struct {
        Texts variables;
        List want;
    } cases[] = {
        {{{"LANG", "de_DE.UTF-8"}}, {"de_DE.UTF-8"}},
        {{{"LANG", "de_DE.UTF-8"}, {"LC_MESSAGES", "fr_FR"}}, {"fr_FR"}},
        {{{"LANG", "de_DE.UTF-8"}, {"LC_MESSAGES", "fr_FR"}, {"LC_ALL", "C.UTF-8"}}, {}},
        {{{"LANG", "de_DE.UTF-8"}, {"LANGUAGE", "sv:da"}}, {"sv", "da"}},
        {{{"LANG", "de_DE.UTF-8"}, {"LANGUAGE", "sv:C:da"}}, {"sv"}},
        {{{"LANG", "C"}, {"LANGUAGE", "sv"}}, {}}, // programs are not translated at all
        {{{"LANGUAGE", "sv"}}, {}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(session(c.variables).locales, c.want) << testing::PrintToString(c.variables);
}

} // namespace
} // namespace ostrivane
