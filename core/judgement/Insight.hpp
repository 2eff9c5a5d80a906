#pragma once

#include "core/model/Described.hpp"
#include "core/model/RawValue.hpp"

#include <array>
#include <optional>
#include <string>

namespace ostrivane {

/// Something that stands out right now, in words. Its identity is `id`, the same for the same finding.
struct Insight {
    enum class Level { info, notice, warning }; ///< ordered by weight

    std::string id;
    Level level = Level::info;
    std::string symbol; ///< of the icon
    std::string title;
    std::string evidence;
    std::optional<std::string> appKey;      ///< the application that it is about
    std::optional<std::string> destination; ///< the page that explains it

    friend bool operator==(const Insight&, const Insight&) = default;
};
BOOST_DESCRIBE_STRUCT(Insight, (), (id, level, symbol, title, evidence, appKey, destination))
static_assert(describesEveryMember<Insight>);

constexpr std::array<RawText<Insight::Level>, 3> rawTexts(EnumTag<Insight::Level>) {
    return {{{Insight::Level::info, "info"}, {Insight::Level::notice, "notice"}, {Insight::Level::warning, "warning"}}};
}

} // namespace ostrivane
