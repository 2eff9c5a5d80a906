#pragma once

#include "core/model/PlatformWords.hpp"
#include "core/model/RawValue.hpp"

#include <array>

namespace ostrivane {

/// The systems that the program reads. Rules and tables of both are in every build.
enum class Platform { Linux, macOS };
constexpr std::array<RawText<Platform>, 2> rawTexts(EnumTag<Platform>) {
    return {{{Platform::Linux, "linux"}, {Platform::macOS, "macos"}}};
}

/// What texts about such a machine call things.
constexpr const PlatformWords& wordsOf(Platform platform) {
    return platform == Platform::macOS ? PlatformWords::macOS : PlatformWords::Linux;
}

} // namespace ostrivane
