#include "core/attribution/DevClassifier.hpp"

#include "core/attribution/DevClassifierTables.hpp"
#include "core/attribution/PathText.hpp"
#include "core/model/Text.hpp"

#include <algorithm>

namespace ostrivane::DevClassifier {

namespace {

constexpr std::size_t searchedArguments = 6;
// Linux takes 128 KiB an argument, macOS 1 MiB for all of them: what a program was started with is searched whole.
constexpr std::size_t longestSearched = std::size_t{1} << 20;

bool holds(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

template <std::size_t Size, class Fits>
std::optional<Match> firstRow(const std::array<TableRow, Size>& table, Fits fits) {
    const auto row = std::find_if(table.begin(), table.end(), [&](const TableRow& r) { return fits(r.text); });
    return row == table.end() ? std::nullopt : std::optional(row->match);
}

std::optional<Match> executable(std::string_view lower) {
    return firstRow(executables, [&](std::string_view known) { return known == lower; });
}

/// Runtimes that carry their version in the name: "python3.11", "php8.2", "ruby3.1".
std::optional<Match> versionedExecutable(std::string_view lower) {
    for (const std::string_view prefix : {"python", "postgres", "php", "ruby"})
        if (lower.starts_with(prefix))
            return executable(prefix);
    if (lower.starts_with("node") && !holds(lower, "helper")) // a helper process of some application is no tool
        return executable("node");
    return std::nullopt;
}

std::optional<Match> byExecutable(std::string_view name, const std::optional<std::string>& path) {
    const std::string lower = Text::lowered(std::string(path ? PathText::lastComponent(*path) : name));
    if (const auto match = executable(lower))
        return match;
    if (const auto match = executable(Text::lowered(std::string(name))))
        return match;
    return versionedExecutable(lower);
}

/// The arguments that are searched, joined by blanks, so that "ng serve" is found over two of them.
template <class Arguments>
std::string searchedText(const Arguments& arguments) {
    const std::size_t end = std::min(arguments.size(), 1 + searchedArguments);
    std::size_t size = 0;
    for (std::size_t i = 1; i < end; ++i)
        size += 1 + arguments[i].size();
    std::string joined;
    joined.reserve(std::min(size, longestSearched));
    for (std::size_t i = 1; i < end && joined.size() < longestSearched; ++i) {
        if (i > 1)
            joined += ' ';
        joined.append(arguments[i], 0, longestSearched - joined.size());
    }
    return Text::lowered(std::move(joined));
}

template <class Arguments>
std::optional<Match> byArguments(const Arguments& arguments) {
    const std::string text = searchedText(arguments);
    return firstRow(hintNeedles, [&](std::string_view needle) { return holds(text, needle); });
}

/// `node … dev`: a script named like that keeps running and serves.
template <class Arguments>
bool startsServer(const Arguments& arguments) {
    return std::any_of(arguments.begin() + 1, arguments.end(), [](std::string_view argument) {
        return argument == "dev" || argument == "serve" || argument == "start" || argument == "run";
    });
}

template <class Arguments>
std::optional<Match> refined(std::optional<Match> match, const Arguments& arguments) {
    if (arguments.size() < 2)
        return match;
    if (match && match->category != Category::runtime && match->category != Category::buildTool)
        return match; // a server or database says all by its name
    if (const auto hint = byArguments(arguments))
        return hint;
    if (match && startsServer(arguments))
        match->category = Category::server;
    return match;
}

} // namespace

std::optional<Match> classify(std::string_view name, const std::optional<std::string>& path,
                              const std::optional<std::vector<std::string>>& arguments) {
    const auto match = byExecutable(name, path);
    return arguments ? refined(match, *arguments) : match;
}

std::optional<Match> classify(std::string_view name, const std::optional<std::string>& path,
                              std::span<const std::string_view> arguments) {
    return refined(byExecutable(name, path), arguments);
}

std::optional<std::string_view> aiRuntime(std::optional<std::string_view> bundle, std::span<const AIBundleRule> rules) {
    if (!bundle)
        return std::nullopt;
    const std::string lower = Text::lowered(std::string(*bundle));
    for (const AIBundleRule& rule : rules)
        if (rule.atEnd ? lower.ends_with(rule.text) : holds(lower, rule.text))
            return rule.runtime;
    return std::nullopt;
}

} // namespace ostrivane::DevClassifier
