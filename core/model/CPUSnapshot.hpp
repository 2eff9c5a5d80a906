#pragma once

#include "core/model/Described.hpp"
#include "core/model/RawValue.hpp"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace ostrivane {

/// Load of one logical core over the tick. Fractions of this core, 0 to 1.
struct CoreLoad {
    enum class Kind { performance, efficiency, unknown };

    std::int64_t id = 0; ///< logical core index, also its identity
    Kind kind = Kind::unknown;
    double usage = 0; ///< user plus system
    double user = 0;  ///< niced work included
    double system = 0;

    friend bool operator==(const CoreLoad&, const CoreLoad&) = default;
};
BOOST_DESCRIBE_STRUCT(CoreLoad, (), (id, kind, usage, user, system))
static_assert(describesEveryMember<CoreLoad>);

constexpr std::array<RawText<CoreLoad::Kind>, 3> rawTexts(EnumTag<CoreLoad::Kind>) {
    return {{{CoreLoad::Kind::performance, "performance"},
             {CoreLoad::Kind::efficiency, "efficiency"},
             {CoreLoad::Kind::unknown, "unknown"}}};
}

/// Processor load over one tick. Fractions of all cores together, 0 to 1.
struct CPUSnapshot {
    double usage = 0; ///< `user` plus `system`
    double user = 0;
    double system = 0;
    double idle = 1;
    std::vector<CoreLoad> cores; ///< in core index order
    std::int64_t performanceCoreCount = 0;
    std::int64_t efficiencyCoreCount = 0;
    std::int64_t logicalCoreCount = 0;
    std::array<double, 3> loadAverage{}; ///< over 1, 5 and 15 minutes
    double uptime = 0;                   ///< seconds since boot
    std::string brand;                   ///< the processor's name

    static const CPUSnapshot empty;
    friend bool operator==(const CPUSnapshot&, const CPUSnapshot&) = default;
};
BOOST_DESCRIBE_STRUCT(CPUSnapshot, (),
                      (usage, user, system, idle, cores, performanceCoreCount, efficiencyCoreCount, logicalCoreCount,
                       loadAverage, uptime, brand))
static_assert(describesEveryMember<CPUSnapshot>);
inline const CPUSnapshot CPUSnapshot::empty{};

} // namespace ostrivane
