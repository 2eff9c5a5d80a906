#pragma once

#include "core/model/Described.hpp"

namespace ostrivane {

/// A figure and when it held. `time` in seconds of whatever clock the owner uses.
struct TimedValue {
    double time = 0;
    double value = 0;

    friend bool operator==(const TimedValue&, const TimedValue&) = default;
};
BOOST_DESCRIBE_STRUCT(TimedValue, (), (time, value))
static_assert(describesEveryMember<TimedValue>);

} // namespace ostrivane
