#include "core/sampling/CPUCollector.hpp"

#include <algorithm>
#include <cstddef>

namespace ostrivane::CPUCollector {

namespace {

/// Ticks spent in one interval.
struct Spent {
    double user = 0; ///< niced work included
    double system = 0;
    double idle = 0;

    double total() const { return user + system + idle; }
};

std::uint64_t increase(std::uint64_t now, std::uint64_t before, bool wraps32) {
    if (now >= before)
        return now - before;
    if (!wraps32) // idle and iowait are settled late on tickless cores and may step back a little
        return 0;
    constexpr std::uint64_t largest = 4'294'967'295;
    return largest - std::min(before, largest) + now;
}

bool isOff(const CPUTicks::Core& core) {
    return core == CPUTicks::Core{};
}

Spent spent(const CPUTicks::Core& now, const CPUTicks::Core* before, bool wraps32) {
    // Without this a core that comes back would show its whole life as one tick.
    if (!wraps32 && before && (isOff(*before) || isOff(now)))
        return {};
    const CPUTicks::Core baseline = before ? *before : CPUTicks::Core{};
    const auto delta = [&](CPUTicks::Counter counter) {
        return static_cast<double>(increase(now[counter], baseline[counter], wraps32));
    };
    return {delta(CPUTicks::user) + delta(CPUTicks::nice), delta(CPUTicks::system), delta(CPUTicks::idle)};
}

/// The counters before; null where counting starts from zero. Where a core that is off has no counters (64 bits), one
/// that was not seen before was off.
const CPUTicks::Core* baseline(const std::optional<CPUTicks>& previous, std::size_t index, bool wraps32) {
    static constexpr CPUTicks::Core off{};
    if (!previous)
        return nullptr;
    if (index < previous->perCore.size())
        return &previous->perCore[index];
    return wraps32 ? nullptr : &off;
}

CoreLoad::Kind kindOf(std::int64_t core, const CoreLayout& layout, const CoreKinds& kinds) {
    if (const auto known = kinds.find(core); known != kinds.end())
        return known->second;
    if (layout.efficiency == 0)
        return CoreLoad::Kind::unknown;
    return core < layout.efficiency ? CoreLoad::Kind::efficiency : CoreLoad::Kind::performance;
}

} // namespace

CPUSnapshot compute(const std::optional<CPUTicks>& previous, const CPUTicks& current, const CoreLayout& layout,
                    const CoreKinds& kinds) {
    CPUSnapshot snapshot;
    snapshot.performanceCoreCount = layout.performance;
    snapshot.efficiencyCoreCount = layout.efficiency;
    snapshot.logicalCoreCount = layout.logical;
    snapshot.cores.reserve(current.perCore.size());
    Spent all;
    for (std::size_t index = 0; index < current.perCore.size(); ++index) {
        const Spent one = spent(current.perCore[index], baseline(previous, index, current.wraps32), current.wraps32);
        CoreLoad load;
        load.id = static_cast<std::int64_t>(index);
        load.kind = kindOf(load.id, layout, kinds);
        if (const double total = one.total(); total > 0) {
            load.usage = (one.user + one.system) / total;
            load.user = one.user / total;
            load.system = one.system / total;
        }
        snapshot.cores.push_back(load);
        all = {all.user + one.user, all.system + one.system, all.idle + one.idle};
    }
    if (const double total = all.total(); total > 0) {
        snapshot.usage = (all.user + all.system) / total;
        snapshot.user = all.user / total;
        snapshot.system = all.system / total;
        snapshot.idle = all.idle / total;
    }
    return snapshot;
}

} // namespace ostrivane::CPUCollector
