#include "app/pages/MomentReadout.hpp"

#include "app/widgets/Numbers.hpp"

#include <QFontMetricsF>
#include <QPainter>
#include <QStyle>

#include <algorithm>
#include <cmath>

namespace ostrivane {

namespace {

constexpr double padding = 10;
constexpr double gap = 6;
constexpr double swatch = 8;
constexpr double swatchRoom = 14;
constexpr double valueRoom = 16; // between name and value
constexpr double narrowest = 190;
constexpr double widest = 280;

} // namespace

MomentReadout::MomentReadout(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    hide();
}

void MomentReadout::set(const MomentText& moment) {
    if (moment == shown)
        return;
    shown = moment;
    setAccessibleName(shown.title);
    setAccessibleDescription(spoken(shown));
    resize(sizeHint());
    update();
}

std::vector<MomentReadout::Entry> MomentReadout::entries() const {
    std::vector<Entry> list{{{}, shown.title, {}, TypeRole::captionStrong, false}};
    if (!shown.note.isEmpty())
        list.push_back({{}, shown.note, {}, TypeRole::caption, false});
    for (const MomentText::Line& line : shown.figures)
        list.push_back({line.series, line.name, line.value, TypeRole::caption, false});
    if (!shown.session.isEmpty())
        list.push_back({{}, shown.session, {}, TypeRole::captionStrong, true});
    if (!shown.appsTitle.isEmpty())
        list.push_back({{}, shown.appsTitle, {}, TypeRole::captionStrong, true});
    for (const MomentText::Line& line : shown.apps)
        list.push_back({{}, line.name, line.value, TypeRole::caption, false});
    return list;
}

QSize MomentReadout::sizeHint() const {
    double width = Type::px(narrowest);
    double height = 2 * Type::px(padding);
    for (const Entry& entry : entries()) {
        const QFont font = Type::font(entry.role);
        const double value = entry.value.isEmpty() ? 0 : Numbers::width(font, entry.value) + Type::px(valueRoom);
        const double mark = entry.series ? Type::px(swatchRoom) : 0;
        width =
            std::max(width, mark + QFontMetricsF(font).horizontalAdvance(entry.name) + value + 2 * Type::px(padding));
        height += Type::lineHeight(entry.role) + Type::px(2) + (entry.isSpaced ? Type::px(gap) : 0);
    }
    return {static_cast<int>(std::ceil(std::min<double>(width, Type::px(widest)))),
            static_cast<int>(std::ceil(height))};
}

void MomentReadout::paintEvent(QPaintEvent*) {
    const Theme& theme = Theme::current();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme.tooltip);
    painter.drawRoundedRect(rect(), Type::px(6), Type::px(6));
    const auto trailing = QStyle::visualAlignment(layoutDirection(), Qt::AlignRight) | Qt::AlignVCenter;
    const auto leading = QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft) | Qt::AlignVCenter;
    int y = Type::px(padding);
    for (const Entry& entry : entries()) {
        y += entry.isSpaced ? Type::px(gap) : 0;
        const int height = Type::lineHeight(entry.role) + Type::px(2);
        const QFont font = Type::font(entry.role);
        QRect line(Type::px(padding), y, width() - 2 * Type::px(padding), height);
        y += height;
        if (entry.series) {
            const int side = Type::px(swatch);
            const QRect mark(line.left(), line.center().y() - side / 2, side, side);
            painter.setPen(Qt::NoPen);
            painter.setBrush(theme.colour(*entry.series));
            painter.drawRoundedRect(QStyle::visualRect(layoutDirection(), rect(), mark), 2, 2);
            line.setLeft(line.left() + Type::px(swatchRoom));
        }
        painter.setPen(theme.onTooltip);
        if (!entry.value.isEmpty()) {
            const int room = static_cast<int>(std::ceil(Numbers::width(font, entry.value)));
            const QRect value(line.right() - room + 1, line.top(), room, height);
            Numbers::draw(painter, QStyle::visualRect(layoutDirection(), rect(), value), font, trailing, entry.value);
            line.setRight(value.left() - Type::px(valueRoom));
        }
        painter.setFont(font);
        painter.drawText(QStyle::visualRect(layoutDirection(), rect(), line), static_cast<int>(leading),
                         QFontMetricsF(font).elidedText(entry.name, Qt::ElideRight, line.width()));
    }
}

} // namespace ostrivane
