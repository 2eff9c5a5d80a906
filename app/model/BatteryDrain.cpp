#include "app/model/BatteryDrain.hpp"

namespace ostrivane::BatteryDrain {

namespace {

constexpr double hour = 3600;
constexpr double leastSpan = 240;        // seconds
constexpr std::int64_t longestGap = 900; // seconds between two rows that still belong together

} // namespace

std::optional<double> current(std::span<const TimedValue> percents) {
    if (percents.empty())
        return std::nullopt;
    const double span = percents.back().time - percents.front().time;
    const double drop = percents.front().value - percents.back().value;
    if (!(span > leastSpan) || !(drop > 0))
        return std::nullopt;
    return drop / (span / hour);
}

std::optional<double> typical(std::span<const SystemRow> rows) {
    double drop = 0;
    double time = 0;
    for (std::size_t index = 1; index < rows.size(); ++index) {
        const SystemRow& before = rows[index - 1];
        const SystemRow& row = rows[index];
        const std::int64_t gap = row.bucket - before.bucket;
        if (!before.batteryPct || !row.batteryPct || gap > longestGap || !(*row.batteryPct < *before.batteryPct))
            continue;
        drop += *before.batteryPct - *row.batteryPct;
        time += static_cast<double>(gap);
    }
    return time > hour ? std::optional(drop / (time / hour)) : std::nullopt;
}

} // namespace ostrivane::BatteryDrain
