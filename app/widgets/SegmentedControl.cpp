#include "app/widgets/SegmentedControl.hpp"

#include "app/widgets/Paint.hpp"
#include "app/widgets/Style.hpp"
#include "app/widgets/Theme.hpp"
#include "app/widgets/Type.hpp"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace ostrivane {

namespace {

constexpr double controlHeight = 28;
constexpr double padding = 12;
constexpr double inset = 2;

int widthOf(const QString& title) {
    return std::max(Paint::textWidth(Type::font(TypeRole::tableStrong), title) + 2 * Type::px(padding), Type::px(32));
}

} // namespace

SegmentedControl::SegmentedControl(const QString& name, const QStringList& choices, QWidget* parent)
    : QWidget(parent), titles(choices) {
    setAccessibleName(name);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    Style::giveFocusRing(*this, 6);
}

void SegmentedControl::setIndex(int index) {
    if (index == chosen || index < 0 || index >= titles.size())
        return;
    chosen = index;
    update();
}

QSize SegmentedControl::sizeHint() const {
    int width = 2 * Type::px(inset);
    for (const QString& title : titles)
        width += widthOf(title);
    return {width, Type::px(controlHeight)};
}

QString SegmentedControl::accessibleSentence() const {
    return titles.value(chosen);
}

void SegmentedControl::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Theme& theme = Theme::current();
    Paint::sheet(painter, rect(), Type::px(6), theme.track);
    for (int index = 0; index < titles.size(); ++index) {
        const QRect part = segment(index);
        const bool isChosen = index == chosen;
        if (isChosen && isEnabled())
            Paint::sheet(painter, part, Type::px(5), theme.card, theme.border);
        painter.setPen(!isEnabled() ? theme.text3 : isChosen || index == hovered ? theme.text : theme.text2);
        Paint::line(painter, part, Type::font(isChosen ? TypeRole::tableStrong : TypeRole::table), titles[index],
                    Qt::AlignCenter);
    }
}

void SegmentedControl::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        choose(segmentAt(event->position().toPoint()));
}

void SegmentedControl::mouseMoveEvent(QMouseEvent* event) {
    const int under = segmentAt(event->position().toPoint());
    if (under == hovered)
        return;
    hovered = under;
    update();
}

void SegmentedControl::leaveEvent(QEvent* event) {
    hovered = -1;
    update();
    QWidget::leaveEvent(event);
}

void SegmentedControl::keyPressEvent(QKeyEvent* event) {
    const bool mirrored = layoutDirection() == Qt::RightToLeft;
    const int last = static_cast<int>(titles.size()) - 1;
    switch (event->key()) {
    case Qt::Key_Left:
        return choose(std::clamp(chosen + (mirrored ? 1 : -1), 0, last));
    case Qt::Key_Right:
        return choose(std::clamp(chosen + (mirrored ? -1 : 1), 0, last));
    case Qt::Key_Home:
        return choose(0);
    case Qt::Key_End:
        return choose(last);
    default:
        QWidget::keyPressEvent(event);
    }
}

QRect SegmentedControl::segment(int index) const {
    const int edge = Type::px(inset);
    int left = edge;
    for (int before = 0; before < index; ++before)
        left += widthOf(titles[before]);
    const int high = Type::px(controlHeight);
    const QRect part(left, (height() - high) / 2 + edge, widthOf(titles.value(index)), high - 2 * edge);
    return QStyle::visualRect(layoutDirection(), rect(), part);
}

int SegmentedControl::segmentAt(const QPoint& point) const {
    for (int index = 0; index < titles.size(); ++index) {
        const QRect part = segment(index);
        if (point.x() >= part.left() && point.x() <= part.right())
            return index;
    }
    return -1;
}

void SegmentedControl::choose(int index) {
    if (index == chosen || index < 0 || index >= titles.size())
        return;
    chosen = index;
    update();
    QAccessibleEvent selection(this, QAccessible::Selection);
    selection.setChild(index);
    QAccessible::updateAccessibility(&selection);
    Q_EMIT indexChosen(index);
}

} // namespace ostrivane
