#include "core/sampling/platform/CPUList.hpp"
#include "core/sampling/platform/ProcLoadavg.hpp"
#include "core/sampling/platform/ProcStat.hpp"
#include "core/sampling/platform/ProcUptime.hpp"
#include "fuzz/Require.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>

using namespace ostrivane;

/// /proc/stat: never more cores than a machine can have, nor fewer than were seen; and the texts of a few numbers.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    constexpr std::size_t any = std::numeric_limits<std::size_t>::max();
    for (const ProcStat::Cores& cores : {ProcStat::Cores{0, any}, ProcStat::Cores{3, 16}}) {
        const auto ticks = ProcStat::parse(text, cores);
        if (!ticks)
            continue;
        const std::size_t most = std::min(cores.limit, static_cast<std::size_t>(CPUList::limit));
        require(ticks->perCore.size() <= most);
        require(ticks->perCore.size() >= std::min(cores.seen, most));
        require(!ticks->wraps32);
    }
    for (const double average : ProcLoadavg::parse(text).value_or(LoadAverage{}))
        require(average >= 0 && average <= std::numeric_limits<double>::max());
    require(ProcUptime::parse(text).value_or(0) >= 0);
    return 0;
}
