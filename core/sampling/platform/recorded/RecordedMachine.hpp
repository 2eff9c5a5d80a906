#pragma once

#include "core/sampling/platform/Clock.hpp"
#include "core/sampling/platform/Machine.hpp"

#include <functional>
#include <memory>

namespace ostrivane {

class Playback;

/// The machine that answers from a recording.
std::unique_ptr<Machine> recordedMachine(std::shared_ptr<Playback> playback);

/// Its clock: time is the recorded one, and a wait lasts until the next recorded tick, whatever was asked for.
/// @param waiting  the clock that really waits
/// @param speed    how many recorded seconds pass in one; infinity waits not at all
/// @param ended    called, on the caller's thread, when a wait finds no further tick
std::unique_ptr<Clock> recordedClock(std::shared_ptr<Playback> playback, std::unique_ptr<Clock> waiting, double speed,
                                     std::function<void()> ended);

} // namespace ostrivane
