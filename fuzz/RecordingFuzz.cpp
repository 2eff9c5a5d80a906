#include "core/model/JSON.hpp"
#include "core/sampling/MachineCollectors.hpp"
#include "core/sampling/TickRunner.hpp"
#include "core/sampling/platform/recorded/Playback.hpp"
#include "core/sampling/platform/recorded/RecordedMachine.hpp"
#include "fuzz/Require.hpp"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <sstream>
#include <string>

using namespace ostrivane;

/// A recording is played to its end or to a problem, and what its header tells is written and read again unchanged.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const auto playback = std::make_shared<Playback>("input", std::make_unique<std::istringstream>(text));
    if (playback->problem())
        return 0;
    const HostInfo host = playback->header().host;
    const auto again = JSON::parse(JSON::text(host));
    require(again && JSON::read<HostInfo>(*again) == host);
    MachineCollectors collectors(recordedMachine(playback));
    TickRunner runner(collectors);
    const auto clock = recordedClock(playback, nullptr, 1, {}); // nobody waits
    const SamplingDemand demand{.windowVisible = true};
    for (std::size_t tick = 0; playback->hasNext() && tick < 1000; ++tick) {
        require(playback->secondsToNext() >= 0);
        runner.begin({demand, SamplingSettings{}, RunningApps{}, *clock});
        const SharedSnapshot snapshot = runner.finish(std::nullopt);
        require(snapshot->cpu.usage >= 0 && snapshot->cpu.usage <= 1.000001);
        require(snapshot->processCount == static_cast<std::int64_t>(snapshot->processes.size()));
        std::size_t owned = 0;
        for (const ApplicationSnapshot& application : snapshot->applications)
            owned += application.pids.size();
        require(owned == snapshot->processes.size());
    }
    return 0;
}
