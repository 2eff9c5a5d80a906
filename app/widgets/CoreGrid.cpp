#include "app/widgets/CoreGrid.hpp"

#include "app/widgets/Sparkline.hpp"
#include "app/widgets/Type.hpp"

#include <QEvent>
#include <QFontMetrics>
#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>
#include <QStyle>

#include <algorithm>
#include <cmath>

namespace ostrivane {

namespace {

constexpr int shownLoads = 60;
constexpr int sidePadding = 8;

int gap() {
    return Type::px(8);
}

QFont figureFont() {
    QFont font = Type::font(TypeRole::secondary);
    font.setWeight(QFont::DemiBold);
    return font;
}

} // namespace

CoreGrid::CoreGrid(QWidget* parent) : QWidget(parent) {
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    setAccessibleName(QStringLiteral("Cores"));
}

void CoreGrid::set(std::vector<CoreCell> given) {
    const auto label = [](const CoreCell& cell) -> const QString& { return cell.label; };
    const bool areSameCores = std::ranges::equal(given, cells, {}, label, label);
    const int high = cellHeight(width());
    for (std::size_t index = 0; areSameCores && index < given.size(); ++index) {
        if (given[index] != cells[index])
            update(cellRect(index, high));
    }
    cells = std::move(given);
    if (!areSameCores)
        measure();
}

void CoreGrid::measure() {
    const QFontMetrics metrics(Type::font(TypeRole::caption));
    widestLabel = 0;
    for (const CoreCell& cell : cells)
        widestLabel = std::max(widestLabel, metrics.horizontalAdvance(cell.label));
    updateGeometry();
    update();
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

int CoreGrid::cellWidth(int width) const {
    return std::max(0, width - (perRow - 1) * gap()) / perRow;
}

bool CoreGrid::isTwoLined(int width) const {
    const int figure = QFontMetrics(figureFont()).horizontalAdvance(QStringLiteral("100%"));
    return widestLabel + figure + Type::px(3) > cellWidth(width) - 2 * Type::px(sidePadding);
}

int CoreGrid::cellHeight(int width) const {
    return Type::px(isTwoLined(width) ? 62 : 48);
}

int CoreGrid::heightForWidth(int width) const {
    const int rows = (static_cast<int>(cells.size()) + perRow - 1) / perRow;
    return rows == 0 ? 0 : rows * cellHeight(width) + (rows - 1) * gap();
}

QSize CoreGrid::sizeHint() const {
    const int width = perRow * Type::px(72) + (perRow - 1) * gap();
    return {width, heightForWidth(width)};
}

QSize CoreGrid::minimumSizeHint() const {
    return {perRow * Type::px(44) + (perRow - 1) * gap(), heightForWidth(width())};
}

QRect CoreGrid::cellRect(std::size_t index, int high) const {
    const int column = static_cast<int>(index) % perRow;
    const int row = static_cast<int>(index) / perRow;
    // The columns end on whole pixels and together fill the width.
    const int room = width() - (perRow - 1) * gap();
    const int left = room * column / perRow;
    const int right = room * (column + 1) / perRow;
    const QRect rect(left + column * gap(), row * (high + gap()), right - left, high);
    return QStyle::visualRect(layoutDirection(), QWidget::rect(), rect);
}

void CoreGrid::resizeEvent(QResizeEvent*) {
    updateGeometry(); // narrow cells are taller
}

void CoreGrid::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::ApplicationFontChange ||
        event->type() == QEvent::StyleChange)
        measure();
}

void CoreGrid::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool twoLined = isTwoLined(width());
    const int high = cellHeight(width());
    for (std::size_t index = 0; index < cells.size(); ++index) {
        const QRect rect = cellRect(index, high);
        if (event->region().intersects(rect))
            drawCell(painter, rect, cells[index], twoLined);
    }
}

void CoreGrid::drawCell(QPainter& painter, const QRectF& cell, const CoreCell& core, bool twoLined) const {
    const Theme& theme = Theme::current();
    const QRectF edge = cell.adjusted(0.5, 0.5, -0.5, -0.5);
    const qreal corner = Type::px(5);
    const qreal line = Type::lineHeight(TypeRole::secondary);
    const qreal second = twoLined ? Type::px(14) : 0;

    std::vector<TimedValue> points;
    points.reserve(core.loads.size());
    for (std::size_t at = 0; at < core.loads.size(); ++at)
        points.push_back({static_cast<double>(at) - static_cast<double>(core.loads.size() - 1), core.loads[at]});
    QPainterPath inside;
    inside.addRoundedRect(edge, corner, corner);
    painter.save();
    painter.setClipPath(inside);
    drawSparkline(painter, cell.adjusted(1, Type::px(22) + second, -1, -1), points,
                  {.series = core.series, .top = 1, .now = 0, .window = shownLoads - 1});
    painter.restore();

    painter.setPen(theme.border);
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(edge, corner, corner);

    const qreal side = Type::px(twoLined ? 5 : sidePadding);
    const QRectF label(cell.left() + side, cell.top() + Type::px(4), cell.width() - 2 * side, line);
    const QRectF figure = label.translated(0, second);
    const auto place = [&](Qt::Alignment alignment) {
        return static_cast<int>(QStyle::visualAlignment(layoutDirection(), alignment) | Qt::AlignVCenter) |
               Qt::TextDontClip;
    };
    painter.setFont(Type::font(TypeRole::caption));
    painter.setPen(theme.text2);
    painter.drawText(label, place(Qt::AlignLeft), core.label);
    painter.setFont(figureFont());
    painter.setPen(theme.text);
    painter.drawText(figure, place(twoLined ? Qt::AlignLeft : Qt::AlignRight), core.value);
}

} // namespace ostrivane
