#pragma once

#include <string_view>

/// Names of the questions in a recording. A name keeps its meaning for good: a question whose answer changes its shape
/// gets a new one.
namespace ostrivane::Questions {

constexpr std::string_view uptime = "host.uptime";
constexpr std::string_view ticks = "processor.ticks";
constexpr std::string_view loadAverage = "processor.loadAverage";
constexpr std::string_view memory = "memory.reading";
constexpr std::string_view accelerators = "graphics.accelerators";
constexpr std::string_view graphicsTimes = "graphics.processTimes";

} // namespace ostrivane::Questions
