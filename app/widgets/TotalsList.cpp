#include "app/widgets/TotalsList.hpp"

#include "app/widgets/Numbers.hpp"
#include "app/widgets/Paint.hpp"
#include "app/widgets/Theme.hpp"
#include "app/widgets/Type.hpp"

#include <QPainter>
#include <QStyle>

#include <algorithm>
#include <cmath>
#include <utility>

namespace ostrivane {

namespace {

constexpr double headHeight = 26;
constexpr double leastRow = 26;
constexpr double gap = 8;
constexpr double sideMargin = 14;

} // namespace

TotalsList::TotalsList(const QString& name, std::array<QString, 3> columnHeads, QWidget* parent)
    : RowList(name, parent), heads(std::move(columnHeads)) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::MinimumExpanding);
}

void TotalsList::set(std::vector<TotalsRow> rows) {
    if (rows == shown)
        return;
    const bool isResized = rows.size() != shown.size();
    shown = std::move(rows);
    if (isResized)
        updateGeometry();
    update();
}

QSize TotalsList::sizeHint() const {
    return {Type::px(200), Type::px(headHeight) + rowCount() * Type::px(leastRow)};
}

QRect TotalsList::rowRect(int row) const {
    const int top = Type::px(headHeight);
    const int room = height() - top;
    const int count = std::max(rowCount(), 1);
    const int from = top + room * row / count;
    return {0, from, width(), top + room * (row + 1) / count - from};
}

TotalsList::Columns TotalsList::columns() const {
    const QFont font = Type::font(TypeRole::table);
    Columns made;
    std::array<int, 3> wanted{};
    for (const TotalsRow& row : shown) {
        made.name = std::max(made.name, Paint::textWidth(font, row.name));
        for (std::size_t column = 0; column < heads.size(); ++column)
            wanted[column] =
                std::max(wanted[column], static_cast<int>(std::ceil(Numbers::width(font, row.figures[column]))));
    }
    const int room = width() - 2 * Type::px(sideMargin) - made.name;
    for (const auto& visible : {std::vector<std::size_t>{0, 1, 2}, {0, 2}, {0}}) {
        made.visible = visible;
        const int equal = room / static_cast<int>(visible.size());
        made.widths.fill(equal); // these stand still while figures change
        if (std::ranges::all_of(visible, [&](std::size_t column) { return wanted[column] + Type::px(gap) <= equal; }))
            break;
    }
    return made;
}

void TotalsList::paintCells(QPainter& painter, const QRect& rect, const std::array<QString, 3>& cells) const {
    const Columns layout = columns();
    int left = Type::px(sideMargin) + layout.name;
    for (const std::size_t column : layout.visible) {
        const int width = layout.widths[column];
        const QRect cell = QStyle::visualRect(layoutDirection(), rect, {left, rect.top(), width, rect.height()});
        Numbers::draw(painter, cell, painter.font(), Qt::AlignTrailing | Qt::AlignVCenter, cells[column]);
        left += width;
    }
}

void TotalsList::paintRest(QPainter& painter) {
    const QRect head(0, 0, width(), Type::px(headHeight));
    painter.setFont(Type::font(TypeRole::tableHead));
    painter.setPen(Theme::current().text2);
    const Columns layout = columns();
    const QFontMetrics metrics(painter.font());
    std::array<QString, 3> cut;
    for (std::size_t column = 0; column < heads.size(); ++column)
        cut[column] = metrics.elidedText(heads[column], Qt::ElideRight, layout.widths[column] - Type::px(gap));
    paintCells(painter, head, cut);
}

void TotalsList::paintRow(QPainter& painter, const QRect& rect, int row) {
    const TotalsRow& line = shown[static_cast<std::size_t>(row)];
    painter.setFont(Type::font(TypeRole::table));
    painter.setPen(Theme::current().text);
    const QRect name(Type::px(sideMargin), rect.top(), width() - 2 * Type::px(sideMargin), rect.height());
    Paint::line(painter, QStyle::visualRect(layoutDirection(), rect, name), painter.font(), line.name);
    paintCells(painter, rect, line.figures);
}

QString TotalsList::rowText(int row) const {
    const TotalsRow& line = shown[static_cast<std::size_t>(row)];
    QString words = line.name;
    for (std::size_t column = 0; column < heads.size(); ++column)
        words += QStringLiteral(", %1: %2").arg(heads[column], line.figures[column]);
    return words;
}

} // namespace ostrivane
