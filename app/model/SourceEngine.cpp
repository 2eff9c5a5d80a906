#include "app/model/SourceEngine.hpp"

#include "core/model/Formatters.hpp"
#include "core/sampling/MachineCollectors.hpp"
#include "core/sampling/platform/NativeMachine.hpp"
#include "core/sampling/platform/recorded/Playback.hpp"
#include "core/sampling/platform/recorded/RecordedMachine.hpp"

namespace ostrivane {

SourceEngine::SourceEngine(const boost::asio::any_io_executor& executor, const EngineSource& source,
                           std::function<void()> ended) {
    std::unique_ptr<Machine> machine;
    std::unique_ptr<Clock> clock = nativeClock(executor);
    if (source.replay.empty()) {
        machine = nativeMachine();
    } else {
        playback = std::make_shared<Playback>(source.replay);
        if (playback->problem())
            return;
        machine = recordedMachine(playback);
        clock = recordedClock(playback, std::move(clock), source.speed, std::move(ended));
    }
    const HostInfo host = machine->host().info();
    Formatters::logicalCores = host.coreLayout.logical;
    machineLimits = limitsOf(machine->platform(), host);
    platformWords = &wordsOf(machine->platform());
    sampling = std::make_unique<SamplingEngine>(executor, std::make_unique<MachineCollectors>(std::move(machine)),
                                                std::move(clock));
}

std::optional<std::string> SourceEngine::problem() const {
    return playback ? playback->problem() : std::nullopt;
}

std::optional<std::string> SourceEngine::remark() const {
    if (playback && playback->wasCutOff())
        return "The recording was cut off in the middle of its last line; what is whole was used.";
    return std::nullopt;
}

std::string limitsOf(Platform platform, const HostInfo& host) {
    std::string limits = platform == Platform::Linux ? "In and out: TCP only." : "";
    if (host.hidesProcesses)
        limits += std::string(limits.empty() ? "" : " ") + "The system hides processes of others.";
    return limits;
}

} // namespace ostrivane
