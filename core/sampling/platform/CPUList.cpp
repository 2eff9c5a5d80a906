#include "core/sampling/platform/CPUList.hpp"

#include "core/model/Text.hpp"

#include <algorithm>

namespace ostrivane {

std::optional<std::vector<std::int64_t>> CPUList::parse(std::string_view text) {
    std::vector<std::int64_t> numbers;
    std::uint64_t lowest = 0; // the kernel writes in ascending order; what does not ascend could repeat without end
    for (std::string_view rest = Text::trimmed(text); !rest.empty();) {
        const std::size_t comma = rest.find(',');
        const std::string_view range = rest.substr(0, comma);
        const std::size_t dash = range.find('-');
        const auto first = Text::number<std::uint32_t>(range.substr(0, dash));
        const auto last = dash == std::string_view::npos ? first : Text::number<std::uint32_t>(range.substr(dash + 1));
        if (!first || !last || *first < lowest || *last < *first)
            return std::nullopt;
        lowest = std::uint64_t(*last) + 1;
        const std::int64_t end = std::min<std::int64_t>(*last, limit - 1);
        for (std::int64_t number = *first; number <= end; ++number)
            numbers.push_back(number);
        if (comma == std::string_view::npos)
            return numbers;
        rest.remove_prefix(comma + 1);
        if (rest.empty())
            return std::nullopt;
    }
    return numbers;
}

} // namespace ostrivane
