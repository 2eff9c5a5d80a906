#include "cli/Session.hpp"

#include "core/model/Text.hpp"

#include <CLI/App.hpp>
#include <fmt/format.h>

#include <utility>

namespace ostrivane::cli {

CLI::Validator within(double least, double most) {
    const std::string range = fmt::format("a number from {} to {}", least, most);
    return {[=](std::string& text) {
                const auto number = Text::number<double>(text);
                return number && *number >= least && *number <= most ? std::string() : text + " is not " + range;
            },
            "", range};
}

CLI::Validator finiteNumber() {
    return {[](std::string& text) { return Text::number<double>(text) ? std::string() : text + " is not a number"; },
            "", "a number"};
}

CLI::Validator positiveNumber() {
    return {[](std::string& text) {
                const auto number = Text::number<std::int64_t>(text);
                return number && *number > 0 ? std::string() : text + " is not a whole number above 0";
            },
            "", "a whole number above 0"};
}

void addReplayOption(CLI::App& command, Source& source) {
    CLI::Option* replay =
        command.add_option("--replay", source.replay, "Show a recording instead of this computer")
            ->type_name("FILE")
            ->check([](const std::string& file) { return file.empty() ? "a file must be named" : std::string(); });
    if (CLI::Option* interval = command.get_option_no_throw("--interval"))
        replay->excludes(interval); // a recording has its own times
}

void addIntervalOption(CLI::App& command, Source& source, double most) {
    command.add_option("--interval", source.interval, "Seconds between two readings")
        ->type_name("SECONDS")
        ->check(within(0.1, most))
        ->capture_default_str();
}

Session::Session(const boost::asio::any_io_executor& executor, const Source& source, std::function<void()> ended)
    : SourceEngine(executor, {.replay = source.replay, .speed = source.speed}, std::move(ended)) {
    if (!problem())
        demandEverything(engine(), source.interval);
}

void demandEverything(SamplingEngine& engine, double interval) {
    SamplingSettings settings;
    settings.foregroundInterval = interval;
    engine.setSettings(settings);
    engine.setDemand(
        {.popoverVisible = false, .windowVisible = true, .pages = PageSet(readingPages.begin(), readingPages.end())});
}

} // namespace ostrivane::cli
