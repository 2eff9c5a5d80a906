#include "core/attribution/ProjectDetector.hpp"

#include "core/attribution/PathText.hpp"
#include "core/attribution/ProjectMarkers.hpp"
#include "tests/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <map>
#include <set>
#include <thread>

#include <sys/stat.h>

namespace ostrivane {

namespace {

/// A file system of texts: what exists, what folders list, what files hold, and how often it was asked.
struct FakeFiles {
    std::set<std::string> existing;
    std::map<std::string, std::vector<std::string>> listings;
    std::map<std::string, std::string> contents;
    mutable int asked = 0;

    ProjectFiles operations() const {
        return {[this](const std::string& path) { return ++asked, existing.contains(path); },
                [this](const std::string& path) {
                    const auto found = listings.find(path);
                    return found == listings.end() ? std::vector<std::string>() : found->second;
                },
                [this](const std::string& path) {
                    const auto found = contents.find(path);
                    return found == contents.end() ? std::nullopt : std::optional(found->second);
                }};
    }
};

struct ProjectSearch : testing::Test {
    FakeFiles files;
    ProjectDetector mac{"/Users/a", ProjectExclusions::onMacOS, files.operations()};
    ProjectDetector onLinux{"/home/a/", ProjectExclusions::onLinux, files.operations()};
};

using Root = std::optional<std::string>;
using Arguments = std::vector<std::string>;

TEST_F(ProjectSearch, findsTheFolderThatHoldsAMarker) {
    files.existing = {"/home/a/web/package.json", "/home/a/web/src/app.cpp"};
    files.listings["/Users/a/ios"] = {"README", "App.xcodeproj"};
    files.listings["/Users/a/old"] = {"App.xcworkspace"};
    EXPECT_EQ(onLinux.projectRoot("/home/a/web"), "/home/a/web");
    EXPECT_EQ(onLinux.projectRoot("/home/a/web/src/deep"), "/home/a/web");
    EXPECT_EQ(onLinux.projectRoot("/home/a/website"), std::nullopt);
    EXPECT_EQ(mac.projectRoot("/Users/a/ios/Sources"), "/Users/a/ios");
    EXPECT_EQ(mac.projectRoot("/Users/a/old"), "/Users/a/old");
}

TEST_F(ProjectSearch, looksAtTwelveFolders) {
    files.existing = {"/w/go.mod"};
    EXPECT_EQ(mac.projectRoot("/w/1/2/3/4/5/6/7/8/9/10/11"), "/w");
    EXPECT_EQ(mac.projectRoot("/w/1/2/3/4/5/6/7/8/9/10/11/12"), std::nullopt);
}

TEST_F(ProjectSearch, prefersTheRepositoryAroundAPackage) {
    files.existing = {"/Users/a/code/repo/packages/web/package.json", "/Users/a/code/repo/.git"};
    EXPECT_EQ(mac.projectRoot("/Users/a/code/repo/packages/web"), "/Users/a/code/repo");
    files.existing = {"/r/1/2/3/4/package.json", "/r/.git", "/s/1/2/3/4/5/package.json", "/s/.git"};
    EXPECT_EQ(mac.projectRoot("/r/1/2/3/4/src"), "/r") << "four folders up";
    EXPECT_EQ(mac.projectRoot("/s/1/2/3/4/5"), "/s/1/2/3/4/5") << "five";
    files.existing = {"/Users/a/.git", "/Users/a/tool/Cargo.toml", "/.git"};
    EXPECT_EQ(mac.projectRoot("/Users/a/tool"), "/Users/a/tool") << "never the user's folder nor the root";
}

TEST_F(ProjectSearch, findsNothingAtExcludedPlaces) {
    files.existing = {"/.git", "/Users/a/.git", "/home/a/.git"};
    for (const char* path : {"/", "/Users/a", "/Users/a/", "/Users/a/notes", "/Users/a/./b/.."})
        EXPECT_EQ(mac.projectRoot(path), std::nullopt) << path;
    for (const char* path : {"/home/a", "/home/a/notes", "/home/a//"})
        EXPECT_EQ(onLinux.projectRoot(path), std::nullopt) << path;
    const auto marked = [this](const std::string& folder) {
        files.existing.insert(folder + "/.git");
        return folder;
    };
    for (const char* path : {"/usr/src/x", "/opt/homebrew", "/Users/a/Library/x", "/Users/a/.cargo", "/private/tmp/x"})
        EXPECT_EQ(mac.projectRoot(marked(path)), std::nullopt) << path;
    for (const char* path : {"/tmp/x", "/var/lib/x", "/snap/x", "/home/a/snap/x", "/home/a/.vscode-server/x"})
        EXPECT_EQ(onLinux.projectRoot(marked(path)), std::nullopt) << path;
    // A name that only begins like an excluded one, another user's folder, and places that only the other system has.
    for (const char* path : {"/usrdata/x", "/opt/x", "/snap/x", "/Users/a/Library2", "/Users/ab/Library", "/tmp/y"})
        EXPECT_EQ(mac.projectRoot(marked(path)), path);
    for (const char* path : {"/library/x", "/var/www/x", "/home/a/snapper", "/home/b/.local", "/home/a/Library/x"})
        EXPECT_EQ(onLinux.projectRoot(marked(path)), path);
}

TEST_F(ProjectSearch, worksWithAnyHome) {
    files.existing = {"/.git", "/code/.git", "/.local/x/.git"};
    for (const char* home : {"/", "", "relative"}) {
        ProjectDetector detector(home, ProjectExclusions::onLinux, files.operations());
        EXPECT_EQ(detector.projectRoot("/"), std::nullopt) << home;
        EXPECT_EQ(detector.projectRoot("/code"), "/code") << home;
        EXPECT_EQ(detector.projectRoot("/.local/x"), std::nullopt) << home;
    }
}

TEST_F(ProjectSearch, keepsWhatItFoundAndWhatItDidNot) {
    files.existing = {"/w/go.mod"};
    EXPECT_EQ(mac.projectRoot("/w/a"), "/w");
    EXPECT_EQ(mac.projectRoot("/v"), std::nullopt);
    files.asked = 0;
    files.existing = {"/v/go.mod"};
    EXPECT_EQ(mac.projectRoot("/w/b/../a//"), "/w") << "one entry for every way to write a path";
    EXPECT_EQ(mac.projectRoot("/v"), std::nullopt);
    EXPECT_EQ(files.asked, 0);
    mac.invalidate();
    EXPECT_EQ(mac.projectRoot("/w/a"), std::nullopt);
    EXPECT_EQ(mac.projectRoot("/v"), "/v");
}

TEST_F(ProjectSearch, asksNothingForWhatIsNoAbsolutePath) {
    files.existing = {"w/.git", ".git", "/w/.git"};
    const std::string deep = [] {
        std::string path;
        for (int i = 0; i < 30'000; ++i)
            path += "/a";
        return path;
    }();
    for (const std::string& path : {std::string(), std::string("w"), std::string("./w"), std::string("~/w"), deep,
                                    "/w/" + std::string(64 * 1024, 'x'), std::string("/w\0/x", 5)})
        EXPECT_EQ(mac.projectRoot(path), std::nullopt) << path.substr(0, 20);
    EXPECT_EQ(files.asked, 0);
}

TEST_F(ProjectSearch, prefersTheWorkingDirectoryAndFallsBackToArguments) {
    files.existing = {"/Users/a/web/.git", "/Users/a/api/.git", "/Users/a/proj/.git"};
    const Arguments script{"/Users/a/proj/tool", "-v", "serve", "/Users/a/api/src/main.py"};
    EXPECT_EQ(mac.project("/Users/a/web/src", script), "/Users/a/web");
    EXPECT_EQ(mac.project("/Users/a", script), "/Users/a/api") << "the program's own place does not count";
    EXPECT_EQ(mac.project(std::nullopt, script), "/Users/a/api");
    EXPECT_EQ(mac.project("/Users/a", std::nullopt), std::nullopt);
    EXPECT_EQ(mac.project(std::nullopt, Arguments{}), std::nullopt);
    EXPECT_EQ(mac.project("/Users/a", Arguments{"node", "/Users/a/web/node_modules/vite/bin/vite.js"}), std::nullopt);
    EXPECT_EQ(mac.project("/Users/a", Arguments{"node", "Users/a/web/x.js", "/Users/a/web"}), std::nullopt);
}

TEST_F(ProjectSearch, passesOverArgumentsOfInstalledPrograms) {
    files.existing = {"/opt/x/.git", "/options/.git", "/app/.git", "/apps/shop/.git"};
    EXPECT_EQ(mac.project(std::nullopt, Arguments{"node", "/opt/x/a.js"}), std::nullopt);
    EXPECT_EQ(mac.project(std::nullopt, Arguments{"node", "/app/a.js"}), "/app");
    EXPECT_EQ(onLinux.project(std::nullopt, Arguments{"node", "/app/a.js"}), std::nullopt);
    EXPECT_EQ(onLinux.project(std::nullopt, Arguments{"node", "/apps/shop/a.js"}), "/apps/shop");
    EXPECT_EQ(onLinux.project(std::nullopt, Arguments{"node", "/options/a.js"}), "/options");
}

TEST_F(ProjectSearch, doesNotSearchForEveryFileOfALongCommandLine) {
    Arguments arguments{"tool"};
    for (int i = 0; i < 50'000; ++i)
        arguments.push_back("/data/" + std::to_string(i) + "/x");
    EXPECT_EQ(mac.project(std::nullopt, arguments), std::nullopt);
    EXPECT_LT(files.asked, 64 * 12 * 21);
}

TEST_F(ProjectSearch, namesAProjectByItsFolder) {
    for (const char* name : {"web", "v1", "1", "1.2.x", "1.2beta", "v1.", "abcdef012", "ABCDEF0123", "1.2.3.", "vv1.2"})
        EXPECT_EQ(mac.displayName(std::string("/w/lib/") + name), name);
    for (const char* name : {"1.2.3", "v1.2", "10.20-beta.1", "1.2+4 x", "abcdef0123", "0123456789"})
        EXPECT_EQ(mac.displayName(std::string("/w/mylib/") + name), std::string("mylib ") + name);
}

TEST_F(ProjectSearch, namesAVersionedFolderByItsPackage) {
    files.contents = {{"/w/lib/1.2/package.json", R"({"version": "1.2", "name": "@acme/lib"})"},
                      {"/w/lib/1.3/package.json", R"({"name": ""})"},
                      {"/w/lib/1.4/package.json", R"({"name": 14})"},
                      {"/w/lib/1.5/package.json", R"(["name"])"},
                      {"/w/lib/1.6/package.json", R"({"name": "cut)"},
                      {"/w/lib/1.7/package.json", std::string(500'000, '[')},
                      {"/w/lib/web/package.json", R"({"name": "not asked"})"}};
    EXPECT_EQ(mac.displayName("/w/lib/1.2"), "@acme/lib");
    EXPECT_EQ(mac.displayName("/w/lib/web"), "web");
    for (const char* name : {"1.3", "1.4", "1.5", "1.6", "1.7"})
        EXPECT_EQ(mac.displayName(std::string("/w/lib/") + name), std::string("lib ") + name);
}

TEST(ProjectDetectorThreads, mayAskAtOnce) {
    std::atomic<int> searches = 0;
    ProjectFiles files{[&](const std::string& path) { return ++searches, path.ends_with("0/.git"); },
                       [](const std::string&) { return std::vector<std::string>(); },
                       [](const std::string&) { return std::optional<std::string>(); }};
    ProjectDetector detector("/home/a", ProjectExclusions::onLinux, files);
    std::atomic<int> wrong = 0;
    const auto ask = [&] {
        for (int i = 0; i < 2'000; ++i) {
            const std::string path = "/w/" + std::to_string(i % 20);
            if (detector.projectRoot(path) != (i % 10 == 0 ? Root(path) : std::nullopt))
                ++wrong;
            if (i % 500 == 0)
                detector.invalidate();
        }
    };
    std::thread other(ask);
    ask();
    other.join();
    EXPECT_EQ(wrong, 0);
    EXPECT_GT(searches, 0);
}

TEST(ProjectDetectorThreads, doNotKeepAnAnswerFromBeforeTheFilesChanged) {
    bool isProject = false;
    ProjectDetector* asked = nullptr;
    ProjectFiles files{[&](const std::string& path) {
                           const bool exists = isProject && path == "/w/.git";
                           if (!isProject) { // made while the search is under way; it waits for no lock
                               isProject = true;
                               asked->invalidate();
                           }
                           return exists;
                       },
                       [](const std::string&) { return std::vector<std::string>(); },
                       [](const std::string&) { return std::optional<std::string>(); }};
    ProjectDetector detector("/home/a", ProjectExclusions::onLinux, files);
    asked = &detector;
    EXPECT_EQ(detector.projectRoot("/w"), std::nullopt);
    EXPECT_EQ(detector.projectRoot("/w"), "/w");
}

TEST(ProjectFilesOnDisk, findARealTree) {
    namespace fs = std::filesystem;
    const TemporaryFolder folder;
    fs::create_directories(folder.path() / "repo/.git");
    fs::create_directories(folder.path() / "repo/packages/web/src");
    fs::create_directories(folder.path() / "ios/App.xcodeproj");
    fs::create_directories(folder.path() / "lib/1.2.3");
    fs::create_directories(folder.path() / "linked");
    fs::create_symlink("/nowhere/at/all", folder.path() / "linked/.git");
    folder.write("repo/packages/web/package.json", "{}");
    folder.write("lib/1.2.3/package.json", R"({"name": "lib"})");
    ProjectDetector detector(folder.path().string(), {}); // the folder is home, so nothing above it counts

    EXPECT_EQ(detector.projectRoot(folder.file("repo/packages/web/src")), folder.file("repo"));
    EXPECT_EQ(detector.projectRoot(folder.file("ios")), folder.file("ios"));
    EXPECT_EQ(detector.projectRoot(folder.file("linked")), std::nullopt) << "a link that leads nowhere is no marker";
    EXPECT_EQ(detector.projectRoot(folder.file("gone/away")), std::nullopt);
    EXPECT_EQ(detector.displayName(folder.file("lib/1.2.3")), "lib");
    EXPECT_TRUE(ProjectMarkers::contains(folder.file("repo")));
    EXPECT_FALSE(ProjectMarkers::contains(folder.file("repo/packages"))) << "directly in the folder only";
    EXPECT_FALSE(ProjectMarkers::contains(folder.file("repo/packages/web/package.json")));
}

TEST(ProjectFilesOnDisk, neverWaitNorReadWithoutEnd) {
    const TemporaryFolder folder;
    ASSERT_EQ(::mkfifo(folder.file("pipe").c_str(), 0600), 0);
    folder.write("empty", "");
    folder.write("largest", std::string(1024 * 1024, 'x'));
    folder.write("larger", std::string(1024 * 1024 + 1, 'x'));
    EXPECT_EQ(DiskFiles::read(folder.file("pipe")), std::nullopt);
    EXPECT_EQ(DiskFiles::read(folder.path().string()), std::nullopt);
    EXPECT_EQ(DiskFiles::read(folder.file("absent")), std::nullopt);
    EXPECT_EQ(DiskFiles::read(folder.file("empty")), "");
    EXPECT_EQ(DiskFiles::read(folder.file("largest")).value_or("").size(), 1024u * 1024u);
    EXPECT_EQ(DiskFiles::read(folder.file("larger")), std::nullopt);
    EXPECT_TRUE(DiskFiles::list(folder.file("absent")).empty());
    EXPECT_TRUE(DiskFiles::list(folder.file("empty")).empty());
}

TEST(PathText, takesPathsApart) {
    const struct {
        std::string_view path, last, parent;
    } cases[] = {{"/a/b", "b", "/a"},    {"/a/b//", "b", "/a"}, {"/a", "a", "/"},
                 {"//a//b", "b", "//a"}, {"/", "/", "/"},       {"//", "/", "/"},
                 {"a/b", "b", "a"},      {"a", "a", ""},        {"", "", ""}};
    for (const auto& c : cases) {
        EXPECT_EQ(PathText::lastComponent(c.path), c.last) << c.path;
        EXPECT_EQ(PathText::parent(c.path), c.parent) << c.path;
    }
}

TEST(PathText, writesEveryPathInOneWay) {
    const std::pair<const char*, const char*> cases[] = {
        {"/", "/"},           {"//", "/"},          {"/a/", "/a"},    {"//a//./b/.", "/a/b"}, {"/a/b/../c", "/a/c"},
        {"/../../a/..", "/"}, {"/a/...", "/a/..."}, {"/a/b/..", "/a"}};
    for (const auto& [path, normal] : cases)
        EXPECT_EQ(PathText::normalised(path), normal) << path;
    EXPECT_TRUE(PathText::normalised("/" + std::string(4095, 'a')));
    EXPECT_FALSE(PathText::normalised("/" + std::string(4096, 'a')));
}

} // namespace

} // namespace ostrivane
