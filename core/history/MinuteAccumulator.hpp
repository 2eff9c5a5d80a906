#pragma once

#include "core/history/AppRow.hpp"
#include "core/history/SystemRow.hpp"
#include "core/model/SystemSnapshot.hpp"

#include <boost/unordered/unordered_flat_map.hpp>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

/// Rows of one finished bucket.
struct FinishedBucket {
    SystemRow system;
    std::vector<AppRow> apps; ///< at most 60, those that weigh most first
};

/// Folds snapshots into one row of the machine and one of each application a bucket of time. Holds the sums of one
/// bucket. In the steady state, with the same applications from bucket to bucket, `add` allocates only for a bucket
/// that it closes.
class MinuteAccumulator {
public:
    struct AppName {
        std::string name;
        std::optional<std::string> bundleID;
    };

    /// @param secondsABucket  at least 1
    explicit MinuteAccumulator(std::int64_t secondsABucket);

    /// Answers the bucket that this snapshot closed, if any: every snapshot of another bucket closes the open one, also
    /// when the clock stepped back. The timestamp is finite; another one is a programming fault, and traps.
    std::optional<FinishedBucket> add(const SystemSnapshot& snapshot);

    /// Closes the open bucket. Absent when none is open or nothing was counted in it.
    std::optional<FinishedBucket> finish();

    /// The first name seen of an application; null when it was never seen. Kept for the life of the accumulator.
    const AppName* appName(const std::string& key) const;

    /// Of how many applications sums are held: of those in the open bucket and in the one before.
    std::size_t heldApps() const { return apps.size(); }

private:
    /// Sums where the finished row has means; `bucket`, `res` and `appKey` are filled in when it is handed out.
    using AppSums = AppRow;

    void open(std::int64_t start);
    void count(const SystemSnapshot& snapshot, double weight);
    void count(const ApplicationSnapshot& app, double weight);
    SystemRow finishedSystem() const;
    std::vector<AppRow> finishedApps() const;

    std::int64_t resolution;
    std::optional<std::int64_t> bucket; ///< start of the open one, whole seconds since 1970
    SystemRow sys;                      ///< sums where the finished row has means
    std::int64_t gpuSamples = 0;
    std::int64_t battSamples = 0;
    std::int64_t powerSamples = 0;
    std::int64_t tempSamples = 0;
    std::int64_t gpuTempSamples = 0;
    std::int64_t fanSamples = 0;
    boost::unordered_flat_map<std::string, AppSums> apps; ///< 0 samples: not in the open bucket so far
    boost::unordered_flat_map<std::string, AppName> appNames;
};

} // namespace ostrivane
