#pragma once

#include "core/model/RawValue.hpp"

#include <array>

namespace ostrivane {

enum class TemperatureUnit { celsius, fahrenheit };
constexpr std::array<RawText<TemperatureUnit>, 2> rawTexts(EnumTag<TemperatureUnit>) {
    return {{{TemperatureUnit::celsius, "celsius"}, {TemperatureUnit::fahrenheit, "fahrenheit"}}};
}

enum class RateUnit { bytes, bits };
constexpr std::array<RawText<RateUnit>, 2> rawTexts(EnumTag<RateUnit>) {
    return {{{RateUnit::bytes, "bytes"}, {RateUnit::bits, "bits"}}};
}

/// What 100% of processor use means.
enum class CPUScale {
    perCore, ///< one core: a busy machine with eight may show 800%
    perMac   ///< the whole machine
};
constexpr std::array<RawText<CPUScale>, 2> rawTexts(EnumTag<CPUScale>) {
    return {{{CPUScale::perCore, "perCore"}, {CPUScale::perMac, "perMac"}}};
}

} // namespace ostrivane
