#pragma once

#include "core/model/Date.hpp"
#include "core/model/Described.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

/// `SessionSummary::Stat`. Out here because a class that is not complete yet cannot hold optionals of its own parts.
struct SessionStat {
    double average = 0;
    double peak = 0;

    friend bool operator==(const SessionStat&, const SessionStat&) = default;
};
BOOST_DESCRIBE_STRUCT(SessionStat, (), (average, peak))
static_assert(describesEveryMember<SessionStat>);

/// What a named stretch of work cost. Bytes, seconds, fractions and watts as in the snapshots.
struct SessionSummary {
    using Stat = SessionStat;

    struct AppLine {
        std::string key;
        std::string name;
        double avgCPU = 0; ///< cores, over the whole session and not only while it ran
        double cpuSeconds = 0;
        double peakMemory = 0;
        double memoryChange = 0; ///< from the first reading to the last; negative when it shrank
        double energyJ = 0;
        double diskWrite = 0;
        double network = 0;         ///< in and out
        double presentFraction = 0; ///< of the snapshots

        friend bool operator==(const AppLine&, const AppLine&) = default;
    };

    struct ProcessLine {
        std::int32_t pid = 0;
        std::string name;
        std::string app; ///< the name of its application
        double cpuSeconds = 0;
        double peakMemory = 0;

        friend bool operator==(const ProcessLine&, const ProcessLine&) = default;
    };

    std::string name;
    Date start;
    Date end;
    std::int64_t samples = 0;
    Stat cpu;
    Stat memoryUsed;
    std::string memoryPressurePeak; ///< the word for the highest level
    double swapPeak = 0;
    std::optional<Stat> gpu;
    std::optional<Stat> cpuTemperature;
    std::optional<Stat> systemPower;
    double diskRead = 0;
    double diskWrite = 0;
    double netIn = 0;
    double netOut = 0;
    std::optional<std::int64_t> batteryStart; ///< percent
    std::optional<std::int64_t> batteryEnd;   ///< percent
    std::vector<AppLine> apps;                ///< at most 25, the most processor time first
    std::vector<ProcessLine> processes;       ///< at most 15, the most processor time first
    std::vector<std::string> launchedApps;    ///< names; what came and went in between is in neither list
    std::vector<std::string> quitApps;        ///< names

    friend bool operator==(const SessionSummary&, const SessionSummary&) = default;
};
BOOST_DESCRIBE_STRUCT(SessionSummary::AppLine, (),
                      (key, name, avgCPU, cpuSeconds, peakMemory, memoryChange, energyJ, diskWrite, network,
                       presentFraction))
static_assert(describesEveryMember<SessionSummary::AppLine>);
BOOST_DESCRIBE_STRUCT(SessionSummary::ProcessLine, (), (pid, name, app, cpuSeconds, peakMemory))
static_assert(describesEveryMember<SessionSummary::ProcessLine>);
BOOST_DESCRIBE_STRUCT(SessionSummary, (),
                      (name, start, end, samples, cpu, memoryUsed, memoryPressurePeak, swapPeak, gpu, cpuTemperature,
                       systemPower, diskRead, diskWrite, netIn, netOut, batteryStart, batteryEnd, apps, processes,
                       launchedApps, quitApps))
static_assert(describesEveryMember<SessionSummary>);

} // namespace ostrivane
