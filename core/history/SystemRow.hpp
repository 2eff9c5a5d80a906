#pragma once

#include "core/model/Date.hpp"
#include "core/model/Described.hpp"

#include <cstdint>
#include <optional>

namespace ostrivane {

/// The machine over one bucket of time: one row of `system_samples`, fields in the order of its columns. Loads are
/// fractions of the machine as in a snapshot, amounts bytes, traffic the bytes moved within the bucket.
struct SystemRow {
    std::int64_t bucket = 0; ///< its start, whole seconds since 1970
    std::int64_t res = 0;    ///< its length in seconds: 60, 900 or 3600
    double cpu = 0;          ///< mean of the machine's load, 0 to 1
    double cpuMax = 0;
    double cpuUser = 0;
    double cpuSystem = 0;
    double memUsed = 0; ///< mean, bytes
    double memUsedMax = 0;
    double memApp = 0;
    double memWired = 0;
    double memCompressed = 0;
    double memCached = 0;
    double swapUsed = 0;
    double pressure = 0;         ///< percent of memory that is not available, 0 to 100
    double pressureLevelMax = 1; ///< 1, 2 or 4: normal, warning, critical
    std::optional<double> gpu;   ///< mean, 0 to 1
    std::optional<double> gpuMax;
    double diskRead = 0; ///< bytes within the bucket
    double diskWrite = 0;
    double netIn = 0;
    double netOut = 0;
    std::optional<double> batteryPct; ///< 0 to 100
    std::optional<double> powerW;     ///< watts
    std::optional<double> cpuTemp;    ///< degrees Celsius
    std::optional<double> cpuTempMax;
    std::optional<double> gpuTemp;
    std::optional<double> fanRPM; ///< mean over the fans
    std::int64_t samples = 0;     ///< snapshots behind the row

    Date date() const { return Date{static_cast<double>(bucket)}; }

    friend bool operator==(const SystemRow&, const SystemRow&) = default;
};
BOOST_DESCRIBE_STRUCT(SystemRow, (),
                      (bucket, res, cpu, cpuMax, cpuUser, cpuSystem, memUsed, memUsedMax, memApp, memWired,
                       memCompressed, memCached, swapUsed, pressure, pressureLevelMax, gpu, gpuMax, diskRead, diskWrite,
                       netIn, netOut, batteryPct, powerW, cpuTemp, cpuTempMax, gpuTemp, fanRPM, samples))
static_assert(describesEveryMember<SystemRow>);

} // namespace ostrivane
