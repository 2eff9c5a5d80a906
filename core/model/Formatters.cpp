#include "core/model/Formatters.hpp"

#include "core/model/Date.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <ctime>
#include <limits>

namespace ostrivane::Formatters {

namespace {

using UnitNames = std::array<std::string_view, 4>;
constexpr UnitNames byteRates{"B/s", "KB/s", "MB/s", "GB/s"};
constexpr UnitNames bitRates{"bps", "Kbps", "Mbps", "Gbps"};
constexpr std::array<std::string_view, 6> memoryUnits{"B", "KB", "MB", "GB", "TB", "PB"};

constexpr std::array<std::string_view, 12> months{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                  "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

constexpr int maxDecimals = 17; // more would only spell out how a double rounds

std::string fixed(double value, int decimals) {
    return fmt::format("{:.{}f}", value, std::clamp(decimals, 0, maxDecimals));
}

struct Scaled {
    double value = 0;
    std::size_t unit = 0; ///< how many times it was divided
};

Scaled scaled(double value, double base, std::size_t lastUnit) {
    Scaled result{std::max(value, 0.0), 0};
    while (result.value >= base && result.unit < lastUnit) {
        result.value /= base;
        ++result.unit;
    }
    return result;
}

int memoryDecimals(const Scaled& amount) {
    constexpr std::size_t kilobytes = 1;
    if (amount.unit <= kilobytes || amount.value >= 100)
        return 0;
    return amount.value >= 10 ? 1 : 2;
}

struct FileUnit {
    std::string_view name;
    std::uint64_t bytes = 0;
    int decimals = 0;        ///< at most
    std::uint64_t steps = 1; ///< that a unit has with so many decimals
};
constexpr std::array<FileUnit, 6> fileUnits{{{"KB", 1'000, 0, 1},
                                             {"MB", 1'000'000, 1, 10},
                                             {"GB", 1'000'000'000, 2, 100},
                                             {"TB", 1'000'000'000'000, 2, 100},
                                             {"PB", 1'000'000'000'000'000, 2, 100},
                                             {"EB", 1'000'000'000'000'000'000, 2, 100}}};

/// `bytes` in the steps of `unit`, the nearest; half a step goes to the even neighbour.
std::uint64_t stepsOf(std::uint64_t bytes, const FileUnit& unit) {
    const std::uint64_t step = unit.bytes / unit.steps;
    const std::uint64_t whole = bytes / step;
    const std::uint64_t rest = bytes % step;
    const bool up = rest > step / 2 || (rest == step / 2 && whole % 2 == 1);
    return up ? whole + 1 : whole;
}

/// Without zeros at the end of the decimals, and without the point when none is left.
std::string fileSize(std::uint64_t steps, const FileUnit& unit) {
    std::uint64_t fraction = steps % unit.steps;
    int decimals = unit.decimals;
    if (fraction == 0)
        return fmt::format("{} {}", steps / unit.steps, unit.name);
    for (; fraction % 10 == 0; --decimals)
        fraction /= 10;
    return fmt::format("{}.{:0{}} {}", steps / unit.steps, fraction, decimals, unit.name);
}

} // namespace

std::string cpu(double cores) {
    const auto divisor = static_cast<double>(std::max<std::int64_t>(logicalCores, 1));
    const double value = (cpuScale == CPUScale::perMac ? cores / divisor : cores) * 100;
    if (!std::isfinite(value))
        return std::string(dash);
    return fixed(value, value >= 10 ? 0 : 1) + "%";
}

std::string percent(std::optional<double> fraction, int decimals) {
    const double value = fraction.value_or(std::numeric_limits<double>::quiet_NaN()) * 100;
    return std::isfinite(value) ? fixed(value, decimals) + "%" : std::string(dash);
}

std::string decimal(double value, int decimals) {
    return std::isfinite(value) ? fixed(value, decimals) : std::string(dash);
}

std::string whole(double value) {
    return decimal(std::trunc(value) + 0.0, 0); // the sum makes 0 of "-0"
}

std::string bytes(double count, std::optional<int> decimals) {
    if (!std::isfinite(count))
        return std::string(dash);
    const Scaled amount = scaled(count, 1024, memoryUnits.size() - 1);
    return fmt::format("{} {}", fixed(amount.value, decimals.value_or(memoryDecimals(amount))),
                       memoryUnits[amount.unit]);
}

std::string rate(std::optional<double> bytesPerSec, std::optional<RateUnit> unit) {
    const bool bits = unit.value_or(rateUnit) == RateUnit::bits;
    const double value = bytesPerSec.value_or(std::numeric_limits<double>::quiet_NaN()) * (bits ? 8 : 1);
    if (!std::isfinite(value))
        return std::string(unavailable);
    const UnitNames& names = bits ? bitRates : byteRates;
    const Scaled speed = scaled(value, 1000, names.size() - 1);
    return fmt::format("{} {}", fixed(speed.value, speed.unit == 0 || speed.value >= 100 ? 0 : 1), names[speed.unit]);
}

std::string diskRate(std::optional<double> bytesPerSec) {
    return rate(bytesPerSec, RateUnit::bytes);
}

std::string power(std::optional<double> watts) {
    if (!watts || !std::isfinite(*watts))
        return std::string(unavailable);
    if (*watts < 1)
        return fixed(*watts * 1000, 0) + " mW";
    return fixed(*watts, *watts >= 10 ? 1 : 2) + " W";
}

std::string energy(std::optional<double> wattHours) {
    constexpr double kilo = 1000;
    if (!wattHours || !std::isfinite(*wattHours))
        return std::string(unavailable);
    return *wattHours < kilo ? power(wattHours) + "h" : fixed(*wattHours / kilo, 2) + " kWh";
}

std::string temperature(std::optional<double> celsius) {
    if (!celsius || !std::isfinite(*celsius))
        return std::string(unavailable);
    if (temperatureUnit == TemperatureUnit::fahrenheit)
        return fixed(*celsius * 9 / 5 + 32, 0) + " °F";
    return fixed(*celsius, 0) + " °C";
}

std::string duration(double seconds) {
    constexpr std::uint64_t minute = 60;
    constexpr std::uint64_t hour = 60 * minute;
    constexpr std::uint64_t day = 24 * hour;
    constexpr double longest = 1e18; // fits the integer
    if (!std::isfinite(seconds))
        return std::string(dash);
    const auto whole = static_cast<std::uint64_t>(std::clamp(seconds, 0.0, longest));
    if (whole < minute)
        return fmt::format("{}s", whole);
    if (whole < hour)
        return fmt::format("{} min", whole / minute);
    if (whole < day) {
        const std::uint64_t rest = whole % hour / minute;
        return rest == 0 ? fmt::format("{}h", whole / hour) : fmt::format("{}h {}m", whole / hour, rest);
    }
    const std::uint64_t rest = whole % day / hour;
    return rest == 0 ? fmt::format("{} days", whole / day) : fmt::format("{}d {}h", whole / day, rest);
}

std::string minutes(std::optional<std::int64_t> count) {
    if (!count)
        return std::string(dash);
    return *count < 60 ? fmt::format("{} min", *count) : fmt::format("{}h {}m", *count / 60, *count % 60);
}

std::string day(Date date) {
    constexpr double farthest = 1e11; // three thousand years from now
    if (!(std::abs(date.seconds) < farthest))
        return std::string(dash);
    const auto seconds = static_cast<std::time_t>(std::floor(date.seconds));
    std::tm local{};
    if (!localtime_r(&seconds, &local))
        return std::string(dash);
    return fmt::format("{} {}, {}", months[static_cast<std::size_t>(local.tm_mon)], local.tm_mday,
                       local.tm_year + 1900);
}

std::string storage(std::uint64_t bytes) {
    const std::uint64_t count = std::min<std::uint64_t>(bytes, std::numeric_limits<std::int64_t>::max());
    if (count == 0)
        return "Zero KB";
    if (count == 1)
        return "1 byte";
    if (count < 1000)
        return fmt::format("{} bytes", count);
    // The unit follows from the rounded number: 999,999 bytes are "1 MB", never "1000 KB".
    const FileUnit* unit = fileUnits.data();
    while (unit != &fileUnits.back() && stepsOf(count, *unit) >= 1000 * unit->steps)
        ++unit;
    return fileSize(stepsOf(count, *unit), *unit);
}

} // namespace ostrivane::Formatters
