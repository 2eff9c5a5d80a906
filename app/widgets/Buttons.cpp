#include "app/widgets/Buttons.hpp"

#include "app/widgets/ButtonLook.hpp"
#include "app/widgets/Icons.hpp"
#include "app/widgets/Paint.hpp"
#include "app/widgets/Style.hpp"
#include "app/widgets/Theme.hpp"
#include "app/widgets/Type.hpp"

#include <QMenu>
#include <QPainter>

#include <algorithm>

namespace ostrivane {

namespace {

constexpr double signSize = 16;
constexpr double signGap = 6;
constexpr double chevronWidth = 20;
constexpr double switchWidth = 32;
constexpr double switchHeight = 18;
constexpr double leastTarget = 24;

void drawIcon(QPainter& painter, std::string_view name, const QRect& place, const QColor& ink) {
    const qreal ratio = painter.device()->devicePixelRatioF();
    painter.drawPixmap(place.topLeft(), Icons::pixmap(name, place.width(), ink, ratio));
}

QRect centred(const QRect& within, int size) {
    return {within.left() + (within.width() - size) / 2, within.top() + (within.height() - size) / 2, size, size};
}

} // namespace

PushButton::PushButton(const QString& text, ButtonKind kind, QWidget* parent)
    : QPushButton(text, parent), meaning(kind) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAttribute(Qt::WA_Hover);
    setAutoDefault(false);
    Style::giveFocusRing(*this, 6);
}

void PushButton::setSmall(bool isSmallNow) {
    if (isSmallNow == small)
        return;
    small = isSmallNow;
    updateGeometry();
    update();
}

void PushButton::setIconName(std::string_view name, std::optional<Tone> tone) {
    if (name == iconName && tone == iconTone)
        return;
    iconName = name;
    iconTone = tone;
    updateGeometry();
    update();
}

QSize PushButton::sizeHint() const {
    int width = 2 * Type::px(small ? 9 : 13);
    if (!text().isEmpty())
        width += Paint::textWidth(Type::font(small ? TypeRole::secondary : TypeRole::body), text());
    if (!iconName.empty())
        width += Type::px(signSize) + (text().isEmpty() ? 0 : Type::px(signGap));
    if (menu())
        width += Type::px(chevronWidth - 4);
    return {width, Type::px(small ? 24 : 28)};
}

void PushButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    ButtonLook::State state = ButtonLook::stateOf(*this);
    state.isPressed = state.isPressed || isChecked();
    const QColor ink = ButtonLook::drawGround(painter, rect(), meaning, state);
    const int padding = Type::px(small ? 9 : 13);
    QRect room = rect().adjusted(padding, 0, -padding, 0);
    const auto visual = [this](const QRect& part) { return QStyle::visualRect(layoutDirection(), rect(), part); };
    if (menu()) {
        room.setRight(room.right() - Type::px(chevronWidth - 4));
        const QRect chevron(room.right(), 0, Type::px(chevronWidth), height());
        ButtonLook::drawChevron(painter, visual(chevron), ink);
    }
    if (!iconName.empty()) {
        const int size = Type::px(signSize);
        const QRect icon(room.left(), (height() - size) / 2, size, size);
        drawIcon(painter, iconName, visual(icon), iconTone && isEnabled() ? Theme::current().colour(*iconTone) : ink);
        room.setLeft(icon.right() + 1 + Type::px(signGap));
    }
    painter.setPen(ink);
    const bool centres = iconName.empty() && !menu();
    Paint::line(painter, visual(room), Type::font(small ? TypeRole::secondary : TypeRole::body), text(),
                centres ? Qt::AlignCenter : Qt::AlignLeading | Qt::AlignVCenter);
}

IconButton::IconButton(std::string_view iconName, const QString& name, QWidget* parent)
    : QAbstractButton(parent), icon(iconName) {
    setText(name);
    setAccessibleName(name);
    setToolTip(name);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
    Style::giveFocusRing(*this, 6);
}

QSize IconButton::sizeHint() const {
    return {Type::px(28), Type::px(28)};
}

void IconButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Theme& theme = Theme::current();
    const ButtonLook::State state = ButtonLook::stateOf(*this);
    if (!state.isEnabled)
        painter.setOpacity(0.38);
    else if (isChecked() || state.isPressed || state.isHovered)
        Paint::sheet(painter, rect(), Type::px(6),
                     isChecked()       ? theme.selection
                     : state.isPressed ? theme.track
                                       : theme.hover);
    drawIcon(painter, icon, centred(rect(), Type::px(signSize)), isChecked() ? theme.accent : theme.text2);
}

LinkButton::LinkButton(const QString& text, QWidget* parent) : QAbstractButton(parent) {
    setText(text);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
    Style::giveFocusRing(*this, 4);
}

QSize LinkButton::sizeHint() const {
    return {std::max(Paint::textWidth(Type::font(TypeRole::secondary), text()), Type::px(leastTarget)),
            Type::px(leastTarget)};
}

void LinkButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const ButtonLook::State state = ButtonLook::stateOf(*this);
    QFont font = Type::font(TypeRole::secondary);
    font.setUnderline(state.isEnabled && state.isHovered);
    painter.setPen(state.isEnabled ? Theme::current().accent : Theme::current().text3);
    Paint::line(painter, rect(), font, text(), Qt::AlignLeading | Qt::AlignVCenter);
}

Switch::Switch(const QString& name, QWidget* parent) : QAbstractButton(parent) {
    setCheckable(true);
    setAccessibleName(name);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
    Style::giveFocusRing(*this, 12);
}

QSize Switch::sizeHint() const {
    return {Type::px(switchWidth), Type::px(leastTarget)};
}

void Switch::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Theme& theme = Theme::current();
    const ButtonLook::State state = ButtonLook::stateOf(*this);
    const int high = Type::px(switchHeight);
    const QRect pill(0, (height() - high) / 2, width(), high);
    QColor ground = isChecked() ? theme.accentFill : theme.unknown.mark;
    if (!state.isEnabled)
        ground = Paint::mixed(theme.card, ground, 0.4);
    else if (state.isHovered)
        ground = ground.darker(108);
    Paint::sheet(painter, pill, high / 2.0, ground);
    const int inset = Type::px(2);
    const int knob = high - 2 * inset;
    const QRect place(isChecked() ? pill.right() + 1 - inset - knob : inset, pill.top() + inset, knob, knob);
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme.onAccent);
    painter.drawEllipse(QStyle::visualRect(layoutDirection(), rect(), place));
}

} // namespace ostrivane
