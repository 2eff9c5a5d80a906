#pragma once

#include <QString>

#include <functional>
#include <span>
#include <vector>

namespace ostrivane {

/// How values become heights, and heights become words.
struct ChartAxis {
    enum class Kind {
        percent,     ///< 0 to 1, whole
        cores,       ///< from 0 to the next whole number of cores
        fixed,       ///< 0 to `most`
        temperature, ///< 30 to 100 degrees Celsius, higher where the data is
        open         ///< from 0 to the next of 1, 2, 5 × 10ⁿ, see `AxisScale`; `binary`: × 1024ⁿ
    };
    Kind kind = Kind::percent;
    double most = 1;
    bool binary = false;                  ///< an open axis of bytes of memory
    std::function<QString(double)> label; ///< of a height, as it stands at the right
};

/// The upper end of an axis over time: it grows at once, and shrinks only after 30 seconds in which the data stayed
/// below 40% of it. Pure but for what it remembers.
class AxisScale {
public:
    /// The upper end for data whose largest value in view is `largest`, at the time `now` in seconds.
    double top(const ChartAxis& axis, double largest, double now);

    /// The upper end for data that is shown at once, without regard to what was shown before.
    static double fit(const ChartAxis& axis, double largest);

    /// The next of 1, 2, 5 × 10ⁿ at or above `value`; of 1, 2, 5, 10, 20, ... 512 × 1024ⁿ where `binary`. At least the
    /// smallest that is worth a label (1).
    static double nice(double value, bool binary);

private:
    double current = 0;
    double lowSince = -1; ///< time since which the data stays low; negative while it does not
};

/// The value at the lower end.
double lowerEnd(const ChartAxis& axis);

} // namespace ostrivane
