#pragma once

#include "core/model/Described.hpp"
#include "core/model/PidMap.hpp"

#include <cstdint>
#include <optional>

namespace ostrivane {

/// Bytes that a process received and sent, counted from a moment that differs by process; they only grow while it
/// lives.
struct TrafficTotals {
    std::uint64_t bytesIn = 0;
    std::uint64_t bytesOut = 0;

    friend bool operator==(const TrafficTotals&, const TrafficTotals&) = default;
};
BOOST_DESCRIBE_STRUCT(TrafficTotals, (), (bytesIn, bytesOut))
static_assert(describesEveryMember<TrafficTotals>);

/// What a machine can be asked about its sockets. Nothing here throws.
class Sockets {
public:
    virtual ~Sockets() = default;

    /// Traffic by process. Source: Linux the kernel's byte counts of each TCP socket, for the user's own processes;
    /// macOS "nettop", for all. Absent when the source gave nothing; a process without an entry is not known to it.
    virtual std::optional<PidMap<TrafficTotals>> traffic() = 0;
};

} // namespace ostrivane
