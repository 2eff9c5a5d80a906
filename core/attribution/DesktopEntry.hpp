#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ostrivane {

/// A command line without what carries no program: "env" and its settings, field codes such as "%U".
struct DesktopCommand {
    std::string program;       ///< as written: a path, or a name to be looked for
    std::size_t arguments = 0; ///< behind the program

    /// Takes the value of Exec. Absent when its quotes do not end, and when no program is left.
    static std::optional<DesktopCommand> parse(std::string_view exec);

    friend bool operator==(const DesktopCommand&, const DesktopCommand&) = default;
};

/// What an application's desktop entry tells.
struct DesktopEntry {
    std::string name; ///< in the user's language where there is one; empty when missing
    std::string icon;
    std::string exec;
    std::string tryExec;
    std::vector<std::string> onlyShowIn; ///< desktops; empty: all
    std::vector<std::string> notShowIn;
    bool isApplication = false; ///< not a link or a folder
    bool noDisplay = false;     ///< in no menu
    bool hidden = false;        ///< stands for "deleted"
    bool terminal = false;      ///< runs in a terminal

    /// Takes the text of a ".desktop" file. `localeNames` come from `localeNames()`. Absent without a desktop entry.
    static std::optional<DesktopEntry> parse(std::string_view text, const std::vector<std::string>& localeNames);

    /// The names under which a text in the user's languages may stand, best first: "de_DE.UTF-8@euro" gives
    /// "de_DE@euro", "de_DE", "de@euro", "de".
    static std::vector<std::string> localeNames(const std::vector<std::string>& locales);

    friend bool operator==(const DesktopEntry&, const DesktopEntry&) = default;
};

} // namespace ostrivane
