// The input: lines, the first the process's name, the second its path ("-" for none), then its arguments.

#include "core/attribution/DevClassifier.hpp"

#include "core/model/Text.hpp"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace ostrivane;

namespace {

void must(bool holds) {
    if (!holds)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto lines = Text::lines({reinterpret_cast<const char*>(data), size});
    const std::string_view name = lines.empty() ? std::string_view() : lines[0];
    const auto path = lines.size() > 1 && lines[1] != "-" ? std::optional(std::string(lines[1])) : std::nullopt;
    std::vector<std::string_view> words;
    if (lines.size() > 2)
        words.assign(lines.begin() + 2, lines.end());
    using Arguments = std::vector<std::string>;
    const Arguments arguments(words.begin(), words.end());

    const auto byName = DevClassifier::classify(name, path, std::nullopt);
    const auto match = DevClassifier::classify(name, path, arguments);
    must(match == DevClassifier::classify(name, path, words));
    must(!match || (!match->kind.empty() && !rawValue(match->category).empty()));
    must(byName == DevClassifier::classify(name, path, Arguments{"vite"}));
    must(!byName || match); // arguments refine, they never take away
    using DevClassifier::Category;
    if (byName && byName->category != Category::runtime && byName->category != Category::buildTool)
        must(match == byName);

    // What stands behind the arguments that are searched is no hint.
    Arguments more = arguments;
    while (more.size() < 7)
        more.emplace_back();
    const auto padded = DevClassifier::classify(name, path, more);
    more.emplace_back("vite");
    must(padded == DevClassifier::classify(name, path, more));
    return 0;
}
