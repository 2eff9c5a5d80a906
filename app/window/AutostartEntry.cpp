#include "app/window/AutostartEntry.hpp"

#include "core/model/Text.hpp"

#include <fmt/format.h>

namespace ostrivane {

namespace {

/// An argument of "Exec", quoted; "%" begins a field code there.
std::string quoted(std::string_view argument) {
    std::string made = "\"";
    for (const char c : argument) {
        if (c == '"' || c == '`' || c == '$')
            made += "\\\\";
        if (c == '\\')
            made += "\\\\\\"; // two for the file's own rules, two for the argument's
        made += c == '%' ? "%%" : std::string(1, c);
    }
    return made + '"';
}

} // namespace

std::string autostartEntry(std::string_view program) {
    return fmt::format("[Desktop Entry]\n"
                       "Type=Application\n"
                       "Name=Ostrivane\n"
                       "Comment=Watches over this computer\n"
                       "Exec={} --login\n"
                       "Icon=ostrivane\n"
                       "Terminal=false\n"
                       "X-GNOME-Autostart-enabled=true\n",
                       quoted(program));
}

bool isEnabledEntry(std::string_view text) {
    bool isMain = false;
    for (std::string_view rest = text; !rest.empty();) {
        const auto end = rest.find('\n');
        const std::string_view line = rest.substr(0, end);
        rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
        if (line.starts_with('['))
            isMain = line.starts_with("[Desktop Entry]");
        else if (isMain && (line == "Hidden=true" || line == "X-GNOME-Autostart-enabled=false"))
            return false;
    }
    return true;
}

} // namespace ostrivane
