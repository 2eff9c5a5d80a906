#pragma once

#include "core/model/Date.hpp"

#include <functional>

namespace ostrivane {

/// The wall clock and the wait between two ticks, as the sampling engine sees them. Called from one thread at a time.
class Clock {
public:
    virtual ~Clock() = default;

    /// The wall clock. It may step at any time, in either direction.
    virtual Date now() = 0;

    /// A tick begins: its time. A recording moves on to its next tick here.
    virtual Date beginTick() { return now(); }

    /// Calls `wake` once after `seconds`, from any thread; the time during which the machine sleeps counts. One wait is
    /// under way at a time: a new one takes the place of the one before, whose `wake` is then not called any more.
    /// Answers false, and wakes nobody, when there is nothing to wait for: a recording has ended.
    virtual bool wait(double seconds, std::function<void()> wake) = 0;

    /// Ends the wait under way without calling its `wake`. A call that has begun may still arrive.
    virtual void cancel() = 0;
};

} // namespace ostrivane
