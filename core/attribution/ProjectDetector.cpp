#include "core/attribution/ProjectDetector.hpp"

#include "core/attribution/PathText.hpp"
#include "core/attribution/ProjectMarkers.hpp"

#include <boost/json/parse.hpp>

#include <algorithm>
#include <utility>

namespace ostrivane {

namespace {

constexpr int searchedLevels = 12;
constexpr int repositoryLevels = 4;
// A search costs hundreds of existence tests, and a command line may hold thousands of files.
constexpr int searchedArguments = 64;

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

std::string_view withoutDigits(std::string_view text) {
    return text.substr(std::min(text.find_first_not_of("0123456789"), text.size()));
}

/// "1.2", "v1.2.3", "1.2.3-beta", "1.2+4": two numbers at least, and what a version may end with.
bool isVersion(std::string_view name) {
    if (name.starts_with('v'))
        name.remove_prefix(1);
    if (name.empty() || !isDigit(name.front()))
        return false;
    name = withoutDigits(name);
    int further = 0;
    for (; name.size() > 1 && name.front() == '.' && isDigit(name[1]); ++further)
        name = withoutDigits(name.substr(1));
    return further > 0 && (name.empty() || name.front() == '-' || name.front() == '+');
}

bool isHash(std::string_view name) {
    return name.size() >= 10 && name.find_first_not_of("0123456789abcdef") == std::string_view::npos;
}

std::optional<std::string> nameInPackage(std::string_view text) {
    boost::system::error_code error;
    const boost::json::value content = boost::json::parse({text.data(), text.size()}, error);
    const auto* object = error ? nullptr : content.if_object();
    const auto* name = object ? object->if_contains("name") : nullptr;
    if (!name || !name->is_string() || name->get_string().empty())
        return std::nullopt;
    return std::string(name->get_string().data(), name->get_string().size());
}

/// Without the slash that "/" ends with, so that what lies below is this and "/…"; empty when there is no such folder.
std::string withoutRoot(std::string_view home) {
    const auto normal = PathText::normalised(home);
    return normal && *normal != "/" ? *normal : std::string();
}

} // namespace

ProjectDetector::ProjectDetector(std::string_view userHome, ProjectExclusions excluded, ProjectFiles fileOperations)
    : home(withoutRoot(userHome)), exclusions(excluded), files(std::move(fileOperations)) {}

std::optional<std::string> ProjectDetector::project(const std::optional<std::string>& cwd,
                                                    const std::optional<std::vector<std::string>>& arguments) {
    if (cwd)
        if (auto root = projectRoot(*cwd))
            return root;
    if (!arguments)
        return std::nullopt;
    int searched = 0;
    for (std::size_t i = 1; i < arguments->size() && searched < searchedArguments; ++i) {
        const std::string& argument = (*arguments)[i];
        if (!argument.starts_with('/') || exclusions.passesOver(argument) ||
            argument.find("/node_modules/") != std::string::npos) // an installed tool, not what it works on
            continue;
        ++searched;
        if (auto root = projectRoot(PathText::parent(argument)))
            return root;
    }
    return std::nullopt;
}

std::optional<std::string> ProjectDetector::projectRoot(std::string_view path) {
    auto normal = PathText::normalised(path);
    if (!normal)
        return std::nullopt;
    std::uint64_t began = 0;
    {
        const std::lock_guard guard(lock);
        if (const auto known = cache.find(*normal); known != cache.end())
            return known->second;
        began = generation;
    }
    if (isExcluded(*normal))
        return std::nullopt;
    auto root = search(*normal);
    const std::lock_guard guard(lock);
    if (began == generation) // else it was found before the files changed
        cache[std::move(*normal)] = root;
    return root;
}

std::optional<std::string> ProjectDetector::search(std::string_view path) const {
    std::string_view directory = path;
    for (int level = 0; level < searchedLevels; ++level) {
        if (ProjectMarkers::contains(directory, files.fileExists))
            return std::string(repositoryAround(directory));
        if (holdsXcodeProject(directory))
            return std::string(directory);
        directory = PathText::parent(directory);
        if (isExcluded(directory)) // "/" is, so the walk ends there
            return std::nullopt;
    }
    return std::nullopt;
}

/// The repository that `directory` is a part of; itself when there is none near.
std::string_view ProjectDetector::repositoryAround(std::string_view directory) const {
    std::string_view candidate = PathText::parent(directory);
    for (int level = 0; level < repositoryLevels && !isExcluded(candidate); ++level) {
        if (files.fileExists(std::string(candidate) + "/.git"))
            return candidate;
        candidate = PathText::parent(candidate);
    }
    return directory;
}

bool ProjectDetector::holdsXcodeProject(std::string_view directory) const {
    const auto names = files.listDirectory(std::string(directory));
    return std::any_of(names.begin(), names.end(), [](std::string_view name) {
        return name.ends_with(".xcodeproj") || name.ends_with(".xcworkspace");
    });
}

std::string ProjectDetector::displayName(std::string_view root) const {
    std::string base(PathText::lastComponent(root));
    if (!isVersion(base) && !isHash(base))
        return base;
    if (const auto package = files.readFile(std::string(root) + "/package.json"))
        if (auto name = nameInPackage(*package))
            return std::move(*name);
    return std::string(PathText::lastComponent(PathText::parent(root))) + " " + base;
}

void ProjectDetector::invalidate() {
    const std::lock_guard guard(lock);
    cache.clear();
    ++generation;
}

} // namespace ostrivane
