#include "app/widgets/ButtonLook.hpp"
#include "app/widgets/Paint.hpp"
#include "app/widgets/StyleParts.hpp"
#include "app/widgets/Theme.hpp"
#include "app/widgets/Type.hpp"

#include <QPainter>
#include <QPolygonF>
#include <QStyleOption>

#include <algorithm>

namespace ostrivane::StyleParts {

namespace {

constexpr double corner = 6;
constexpr double stepWidth = 26;
constexpr double fieldPadding = 10;
constexpr double chevronRoom = 26;

bool isOn(const QStyleOption& option, QStyle::StateFlag flag) {
    return option.state & flag;
}

/// The edge of something to type in or tick: it turns to the accent where the focus is.
QColor edgeOf(const QStyleOption& option) {
    const Theme& theme = Theme::current();
    return isOn(option, QStyle::State_HasFocus) && isOn(option, QStyle::State_Enabled) ? theme.accent : theme.border;
}

/// The sign of one of the two steps.
void drawStep(QPainter& painter, const QRect& place, bool isPlus, const QColor& ink) {
    const qreal half = Type::px(35) / 10.0;
    const QPointF middle = QRectF(place).center();
    painter.setPen(QPen(ink, Type::px(13) / 10.0, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(middle - QPointF(half, 0), middle + QPointF(half, 0));
    if (isPlus)
        painter.drawLine(middle - QPointF(0, half), middle + QPointF(0, half));
}

} // namespace

void drawField(QPainter& painter, const QStyleOption& option) {
    const Theme& theme = Theme::current();
    const bool isEnabled = isOn(option, QStyle::State_Enabled);
    Paint::sheet(painter, option.rect, Type::px(corner), isEnabled ? theme.card : QColor(), edgeOf(option));
}

void drawTick(QPainter& painter, const QStyleOption& option) {
    const Theme& theme = Theme::current();
    const bool isEnabled = isOn(option, QStyle::State_Enabled);
    const bool isMixed = isOn(option, QStyle::State_NoChange);
    const bool isSet = isMixed || isOn(option, QStyle::State_On);
    const qreal side = std::min({option.rect.width(), option.rect.height(), Type::px(16)});
    QRectF box(0, 0, side, side);
    box.moveCenter(QRectF(option.rect).center());
    box.moveTopLeft(QPointF(box.topLeft().toPoint()));
    const qreal radius = side / 4;
    if (isSet && isEnabled)
        Paint::sheet(painter, box, radius,
                     isOn(option, QStyle::State_Sunken) ? theme.accentFill.darker(115) : theme.accentFill);
    else if (!isEnabled)
        Paint::sheet(painter, box, radius, theme.track, theme.border);
    else
        Paint::sheet(painter, box, radius, isOn(option, QStyle::State_Sunken) ? theme.track : theme.card,
                     theme.unknown.mark);
    if (!isSet)
        return;
    const qreal unit = side / 16;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(
        QPen(isEnabled ? theme.onAccent : theme.text3, 1.8 * unit, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const auto at = [&](qreal x, qreal y) { return box.topLeft() + QPointF(x, y) * unit; };
    if (isMixed)
        painter.drawLine(at(4.5, 8), at(11.5, 8));
    else
        painter.drawPolyline(QPolygonF({at(4.4, 8.3), at(6.9, 10.8), at(11.6, 5.4)}));
}

void drawRadio(QPainter& painter, const QStyleOption& option) {
    const Theme& theme = Theme::current();
    const bool isEnabled = isOn(option, QStyle::State_Enabled);
    const qreal side = std::min({option.rect.width(), option.rect.height(), Type::px(16)});
    QRectF disc(0, 0, side, side);
    disc.moveCenter(QRectF(option.rect).center());
    if (!isOn(option, QStyle::State_On)) {
        Paint::sheet(painter, disc, side / 2, isEnabled ? theme.card : theme.track,
                     isEnabled ? theme.unknown.mark : theme.border);
        return;
    }
    Paint::sheet(painter, disc, side / 2, isEnabled ? theme.accentFill : theme.track);
    painter.setBrush(isEnabled ? theme.onAccent : theme.text3);
    painter.drawEllipse(disc.center(), side / 5.3, side / 5.3);
}

void drawComboBox(QPainter& painter, const QStyleOptionComboBox& option) {
    const Theme& theme = Theme::current();
    const bool isEnabled = isOn(option, QStyle::State_Enabled);
    if (option.editable)
        drawField(painter, option);
    else
        ButtonLook::drawGround(painter, option.rect, ButtonKind::plain,
                               {isEnabled, isOn(option, QStyle::State_MouseOver),
                                isOn(option, QStyle::State_Sunken) || isOn(option, QStyle::State_On)});
    ButtonLook::drawChevron(painter, comboBoxPart(option, QStyle::SC_ComboBoxArrow),
                            isEnabled ? theme.text2 : theme.text3);
}

QRect comboBoxPart(const QStyleOptionComboBox& option, QStyle::SubControl part) {
    const QRect whole = option.rect;
    const int arrow = Type::px(chevronRoom);
    const auto visual = [&](const QRect& place) { return QStyle::visualRect(option.direction, whole, place); };
    switch (part) {
    case QStyle::SC_ComboBoxArrow:
        return visual({whole.right() + 1 - arrow, whole.top(), arrow, whole.height()});
    case QStyle::SC_ComboBoxEditField:
        return visual(whole.adjusted(Type::px(option.editable ? 4 : fieldPadding), 1, -arrow, -1));
    default:
        return whole;
    }
}

void drawSpinBox(QPainter& painter, const QStyleOptionSpinBox& option) {
    const Theme& theme = Theme::current();
    const bool isEnabled = isOn(option, QStyle::State_Enabled);
    drawField(painter, option);
    if (option.buttonSymbols == QAbstractSpinBox::NoButtons)
        return;
    for (const QStyle::SubControl part : {QStyle::SC_SpinBoxDown, QStyle::SC_SpinBoxUp}) {
        const bool isPlus = part == QStyle::SC_SpinBoxUp;
        const bool canStep =
            isEnabled &&
            (option.stepEnabled & (isPlus ? QAbstractSpinBox::StepUpEnabled : QAbstractSpinBox::StepDownEnabled));
        const QRect place = spinBoxPart(option, part);
        if (canStep && option.activeSubControls == part && isOn(option, QStyle::State_MouseOver)) {
            painter.save(); // the round corners of the box end the ground of its outer step
            const int inset = Type::px(2);
            Paint::sheet(painter, place.adjusted(inset, inset, -inset, -inset), Type::px(4),
                         isOn(option, QStyle::State_Sunken) ? theme.track : theme.hover);
            painter.restore();
        }
        const bool mirrored = option.direction == Qt::RightToLeft;
        painter.fillRect(
            QRect(mirrored ? place.right() : place.left(), option.rect.top() + 1, 1, option.rect.height() - 2),
            theme.border);
        painter.setRenderHint(QPainter::Antialiasing);
        drawStep(painter, place, isPlus, canStep ? theme.text : theme.text3);
    }
}

QRect spinBoxPart(const QStyleOptionSpinBox& option, QStyle::SubControl part) {
    const QRect whole = option.rect;
    const bool hasSteps = option.buttonSymbols != QAbstractSpinBox::NoButtons;
    const int step = hasSteps ? Type::px(stepWidth) : 0;
    const auto visual = [&](const QRect& place) { return QStyle::visualRect(option.direction, whole, place); };
    switch (part) {
    case QStyle::SC_SpinBoxUp:
        return visual({whole.right() + 1 - step, whole.top(), step, whole.height()});
    case QStyle::SC_SpinBoxDown:
        return visual({whole.right() + 1 - 2 * step, whole.top(), step, whole.height()});
    case QStyle::SC_SpinBoxEditField:
        return visual(whole.adjusted(Type::px(8), 1, -2 * step - Type::px(4), -1));
    default:
        return whole;
    }
}

} // namespace ostrivane::StyleParts
