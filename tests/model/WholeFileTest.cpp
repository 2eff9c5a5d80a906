#include "core/model/WholeFile.hpp"

#include "tests/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ostrivane {
namespace {

std::size_t filesIn(const TemporaryFolder& folder) {
    return static_cast<std::size_t>(
        std::distance(std::filesystem::directory_iterator(folder.path()), std::filesystem::directory_iterator()));
}

mode_t permissionsOf(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 0777 : 0;
}

TEST(WholeFile, replacesAndKeepsPermissionsAndLinks) {
    const TemporaryFolder folder;
    const mode_t before = ::umask(027);
    EXPECT_EQ(WholeFile::write(folder.file("new"), "1"), std::nullopt);
    ::umask(before);
    EXPECT_EQ(permissionsOf(folder.file("new")), 0640u);
    const std::string secret = folder.write("secret", "old content");
    ::chmod(secret.c_str(), 0600);
    std::filesystem::create_symlink("secret", folder.file("link"));
    EXPECT_EQ(WholeFile::write(folder.file("link"), "2"), std::nullopt);
    EXPECT_TRUE(std::filesystem::is_symlink(folder.file("link")));
    EXPECT_EQ(contentOf(secret), "2");
    EXPECT_EQ(permissionsOf(secret), 0600u) << "what was private stays private";
    EXPECT_EQ(filesIn(folder), 3u);
}

TEST(WholeFile, leavesNothingBehindWhenTheDiskIsFull) {
    const TemporaryFolder folder;
    const std::string file = folder.write("kept", "old");
    rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    rlimit small = before;
    small.rlim_cur = 4096;
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    ::setrlimit(RLIMIT_FSIZE, &small);
    const auto problem = WholeFile::write(file, std::string(100'000, 'x'));
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(problem, file + ": File too large");
    EXPECT_EQ(contentOf(file), "old");
    EXPECT_EQ(filesIn(folder), 1u);
    EXPECT_EQ(WholeFile::write("/dev/full", "x"), "/dev/full: No space left on device");
}

TEST(WholeFile, refusesWhatIsNoFile) {
    const TemporaryFolder folder;
    EXPECT_EQ(WholeFile::write(folder.path(), "x"), folder.path().string() + ": Is a directory");
    std::filesystem::create_symlink("nowhere", folder.file("dangling"));
    for (const char* name : {"dangling", "missing/file"})
        EXPECT_EQ(WholeFile::write(folder.file(name), "x"), folder.file(name) + ": No such file or directory");
    EXPECT_TRUE(std::filesystem::is_symlink(folder.file("dangling")));
    EXPECT_EQ(filesIn(folder), 1u);
    EXPECT_EQ(WholeFile::write("/dev/null", "x"), std::nullopt);
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null")) << "not replaced by a file";
    if (::geteuid() == 0)
        return; // may write everywhere
    const std::string guarded = folder.write("guarded", "old");
    ::chmod(guarded.c_str(), 0400);
    EXPECT_EQ(WholeFile::write(guarded, "x"), guarded + ": Permission denied");
    EXPECT_EQ(contentOf(guarded), "old");
}

} // namespace
} // namespace ostrivane
