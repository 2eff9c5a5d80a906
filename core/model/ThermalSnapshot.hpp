#pragma once

#include "core/model/Described.hpp"
#include "core/model/RawValue.hpp"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ostrivane {

/// How far the system slows down because of heat. Ordered by gravity.
enum class ThermalLevel { nominal = 0, fair = 1, serious = 2, critical = 3 };
constexpr ThermalLevel lastCase(EnumTag<ThermalLevel>) {
    return ThermalLevel::critical;
}

/// The word a person reads.
std::string_view label(ThermalLevel level);

struct FanReading {
    std::int64_t id = 0;
    double rpm = 0;
    std::optional<double> minRPM;
    std::optional<double> maxRPM;

    /// Where `rpm` stands between the bounds, 0 to 1; absent without two bounds that leave room.
    std::optional<double> fraction() const;

    friend bool operator==(const FanReading&, const FanReading&) = default;
};
BOOST_DESCRIBE_STRUCT(FanReading, (), (id, rpm, minRPM, maxRPM))
static_assert(describesEveryMember<FanReading>);

struct SensorReading {
    enum class Group { cpuPerformance, cpuEfficiency, cpu, gpu, memory, battery, ssd, other };

    std::string key; ///< the sensor's short key, also its identity
    Group group = Group::other;
    double celsius = 0;

    friend bool operator==(const SensorReading&, const SensorReading&) = default;
};
BOOST_DESCRIBE_STRUCT(SensorReading, (), (key, group, celsius))
static_assert(describesEveryMember<SensorReading>);

constexpr std::array<RawText<SensorReading::Group>, 8> rawTexts(EnumTag<SensorReading::Group>) {
    using Group = SensorReading::Group;
    return {{{Group::cpuPerformance, "CPU (P-cores)"},
             {Group::cpuEfficiency, "CPU (E-cores)"},
             {Group::cpu, "CPU"},
             {Group::gpu, "GPU"},
             {Group::memory, "Memory"},
             {Group::battery, "Battery"},
             {Group::ssd, "SSD"},
             {Group::other, "Other"}}};
}

/// Heat, fans and the power that the machine draws. Temperatures in degrees Celsius.
struct ThermalSnapshot {
    ThermalLevel state = ThermalLevel::nominal;
    std::optional<double> cpuTemperature;
    std::optional<double> cpuHottest;
    std::optional<double> gpuTemperature;
    std::optional<double> hottest;
    std::vector<FanReading> fans;
    bool hasFans = false;
    std::optional<double> systemPowerW;
    std::vector<SensorReading> sensors;

    static const ThermalSnapshot empty;
    friend bool operator==(const ThermalSnapshot&, const ThermalSnapshot&) = default;
};
BOOST_DESCRIBE_STRUCT(ThermalSnapshot, (),
                      (state, cpuTemperature, cpuHottest, gpuTemperature, hottest, fans, hasFans, systemPowerW,
                       sensors))
static_assert(describesEveryMember<ThermalSnapshot>);
inline const ThermalSnapshot ThermalSnapshot::empty{};

} // namespace ostrivane
