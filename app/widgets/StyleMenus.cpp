#include "app/widgets/Paint.hpp"
#include "app/widgets/StyleParts.hpp"
#include "app/widgets/Theme.hpp"
#include "app/widgets/Type.hpp"

#include <QPainter>
#include <QPolygonF>
#include <QStyleOptionMenuItem>

#include <algorithm>

namespace ostrivane::StyleParts {

namespace {

constexpr double itemHeight = 26;
constexpr double separatorHeight = 9;
constexpr double side = 12;      // from the menu's edge to its text
constexpr double signRoom = 22;  // for ticks and icons ahead of the text
constexpr double arrowRoom = 18; // for the arrow of a menu below
constexpr double shortcutGap = 28;
constexpr double signSize = 16;

using Item = QStyleOptionMenuItem;

int leadRoom(const Item& option) {
    return option.menuHasCheckableItems || option.maxIconWidth > 0 ? Type::px(signRoom) : 0;
}

void drawTickSign(QPainter& painter, const QRectF& place, const QColor& ink, bool isExclusive) {
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal unit = place.width() / 16;
    if (isExclusive) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(ink);
        painter.drawEllipse(place.center(), 3 * unit, 3 * unit);
        return;
    }
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(ink, 1.6 * unit, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(QPolygonF({place.topLeft() + QPointF(3, 8.5) * unit, place.topLeft() + QPointF(6.5, 12) * unit,
                                    place.topLeft() + QPointF(13, 4.5) * unit}));
}

void drawArrow(QPainter& painter, const QRectF& place, const QColor& ink, bool mirrored) {
    const qreal half = Type::px(40) / 10.0;
    const qreal way = mirrored ? -half / 2 : half / 2;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(ink, Type::px(13) / 10.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(QPolygonF({place.center() + QPointF(-way, -half), place.center() + QPointF(way, 0),
                                    place.center() + QPointF(-way, half)}));
}

int mnemonicFlag(bool showsMnemonics) {
    return showsMnemonics ? Qt::TextShowMnemonic : Qt::TextHideMnemonic;
}

} // namespace

QSize menuItemSize(const Item& option, const QSize& contents) {
    if (option.menuItemType == Item::Separator)
        return {contents.width(), Type::px(separatorHeight)};
    int width = contents.width() + 2 * Type::px(side) + leadRoom(option);
    if (option.text.contains(u'\t'))
        width += Type::px(shortcutGap);
    if (option.menuItemType == Item::SubMenu)
        width += Type::px(arrowRoom);
    return {width, std::max(Type::px(itemHeight), contents.height())};
}

void drawMenuItem(QPainter& painter, const Item& option, bool showsMnemonics) {
    const Theme& theme = Theme::current();
    const QRect whole = option.rect;
    const auto visual = [&](const QRect& part) { return QStyle::visualRect(option.direction, whole, part); };
    const int edge = Type::px(side);
    if (option.menuItemType == Item::Separator) {
        painter.fillRect(QRect(whole.left() + edge, whole.center().y(), whole.width() - 2 * edge, 1), theme.separator);
        return;
    }
    const bool isEnabled = option.state & QStyle::State_Enabled;
    if (isEnabled && (option.state & QStyle::State_Selected))
        Paint::sheet(painter, QRectF(whole).adjusted(Type::px(4), 0, -Type::px(4), 0), Type::px(4), theme.selection);
    const QColor ink = isEnabled ? theme.text : theme.text3;
    const int sign = Type::px(signSize);
    const QRect lead =
        visual({whole.left() + edge - Type::px(2), whole.top() + (whole.height() - sign) / 2, sign, sign});
    if (option.checked)
        drawTickSign(painter, lead, ink, option.checkType == Item::Exclusive);
    else if (!option.icon.isNull())
        option.icon.paint(&painter, lead, Qt::AlignCenter, isEnabled ? QIcon::Normal : QIcon::Disabled);

    const int start = whole.left() + edge + leadRoom(option);
    QRect room(start, whole.top(), whole.right() + 1 - edge - start, whole.height());
    if (option.menuItemType == Item::SubMenu) {
        const int arrow = Type::px(arrowRoom);
        drawArrow(painter, visual({room.right() + 1 - arrow + Type::px(6), whole.top(), arrow, whole.height()}),
                  isEnabled ? theme.text2 : theme.text3, option.direction == Qt::RightToLeft);
        room.setRight(room.right() - arrow);
    }
    QFont font = option.font;
    if (option.menuItemType == Item::DefaultItem)
        font.setBold(true);
    painter.setFont(font);
    const qsizetype tab = option.text.indexOf(u'\t');
    painter.setPen(ink);
    painter.setLayoutDirection(option.direction);
    Paint::drawOneLine(painter, visual(room), Qt::AlignLeading | Qt::AlignVCenter,
                       tab < 0 ? option.text : option.text.left(tab), mnemonicFlag(showsMnemonics));
    if (tab < 0)
        return;
    painter.setPen(theme.text3);
    if (isEnabled && (option.state & QStyle::State_Selected))
        painter.setPen(theme.text2);
    Paint::drawOneLine(painter, visual(room), Qt::AlignTrailing | Qt::AlignVCenter, option.text.mid(tab + 1));
}

void drawMenuBarItem(QPainter& painter, const Item& option, bool showsMnemonics) {
    const Theme& theme = Theme::current();
    painter.fillRect(option.rect, theme.window);
    const bool isEnabled = option.state & QStyle::State_Enabled;
    if (isEnabled && (option.state & (QStyle::State_Selected | QStyle::State_Sunken)))
        Paint::sheet(painter, QRectF(option.rect).adjusted(1, 2, -1, -2), Type::px(4),
                     option.state & QStyle::State_Sunken ? theme.selection : theme.hover);
    painter.setFont(option.font);
    painter.setPen(isEnabled ? theme.text : theme.text3);
    painter.drawText(option.rect, Qt::AlignCenter | Qt::TextSingleLine | mnemonicFlag(showsMnemonics), option.text);
}

} // namespace ostrivane::StyleParts
