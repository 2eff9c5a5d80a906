#include "app/widgets/EvidenceList.hpp"

#include "app/widgets/Icons.hpp"
#include "app/widgets/Paint.hpp"
#include "app/widgets/Type.hpp"

#include <QHelpEvent>
#include <QPainter>
#include <QPolygonF>
#include <QStringList>
#include <QStyle>
#include <QToolTip>

#include <algorithm>
#include <utility>

namespace ostrivane {

namespace {

constexpr double rowHeight = 47;
constexpr double tileSize = 26;
constexpr double iconSize = 16;
constexpr double textStart = 36;
constexpr double chevronRoom = 22;

/// Where the parts of a row stand, from left to right.
struct Places {
    QRect tile;
    QRect title;
    QRect evidence;
    QRect time;
    QRect chevron;
};

/// @param hasChevrons  some row of the list has one, and all keep its room
Places placesOf(const EvidenceRow& row, const QRect& place, bool hasChevrons) {
    Places places;
    const int tile = Type::px(tileSize);
    places.tile = {place.left(), place.top() + (place.height() - tile) / 2, tile, tile};
    int end = place.right() + 1;
    if (hasChevrons) {
        end -= Type::px(chevronRoom);
        places.chevron = {end, place.top(), Type::px(chevronRoom), place.height()};
    }
    if (!row.time.isEmpty()) {
        const int wide = Paint::textWidth(Type::font(TypeRole::caption), row.time);
        end -= wide;
        places.time = {end, place.top(), wide, place.height()};
        end -= Type::px(8);
    }
    const int left = place.left() + Type::px(textStart);
    const int title = Type::lineHeight(TypeRole::tableStrong);
    const int evidence = row.evidence.isEmpty() ? 0 : Type::lineHeight(TypeRole::tableHead);
    const int top = place.top() + 1 + (place.height() - title - evidence) / 2;
    places.title = {left, top, std::max(0, end - left), title};
    places.evidence = {left, top + title - 1, std::max(0, end - left), evidence};
    return places;
}

void drawChevron(QPainter& painter, const QRect& place, bool mirrored) {
    const qreal half = Type::px(40) / 10.0;
    const qreal way = mirrored ? -half / 2 : half / 2;
    const QPointF middle = QRectF(place).center();
    painter.setPen(QPen(Theme::current().text2, Type::px(12) / 10.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPolyline(
        QPolygonF({middle + QPointF(-way, -half), middle + QPointF(way, 0), middle + QPointF(-way, half)}));
}

} // namespace

EvidenceList::EvidenceList(const QString& name, QWidget* parent) : RowList(name, parent) {
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setFocusPolicy(Qt::NoFocus); // until something leads somewhere
    connect(this, &RowList::activated, this, [this](int row) {
        const std::string id = shown[static_cast<std::size_t>(row)].id; // who hears it may set other rows
        Q_EMIT activated(id);
    });
}

void EvidenceList::set(std::vector<EvidenceRow> rows) {
    if (rows == shown)
        return;
    const int before = accessibleCurrentItem();
    const std::string kept = before < 0 ? std::string() : shown[static_cast<std::size_t>(before)].id;
    const bool isResized = rows.size() != shown.size();
    shown = std::move(rows);
    const auto found = std::ranges::find(shown, kept, &EvidenceRow::id);
    rowsMoved(found != shown.end() ? static_cast<int>(found - shown.begin()) : accessibleCurrentItem());
    hasChevrons = std::ranges::any_of(shown, &EvidenceRow::leadsSomewhere);
    setFocusPolicy(hasChevrons ? Qt::StrongFocus : Qt::NoFocus);
    if (isResized)
        updateGeometry();
}

QSize EvidenceList::sizeHint() const {
    return {Type::px(320), rowCount() * Type::px(rowHeight)};
}

QSize EvidenceList::minimumSizeHint() const {
    return {Type::px(160), rowCount() * Type::px(rowHeight)};
}

QRect EvidenceList::rowRect(int row) const {
    return {0, row * Type::px(rowHeight), width(), Type::px(rowHeight)};
}

QString EvidenceList::rowText(int row) const {
    const EvidenceRow& finding = shown[static_cast<std::size_t>(row)];
    QStringList parts{finding.title};
    for (const QString& part : {finding.evidence, finding.time})
        if (!part.isEmpty())
            parts << part;
    return parts.join(u' ');
}

void EvidenceList::paintRow(QPainter& painter, const QRect&, int row) {
    const EvidenceRow& finding = shown[static_cast<std::size_t>(row)];
    const Places places = placesOf(finding, rowRect(row), hasChevrons);
    const auto visual = [&](const QRect& part) { return QStyle::visualRect(layoutDirection(), rect(), part); };
    const Theme& theme = Theme::current();
    const StatusColours colours = theme.colours(finding.condition);
    const QRect tile = visual(places.tile);
    Paint::sheet(painter, tile, Type::px(6), colours.ground);
    const int sign = Type::px(iconSize);
    painter.drawPixmap(tile.topLeft() + QPoint((tile.width() - sign) / 2, (tile.height() - sign) / 2),
                       Icons::pixmap(finding.icon, sign, colours.text, devicePixelRatioF()));
    painter.setPen(theme.text);
    Paint::line(painter, visual(places.title), Type::font(TypeRole::tableStrong), finding.title);
    painter.setPen(theme.text2);
    Paint::line(painter, visual(places.evidence), Type::font(TypeRole::tableHead), finding.evidence);
    painter.setPen(theme.text3);
    Paint::line(painter, visual(places.time), Type::font(TypeRole::caption), finding.time,
                Qt::AlignTrailing | Qt::AlignVCenter, Qt::ElideNone);
    if (finding.leadsSomewhere)
        drawChevron(painter, visual(places.chevron), layoutDirection() == Qt::RightToLeft);
}

/// What is cut off is told whole.
bool EvidenceList::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip)
        return RowList::event(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    const int row = rowAt(help->pos());
    if (row < 0)
        return RowList::event(event);
    const EvidenceRow& finding = shown[static_cast<std::size_t>(row)];
    const int room = placesOf(finding, rowRect(row), hasChevrons).title.width();
    if (Paint::textWidth(Type::font(TypeRole::tableStrong), finding.title) <= room &&
        Paint::textWidth(Type::font(TypeRole::tableHead), finding.evidence) <= room)
        return RowList::event(event);
    QToolTip::showText(help->globalPos(), Paint::toolTip(finding.title + u'\n' + finding.evidence), this);
    return true;
}

} // namespace ostrivane
