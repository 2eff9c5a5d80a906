#pragma once

#include "core/model/PidMap.hpp"
#include "core/sampling/platform/DRMUsage.hpp"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ostrivane {

/// Adds up what the clients of graphics chips used, from one reading of their counters to the next.
class DRMLedger {
public:
    /// A client as found in one process. The usage need only live during `update`.
    struct Held {
        std::int32_t pid = 0;
        const DRMUsage* usage = nullptr;
    };

    /// How busy the clients kept a chip since the reading before, as fractions. Clients that cannot be read are missing
    /// from it.
    struct Load {
        double busiest = 0;             ///< of its engines
        std::optional<double> renderer; ///< the engine that draws, where one is known by its name
    };

    /// The next reading, at `now` in seconds. A client that several processes hold counts for the lowest of them. A
    /// counter that dips stands at its highest value.
    void update(std::vector<Held> held, double now);

    /// Nanoseconds by process, for those of the last reading. They begin with all that its clients had used when the
    /// process was first seen (nothing where only cycles are counted) and never fall while it holds one: a client that
    /// closes leaves its time behind, and one that appears later, or comes from another process, brings none along.
    const PidMap<std::uint64_t>& processTimes() const { return times; }

    /// Absent when no client of `device` (`DRMUsage::device`) was in both of the last two readings.
    std::optional<Load> load(const std::string& device) const;

private:
    struct Engine {
        std::string name;
        std::uint64_t counter = 0; ///< nanoseconds or cycles, as the driver counts, the highest seen
        std::uint64_t total = 0;   ///< the cycles that would have been possible
        bool inCycles = false;
    };
    struct Client {
        double at = 0; ///< seconds; of its last reading
        std::vector<Engine> engines;
        std::uint64_t nanos = 0;
    };
    using Key = std::pair<std::string, std::uint64_t>; ///< a client's number is its own on one chip only
    using Shares = std::map<std::string, double, std::less<>>;

    static Client firstSeen(const DRMUsage& usage, double now);
    static std::uint64_t advance(Client& client, const DRMUsage& usage, double now, Shares& shares);

    std::map<Key, Client> clients;
    std::map<std::string, Shares, std::less<>> loads; ///< by chip, then engine
    PidMap<std::uint64_t> times;
};

} // namespace ostrivane
