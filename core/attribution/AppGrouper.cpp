#include "core/attribution/AppGrouper.hpp"

#include "core/attribution/AppRules.hpp"
#include "core/attribution/PathText.hpp"
#include "core/attribution/ProcessTable.hpp"

#include <algorithm>
#include <cassert>

namespace ostrivane::AppGrouper {

namespace {

/// What the first rule that applies gives; empty when none does.
std::string firstOf(std::span<const AppRules::OwnRule> ownRules, const Input& input, const AppRules& rules) {
    for (const AppRules::OwnRule rule : ownRules)
        if (std::string key = rule(input, rules); !key.empty())
            return key;
    return {};
}

std::string_view keyOf(const Process& process, const ProcessTable& all, const AppRules& rules) {
    for (const AppRules::Rule rule : rules.order)
        if (const std::string_view key = rule(process, all); !key.empty())
            return key;
    return systemKey;
}

bool isListed(const Input& input, NamePatterns names) {
    return matchesAny(names, input.name) || (input.path && matchesAny(names, PathText::lastComponent(*input.path)));
}

/// The bundle that a program runs from a copy of: "/…/code_sign_clone/…/Foo.app.bundle/…" is one of "Foo.app".
std::optional<std::string> clonedBundle(std::string_view path, const std::function<bool(const std::string&)>& exists,
                                        std::string_view home) {
    const std::size_t end = path.find(".app.bundle/");
    if (end == std::string_view::npos || path.find("code_sign_clone") == std::string_view::npos)
        return std::nullopt;
    const std::string name = "/Applications/" + std::string(PathText::lastComponent(path.substr(0, end))) + ".app";
    for (const std::string& original : {name, std::string(home) + name})
        if (exists(original))
            return original;
    return std::nullopt;
}

} // namespace

OwnKeys ownKeys(const Input& input, const AppRules& rules) {
    OwnKeys own{.application = firstOf(rules.application, input, rules),
                .unitEntry = firstOf(rules.unitEntry, input, rules),
                .name = firstOf(rules.name, input, rules),
                .neverOwns = isListed(input, rules.tables.neverOwners),
                .endsAncestry = isListed(input, rules.tables.sessionManagers)};
    if (own.name.empty())
        own.name = systemKey;
    return own;
}

std::vector<std::string_view> assign(const std::vector<Process>& processes, const AppRules& rules) {
    const ProcessTable all(processes);
    std::vector<std::string_view> keys;
    keys.reserve(processes.size());
    for (const Process& process : processes) {
        assert(process.own);
        keys.push_back(keyOf(process, all, rules));
    }
    return keys;
}

std::optional<std::string> outermostAppBundle(std::string_view path,
                                              const std::function<bool(const std::string&)>& exists,
                                              std::string_view home) {
    constexpr std::string_view inside = ".app/", itself = ".app";
    if (auto original = clonedBundle(path, exists, home))
        return original;
    std::string_view bundle;
    if (const std::size_t first = path.find(inside); first != std::string_view::npos) // the outer of two nested ones
        bundle = path.substr(0, first + inside.size());
    else if (path.ends_with(itself))
        bundle = path;
    else
        return std::nullopt;
    bundle.remove_prefix(std::min(bundle.find_first_not_of('/'), bundle.size()));
    while (bundle.ends_with('/'))
        bundle.remove_suffix(1);
    std::string found("/");
    found += bundle;
    return found;
}

bool isSystemPath(std::optional<std::string_view> path, const AppTables& tables) {
    if (!path)
        return true;
    const auto holds = [&](std::string_view folder) { return path->starts_with(folder); };
    return std::any_of(tables.systemFolders.begin(), tables.systemFolders.end(), holds) &&
           std::none_of(tables.userFolders.begin(), tables.userFolders.end(), holds);
}

} // namespace ostrivane::AppGrouper
