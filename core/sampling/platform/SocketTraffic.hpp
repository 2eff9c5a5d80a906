#pragma once

#include "core/model/PidMap.hpp"
#include "core/sampling/platform/NetlinkDiag.hpp"
#include "core/sampling/platform/SocketOwners.hpp"
#include "core/sampling/platform/Sockets.hpp"

#include <boost/unordered/unordered_flat_map.hpp>

#include <cstdint>
#include <vector>

namespace ostrivane {

/// Traffic by process from the byte counts of single sockets. The totals only grow: adding up the sockets of a moment
/// would make them fall whenever one is closed.
class SocketTraffic {
public:
    /// The totals after the sockets of this moment: every process whose descriptors can be read, with what its sockets
    /// moved since the first call. A socket that was not there at the first call counts from its beginning. What a
    /// socket moved while its holder was still sought counts once it is found, and never when it has none.
    const PidMap<TrafficTotals>& update(const std::vector<NetlinkDiag::Socket>& sockets,
                                        const SocketOwnership& ownership);

private:
    struct Seen {
        TrafficTotals counted; ///< what totals hold already, or never will
        std::uint64_t round = 0;
    };

    void takeProcesses(const PidMap<std::uint64_t>& processes);

    std::uint64_t round = 0;
    boost::unordered_flat_map<std::uint64_t, Seen> seen; ///< by cookie
    PidMap<TrafficTotals> totals;
    PidMap<std::uint64_t> starts; ///< of the processes in `totals`
};

} // namespace ostrivane
