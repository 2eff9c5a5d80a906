#include "app/widgets/StatGrid.hpp"

#include "app/widgets/Numbers.hpp"
#include "app/widgets/Paint.hpp"
#include "app/widgets/Type.hpp"

#include <QPainter>
#include <QStringList>
#include <QStyle>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>

namespace ostrivane {

namespace {

constexpr double columnGap = 16;
constexpr double rowGap = 10;
constexpr double remarkGap = 4;
constexpr double square = 9;
constexpr double squareGap = 8;

int rowHeight() {
    return Type::lineHeight(TypeRole::tableHead) + Type::lineHeight(TypeRole::statValue);
}

int valueWidth(const Stat& stat) {
    return static_cast<int>(std::ceil(Numbers::width(Type::font(TypeRole::statValue), stat.value)));
}

int remarkWidth(const Stat& stat) {
    return stat.remark.isEmpty() ? 0
                                 : Type::px(remarkGap) + Paint::textWidth(Type::font(TypeRole::secondary), stat.remark);
}

int captionStart(const Stat& stat) {
    return stat.series ? Type::px(square + squareGap) : 0;
}

int naturalWidth(const Stat& stat) {
    return std::max(valueWidth(stat) + remarkWidth(stat),
                    captionStart(stat) + Paint::textWidth(Type::font(TypeRole::tableHead), stat.caption));
}

} // namespace

StatGrid::StatGrid(int columnCount, QWidget* parent) : QWidget(parent), columns(std::max(1, columnCount)) {
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void StatGrid::set(std::vector<Stat> figures) {
    if (figures == stats)
        return;
    const QSize before = minimumSizeHint();
    const std::vector<int> widths = columnWidths();
    std::swap(stats, figures);
    const bool isInPlace = figures.size() == stats.size() && columnWidths() == widths;
    for (std::size_t index = 0; isInPlace && index < stats.size(); ++index)
        if (stats[index] != figures[index])
            update(cell(index));
    if (!isInPlace)
        update();
    if (minimumSizeHint() != before)
        updateGeometry();
}

void StatGrid::setColumns(int columnCount) {
    if (columnCount == columns || columnCount < 1)
        return;
    columns = columnCount;
    updateGeometry();
    update();
}

QSize StatGrid::sizeHint() const {
    int widest = 0;
    for (const Stat& stat : stats)
        widest = std::max(widest, naturalWidth(stat));
    return {columns * widest + (columns - 1) * Type::px(columnGap), minimumSizeHint().height()};
}

QSize StatGrid::minimumSizeHint() const {
    int widest = 0;
    for (const Stat& stat : stats)
        widest = std::max(widest, valueWidth(stat));
    const int rows = (static_cast<int>(stats.size()) + columns - 1) / columns;
    const int height = rows == 0 ? 0 : rows * rowHeight() + (rows - 1) * Type::px(rowGap);
    return {columns * widest + (columns - 1) * Type::px(columnGap), height};
}

QString StatGrid::accessibleLabel() const {
    QStringList parts;
    for (const Stat& stat : stats)
        parts << QStringLiteral("%1 %2 %3").arg(stat.caption, stat.value, stat.remark).trimmed();
    return parts.join(QStringLiteral(", "));
}

/// Columns are as wide as each other, until that would cut one off while others have room to spare.
std::vector<int> StatGrid::columnWidths() const {
    const int room = width() - (columns - 1) * Type::px(columnGap);
    const auto count = static_cast<std::size_t>(columns);
    std::vector<int> natural(count, 0);
    for (std::size_t index = 0; index < stats.size(); ++index)
        natural[index % count] = std::max(natural[index % count], naturalWidth(stats[index]));
    std::vector<int> widths(count, room / columns);
    const int needed = std::accumulate(natural.begin(), natural.end(), 0);
    if (needed > room || *std::max_element(natural.begin(), natural.end()) <= room / columns)
        return widths;
    const int spare = (room - needed) / columns;
    std::transform(natural.begin(), natural.end(), widths.begin(), [&](int own) { return own + spare; });
    return widths;
}

QRect StatGrid::cell(std::size_t index) const {
    const std::vector<int> widths = columnWidths();
    const auto column = static_cast<std::ptrdiff_t>(index) % columns;
    const int row = static_cast<int>(index) / columns;
    const int left =
        std::accumulate(widths.begin(), widths.begin() + column, 0) + static_cast<int>(column) * Type::px(columnGap);
    const QRect place(left, row * (rowHeight() + Type::px(rowGap)), widths[static_cast<std::size_t>(column)],
                      rowHeight());
    return QStyle::visualRect(layoutDirection(), rect(), place);
}

void StatGrid::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    const Theme& theme = Theme::current();
    for (std::size_t index = 0; index < stats.size(); ++index) {
        const Stat& stat = stats[index];
        const QRect place = cell(index);
        if (!event->rect().intersects(place))
            continue;
        const int captionHeight = Type::lineHeight(TypeRole::tableHead);
        const QRect above(place.left(), place.top(), place.width(), captionHeight);
        if (stat.series) {
            const int side = Type::px(square);
            const QRect mark(above.left(), above.top() + (captionHeight - side) / 2, side, side);
            Paint::sheet(painter, QStyle::visualRect(layoutDirection(), above, mark), Type::px(2),
                         theme.colour(*stat.series));
        }
        painter.setPen(theme.text2);
        Paint::line(painter, QStyle::visualRect(layoutDirection(), above, above.adjusted(captionStart(stat), 0, 0, 0)),
                    Type::font(TypeRole::tableHead), stat.caption);
        const QRect below = place.adjusted(0, captionHeight, 0, 0);
        painter.setPen(theme.colour(Numbers::toneOf(stat.value, stat.tone)));
        Numbers::draw(painter, below, Type::font(TypeRole::statValue), Qt::AlignLeading | Qt::AlignVCenter, stat.value);
        if (stat.remark.isEmpty())
            continue;
        const int start = valueWidth(stat) + Type::px(remarkGap);
        const QRect behind = QStyle::visualRect(layoutDirection(), below, below.adjusted(start, Type::px(2), 0, 0));
        painter.setPen(theme.text2);
        Paint::line(painter, behind, Type::font(TypeRole::secondary), stat.remark);
    }
}

} // namespace ostrivane
