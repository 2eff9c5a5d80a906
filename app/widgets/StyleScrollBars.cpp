#include "app/widgets/Paint.hpp"
#include "app/widgets/StyleParts.hpp"
#include "app/widgets/Theme.hpp"
#include "app/widgets/Type.hpp"

#include <QPainter>
#include <QStyleOptionSlider>

#include <algorithm>

namespace ostrivane::StyleParts {

namespace {

constexpr double leastLength = 28; // of the part that is moved

} // namespace

void drawScrollBar(QPainter& painter, const QStyleOptionSlider& option) {
    if (option.maximum <= option.minimum)
        return;
    const Theme& theme = Theme::current();
    const bool isUpright = option.orientation == Qt::Vertical;
    const bool isTouched = option.state & (QStyle::State_MouseOver | QStyle::State_Sunken);
    const qreal thick = Type::px(isTouched ? 7 : 5);
    QRectF thumb = scrollBarPart(option, QStyle::SC_ScrollBarSlider);
    const qreal spare = ((isUpright ? thumb.width() : thumb.height()) - thick) / 2;
    thumb.adjust(isUpright ? spare : 2, isUpright ? 2 : spare, isUpright ? -spare : -2, isUpright ? -2 : -spare);
    Paint::sheet(painter, thumb, thick / 2, Paint::mixed(theme.track, theme.text3, isTouched ? 0.75 : 0.4));
}

QRect scrollBarPart(const QStyleOptionSlider& option, QStyle::SubControl part) {
    const QRect whole = option.rect;
    const bool isUpright = option.orientation == Qt::Vertical;
    const int length = isUpright ? whole.height() : whole.width();
    const auto stretch = [&](int from, int size) {
        const QRect place = isUpright ? QRect(whole.left(), whole.top() + from, whole.width(), size)
                                      : QRect(whole.left() + from, whole.top(), size, whole.height());
        return isUpright ? place : QStyle::visualRect(option.direction, whole, place);
    };
    const qint64 range = qint64{option.maximum} - option.minimum;
    const int least = std::min(length, Type::px(leastLength));
    const int thumb = range <= 0 ? length
                                 : std::clamp(static_cast<int>(qint64{option.pageStep} * length /
                                                               std::max<qint64>(1, range + option.pageStep)),
                                              least, length);
    const int start = QStyle::sliderPositionFromValue(option.minimum, option.maximum, option.sliderPosition,
                                                      length - thumb, option.upsideDown);
    switch (part) {
    case QStyle::SC_ScrollBarGroove:
        return whole;
    case QStyle::SC_ScrollBarSlider:
        return stretch(start, thumb);
    case QStyle::SC_ScrollBarSubPage:
        return stretch(0, start);
    case QStyle::SC_ScrollBarAddPage:
        return stretch(start + thumb, length - start - thumb);
    default:
        return {}; // no arrows
    }
}

} // namespace ostrivane::StyleParts
