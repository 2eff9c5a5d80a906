#include "app/window/LaunchArguments.hpp"

#include "core/model/RawValue.hpp"
#include "core/model/Text.hpp"

#include <fmt/format.h>

#include <string_view>

namespace ostrivane {

namespace {

constexpr int smallestPicture = 200;
constexpr int largestPicture = 8000;

/// "960x620".
bool readSize(std::string_view text, LaunchArguments& told) {
    const auto cross = text.find('x');
    if (cross == std::string_view::npos)
        return false;
    const auto width = Text::number<int>(text.substr(0, cross));
    const auto height = Text::number<int>(text.substr(cross + 1));
    const auto fits = [](std::optional<int> side) {
        return side && *side >= smallestPicture && *side <= largestPicture;
    };
    if (!fits(width) || !fits(height))
        return false;
    told.width = *width;
    told.height = *height;
    return true;
}

} // namespace

LaunchArguments parseLaunchArguments(const std::vector<std::string>& arguments) {
    LaunchArguments told;
    bool isSized = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string_view argument = arguments[i];
        const auto name = argument.substr(0, argument.find('='));
        const auto isOne = [&](std::string_view wanted) { return name == wanted; };
        // "--page cpu" and "--page=cpu"
        const auto value = [&]() -> std::optional<std::string_view> {
            if (name.size() < argument.size())
                return argument.substr(name.size() + 1);
            if (i + 1 < arguments.size())
                return arguments[++i];
            return std::nullopt;
        };
        const auto wanted = [&](const char* what) -> std::string {
            const auto given = value();
            if (!given || given->empty())
                told.problem = fmt::format("{} needs {}.", name, what);
            return std::string(given.value_or(""));
        };
        if (argument == "--login") {
            told.isLogin = true;
        } else if (argument == "--background") {
            told.isBackground = true;
        } else if (isOne("--page")) {
            const bool isAlone = name == argument && (i + 1 == arguments.size() || arguments[i + 1].starts_with("--"));
            if (const auto raw = isAlone ? std::nullopt : value())
                told.page = fromRawValue<Page>(*raw);
        } else if (isOne("--replay")) {
            told.replay = wanted("the file of a recording");
        } else if (isOne("--screenshot")) {
            told.screenshots = wanted("a folder");
        } else if (isOne("--size")) {
            isSized = true;
            if (const std::string size = wanted("a size such as 960x620"); !told.problem && !readSize(size, told))
                told.problem = fmt::format("{} is no size such as 960x620.", Text::visible(size));
        } else if (argument == "--help" || argument == "-h") {
            told.wantsHelp = true;
        } else if (argument == "--version") {
            told.wantsVersion = true;
        } else if (!told.problem) {
            told.problem = fmt::format("{} is not known.", Text::visible(argument));
        }
    }
    if (!told.problem && isSized && told.screenshots.empty())
        told.problem = "--size goes with --screenshot.";
    if (!told.problem && !told.screenshots.empty() && told.replay.empty())
        told.problem = "--screenshot goes with --replay.";
    return told;
}

std::string launchHelp() {
    return "Ostrivane: what your computer does, and why.\n"
           "\n"
           "Usage: ostrivane [OPTION...]\n"
           "\n"
           "  --page PAGE        Show that page: overview, cpu, memory, processes, ...\n"
           "  --background       Start without the window\n"
           "  --login            The same, as a start with the session\n"
           "  --replay FILE      Show a recording instead of this computer\n"
           "  --screenshot DIR   With --replay: write a picture of every page, light and dark, and end\n"
           "  --size WxH         Of those pictures (1240x800)\n"
           "  --help, --version\n"
           "\n"
           "A second start shows the window of the first. In a terminal: ostrivanectl --help.\n";
}

LaunchDecision decideLaunch(const LaunchArguments& arguments) {
    LaunchDecision decision;
    if (!arguments.isLogin) {
        decision.showsWindow = !arguments.isBackground;
        decision.allowsWelcome = true;
    }
    if (arguments.page)
        decision.showsWindow = true;
    return decision;
}

} // namespace ostrivane
