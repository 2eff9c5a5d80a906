#include "app/widgets/EvidenceList.hpp"

#include "app/widgets/Icons.hpp"
#include "app/widgets/Paint.hpp"
#include "app/widgets/Style.hpp"
#include "app/widgets/Type.hpp"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPolygonF>
#include <QToolTip>

#include <algorithm>

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

EvidenceList::EvidenceList(const QString& name, QWidget* parent) : QWidget(parent) {
    setAccessibleName(name);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setMouseTracking(true);
}

void EvidenceList::set(std::vector<EvidenceRow> rows) {
    if (rows == shown)
        return;
    const std::string kept = current < rowCount() ? shown[static_cast<std::size_t>(current)].id : std::string();
    const int before = rowCount();
    shown = std::move(rows);
    const auto found = std::find_if(shown.begin(), shown.end(), [&](const EvidenceRow& row) { return row.id == kept; });
    current = found != shown.end() ? static_cast<int>(found - shown.begin())
                                   : std::clamp(current, 0, std::max(0, rowCount() - 1));
    hovered = std::min(hovered, rowCount() - 1);
    const bool leads =
        std::any_of(shown.begin(), shown.end(), [](const EvidenceRow& row) { return row.leadsSomewhere; });
    setFocusPolicy(leads ? Qt::StrongFocus : Qt::NoFocus);
    if (rowCount() != before)
        updateGeometry();
    update();
}

QSize EvidenceList::sizeHint() const {
    return {Type::px(320), rowCount() * Type::px(rowHeight)};
}

QSize EvidenceList::minimumSizeHint() const {
    return {Type::px(160), rowCount() * Type::px(rowHeight)};
}

QRect EvidenceList::accessibleItemRect(int index) const {
    return {0, index * Type::px(rowHeight), width(), Type::px(rowHeight)};
}

QString EvidenceList::accessibleItemText(int index) const {
    const EvidenceRow& row = shown[static_cast<std::size_t>(index)];
    QStringList parts{row.title};
    for (const QString& part : {row.evidence, row.time})
        if (!part.isEmpty())
            parts << part;
    return parts.join(u' ');
}

void EvidenceList::activateItem(int index) {
    if (index >= 0 && index < rowCount() && shown[static_cast<std::size_t>(index)].leadsSomewhere)
        Q_EMIT activated(index);
}

int EvidenceList::rowAt(const QPoint& point) const {
    const int row = point.y() < 0 ? -1 : point.y() / Type::px(rowHeight);
    return row < rowCount() ? row : -1;
}

void EvidenceList::moveTo(int row) {
    const int bounded = std::clamp(row, 0, std::max(0, rowCount() - 1));
    if (bounded == current)
        return;
    current = bounded;
    update();
    QAccessibleEvent event(this, QAccessible::Focus);
    event.setChild(current);
    QAccessible::updateAccessibility(&event);
}

void EvidenceList::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const Theme& theme = Theme::current();
    const bool mirrored = layoutDirection() == Qt::RightToLeft;
    const auto visual = [&](const QRect& part) { return QStyle::visualRect(layoutDirection(), rect(), part); };
    for (int index = 0; index < rowCount(); ++index) {
        const QRect place = accessibleItemRect(index);
        if (!event->rect().intersects(place))
            continue;
        const EvidenceRow& row = shown[static_cast<std::size_t>(index)];
        painter.fillRect(QRect(0, place.top(), width(), 1), theme.separator);
        if (index == hovered && row.leadsSomewhere)
            painter.fillRect(place.adjusted(0, 1, 0, 0), theme.hover);
        const Places places = placesOf(row, place, focusPolicy() != Qt::NoFocus);
        const StatusColours colours = theme.colours(row.condition);
        const QRect tile = visual(places.tile);
        Paint::sheet(painter, tile, Type::px(6), colours.ground);
        const int sign = Type::px(iconSize);
        painter.drawPixmap(tile.topLeft() + QPoint((tile.width() - sign) / 2, (tile.height() - sign) / 2),
                           Icons::pixmap(row.icon, sign, colours.text, devicePixelRatioF()));
        painter.setPen(theme.text);
        Paint::line(painter, visual(places.title), Type::font(TypeRole::tableStrong), row.title);
        painter.setPen(theme.text2);
        Paint::line(painter, visual(places.evidence), Type::font(TypeRole::tableHead), row.evidence);
        painter.setPen(theme.text3);
        Paint::line(painter, visual(places.time), Type::font(TypeRole::caption), row.time,
                    Qt::AlignTrailing | Qt::AlignVCenter, Qt::ElideNone);
        if (row.leadsSomewhere)
            drawChevron(painter, visual(places.chevron), mirrored);
        if (index == current && Style::showsFocus(*this))
            Style::drawFocusRing(painter, QRectF(place).adjusted(3, 4, -3, -3), Type::px(4));
    }
}

void EvidenceList::mouseMoveEvent(QMouseEvent* event) {
    const int under = rowAt(event->position().toPoint());
    if (under == hovered)
        return;
    hovered = under;
    update();
}

void EvidenceList::mousePressEvent(QMouseEvent* event) {
    pressed = event->button() == Qt::LeftButton ? rowAt(event->position().toPoint()) : -1;
}

void EvidenceList::mouseReleaseEvent(QMouseEvent* event) {
    const int row = rowAt(event->position().toPoint());
    if (event->button() != Qt::LeftButton || row < 0 || row != pressed)
        return;
    moveTo(row);
    activateItem(row);
}

void EvidenceList::leaveEvent(QEvent* event) {
    hovered = -1;
    update();
    QWidget::leaveEvent(event);
}

void EvidenceList::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Up:
        return moveTo(current - 1);
    case Qt::Key_Down:
        return moveTo(current + 1);
    case Qt::Key_Home:
        return moveTo(0);
    case Qt::Key_End:
        return moveTo(rowCount() - 1);
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        return activateItem(current);
    default:
        QWidget::keyPressEvent(event);
    }
}

/// What is cut off is told whole.
bool EvidenceList::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    const int index = rowAt(help->pos());
    if (index < 0)
        return QWidget::event(event);
    const EvidenceRow& row = shown[static_cast<std::size_t>(index)];
    const int room = placesOf(row, accessibleItemRect(index), focusPolicy() != Qt::NoFocus).title.width();
    if (Paint::textWidth(Type::font(TypeRole::tableStrong), row.title) <= room &&
        Paint::textWidth(Type::font(TypeRole::tableHead), row.evidence) <= room)
        return QWidget::event(event);
    QToolTip::showText(help->globalPos(), Paint::toolTip(row.title + u'\n' + row.evidence), this);
    return true;
}

} // namespace ostrivane
