#include "app/widgets/Legend.hpp"

#include "app/widgets/Numbers.hpp"
#include "app/widgets/Paint.hpp"
#include "app/widgets/Type.hpp"

#include <QPainter>
#include <QStringList>
#include <QStyle>

#include <cmath>

namespace ostrivane {

namespace {

constexpr double square = 9;
constexpr double squareGap = 8;
constexpr double valueGap = 6;
constexpr double entryGap = 14;

QFont valueFont() {
    QFont font = Type::font(TypeRole::secondary);
    font.setWeight(QFont::DemiBold);
    return font;
}

int nameStart(const LegendEntry& entry) {
    return entry.series ? Type::px(square + squareGap) : 0;
}

int valueStart(const LegendEntry& entry) {
    const int name = Paint::textWidth(Type::font(TypeRole::secondary), entry.name);
    return nameStart(entry) + name + (entry.name.isEmpty() || entry.value.isEmpty() ? 0 : Type::px(valueGap));
}

} // namespace

Legend::Legend(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void Legend::set(std::vector<LegendEntry> named) {
    if (named == entries)
        return;
    const int before = sizeHint().width();
    entries = std::move(named);
    if (sizeHint().width() != before)
        updateGeometry();
    update();
}

int Legend::entryWidth(const LegendEntry& entry) const {
    return valueStart(entry) + static_cast<int>(std::ceil(Numbers::width(valueFont(), entry.value)));
}

QSize Legend::sizeHint() const {
    int width = 0;
    for (const LegendEntry& entry : entries)
        width += entryWidth(entry) + (width > 0 ? Type::px(entryGap) : 0);
    return {width, Type::px(20)};
}

QSize Legend::minimumSizeHint() const {
    return {entries.empty() ? 0 : entryWidth(entries.front()), Type::px(20)};
}

QString Legend::accessibleLabel() const {
    QStringList parts;
    for (const LegendEntry& entry : entries)
        parts << QStringLiteral("%1 %2").arg(entry.name, entry.value).trimmed();
    return parts.join(QStringLiteral(", "));
}

void Legend::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Theme& theme = Theme::current();
    const auto visual = [this](const QRect& part) { return QStyle::visualRect(layoutDirection(), rect(), part); };
    int x = 0;
    for (const LegendEntry& entry : entries) {
        const int wide = entryWidth(entry);
        if (x + wide > width() && x > 0)
            break;
        if (entry.series) {
            const int side = Type::px(square);
            Paint::sheet(painter, visual({x, (height() - side) / 2, side, side}), Type::px(2),
                         theme.colour(*entry.series));
        }
        const int name = x + nameStart(entry);
        const int value = x + valueStart(entry);
        painter.setPen(theme.text2);
        Paint::line(painter, visual({name, 0, value - name, height()}), Type::font(TypeRole::secondary), entry.name);
        painter.setPen(theme.text);
        Numbers::draw(painter, visual({value, 0, x + wide - value, height()}), valueFont(),
                      Qt::AlignLeading | Qt::AlignVCenter, entry.value);
        x += wide + Type::px(entryGap);
    }
}

} // namespace ostrivane
