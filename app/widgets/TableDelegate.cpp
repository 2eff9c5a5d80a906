#include "app/widgets/TableDelegate.hpp"

#include "app/widgets/Bar.hpp"
#include "app/widgets/Numbers.hpp"
#include "app/widgets/Paint.hpp"
#include "app/widgets/ShapedText.hpp"
#include "app/widgets/Type.hpp"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

#include <algorithm>
#include <cmath>

namespace ostrivane {

namespace {

constexpr double outerPadding = 14;
constexpr double innerPadding = 8;
constexpr double iconSize = 16;
constexpr double gap = 8;
constexpr double noteGap = 6;
constexpr double barWidth = 44;
constexpr double barHeight = 4;
constexpr double barFigure = 62; ///< kept for the figure, so that bars stand below each other
constexpr double fullHeat = 0.26;
constexpr qreal goneIcon = 0.5;
constexpr qsizetype mostLetters = 300; ///< that can be in view; the rest is not even measured

constexpr int columnBits = 16;

std::uint64_t keyOf(int row, int column) {
    return static_cast<std::uint64_t>(row) << columnBits | static_cast<std::uint64_t>(column);
}

int rowOf(std::uint64_t key) {
    return static_cast<int>(key >> columnBits);
}

/// On one line, and not longer than a line can be.
QString oneLine(QString text, Qt::TextElideMode mode) {
    if (text.size() > mostLetters)
        text = mode == Qt::ElideMiddle ? text.left(mostLetters / 2) + QChar(0x2026) + text.right(mostLetters / 2)
                                       : text.left(mostLetters) + QChar(0x2026);
    const auto isControl = [](QChar letter) { return letter.unicode() < 0x20 || letter.unicode() == 0x7F; };
    if (std::ranges::any_of(text, isControl))
        std::ranges::replace_if(text, isControl, QChar(u' '));
    return text;
}

} // namespace

struct TableDelegate::Place {
    QPainter& painter;
    const QStyleOptionViewItem& option;
    const RowsModelBase& rows;
    const RowsModelBase::ColumnFacts& facts;
    const RowsModelBase::Cell& cell;
    const Letterings& letterings;
    int row;
    int column;

    bool isSelected() const { return option.state.testFlag(QStyle::State_Selected); }
    /// The third grey cannot be read on the ground of a selection.
    QColor ink(Tone tone) const {
        return Theme::current().colour(isSelected() && tone == Tone::text3 ? Tone::text2 : tone);
    }
    /// Takes so much off the leading or trailing side of `rect`.
    QRect take(QRect& rect, Qt::Alignment side, qreal width) const {
        const QSize size(std::min(static_cast<int>(std::ceil(width)), rect.width()), rect.height());
        const QRect taken = QStyle::alignedRect(option.direction, side | Qt::AlignVCenter, size, rect);
        const bool fromLeft = (side == Qt::AlignLeading) == (option.direction == Qt::LeftToRight);
        if (fromLeft)
            rect.setLeft(taken.right() + 1);
        else
            rect.setRight(taken.left() - 1);
        return taken;
    }
    void write(const QRect& rect, const QFont& font, const ShapedText& text) const {
        const Qt::Alignment side = option.direction == Qt::RightToLeft ? Qt::AlignRight : Qt::AlignLeft;
        Paint::draw(painter, rect, QFontMetricsF(font), side | Qt::AlignAbsolute | Qt::AlignVCenter, text);
    }
};

TableDelegate::Letterings::Letterings()
    : base(Type::base()), plain(Type::font(TypeRole::table)), strong(Type::font(TypeRole::tableStrong)), bold([] {
          QFont font = Type::font(TypeRole::table);
          font.setWeight(QFont::DemiBold);
          return font;
      }()),
      note(Type::font(TypeRole::caption)), suffix(QFontMetricsF(plain).horizontalAdvance(QLatin1Char('*'))) {}

TableDelegate::TableDelegate(QObject* owner) : QStyledItemDelegate(owner) {}

QRect TableDelegate::inner(const QRect& cell, bool isFirst, bool isLast, Qt::LayoutDirection direction) {
    const QRect within = cell.adjusted(Type::px(isFirst ? outerPadding : innerPadding), 0,
                                       -Type::px(isLast ? outerPadding : innerPadding), 0);
    return QStyle::visualRect(direction, cell, within);
}

void TableDelegate::setEdges(int first, int last) {
    firstColumn = first;
    lastColumn = last;
}

bool TableDelegate::isOutdated(const RowsModelBase& rows, int row, int column) const {
    const auto known = painted.find(keyOf(row, column));
    return known == painted.end() || known->second != rows.cell(row, column);
}

void TableDelegate::forgetPaintedBeside(int first, int last) {
    std::erase_if(painted, [&](const auto& cell) { return rowOf(cell.first) < first || rowOf(cell.first) > last; });
}

QSize TableDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const {
    return {Type::px(60), Type::px(28)};
}

const TableDelegate::Letterings& TableDelegate::letterings() const {
    if (!made || made->base != Type::base())
        made = std::make_unique<Letterings>();
    return *made;
}

void TableDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const auto& rows = static_cast<const RowsModelBase&>(*index.model());
    RowsModelBase::Cell& cell = painted[keyOf(index.row(), index.column())];
    cell = rows.cell(index.row(), index.column());
    const Place place{*painter, option,       rows,        rows.column(index.column()),
                      cell,     letterings(), index.row(), index.column()};
    drawGround(place);
    const QRect rect =
        inner(option.rect, index.column() == firstColumn, index.column() == lastColumn, option.direction);
    if (place.facts.isNumeric)
        drawFigure(place, rect);
    else
        drawWords(place, rect);
}

void TableDelegate::drawGround(const Place& place) const {
    const Theme& theme = Theme::current();
    const QRect& rect = place.option.rect;
    place.painter.fillRect(rect, place.isSelected()     ? theme.selection
                                 : place.row == hovered ? theme.hover
                                                        : theme.card);
    if (const double heat = place.cell.heat.value_or(0); !place.isSelected() && heat > 0) {
        QColor colour = theme.s1;
        colour.setAlphaF(static_cast<float>(fullHeat * std::min(heat, 1.0)));
        place.painter.fillRect(rect, colour);
    }
    place.painter.fillRect(rect.left(), rect.bottom(), rect.width(), 1, theme.separator);
}

void TableDelegate::drawFigure(const Place& place, QRect rect) const {
    const QFont& font = place.letterings.of(place.cell, place.facts);
    place.painter.setPen(place.ink(place.cell.tone));
    if (place.facts.hasSuffix) {
        const QRect slot = place.take(rect, Qt::AlignTrailing, place.letterings.suffix);
        if (!place.cell.suffix.isEmpty())
            place.write(slot, font, ShapedText::of(font, place.cell.suffix));
    }
    if (place.facts.hasBar && place.cell.bar && rect.width() >= Type::px(barWidth + gap + barFigure)) {
        QRect beside = rect;
        place.take(beside, Qt::AlignTrailing, Type::px(barFigure + gap));
        QRect bar = place.take(beside, Qt::AlignTrailing, Type::px(barWidth));
        bar = QStyle::alignedRect(place.option.direction, Qt::AlignCenter, {bar.width(), Type::px(barHeight)}, bar);
        Bar::draw(place.painter, bar, *place.cell.bar, place.facts.barSeries);
    }
    const Qt::Alignment side = place.option.direction == Qt::LeftToRight ? Qt::AlignRight : Qt::AlignLeft;
    const QString figure = oneLine(place.cell.text, Qt::ElideRight);
    if (Numbers::width(font, figure) > rect.width())
        Paint::draw(place.painter, rect, QFontMetricsF(font), side | Qt::AlignAbsolute | Qt::AlignVCenter,
                    ShapedText::fitting(font, figure, rect.width(), Qt::ElideRight));
    else
        Numbers::draw(place.painter, rect, font, side | Qt::AlignAbsolute | Qt::AlignVCenter, figure);
}

void TableDelegate::drawWords(const Place& place, QRect rect) const {
    if (place.facts.hasIcon) {
        const int size = Type::px(iconSize);
        const qreal ratio = place.painter.device()->devicePixelRatioF();
        const QPixmap icon = place.rows.icon(place.row, place.column, size, ratio);
        const QRect taken = place.take(rect, Qt::AlignLeading, size);
        if (!icon.isNull()) {
            place.painter.setOpacity(place.rows.isGone(place.row) ? goneIcon : 1);
            place.painter.drawPixmap(QStyle::alignedRect(place.option.direction, Qt::AlignCenter, {size, size}, taken),
                                     icon);
            place.painter.setOpacity(1);
        }
        place.take(rect, Qt::AlignLeading, Type::px(gap));
    }
    const QFont& font = place.letterings.of(place.cell, place.facts);
    const QFont& note = place.letterings.note;
    const bool hasNote = !place.cell.note.isEmpty();
    const ShapedText remark = hasNote ? ShapedText::of(note, oneLine(place.cell.note, Qt::ElideRight)) : ShapedText();
    const qreal room = rect.width() - (hasNote ? remark.width + Type::px(noteGap) : 0);
    const ShapedText words =
        ShapedText::fitting(font, oneLine(place.cell.text, place.facts.elide), room, place.facts.elide);
    place.painter.setPen(place.ink(place.cell.tone));
    place.write(rect, font, words);
    if (!hasNote)
        return;
    place.take(rect, Qt::AlignLeading, words.width + Type::px(noteGap));
    place.painter.setPen(place.ink(Tone::text3));
    place.write(rect, note, remark);
}

bool TableDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                              const QModelIndex& index) {
    if (event->type() != QEvent::ToolTip || !index.isValid())
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    const auto& rows = static_cast<const RowsModelBase&>(*index.model());
    const RowsModelBase::ColumnFacts& facts = rows.column(index.column());
    QString tip = index.data(Qt::ToolTipRole).toString();
    if (tip.isEmpty()) {
        const RowsModelBase::Cell cell = rows.cell(index.row(), index.column());
        const Letterings& all = letterings();
        qreal room = inner(view->visualRect(index), index.column() == firstColumn, index.column() == lastColumn,
                           option.direction)
                         .width();
        if (facts.hasSuffix)
            room -= all.suffix;
        if (facts.hasIcon)
            room -= Type::px(iconSize) + Type::px(gap);
        if (!cell.note.isEmpty())
            room -= ShapedText::of(all.note, oneLine(cell.note, Qt::ElideRight)).width + Type::px(noteGap);
        if (oneLine(cell.text, facts.elide) != cell.text || ShapedText::of(all.of(cell, facts), cell.text).width > room)
            tip = cell.text;
    }
    QToolTip::showText(event->globalPos(), Paint::toolTip(tip), view->viewport(), view->visualRect(index));
    return true;
}

} // namespace ostrivane
