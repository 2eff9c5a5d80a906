#pragma once

#include "core/model/TimedValue.hpp"

#include <array>
#include <optional>
#include <span>
#include <vector>

namespace ostrivane {

struct SystemSnapshot;

enum class LiveKey {
    cpu,         ///< load of the machine, a fraction
    cpuUser,     ///< a fraction
    cpuSystem,   ///< a fraction
    memUsed,     ///< bytes
    memPressure, ///< percent of memory that is not available
    swap,        ///< bytes
    gpu,         ///< a fraction
    diskRead,    ///< bytes per second
    diskWrite,
    netIn,
    netOut,
    cpuTemp, ///< degrees Celsius
    gpuTemp,
    power,  ///< watts that the machine draws
    fan,    ///< revolutions a minute, the mean of all fans
    battery ///< percent
};
inline constexpr std::size_t liveKeyCount = 16;

/// The last five minutes of the machine's figures, for live charts. Times are the snapshots' `timestamp`.
class LiveSeries {
public:
    static constexpr double window = 300; ///< seconds
    static constexpr std::size_t coreValues = 60;

    /// Takes in a snapshot that has an interval.
    void add(const SystemSnapshot& snapshot);

    /// Oldest first. A figure that was absent or no number left no point.
    std::span<const TimedValue> operator[](LiveKey key) const { return series[static_cast<std::size_t>(key)]; }

    /// A list per logical core of its last loads, fractions, oldest first.
    const std::vector<std::vector<double>>& cores() const { return coreHistory; }

    /// Mean over the `seconds` before the newest point; absent without points.
    std::optional<double> average(LiveKey key, double seconds) const;

private:
    void push(LiveKey key, double time, std::optional<double> value);
    void addCores(const SystemSnapshot& snapshot);

    std::array<std::vector<TimedValue>, liveKeyCount> series;
    std::vector<std::vector<double>> coreHistory;
};

} // namespace ostrivane
