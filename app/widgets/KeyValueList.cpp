#include "app/widgets/KeyValueList.hpp"

#include "app/widgets/Numbers.hpp"
#include "app/widgets/Paint.hpp"
#include "app/widgets/Type.hpp"

#include <QHelpEvent>
#include <QPainter>
#include <QStringList>
#include <QStyle>
#include <QToolTip>

#include <algorithm>
#include <cmath>

namespace ostrivane {

namespace {

constexpr double lineHeight = 22;
constexpr double ruleHeight = 9;
constexpr double gap = 12;

int heightOf(const KeyValue& line) {
    return Type::px(line.key.isEmpty() ? ruleHeight : lineHeight);
}

int widthOf(const KeyValue& line) {
    return static_cast<int>(std::ceil(Numbers::width(Type::font(TypeRole::table), line.value)));
}

} // namespace

KeyValueList::KeyValueList(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void KeyValueList::set(std::vector<KeyValue> entries) {
    if (entries == lines)
        return;
    const int before = sizeHint().height();
    const bool sameCount = entries.size() == lines.size();
    std::swap(lines, entries);
    const bool sameHeight = sameCount && sizeHint().height() == before;
    for (std::size_t index = 0; sameHeight && index < lines.size(); ++index)
        if (lines[index] != entries[index])
            update(lineRect(index));
    if (!sameHeight) {
        updateGeometry();
        update();
    }
}

QSize KeyValueList::sizeHint() const {
    int widest = 0;
    int height = 0;
    for (const KeyValue& line : lines) {
        widest =
            std::max(widest, Paint::textWidth(Type::font(TypeRole::table), line.key) + Type::px(gap) + widthOf(line));
        height += heightOf(line);
    }
    return {std::min(widest, Type::px(360)), height};
}

QSize KeyValueList::minimumSizeHint() const {
    return {Type::px(120), sizeHint().height()};
}

QString KeyValueList::accessibleLabel() const {
    QStringList parts;
    for (const KeyValue& line : lines)
        if (!line.key.isEmpty())
            parts << QStringLiteral("%1 %2").arg(line.key, line.value).trimmed();
    return parts.join(QStringLiteral(", "));
}

int KeyValueList::valueWidth(const KeyValue& line) const {
    const int key = Paint::textWidth(Type::font(TypeRole::table), line.key);
    const int least = std::min(key, width() * 2 / 5); // a name keeps so much, whatever the figure takes
    return std::min(widthOf(line), std::max(0, width() - least - Type::px(gap)));
}

QRect KeyValueList::lineRect(std::size_t index) const {
    int top = 0;
    for (std::size_t before = 0; before < index; ++before)
        top += heightOf(lines[before]);
    return {0, top, width(), heightOf(lines[index])};
}

void KeyValueList::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    const Theme& theme = Theme::current();
    const QFont font = Type::font(TypeRole::table);
    for (std::size_t index = 0; index < lines.size(); ++index) {
        const KeyValue& line = lines[index];
        const QRect place = lineRect(index);
        if (!event->rect().intersects(place))
            continue;
        if (line.key.isEmpty()) {
            painter.fillRect(QRect(0, place.center().y(), width(), 1), theme.separator);
            continue;
        }
        const int room = valueWidth(line);
        const auto visual = [&](const QRect& part) { return QStyle::visualRect(layoutDirection(), rect(), part); };
        painter.setPen(theme.text2);
        Paint::line(painter, visual(place.adjusted(0, 0, -room - Type::px(gap), 0)), font, line.key);
        painter.setPen(theme.colour(Numbers::toneOf(line.value, line.tone)));
        const QRect trailing = visual(place.adjusted(width() - room, 0, 0, 0));
        if (widthOf(line) <= room)
            Numbers::draw(painter, trailing, font, Qt::AlignTrailing | Qt::AlignVCenter, line.value);
        else
            Paint::line(painter, trailing, font, line.value, Qt::AlignTrailing | Qt::AlignVCenter);
    }
}

/// What is cut off is told whole.
bool KeyValueList::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    for (std::size_t index = 0; index < lines.size(); ++index) {
        const KeyValue& line = lines[index];
        if (!lineRect(index).contains(help->pos()))
            continue;
        const int key = Paint::textWidth(Type::font(TypeRole::table), line.key);
        if (widthOf(line) > valueWidth(line) || key + Type::px(gap) + valueWidth(line) > width()) {
            QToolTip::showText(help->globalPos(), Paint::toolTip(line.key + QStringLiteral(": ") + line.value), this);
            return true;
        }
    }
    return QWidget::event(event);
}

} // namespace ostrivane
