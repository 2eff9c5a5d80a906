#include "core/sampling/platform/UserClientCreator.hpp"

#include "core/model/Text.hpp"

namespace ostrivane::UserClientCreator {

std::optional<std::int32_t> pid(std::string_view text) {
    const std::size_t end = text.find(',');
    if (end == std::string_view::npos)
        return std::nullopt;
    const std::string_view who = text.substr(0, end);
    const auto blank = who.rfind(' ');
    const auto number = Text::number<std::int32_t>(blank == std::string_view::npos ? who : who.substr(blank + 1));
    return number && *number >= 0 ? number : std::nullopt;
}

} // namespace ostrivane::UserClientCreator
