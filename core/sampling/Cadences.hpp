#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace ostrivane {

/// When each costly reading was last due. Times are seconds of the wall clock.
class Cadences {
public:
    /// Whether `key` is due again after `every` seconds, and if so notes that it ran now. A key that never ran is due
    /// at once. A little slack keeps a cadence from slipping a whole tick on the jitter of a timer.
    bool due(std::string_view key, double every, double now);

    /// Makes `key` due at the next question, however recently it ran.
    void expire(std::string_view key);

    /// The clock was set back to `now`: what ran later than that ran now. Otherwise every cadence would stand still
    /// until the clock has caught up.
    void clockSteppedBack(double now);

private:
    std::map<std::string, double, std::less<>> lastRun;
};

} // namespace ostrivane
