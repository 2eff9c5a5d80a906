#pragma once

#include "core/model/Date.hpp"
#include "core/model/Described.hpp"

#include <cstdint>
#include <string>

namespace ostrivane {

/// One application over one bucket of time: one row of `app_samples`, fields in the order of its columns.
struct AppRow {
    std::int64_t bucket = 0; ///< its start, whole seconds since 1970
    std::int64_t res = 0;    ///< its length in seconds: 60, 900 or 3600
    std::string appKey;
    double cpu = 0; ///< mean, cores
    double cpuMax = 0;
    double mem = 0; ///< mean, bytes
    double memMax = 0;
    double energyJ = 0;  ///< joules within the bucket
    double diskRead = 0; ///< bytes within the bucket
    double diskWrite = 0;
    double netIn = 0;
    double netOut = 0;
    double gpu = 0;           ///< mean
    std::int64_t samples = 0; ///< snapshots in which the application was there

    Date date() const { return Date{static_cast<double>(bucket)}; }

    friend bool operator==(const AppRow&, const AppRow&) = default;
};
BOOST_DESCRIBE_STRUCT(AppRow, (),
                      (bucket, res, appKey, cpu, cpuMax, mem, memMax, energyJ, diskRead, diskWrite, netIn, netOut, gpu,
                       samples))
static_assert(describesEveryMember<AppRow>);

} // namespace ostrivane
