#pragma once

#include "core/model/PlatformWords.hpp"
#include "core/sampling/SamplingEngine.hpp"
#include "core/sampling/platform/Platform.hpp"

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace CLI {
class App;
class Validator;
} // namespace CLI

namespace ostrivane {
class Playback;
}

namespace ostrivane::cli {

/// Where a command's figures come from: this machine, or a recording.
struct Source {
    std::string replay;  ///< file of the recording; empty for this machine
    double speed = 1;    ///< of the playback; infinity does not wait
    double interval = 1; ///< seconds between two ticks on this machine
};

/// Accepts a number between two bounds, and nothing else ("nan" is between any two for the library's own check).
CLI::Validator within(double least, double most);

/// Accepts a number that is finite.
CLI::Validator finiteNumber();

/// Accepts a whole number above 0 that fits.
CLI::Validator positiveNumber();

/// Adds "--replay" to a command; "--interval" then makes no sense, so it goes first.
void addReplayOption(CLI::App& command, Source& source);

/// Adds "--interval" to a command, of `most` seconds at the most.
void addIntervalOption(CLI::App& command, Source& source, double most = 3600);

/// An engine over this machine or over a recording, not yet started, with a demand that has every reading made.
class Session {
public:
    /// @param executor  runs the engine
    /// @param ended     called on `executor` when a recording has no further tick
    Session(const boost::asio::any_io_executor& executor, const Source& source, std::function<void()> ended);

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

/// "In and out count TCP only.", of a machine with that `platform` and `host`.
std::string limitsOf(Platform platform, const HostInfo& host);

/// The pages whose readings a terminal command wants. Without "cpu": that page asks for a tick a second, whatever the
/// interval.
inline constexpr std::array<std::string_view, 7> demandedPages{"gpu",     "projects", "ports",  "ai",
                                                               "network", "docker",   "devices"};

/// What a terminal command wants of the engine: everything, every `interval` seconds.
void demandEverything(SamplingEngine& engine, double interval);

} // namespace ostrivane::cli
