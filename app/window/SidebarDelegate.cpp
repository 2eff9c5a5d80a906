#include "app/window/SidebarDelegate.hpp"

#include "app/widgets/Icons.hpp"
#include "app/widgets/Numbers.hpp"
#include "app/widgets/StatusGlyph.hpp"
#include "app/widgets/Style.hpp"
#include "app/widgets/Type.hpp"
#include "app/window/SidebarModel.hpp"

#include <QPainter>

namespace ostrivane {

namespace {

constexpr double rowHeight = 26;
constexpr double titleHeight = 24;
constexpr double iconSize = 16;
constexpr double padding = 8;
constexpr double gap = 8;
constexpr double corner = 6;

} // namespace

QSize SidebarDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex& index) const {
    const auto* pages = static_cast<const SidebarModel*>(index.model());
    return {Type::px(100), Type::px(pages->row(index.row()).page ? rowHeight : titleHeight)};
}

void SidebarDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const Theme& theme = Theme::current();
    const SidebarModel::Row& row = static_cast<const SidebarModel*>(index.model())->row(index.row());
    const auto mirrored = [&](const QRect& rect) { return QStyle::visualRect(option.direction, option.rect, rect); };
    const auto leading = QStyle::visualAlignment(option.direction, Qt::AlignLeft | Qt::AlignVCenter);
    const QRect inner = option.rect.adjusted(Type::px(padding), 0, -Type::px(padding), 0);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (!row.page) {
        painter->setFont(Type::font(TypeRole::captionStrong));
        painter->setPen(theme.text3);
        painter->drawText(mirrored(inner.adjusted(0, Type::px(4), 0, 0)), static_cast<int>(leading), row.title);
        painter->restore();
        return;
    }
    const bool isSelected = option.state & QStyle::State_Selected;
    const bool isHovered = option.state & QStyle::State_MouseOver;
    if (isSelected || isHovered) {
        painter->setPen(Qt::NoPen);
        painter->setBrush(isSelected ? theme.selection : theme.hover);
        painter->drawRoundedRect(option.rect, Type::px(corner), Type::px(corner));
    }
    const int size = Type::px(iconSize);
    const QRect icon(inner.left(), inner.center().y() - size / 2 + 1, size, size);
    painter->drawPixmap(mirrored(icon).topLeft(),
                        Icons::pixmap(Icons::nameOf(*row.page), size, isSelected ? theme.accent : theme.text2,
                                      painter->device()->devicePixelRatioF()));

    QRect room = inner.adjusted(size + Type::px(gap), 0, 0, 0);
    const SidebarValue& value = row.value;
    if (value.condition) {
        const int glyph = Type::px(12);
        drawStatusGlyph(*painter, mirrored({room.right() - glyph, room.center().y() - glyph / 2 + 1, glyph, glyph}),
                        *value.condition);
        room.setRight(room.right() - glyph - Type::px(gap));
    } else if (!value.text.isEmpty()) {
        const QFont font = Type::font(value.isStrong ? TypeRole::captionStrong : TypeRole::caption);
        const int width = static_cast<int>(Numbers::width(font, value.text)) + 1;
        const Tone tone = isSelected && value.tone == Tone::text3 ? Tone::text2 : value.tone;
        painter->setPen(theme.colour(tone));
        Numbers::draw(*painter, mirrored({room.right() - width + 1, room.top(), width, room.height()}), font,
                      Qt::AlignRight | Qt::AlignVCenter, value.text);
        room.setRight(room.right() - width - Type::px(gap));
        if (value.isRecording) {
            const int disc = Type::px(8);
            painter->setPen(Qt::NoPen);
            painter->setBrush(theme.high.mark);
            painter->drawEllipse(
                mirrored({room.right() - disc + Type::px(3), room.center().y() - disc / 2 + 1, disc, disc}));
            room.setRight(room.right() - disc);
        }
    }
    const QFont font = Type::font(isSelected ? TypeRole::bodyStrong : TypeRole::body);
    painter->setFont(font);
    painter->setPen(theme.text);
    painter->drawText(mirrored(room), static_cast<int>(leading),
                      QFontMetrics(font).elidedText(row.title, Qt::ElideRight, room.width()));
    if (option.state & QStyle::State_HasFocus && option.state & QStyle::State_KeyboardFocusChange)
        Style::drawFocusRing(*painter, QRectF(option.rect).adjusted(3, 3, -3, -3), Type::px(corner));
    painter->restore();
}

} // namespace ostrivane
