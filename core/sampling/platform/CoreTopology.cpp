#include "core/sampling/platform/CoreTopology.hpp"

#include <algorithm>

namespace ostrivane {

namespace {

using Kind = CoreLoad::Kind;

void assign(CoreKinds& kinds, const std::vector<std::int64_t>& cores, Kind kind) {
    for (const std::int64_t core : cores)
        kinds[core] = kind;
}

/// A core of up to three quarters of the highest capacity is an efficient one: "favoured" and prime cores differ by
/// less from their neighbours. Cores all of one class are no kinds.
CoreKinds byCapacity(const CPUInfo::Capacities& capacities) {
    std::uint64_t highest = 0;
    for (const auto& [core, capacity] : capacities)
        highest = std::max(highest, capacity);
    const std::uint64_t frugal = highest / 4 * 3 + highest % 4 * 3 / 4;
    CoreKinds kinds;
    bool differ = false;
    for (const auto& [core, capacity] : capacities) {
        kinds[core] = capacity <= frugal ? Kind::efficiency : Kind::performance;
        differ |= capacity <= frugal;
    }
    return differ && highest > 0 ? kinds : CoreKinds();
}

} // namespace

CoreKinds CoreTopology::kinds() const {
    CoreKinds kinds;
    assign(kinds, possible, Kind::unknown);
    assign(kinds, online, Kind::unknown);
    if (!fast.empty() && !frugal.empty()) {
        assign(kinds, fast, Kind::performance);
        assign(kinds, frugal, Kind::efficiency);
        return kinds;
    }
    for (const auto& [core, kind] : byCapacity(capacities))
        kinds[core] = kind;
    return kinds;
}

CoreLayout CoreTopology::layout(std::int64_t logical) const {
    CoreLayout layout{.performance = 0, .efficiency = 0, .logical = logical};
    const CoreKinds known = kinds();
    for (const std::int64_t core : online) {
        const auto found = known.find(core);
        if (found == known.end())
            continue;
        layout.performance += found->second == Kind::performance;
        layout.efficiency += found->second == Kind::efficiency;
    }
    if (layout.performance == 0 && layout.efficiency == 0)
        layout.performance = logical;
    return layout;
}

} // namespace ostrivane
