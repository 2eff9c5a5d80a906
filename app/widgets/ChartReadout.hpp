#pragma once

#include "app/widgets/ChartPaint.hpp"
#include "app/widgets/Theme.hpp"

#include <QString>

#include <optional>
#include <vector>

namespace ostrivane {

/// What a chart shows at one moment.
struct ChartReading {
    struct Row {
        Series series = Series::s1;
        QString name;
        QString value;                ///< "—" where the line has none at this time
        std::optional<double> height; ///< of its ring, in the values of the axis
    };
    double at = 0; ///< where the cursor stands, in the chart's time
    QString time;
    std::vector<Row> rows;
};

/// The cursor of a chart: a dashed line, a ring on each line and a box with the time and the figures.
namespace ChartReadout {

/// Where a box of `size` stands beside `x`: at the right where there is room, else at the left, and within `bounds`.
QRectF place(const QSizeF& size, const QRectF& bounds, qreal x);

void drawCursor(QPainter& painter, const ChartSpace& space, const ChartReading& reading);
/// @param bounds  that the box must not leave
void drawBox(QPainter& painter, const ChartSpace& space, const ChartReading& reading, const QRectF& bounds);

/// "At 14:31:52: User 14%, System 3%." for assistive programs.
QString sentence(const ChartReading& reading);

} // namespace ChartReadout

} // namespace ostrivane
