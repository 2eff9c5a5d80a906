#include "core/sampling/platform/UserFolders.hpp"

#include "tests/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <map>

#include <sys/stat.h>

namespace ostrivane {
namespace {

using Variables = std::map<std::string, std::string>;

UserFolders::Environment environmentOf(const Variables& variables) {
    return [&variables](const std::string& name) {
        const auto found = variables.find(name);
        return found == variables.end() ? std::string() : found->second;
    };
}

std::optional<std::string> folder(Platform platform, const Variables& variables, std::string_view home) {
    return UserFolders::dataDirectory(platform, environmentOf(variables), home);
}

std::optional<std::string> configFolder(Platform platform, const Variables& variables, std::string_view home) {
    return UserFolders::configDirectory(platform, environmentOf(variables), home);
}

TEST(UserFolders, followEachSystemsCustom) {
    EXPECT_EQ(folder(Platform::Linux, {}, "/home/ada"), "/home/ada/.local/share/ostrivane");
    EXPECT_EQ(folder(Platform::Linux, {{"XDG_DATA_HOME", "/data//ada/"}}, "/home/ada"), "/data/ada/ostrivane");
    EXPECT_EQ(folder(Platform::Linux, {{"XDG_DATA_HOME", "/data"}}, ""), "/data/ostrivane");
    EXPECT_EQ(folder(Platform::Linux, {{"XDG_DATA_HOME", "data"}}, "/home/ada"), "/home/ada/.local/share/ostrivane");
    EXPECT_EQ(folder(Platform::macOS, {{"XDG_DATA_HOME", "/data"}}, "/Users/ada/"),
              "/Users/ada/Library/Application Support/Ostrivane");
    for (const Platform platform : {Platform::Linux, Platform::macOS}) {
        EXPECT_EQ(folder(platform, {{"OSTRIVANE_DATA_DIR", "/chosen/"}, {"XDG_DATA_HOME", "/data"}}, ""), "/chosen");
        EXPECT_EQ(folder(platform, {{"OSTRIVANE_DATA_DIR", "../chosen"}}, "/h"), std::nullopt)
            << "what was asked for, or nothing";
        EXPECT_EQ(folder(platform, {}, ""), std::nullopt);
        EXPECT_EQ(folder(platform, {}, "relative"), std::nullopt);
    }
}

TEST(UserFolders, ofTheSettingsAreNotThoseOfTheData) {
    const Variables both{{"OSTRIVANE_DATA_DIR", "/data"}, {"XDG_DATA_HOME", "/data"}};
    EXPECT_EQ(configFolder(Platform::Linux, both, "/home/ada"), "/home/ada/.config/ostrivane");
    EXPECT_EQ(configFolder(Platform::Linux, {{"XDG_CONFIG_HOME", "/etc/ada"}}, ""), "/etc/ada/ostrivane");
    EXPECT_EQ(configFolder(Platform::Linux, {{"XDG_CONFIG_HOME", "etc"}}, "/home/ada"), "/home/ada/.config/ostrivane");
    EXPECT_EQ(configFolder(Platform::Linux, {{"OSTRIVANE_CONFIG_DIR", "/chosen"}, {"XDG_CONFIG_HOME", "/etc"}}, "/h"),
              "/chosen");
    EXPECT_EQ(configFolder(Platform::Linux, {{"OSTRIVANE_CONFIG_DIR", "chosen"}}, "/h"), std::nullopt);
}

int modeOf(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 ? static_cast<int>(status.st_mode & 07777) : -1;
}

TEST(UserFolders, areMadeForTheUserAlone) {
    const TemporaryFolder temporary;
    const std::string path = temporary.file("a/b/ostrivane");
    for (const mode_t mask : {0000u, 0777u}) {
        const mode_t before = ::umask(mask);
        const auto problem = UserFolders::makeDirectory(path);
        ::umask(before);
        EXPECT_EQ(problem, std::nullopt);
        for (const char* made : {"a", "a/b", "a/b/ostrivane"})
            EXPECT_EQ(modeOf(temporary.file(made)), 0700) << made;
        std::filesystem::remove_all(temporary.file("a"));
    }
}

TEST(UserFolders, thatAreThereStayAsTheyAre) {
    const TemporaryFolder temporary;
    std::filesystem::create_directory(temporary.file("open"));
    ::chmod(temporary.file("open").c_str(), 0755);
    std::filesystem::create_directory_symlink(temporary.file("open"), temporary.file("link"));
    EXPECT_EQ(UserFolders::makeDirectory(temporary.file("link")), std::nullopt);
    EXPECT_EQ(modeOf(temporary.file("open")), 0755);
    EXPECT_EQ(UserFolders::makeDirectory(temporary.write("file", "x")), temporary.file("file") + ": Not a directory");
    EXPECT_EQ(UserFolders::makeDirectory(temporary.file("file/below")),
              temporary.file("file/below") + ": Not a directory");
    std::filesystem::create_symlink("nowhere", temporary.file("dangling"));
    EXPECT_NE(UserFolders::makeDirectory(temporary.file("dangling")), std::nullopt);
}

} // namespace
} // namespace ostrivane
