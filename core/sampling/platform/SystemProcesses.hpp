#pragma once

#include "core/model/Described.hpp"
#include "core/model/PidMap.hpp"

#include <cstdint>
#include <optional>

namespace ostrivane {

/// What any user may know of any process.
struct SystemProcessTotals {
    std::uint64_t centis = 0;   ///< processor time so far, in hundredths of a second
    std::uint64_t rssKB = 0;    ///< resident memory, in units of 1,024 bytes
    std::uint64_t rawStart = 0; ///< as in `ProcessInfo`

    friend bool operator==(const SystemProcessTotals&, const SystemProcessTotals&) = default;
};
BOOST_DESCRIBE_STRUCT(SystemProcessTotals, (), (centis, rssKB, rawStart))
static_assert(describesEveryMember<SystemProcessTotals>);

/// What a machine can be asked about processes that may not be read in detail. Nothing here throws.
class SystemProcesses {
public:
    virtual ~SystemProcesses() = default;

    /// All processes, one's own too. Source: Linux /proc/PID/stat; macOS "ps". Absent when the source gave nothing.
    virtual std::optional<PidMap<SystemProcessTotals>> totals() = 0;
};

} // namespace ostrivane
