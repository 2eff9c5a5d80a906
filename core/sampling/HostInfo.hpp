#pragma once

#include "core/model/CPUSnapshot.hpp"
#include "core/model/Described.hpp"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace ostrivane {

/// How many logical processors of each kind there are. Siblings of one core count each.
struct CoreLayout {
    std::int64_t performance = 0;
    std::int64_t efficiency = 0;
    std::int64_t logical = 0;

    friend bool operator==(const CoreLayout&, const CoreLayout&) = default;
};
BOOST_DESCRIBE_STRUCT(CoreLayout, (), (performance, efficiency, logical))
static_assert(describesEveryMember<CoreLayout>);

/// Kind of each logical core, by its index. A core that is missing has no kind of its own.
using CoreKinds = std::map<std::int64_t, CoreLoad::Kind>;

/// What does not change about a machine while the program runs. Asked once, and kept in the header of a recording.
struct HostInfo {
    std::uint64_t pageSize = 4096;    ///< bytes
    std::uint64_t physicalMemory = 0; ///< bytes
    std::string modelIdentifier;
    std::string cpuBrand = "CPU";
    bool isAppleSilicon = false;
    std::string marketingName = "Mac";
    CoreLayout coreLayout;
    CoreKinds coreKinds;
    double nanosPerTick = 1;     ///< of the processor time counters of processes
    std::uint32_t userID = 0;    ///< whose processes count as the user's own
    std::string home;            ///< the user's folder; empty: none
    bool hidesProcesses = false; ///< the system keeps other users' processes out of sight, or most of what they show

    friend bool operator==(const HostInfo&, const HostInfo&) = default;
};
BOOST_DESCRIBE_STRUCT(HostInfo, (),
                      (pageSize, physicalMemory, modelIdentifier, cpuBrand, isAppleSilicon, marketingName, coreLayout,
                       coreKinds, nanosPerTick, userID, home, hidesProcesses))
static_assert(describesEveryMember<HostInfo>);

/// The name a person knows the machine by. `productName` is the system's own, empty when it has none; without one the
/// family name of `modelIdentifier` ("Macmini9,1" is a "Mac mini"), and else the identifier itself.
std::string marketingName(std::string_view productName, std::string_view modelIdentifier);

} // namespace ostrivane
