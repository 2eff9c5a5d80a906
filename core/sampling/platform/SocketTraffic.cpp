#include "core/sampling/platform/SocketTraffic.hpp"

#include "core/model/Saturating.hpp"

namespace ostrivane {

const PidMap<TrafficTotals>& SocketTraffic::update(const std::vector<NetlinkDiag::Socket>& sockets,
                                                   const SocketOwnership& ownership) {
    ++round;
    takeProcesses(ownership.processes);
    for (const NetlinkDiag::Socket& socket : sockets) {
        if (!socket.acked || !socket.received)
            continue;
        const TrafficTotals now{.bytesIn = *socket.received, .bytesOut = *socket.acked};
        const auto [entry, isNew] = seen.try_emplace(socket.cookie);
        entry->second.round = round;
        TrafficTotals& counted = entry->second.counted;
        if (round == 1) {
            counted = now;
            continue;
        }
        if (ownership.sought.contains(socket.inode))
            continue;
        if (const auto place = ownership.places.find(socket.inode); place != ownership.places.end()) {
            TrafficTotals& total = totals[place->second.pid];
            total.bytesIn = saturatingSum(total.bytesIn, flooredDifference(now.bytesIn, counted.bytesIn));
            total.bytesOut = saturatingSum(total.bytesOut, flooredDifference(now.bytesOut, counted.bytesOut));
        }
        counted = now;
    }
    // One that is missing once is kept: the kernel walks its tables piece by piece while they change and may pass over
    // a socket, which would then come back as a new one with all it ever moved.
    boost::unordered::erase_if(seen, [this](const auto& entry) { return entry.second.round + 1 < round; });
    return totals;
}

void SocketTraffic::takeProcesses(const PidMap<std::uint64_t>& processes) {
    boost::unordered::erase_if(totals, [&](const auto& entry) {
        const auto process = processes.find(entry.first);
        return process == processes.end() || process->second != starts[entry.first];
    });
    for (const auto& [pid, start] : processes)
        totals.try_emplace(pid);
    starts = processes;
}

} // namespace ostrivane
