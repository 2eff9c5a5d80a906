#pragma once

#include "core/sampling/platform/Clock.hpp"
#include "core/sampling/platform/Machine.hpp"

#include <memory>

namespace ostrivane {

class TickNotes;

/// A machine and a clock that pass every question on to another and keep the answers for a recording.
std::unique_ptr<Machine> recordingMachine(std::unique_ptr<Machine> asked, std::shared_ptr<TickNotes> notes);
std::unique_ptr<Clock> recordingClock(std::unique_ptr<Clock> asked, std::shared_ptr<TickNotes> notes);

} // namespace ostrivane
