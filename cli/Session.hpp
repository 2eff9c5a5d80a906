#pragma once

#include "app/model/SourceEngine.hpp"

#include <functional>
#include <string>

namespace CLI {
class App;
class Validator;
} // namespace CLI

namespace ostrivane::cli {

/// Where a command's figures come from: this machine, or a recording.
struct Source {
    std::string replay{}; ///< file of the recording; empty for this machine
    double speed = 1;     ///< of the playback; infinity does not wait
    double interval = 1;  ///< seconds between two ticks on this machine
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

/// The engine behind a command, not yet started, with a demand that has every reading made.
class Session : public SourceEngine {
public:
    /// @param executor  runs the engine
    /// @param ended     called on `executor` when a recording has no further tick
    Session(const boost::asio::any_io_executor& executor, const Source& source, std::function<void()> ended);
};

/// What a terminal command wants of the engine: everything, every `interval` seconds.
void demandEverything(SamplingEngine& engine, double interval);

} // namespace ostrivane::cli
