#include "core/attribution/DesktopEntry.hpp"
#include "core/attribution/KeyFile.hpp"

#include <gtest/gtest.h>

#include <string>

namespace ostrivane {
namespace {

std::string programOf(std::string_view exec) {
    const auto command = DesktopCommand::parse(exec);
    return command ? command->program + " " + std::to_string(command->arguments) : "none";
}

TEST(DesktopCommand, findsTheProgramBehindQuotesSettingsAndCodes) {
    struct {
        std::string_view exec, want;
    } cases[] = {
        {"firefox %u", "firefox 0"},
        {"  /usr/bin/chromium  --app-id=abc --profile=Default %U", "/usr/bin/chromium 2"},
        {R"("/opt/My App/bin/app" --x "a b" %f)", "/opt/My App/bin/app 2"},
        {R"("/opt/q\"u\$o\`t\\e" x)", R"(/opt/q"u$o`t\e 1)"},
        {R"("/opt/a\b")", R"(/opt/a\b 0)"}, // no code of the format: both characters stay
        {"env A=1 B=/x/y=z /snap/bin/firefox %u", "/snap/bin/firefox 0"},
        {"/usr/bin/env -i -u HOME A=1 prog one", "prog 1"},
        {R"(env WINEPREFIX="/home/ada/.wine" wine C:\\windows\\notepad.exe)", "wine 1"},
        {"'/opt/a b/c'", "/opt/a b/c 0"},
        {"/opt/a=b/c", "/opt/a=b/c 0"},
        {"prog 50%% %%", "prog 2"},
        {"\"unfinished", "none"},
        {"env A=1", "none"},
        {"%U", "none"},
        {"\"\" x", "none"},
        {"", "none"},
        {std::string_view("/usr/bin/a\0b", 12), "none"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(programOf(c.exec), c.want) << c.exec;
}

constexpr std::string_view german = "# comment\n"
                                    "[Desktop Entry]\r\n"
                                    "Type = Application\n"
                                    "Name=Files\n"
                                    "Name[de]=Dateien\n"
                                    "Name[de_AT]=Datei\\sAblage\n"
                                    "Name[sr@latin]=Datoteke\n"
                                    "Exec=sh -c \"a\\\\\\\\b\"\n"
                                    "OnlyShowIn=GNOME;X\\;Y;\n"
                                    "NoDisplay=true\n"
                                    "\n"
                                    "[Desktop Action new]\n"
                                    "Name=New Window\n"
                                    "Hidden=true\n";

TEST(DesktopEntry, readsItsOwnGroupInTheUsersLanguage) {
    const auto name = [](const std::vector<std::string>& locales) {
        return DesktopEntry::parse(german, DesktopEntry::localeNames(locales))->name;
    };
    EXPECT_EQ(name({}), "Files");
    EXPECT_EQ(name({"C.UTF-8"}), "Files");
    EXPECT_EQ(name({"de_DE.UTF-8@euro"}), "Dateien");
    EXPECT_EQ(name({"de_AT.UTF-8"}), "Datei Ablage");
    EXPECT_EQ(name({"fr_FR", "de"}), "Dateien");
    EXPECT_EQ(name({"sr_RS@latin"}), "Datoteke");

    const auto entry = DesktopEntry::parse(german, {});
    EXPECT_TRUE(entry->isApplication && entry->noDisplay);
    EXPECT_FALSE(entry->hidden); // of an action, not of the entry
    EXPECT_EQ(entry->exec, R"(sh -c "a\\b")");
    EXPECT_EQ(entry->onlyShowIn, (std::vector<std::string>{"GNOME", "X;Y"}));
}

TEST(DesktopEntry, takesFromDamagedTextWhatIsSoundAndNothingFromOther) {
    for (const char* text : {"", "Name=x", "[Desktop Action a]\nName=x", "[Desktop Entry\nName=x"})
        EXPECT_FALSE(DesktopEntry::parse(text, {})) << text;
    EXPECT_FALSE(DesktopEntry::parse("[Desktop Entry]\nName=" + std::string(2 << 20, 'x'), {}));

    const auto entry =
        DesktopEntry::parse("\xEF\xBB\xBF[Desktop Entry]\nno equals\n=x\n[]\n[Desktop Entry]\nName=a\xFF\\", {});
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->name, "a\xEF\xBF\xBD\\");
    EXPECT_FALSE(entry->isApplication);
}

TEST(KeyFile, readsTheNotesOfASandbox) {
    const auto group = KeyFile::group("[Application]\nname=org.telegram.desktop\n[Instance]\nname=x\n", "Application");
    ASSERT_TRUE(group);
    EXPECT_EQ(KeyFile::value(*group, "name"), "org.telegram.desktop");
    EXPECT_EQ(KeyFile::value(*group, "runtime"), "");
}

} // namespace
} // namespace ostrivane
