#include "core/attribution/InstalledApplicationsReader.hpp"

#include "tests/attribution/DesktopTree.hpp"

#include <gtest/gtest.h>

namespace ostrivane {
namespace {

std::string idOf(const InstalledApplication* bundle) {
    return bundle ? bundle->id : "none";
}

TEST(InstalledApplicationsReader, takesTheFirstFileOfAnIdentifier) {
    DesktopTree tree;
    tree.file("/home/ada/.local/share/applications/a.desktop", "[Desktop Entry]\nType=Application\nName=Mine\n")
        .file("/home/ada/.local/share/applications/gone.desktop", "[Desktop Entry]\nHidden=true\n")
        .file("/home/ada/.local/share/applications/broken.desktop", "\x01\x02")
        .file("/home/ada/.local/share/applications/link.desktop", "[Desktop Entry]\nType=Link\n")
        .file("/usr/share/applications/notes.txt", "[Desktop Entry]\nType=Application\n")
        .file("/usr/share/applications/kde/B.desktop", "[Desktop Entry]\nType=Application\n");
    for (const char* id : {"a.desktop", "gone.desktop", "broken.desktop", "link.desktop"})
        tree.entry(id, "Name=Everyone's\n");
    const auto index = tree.index();

    ASSERT_TRUE(index.bundleForID("a"));
    EXPECT_EQ(index.bundleForID("a")->path, "/home/ada/.local/share/applications/a.desktop");
    EXPECT_EQ(index.bundleForID("a")->name, "Mine");
    EXPECT_EQ(idOf(index.bundleForID("gone")), "none");
    EXPECT_EQ(idOf(index.bundleForID("link")), "none");
    EXPECT_EQ(idOf(index.bundleForID("broken")), "broken.desktop"); // what says nothing hides nothing
    EXPECT_EQ(idOf(index.bundleForID("kde-B")), "kde-B.desktop");
    EXPECT_EQ(idOf(index.bundleForID("KDE-b")), "kde-B.desktop");
    EXPECT_EQ(tree.applications().size(), 3U);
}

TEST(InstalledApplicationsReader, gathersAPrivateFolderAndNeverASharedOne) {
    DesktopTree tree;
    const auto installed = [&](const std::string& id, const std::string& program) {
        tree.program(program).entry(id + ".desktop", "Exec=\"" + program + "\" %U\n");
    };
    installed("chrome", "/opt/google/chrome/google-chrome");
    installed("gimp", "/usr/lib/x86_64-linux-gnu/gimp/gimp-2.10");
    installed("kdeconnect", "/usr/lib/x86_64-linux-gnu/libexec/kdeconnectd");
    installed("idea", "/home/ada/.local/share/JetBrains/apps/idea/bin/idea");
    installed("loose", "/usr/libexec/loose");
    installed("jconsole", "/usr/lib/jvm/java-17/bin/jconsole");
    installed("alacritty", "/home/ada/.cargo/bin/alacritty");
    installed("got", "/home/ada/Downloads/got");
    installed("homely", "/home/ada/homely");
    installed("outer", "/opt/suite/outer");
    installed("inner", "/opt/suite/plugins/inner/inner");
    tree.program("/usr/bin/chromium").entry("chromium.desktop", "Exec=chromium %U\n").folder("/usr/lib/chromium");
    tree.folder("/usr/share/doc").program("/usr/bin/doc2").entry("doc2.desktop", "Exec=doc2\n");
    const auto index = tree.index();

    struct {
        const char *path, *want;
    } cases[] = {
        {"/opt/google/chrome/chrome_crashpad_handler", "chrome.desktop"},
        {"/opt/google/chrome", "none"},
        {"/opt/google/chromeless/x", "none"},
        {"/usr/lib/x86_64-linux-gnu/gimp/plug-ins/x", "gimp.desktop"},
        {"/usr/lib/x86_64-linux-gnu/libexec/kdeconnectd", "kdeconnect.desktop"},
        {"/usr/lib/x86_64-linux-gnu/libexec/kactivitymanagerd", "none"},
        {"/home/ada/.local/share/JetBrains/apps/idea/jbr/bin/java", "idea.desktop"},
        {"/usr/libexec/other", "none"},
        {"/usr/lib/jvm/java-17/bin/java", "none"},
        {"/usr/lib/jvm/java-17/bin/jconsole", "jconsole.desktop"},
        {"/home/ada/.cargo/bin/cargo", "none"},
        {"/home/ada/Downloads/other", "none"},
        {"/home/ada/code/x", "none"},
        {"/opt/suite/tool", "outer.desktop"},
        {"/opt/suite/plugins/inner/helper", "inner.desktop"},
        {"/usr/lib/chromium/chrome_crashpad_handler", "chromium.desktop"},
        {"/usr/bin/chromium", "chromium.desktop"},
        {"/usr/bin/bash", "none"},
        {"relative", "none"},
        {"", "none"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(idOf(index.bundleForPath(c.path)), c.want) << c.path;
}

TEST(InstalledApplicationsReader, asksNeitherInterpretersNorLaunchersNorWhatIsInNoMenu) {
    DesktopTree tree;
    tree.program("/usr/bin/python3.11").link("/usr/bin/python3", "/usr/bin/python3.11");
    tree.link("/snap/bin/firefox", "/usr/bin/snap").program("/usr/bin/vim").program("/usr/bin/shell");
    tree.program("/usr/bin/flatpak").program("/opt/rubymine/bin/rubymine");
    tree.entry("script.desktop", "Exec=python3 /usr/share/script/main.py\n")
        .entry("firefox_firefox.desktop", "Exec=env X=1 /snap/bin/firefox %u\n")
        .entry("telegram.desktop", "Exec=/usr/bin/flatpak run org.telegram.desktop\n")
        .entry("vim.desktop", "Exec=vim %F\nTerminal=true\n")
        .entry("shell.desktop", "Exec=shell\nNoDisplay=true\n")
        .entry("lost.desktop", "Exec=nowhere\nTryExec=../shell\n")
        .entry("mine.desktop", "Exec=/opt/rubymine/bin/rubymine\n");
    const auto index = tree.index();
    for (const char* path : {"/usr/bin/python3.11", "/usr/bin/python3", "/usr/bin/snap", "/usr/bin/flatpak",
                             "/usr/bin/vim", "/usr/bin/shell"})
        EXPECT_EQ(idOf(index.bundleForPath(path)), "none") << path;
    EXPECT_EQ(idOf(index.bundleForPath("/opt/rubymine/jbr/bin/java")), "mine.desktop"); // no ruby
    for (const char* id : {"script", "firefox_firefox", "telegram", "vim", "shell", "lost"})
        EXPECT_NE(idOf(index.bundleForID(id)), "none") << id;
}

TEST(InstalledApplicationsReader, findsWhatTheMessageBusAndTryExecStart) {
    DesktopTree tree;
    tree.program("/usr/bin/term")
        .program("/usr/libexec/term-server")
        .program("/usr/bin/real")
        .program("/usr/bin/false");
    tree.entry("org.example.Term.desktop", "Exec=term\n")
        .entry("org.example.Try.desktop", "Exec=sh -c x\nTryExec=real\n");
    tree.entry("org.example.Unit.desktop", "Exec=unit\n");
    tree.file("/usr/share/dbus-1/services/org.example.Term.service",
              "[D-BUS Service]\nExec=/usr/libexec/term-server --x\n");
    tree.file("/usr/share/dbus-1/services/org.example.Unit.service", "[D-BUS Service]\nExec=/usr/bin/false\n");
    const auto index = tree.index();
    EXPECT_EQ(idOf(index.bundleForPath("/usr/libexec/term-server")), "org.example.Term.desktop");
    EXPECT_EQ(idOf(index.bundleForPath("/usr/bin/term")), "org.example.Term.desktop");
    EXPECT_EQ(idOf(index.bundleForPath("/usr/bin/real")), "org.example.Try.desktop");
    EXPECT_EQ(idOf(index.bundleForPath("/usr/bin/false")), "none");
}

TEST(InstalledApplicationsReader, settlesWhoOwnsAProgramThatSeveralStart) {
    struct {
        const char *what, *winner, *loser;
        const char *winnerID, *loserID;
    } cases[] = {
        {"shown on this desktop", "Exec=app a b\n", "Exec=app\nOnlyShowIn=KDE;\n", "z.desktop", "app.desktop"},
        {"not kept from this desktop", "Exec=app a b\n", "Exec=app\nNotShowIn=GNOME;\n", "z.desktop", "app.desktop"},
        {"named like the program", "Exec=app --one --two\n", "Exec=app\n", "app.desktop", "a.desktop"},
        {"fewest arguments, codes left out", "Exec=app %U\n", "Exec=app --x\n", "zz.desktop", "a.desktop"},
        {"shortest path", "Exec=app\n", "Exec=app\n", "b.desktop", "aa.desktop"},
    };
    for (const auto& c : cases) {
        DesktopTree tree;
        tree.program("/usr/bin/app").folder("/usr/lib/app").entry(c.winnerID, c.winner).entry(c.loserID, c.loser);
        EXPECT_EQ(idOf(tree.index().bundleForPath("/usr/bin/app")), c.winnerID) << c.what;
        EXPECT_EQ(idOf(tree.index().bundleForPath("/usr/lib/app/helper")), c.winnerID) << c.what;
        for (const InstalledApplication& application : tree.applications())
            EXPECT_EQ(application.programs.size() + application.folders.size(), application.id == c.winnerID ? 2U : 0U)
                << c.what << ": " << application.id;
    }
}

TEST(InstalledApplicationsReader, endsInATreeWithoutEnd) {
    DesktopFiles files;
    std::vector<std::string> names{"a.desktop", "loop"};
    files.list = [&](const std::string&) { return names; };
    files.isFolder = [](const std::string&) { return true; };
    files.read = [](const std::string&) { return std::optional<std::string>("[Desktop Entry]\nType=Application"); };
    files.realProgram = [](const std::string&) { return std::nullopt; };
    DesktopPlaces places;
    places.dataFolders = {"/x"};
    EXPECT_EQ(readInstalledApplications(places, files).size(), 9U);
    names.insert(names.end(), 50, "loop"); // 50^8 folders
    EXPECT_FALSE(readInstalledApplications(places, files).empty());
}

TEST(InstalledApplicationsReader, showsPathsAsProcessesDo) {
    DesktopTree tree;
    tree.program("/opt/caf\xE9/run").entry("cafe.desktop", "Exec=cafe\n").link("/usr/bin/cafe", "/opt/caf\xE9/run");
    const auto applications = tree.applications();
    ASSERT_EQ(applications.size(), 1U);
    EXPECT_EQ(applications[0].programs, std::vector<std::string>{"/opt/caf\xEF\xBF\xBD/run"});
    EXPECT_EQ(applications[0].folders, std::vector<std::string>{"/opt/caf\xEF\xBF\xBD"});
}

} // namespace
} // namespace ostrivane
