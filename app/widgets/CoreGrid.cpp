#include "app/widgets/CoreGrid.hpp"

#include "app/widgets/Sparkline.hpp"
#include "app/widgets/Type.hpp"

#include <QFontMetrics>
#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>
#include <QStyle>

#include <algorithm>
#include <cmath>

namespace ostrivane {

namespace {

constexpr int values = 60;

int gap() {
    return Type::px(8);
}

int cellHeight() {
    return Type::px(48);
}

} // namespace

CoreGrid::CoreGrid(QWidget* parent) : QWidget(parent) {
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    setAccessibleName(QStringLiteral("Cores"));
}

void CoreGrid::set(std::vector<CoreCell> given) {
    const bool isSameCount = given.size() == cells.size();
    for (std::size_t index = 0; isSameCount && index < given.size(); ++index) {
        if (given[index] != cells[index])
            update(cellRect(index));
    }
    cells = std::move(given);
    if (!isSameCount) {
        updateGeometry();
        update();
    }
}

void CoreGrid::setPerRow(int count) {
    if (count == perRow || count < 1)
        return;
    perRow = count;
    updateGeometry();
    update();
}

QString CoreGrid::accessibleSentence() const {
    QStringList told;
    for (const CoreCell& cell : cells)
        told << cell.label + QLatin1Char(' ') + cell.value;
    return told.isEmpty() ? QString() : told.join(QStringLiteral(", ")) + QLatin1Char('.');
}

int CoreGrid::heightForWidth(int) const {
    const int rows = (static_cast<int>(cells.size()) + perRow - 1) / perRow;
    return rows == 0 ? 0 : rows * cellHeight() + (rows - 1) * gap();
}

QSize CoreGrid::sizeHint() const {
    return {perRow * Type::px(72) + (perRow - 1) * gap(), heightForWidth(0)};
}

QSize CoreGrid::minimumSizeHint() const {
    return {perRow * Type::px(32) + (perRow - 1) * gap(), heightForWidth(0)};
}

QRect CoreGrid::cellRect(std::size_t index) const {
    const int column = static_cast<int>(index) % perRow;
    const int row = static_cast<int>(index) / perRow;
    // The columns end on whole pixels and together fill the width.
    const int room = width() - (perRow - 1) * gap();
    const int left = room * column / perRow;
    const int right = room * (column + 1) / perRow;
    const QRect rect(left + column * gap(), row * (cellHeight() + gap()), right - left, cellHeight());
    return QStyle::visualRect(layoutDirection(), QWidget::rect(), rect);
}

void CoreGrid::paintEvent(QPaintEvent* event) {
    const Theme& theme = Theme::current();
    const QFont caption = Type::font(TypeRole::caption);
    QFont strong = Type::font(TypeRole::secondary);
    strong.setWeight(QFont::DemiBold);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    for (std::size_t index = 0; index < cells.size(); ++index) {
        const QRectF cell = cellRect(index);
        if (!event->region().intersects(cell.toRect()))
            continue;
        const CoreCell& core = cells[index];
        const QRectF edge = cell.adjusted(0.5, 0.5, -0.5, -0.5);
        const qreal corner = Type::px(5);

        std::vector<TimedValue> points;
        points.reserve(core.loads.size());
        for (std::size_t at = 0; at < core.loads.size(); ++at)
            points.push_back({static_cast<double>(at) - static_cast<double>(core.loads.size() - 1), core.loads[at]});
        QPainterPath inside;
        inside.addRoundedRect(edge, corner, corner);
        painter.save();
        painter.setClipPath(inside);
        const QRectF plot = cell.adjusted(1, Type::px(22), -1, -1);
        drawSparkline(painter, plot, points, {.series = core.series, .top = 1, .now = 0, .window = values - 1});
        painter.restore();

        painter.setPen(theme.border);
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(edge, corner, corner);

        const QRectF head = cell.adjusted(Type::px(8), Type::px(4), -Type::px(8), 0);
        const QRectF line(head.left(), head.top(), head.width(), Type::lineHeight(TypeRole::secondary));
        const qreal value = QFontMetricsF(strong).horizontalAdvance(core.value);
        painter.setFont(strong);
        painter.setPen(theme.text);
        painter.drawText(
            line, QStyle::visualAlignment(layoutDirection(), Qt::AlignRight) | Qt::AlignVCenter | Qt::TextDontClip,
            core.value);
        // The name gives way to the figure.
        if (QFontMetricsF(caption).horizontalAdvance(core.label) + value + 2 <= line.width()) {
            painter.setFont(caption);
            painter.setPen(theme.text2);
            painter.drawText(line, QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft) | Qt::AlignVCenter,
                             core.label);
        }
    }
}

} // namespace ostrivane
