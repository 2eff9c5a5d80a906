#include "core/model/JSON.hpp"
#include "core/sampling/CPUCollector.hpp"
#include "core/sampling/platform/recorded/Playback.hpp"
#include "core/sampling/platform/recorded/RecordedMachine.hpp"
#include "fuzz/Require.hpp"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <sstream>
#include <string>

using namespace ostrivane;

/// A recording is played to its end or to a problem, and what can be read of it is written and read again unchanged.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const auto playback = std::make_shared<Playback>("input", std::make_unique<std::istringstream>(text));
    if (playback->problem())
        return 0;
    const HostInfo host = playback->header().host;
    const auto again = JSON::parse(JSON::text(host));
    require(again && JSON::read<HostInfo>(*again) == host);
    const auto machine = recordedMachine(playback);
    std::optional<CPUTicks> before;
    for (std::size_t tick = 0; playback->hasNext() && tick < 1000; ++tick) {
        require(playback->secondsToNext() >= 0);
        playback->advance();
        playback->clock();
        machine->host().uptime();
        machine->processor().loadAverage();
        machine->memory().reading();
        if (const auto ticks = machine->processor().ticks()) {
            const CPUSnapshot cpu = CPUCollector::compute(before, *ticks, host.coreLayout, host.coreKinds);
            require(cpu.usage >= 0 && cpu.usage <= 1.000001 && cpu.cores.size() == ticks->perCore.size());
            before = ticks;
        }
    }
    return 0;
}
