#pragma once

#include "core/model/PlatformWords.hpp"
#include "core/sampling/SamplingEngine.hpp"
#include "core/sampling/platform/Platform.hpp"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace ostrivane {

class Playback;

/// Where figures come from: this machine, or a recording.
struct EngineSource {
    std::string replay; ///< file of the recording; empty for this machine
    double speed = 1;   ///< of the playback; infinity does not wait
};

/// An engine over this machine or over a recording, not yet started.
class SourceEngine {
public:
    /// @param executor  runs the engine
    /// @param ended     called on `executor` when a recording has no further tick
    SourceEngine(const boost::asio::any_io_executor& executor, const EngineSource& source, std::function<void()> ended);

    /// What is wrong with the recording; known from the start or when it has ended. Without one there is an engine.
    std::optional<std::string> problem() const;

    /// What a person should know about the recording beside the figures; absent when there is nothing to tell.
    std::optional<std::string> remark() const;

    /// What the figures of this machine leave out; empty when there is nothing to tell.
    const std::string& limits() const { return machineLimits; }

    /// Which texts are true of the machine.
    const PlatformWords& words() const { return *platformWords; }

    SamplingEngine& engine() { return *sampling; }

    /// Hands the engine over to who owns it from now on; there is none here then.
    std::unique_ptr<SamplingEngine> takeEngine() { return std::move(sampling); }

private:
    std::shared_ptr<Playback> playback; ///< null on this machine
    std::string machineLimits;
    const PlatformWords* platformWords = &PlatformWords::Linux;
    std::unique_ptr<SamplingEngine> sampling;
};

/// "In and out: TCP only.", of a machine with that `platform` and `host`.
std::string limitsOf(Platform platform, const HostInfo& host);

} // namespace ostrivane
