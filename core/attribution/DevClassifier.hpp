#pragma once

#include "core/model/RawValue.hpp"

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Which processes are development tools, and what they are: text work on the executable and the first arguments.
namespace ostrivane::DevClassifier {

enum class Category { runtime, server, database, container, ai, buildTool };

constexpr std::array<RawText<Category>, 6> rawTexts(EnumTag<Category>) {
    return {{{Category::runtime, "runtime"},
             {Category::server, "server"},
             {Category::database, "database"},
             {Category::container, "container"},
             {Category::ai, "ai"},
             {Category::buildTool, "buildTool"}}};
}

/// What a process turned out to be.
struct Match {
    std::string_view kind; ///< the label shown; points into a constant table, so a match is free to copy and to keep
    Category category = Category::runtime;

    friend bool operator==(const Match&, const Match&) = default;
};

/// The match of a process; absent for one that is no development tool. `path` is the executable's, `arguments` start
/// with the program itself.
///
/// Arguments decide over the executable where it is a mere runtime or build tool, or unknown: `node` that runs Vite is
/// Vite. The first six after the program are searched, together up to a length that no system lets a program start
/// with (1 MiB), so that a process that rewrites its arguments cannot hold up the tick.
std::optional<Match> classify(std::string_view name, const std::optional<std::string>& path,
                              const std::optional<std::vector<std::string>>& arguments);

/// The same for the words of a command line; without any, as for a process whose arguments are not known.
std::optional<Match> classify(std::string_view name, const std::optional<std::string>& path,
                              std::span<const std::string_view> arguments);

/// How a local AI application is told by a text in lower case.
struct AIBundleRule {
    std::string_view text;
    std::string_view runtime; ///< the name shown
    bool atEnd = false;       ///< `text` ends the bundle's text; else it may stand anywhere
};

/// The local AI application that a bundle belongs to, by the first rule that fits; absent for any other bundle.
/// With `macAIBundles` the bundle is given by its path. With `linuxAIBundles` it is asked twice, with the id and with
/// the name of the desktop entry: its path says nothing, and a user's own folder may be called anything.
std::optional<std::string_view> aiRuntime(std::optional<std::string_view> bundle, std::span<const AIBundleRule> rules);

} // namespace ostrivane::DevClassifier
