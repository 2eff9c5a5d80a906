#pragma once

#include "core/model/Date.hpp"
#include "core/model/Described.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

/// How many rows of one resolution the file holds.
struct ResolutionCount {
    std::int64_t res = 0; ///< seconds a row
    std::int64_t systemRows = 0;
    std::int64_t appRows = 0;

    friend bool operator==(const ResolutionCount&, const ResolutionCount&) = default;
};
BOOST_DESCRIBE_STRUCT(ResolutionCount, (), (res, systemRows, appRows))
static_assert(describesEveryMember<ResolutionCount>);

/// The state of the history file, and what is wrong with it.
struct HistoryStatus {
    std::string path;
    std::optional<std::string> openError;  ///< why it could not be opened; everything below is empty then
    std::optional<std::string> readError;  ///< why it could not be read to the end; what was read before stands below
    std::optional<std::string> writeError; ///< why the last write failed; absent once one succeeds
    std::optional<std::string> maintenanceError; ///< the same of the last maintenance: the file may grow meanwhile
    std::uint64_t fileSize = 0;                  ///< bytes, its write-ahead log included
    std::optional<Date> earliest;                ///< start of the oldest bucket
    std::optional<Date> latest;                  ///< start of the newest bucket
    std::vector<ResolutionCount> resolutions;    ///< finest first
    std::int64_t apps = 0;                       ///< applications that it has a name of
    std::int64_t alerts = 0;
    std::int64_t sessions = 0;
    std::int64_t storageSizes = 0;
    std::int64_t retentionDays = 0;
    std::int64_t pendingSystem = 0; ///< finished rows that wait in memory for the next write
    std::int64_t pendingApps = 0;

    friend bool operator==(const HistoryStatus&, const HistoryStatus&) = default;
};
BOOST_DESCRIBE_STRUCT(HistoryStatus, (),
                      (path, openError, readError, writeError, maintenanceError, fileSize, earliest, latest,
                       resolutions, apps, alerts, sessions, storageSizes, retentionDays, pendingSystem, pendingApps))
static_assert(describesEveryMember<HistoryStatus>);

} // namespace ostrivane
