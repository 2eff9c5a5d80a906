#include "core/sampling/platform/linux/LinuxApplications.hpp"

#include "tests/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace ostrivane {
namespace {

namespace fs = std::filesystem;

/// Applications in folders of the test's own, and a clock that it moves.
class LinuxApplicationsTest : public testing::Test {
protected:
    LinuxApplicationsTest() {
        fs::create_directories(folder.file("share/applications/sub"));
        fs::create_directories(folder.file("bin"));
        places.dataFolders = {folder.file("share"), folder.file("later")};
        places.programFolders = {folder.file("bin")};
        asked.changed = [this, changed = asked.changed](const std::string& path) {
            looksOfCaller += std::this_thread::get_id() == caller ? 1 : 0;
            return changed(path);
        };
        asked.files.list = [this, list = asked.files.list](const std::string& path) {
            ++lists;
            return list(path);
        };
        asked.now = [this] {
            ++questionsOfTime;
            return now;
        };
    }

    void program(const std::string& name, bool isExecutable = true) const {
        folder.write(name, "");
        if (isExecutable)
            fs::permissions(folder.file(name), fs::perms::owner_exec, fs::perm_options::add);
    }

    /// Files are younger than the folder by less than its time can tell: each change moves it on.
    void entry(const std::string& name, const std::string& lines) {
        folder.write(name, "[Desktop Entry]\nType=Application\n" + lines);
        touch(fs::path(name).parent_path().string());
    }
    void touch(const std::string& name) {
        fs::last_write_time(folder.file(name), fs::file_time_type::clock::now() + std::chrono::hours(++changes));
    }

    /// The answer once a look has been taken. The clock is asked as long as none is under way.
    std::shared_ptr<const InstalledApplications> afterLook(LinuxApplications& applications) {
        now += LinuxApplications::betweenLooks;
        applications.installed();
        for (questionsOfTime = 0; questionsOfTime == 0; std::this_thread::yield())
            applications.installed();
        return applications.installed();
    }

    TemporaryFolder folder;
    DesktopPlaces places;
    LinuxApplications::Asked asked = LinuxApplications::Asked::ofThisComputer();
    std::thread::id caller = std::this_thread::get_id();
    std::chrono::steady_clock::time_point now;
    int questionsOfTime = 0;
    int changes = 0;
    std::atomic<int> looksOfCaller = 0;
    std::atomic<int> lists = 0;
};

TEST_F(LinuxApplicationsTest, findsExecutableFilesBehindTheirLinks) {
    program("bin/editor-1.2");
    program("bin/notes", false);
    fs::create_symlink("editor-1.2", folder.file("bin/editor"));
    fs::create_directories(folder.file("bin/folder"));
    entry("share/applications/editor.desktop", "Name=Editor\nExec=editor %F\n");
    entry("share/applications/sub/notes.desktop", "Exec=notes\nTryExec=folder\n");
    LinuxApplications applications(places, asked);
    const auto list = applications.installed();
    ASSERT_EQ(list->size(), 2U);
    EXPECT_EQ((*list)[0].name, "Editor");
    EXPECT_EQ((*list)[0].programs, std::vector<std::string>{fs::canonical(folder.file("bin/editor-1.2")).string()});
    EXPECT_EQ((*list)[1].id, "sub-notes.desktop");
    EXPECT_TRUE((*list)[1].programs.empty());
    EXPECT_EQ(applications.bundleFacts((*list)[0].path), BundleFacts{});
}

TEST_F(LinuxApplicationsTest, handsOutANewListOnceApplicationsCameOrWent) {
    program("bin/a");
    entry("share/applications/a.desktop", "Exec=a\n");
    LinuxApplications applications(places, asked);
    auto last = applications.installed();
    ASSERT_EQ(last->size(), 1U);
    const auto sizeAfterLook = [&] {
        const auto next = afterLook(applications);
        EXPECT_NE(next, std::exchange(last, next)) << "a new list is a new object";
        return next->size();
    };
    entry("share/applications/sub/b.desktop", "");
    EXPECT_EQ(sizeAfterLook(), 2U);
    fs::create_directories(folder.file("later/applications"));
    entry("later/applications/c.desktop", "");
    EXPECT_EQ(sizeAfterLook(), 3U) << "a folder that was not there";
    fs::remove(folder.file("share/applications/a.desktop"));
    touch("share/applications");
    EXPECT_EQ(sizeAfterLook(), 2U);

    program("bin/served");
    fs::create_directories(folder.file("share/dbus-1/services"));
    folder.write("share/dbus-1/services/sub-b.service", "[D-BUS Service]\nExec=" + folder.file("bin/served") + "\n");
    touch("share/dbus-1/services");
    EXPECT_EQ(sizeAfterLook(), 2U);
    EXPECT_EQ(last->at(0).programs.size(), 1U) << "what the bus starts came later";
}

TEST_F(LinuxApplicationsTest, keepsTheListWhileItIsTheSame) {
    entry("share/applications/a.desktop", "Name=A\n");
    LinuxApplications applications(places, asked);
    const auto first = applications.installed();
    const int readings = lists;
    EXPECT_EQ(afterLook(applications), first);
    EXPECT_EQ(lists, readings) << "no folder changed";
    touch("share/applications");
    EXPECT_EQ(afterLook(applications), first) << "read again, with the same result";
    EXPECT_GT(lists, readings);
    EXPECT_EQ(afterLook(applications), first);
    EXPECT_EQ(lists, 2 * readings) << "the folder's new time is known";
}

TEST_F(LinuxApplicationsTest, asksTheDiskFromItsOwnThreadAndNotTooOften) {
    entry("share/applications/a.desktop", "");
    LinuxApplications applications(places, asked);
    const auto first = applications.installed();
    entry("share/applications/b.desktop", "");
    now += LinuxApplications::betweenLooks - std::chrono::milliseconds(1);
    applications.installed();
    applications.installed();
    EXPECT_EQ(questionsOfTime, 3) << "no look is under way, or the clock would not be asked";
    EXPECT_NE(afterLook(applications), first);
    EXPECT_EQ(looksOfCaller, 0);
}

} // namespace
} // namespace ostrivane
