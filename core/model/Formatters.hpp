#pragma once

#include "core/model/DisplayUnits.hpp"

#include <atomic>
#include <concepts>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ostrivane {
struct Date;
}

/// The one place where figures become the words that a person reads. English, with a point, in every locale. A figure
/// that is not finite reads as one that is absent.
namespace ostrivane::Formatters {

/// How figures are shown, in the whole process. The settings assign them (`Formatters::rateUnit = RateUnit::bits`); any
/// thread may read at any time, and a text made meanwhile shows the old choice or the new one.
inline std::atomic<TemperatureUnit> temperatureUnit{TemperatureUnit::celsius};
inline std::atomic<RateUnit> rateUnit{RateUnit::bytes};
inline std::atomic<CPUScale> cpuScale{CPUScale::perCore};
inline std::atomic<std::int64_t> logicalCores{1}; ///< what `perMac` divides by; assigned once, from the host's layout

inline constexpr std::string_view dash = "—"; ///< stands for a figure that there is none of
inline constexpr std::string_view unavailable = "Unavailable";

/// Processor use in cores, as "5.0%" or "250%" by `cpuScale`.
std::string cpu(double cores);

/// A fraction as "42%".
std::string percent(std::optional<double> fraction, int decimals = 0);

/// A bare figure with that many decimals, as "1.42".
std::string decimal(double value, int decimals);

/// A figure without its fraction, as "1450" for 1450.9.
std::string whole(double value);

/// An amount of memory, as "1.50 MB" of 1024 × 1024 bytes. Without `decimals` about three digits are shown.
std::string bytes(double count, std::optional<int> decimals = std::nullopt);
template <std::integral Count>
std::string bytes(Count count, std::optional<int> decimals = std::nullopt) {
    return bytes(static_cast<double>(count), decimals);
}

/// Bytes per second as "1.5 KB/s" of 1000 bytes, or as "12.0 Kbps"; in `rateUnit` when no unit is asked for.
std::string rate(std::optional<double> bytesPerSec, std::optional<RateUnit> unit = std::nullopt);

/// A rate that is in bytes whatever the setting.
std::string diskRate(std::optional<double> bytesPerSec);

/// Watts, as "500 mW", "9.50 W" or "12.5 W".
std::string power(std::optional<double> watts);

/// Watt-hours, as "500 mWh", "9.50 Wh", "12.5 Wh" or "1.25 kWh".
std::string energy(std::optional<double> wattHours);

/// Degrees Celsius, as "41 °C" or in `temperatureUnit`.
std::string temperature(std::optional<double> celsius);

/// Seconds as the two largest units: "59s", "12 min", "1h 1m", "2d 3h".
std::string duration(double seconds);

/// Minutes as "59 min" or "1h 0m".
std::string minutes(std::optional<std::int64_t> count);

/// The day of an instant, where the person is, as "Nov 21, 2026".
std::string day(Date date);

/// The size of a file or a volume, as "1.23 GB" of 1000 × 1000 × 1000 bytes. The same wording on every system.
std::string storage(std::uint64_t bytes);

} // namespace ostrivane::Formatters
