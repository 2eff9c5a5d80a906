#pragma once

#include "core/history/HistoryRange.hpp"

#include <QString>
#include <QWidget>

#include <optional>

namespace ostrivane {

class SegmentedControl;

/// What stands beside a chart: "Last 5 minutes, every second", "Last 12 hours".
/// @param range  absent for the live view
/// @param interval  seconds between two readings; 0: not known yet
QString rangeText(std::optional<HistoryRange> range, double interval);

/// "every second", "every 2 s", to half a second, below 0.75 s to a tenth; empty where the interval is not known.
QString everyText(double interval);

/// How far back the charts of a page look: Live, 1H, 12H, 24H, 7D, 30D.
class RangePicker final : public QWidget {
    Q_OBJECT
public:
    explicit RangePicker(QWidget* parent = nullptr);

    /// Absent: live.
    std::optional<HistoryRange> range() const;

Q_SIGNALS:
    void rangeChosen();

private:
    SegmentedControl* control = nullptr;
};

} // namespace ostrivane
