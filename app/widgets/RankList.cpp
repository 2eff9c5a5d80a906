#include "app/widgets/RankList.hpp"

#include "app/widgets/AppIcons.hpp"
#include "app/widgets/Bar.hpp"
#include "app/widgets/Numbers.hpp"
#include "app/widgets/Paint.hpp"
#include "app/widgets/Strings.hpp"
#include "app/widgets/Type.hpp"

#include <QPainter>
#include <QStyle>

#include <algorithm>
#include <utility>

namespace ostrivane {

namespace {

constexpr double rowHeight = 26;
constexpr double iconSize = 16;
constexpr double gap = 8;
constexpr double barWidth = 44;
constexpr double barHeight = 4;
constexpr double figureWidth = 66; // "99.9 GB", "12800%"
constexpr double leastName = 48;

} // namespace

RankList::RankList(const QString& name, int rowPlaces, Series barSeries, QWidget* parent)
    : RowList(name, parent), places(rowPlaces), series(barSeries) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void RankList::set(std::vector<RankRow> rows) {
    rows.resize(std::min(rows.size(), static_cast<std::size_t>(places)));
    if (rows.size() != shown.size()) {
        shown = std::move(rows);
        update();
        return;
    }
    for (std::size_t index = 0; index < rows.size(); ++index) {
        if (rows[index] == shown[index])
            continue;
        shown[index] = std::move(rows[index]);
        update(rowRect(static_cast<int>(index)));
    }
}

void RankList::setEmptyText(const QString& words) {
    if (words == emptyText)
        return;
    emptyText = words;
    update();
}

QSize RankList::sizeHint() const {
    return {Type::px(295), Type::px(rowHeight) * places};
}

QSize RankList::minimumSizeHint() const {
    return {Type::px(iconSize + gap + leastName + figureWidth), sizeHint().height()};
}

QRect RankList::rowRect(int row) const {
    const int height = Type::px(rowHeight);
    return {0, row * height, width(), height};
}

void RankList::paintRow(QPainter& painter, const QRect& rect, int row) {
    const RankRow& app = shown[static_cast<std::size_t>(row)];
    const Theme& theme = Theme::current();
    const auto placed = [&](int left, int top, int wide, int high) {
        return QStyle::visualRect(layoutDirection(), rect, QRect(left, rect.top() + top, wide, high));
    };
    const int height = rect.height();
    const int icon = Type::px(iconSize);
    painter.drawPixmap(placed(0, (height - icon) / 2, icon, icon),
                       AppIcons::pixmap(app.key, app.name, app.bundlePath, icon, devicePixelRatioF()));

    const QFont figureFont = Type::font(TypeRole::table);
    const int figure = std::max(Type::px(figureWidth), static_cast<int>(Numbers::width(figureFont, app.figure)) + 1);
    painter.setPen(app.isGone ? theme.text3 : theme.text);
    Numbers::draw(painter, placed(rect.width() - figure, 0, figure, height), figureFont,
                  Qt::AlignTrailing | Qt::AlignVCenter, app.figure);

    const int left = icon + Type::px(gap);
    int room = rect.width() - left - figure - Type::px(gap);
    if (const int bar = Type::px(barWidth); room - bar - Type::px(gap) >= Type::px(leastName)) {
        room -= bar;
        const int high = Type::px(barHeight);
        Bar::draw(painter, placed(left + room, (height - high) / 2, bar, high), app.share, series);
        room -= Type::px(gap);
    }
    Paint::line(painter, placed(left, 0, room, height), Type::font(TypeRole::body), text(app.name));
}

void RankList::paintRest(QPainter& painter) {
    if (!shown.empty() || emptyText.isEmpty())
        return;
    painter.setPen(Theme::current().text2);
    Paint::line(painter, {0, 0, width(), Type::px(rowHeight)}, Type::font(TypeRole::table), emptyText);
}

QString RankList::rowText(int row) const {
    const RankRow& app = shown[static_cast<std::size_t>(row)];
    return text(app.name) + QStringLiteral(", ") + app.figure;
}

} // namespace ostrivane
