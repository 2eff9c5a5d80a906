#include "core/sampling/platform/ProcLoadavg.hpp"

#include "core/sampling/platform/Scanner.hpp"

namespace ostrivane {

std::optional<LoadAverage> ProcLoadavg::parse(std::string_view text) {
    Scanner words(Text::trimmed(text));
    LoadAverage load{};
    for (double& average : load) {
        const auto value = Text::number<double>(words.word());
        if (!value || *value < 0)
            return std::nullopt;
        average = *value;
    }
    return load;
}

} // namespace ostrivane
