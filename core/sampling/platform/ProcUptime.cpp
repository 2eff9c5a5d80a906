#include "core/sampling/platform/ProcUptime.hpp"

#include "core/sampling/platform/Scanner.hpp"

namespace ostrivane {

std::optional<double> ProcUptime::parse(std::string_view text) {
    const auto seconds = Text::number<double>(Scanner(Text::trimmed(text)).word());
    return seconds && *seconds >= 0 ? seconds : std::nullopt;
}

} // namespace ostrivane
