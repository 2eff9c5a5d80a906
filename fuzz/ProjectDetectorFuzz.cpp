// The input: lines. The first is the user's folder, the second a working directory ("-" for none), the third the
// content of every file; of the rest, those that begin with "+" exist, and the others are arguments.

#include "core/attribution/ProjectDetector.hpp"

#include "core/attribution/PathText.hpp"
#include "core/model/Text.hpp"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <set>

using namespace ostrivane;

namespace {

void must(bool holds) {
    if (!holds)
        std::abort();
}

void check(const std::vector<std::string_view>& lines, const ProjectExclusions& exclusions) {
    const auto line = [&](std::size_t i) { return i < lines.size() ? lines[i] : std::string_view(); };
    std::set<std::string> existing;
    std::vector<std::string> arguments{"tool"};
    for (std::size_t i = 3; i < lines.size(); ++i)
        if (lines[i].starts_with('+'))
            existing.emplace(lines[i].substr(1));
        else
            arguments.emplace_back(lines[i]);
    const ProjectFiles files{[&](const std::string& path) { return existing.contains(path); },
                             [&](const std::string& directory) {
                                 return std::vector<std::string>(existing.contains(directory), ".xcodeproj");
                             },
                             [&](const std::string&) { return std::optional(std::string(line(2))); }};
    ProjectDetector detector(line(0), exclusions, files);

    const auto cwd = line(1) == "-" ? std::nullopt : std::optional(std::string(line(1)));
    const auto root = detector.project(cwd, arguments);
    must(root == detector.project(cwd, arguments));
    if (!root)
        return;
    must(PathText::normalised(*root) == root);
    const std::string home = PathText::normalised(line(0)).value_or("");
    must(*root != "/" && *root != home && !exclusions.excludes(*root, home == "/" ? "" : home));
    must(!detector.displayName(*root).empty());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto lines = Text::lines({reinterpret_cast<const char*>(data), size});
    check(lines, ProjectExclusions::onMacOS);
    check(lines, ProjectExclusions::onLinux);
    return 0;
}
