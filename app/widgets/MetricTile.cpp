#include "app/widgets/MetricTile.hpp"

#include "app/widgets/Badge.hpp"
#include "app/widgets/Icons.hpp"
#include "app/widgets/Numbers.hpp"
#include "app/widgets/Paint.hpp"
#include "app/widgets/Sparkline.hpp"
#include "app/widgets/Style.hpp"
#include "app/widgets/Type.hpp"

#include <QPainter>
#include <QPainterPath>
#include <QStringList>

#include <algorithm>

namespace ostrivane {

namespace {

constexpr double tall = 116;
constexpr double padding = 12;
constexpr double signSize = 16;
constexpr double captionStart = 36;
constexpr double captionMiddle = 18;
constexpr double valueTop = 30;
constexpr double detailTop = 57;
constexpr double pairsTop = 34;
constexpr double lineTall = 34;
constexpr double square = 9;

/// Everything but the line: what assistive programs are told.
QStringList wordsOf(const TileText& text) {
    QStringList words{text.value};
    for (const TileText::Pair& pair : text.pairs)
        words << pair.text;
    words << text.detail << text.corner << text.word;
    words.removeAll(QString());
    return words;
}

} // namespace

MetricTile::MetricTile(std::string iconName, QWidget* parent) : QAbstractButton(parent), icon(std::move(iconName)) {
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
    badge = new Badge(this);
    badge->setAttribute(Qt::WA_TransparentForMouseEvents);
    badge->hide();
    Style::giveFocusRing(*this, 8);
}

void MetricTile::set(TileText told) {
    if (told == shown)
        return;
    shown = std::move(told);
    badge->setVisible(shown.condition.has_value());
    if (shown.condition)
        badge->set(*shown.condition, shown.word);
    placeParts();
    update();
}

void MetricTile::setLines(std::vector<TileLine> given, std::optional<double> upper, double rightEdge) {
    if (given == lines && upper == top && rightEdge == now)
        return;
    lines = std::move(given);
    top = upper;
    now = rightEdge;
    update(linesRect());
}

void MetricTile::setNarrow(bool isNarrow) {
    if (isNarrow == narrow)
        return;
    narrow = isNarrow;
    badge->setGlyphOnly(narrow);
    placeParts();
    update();
}

QSize MetricTile::sizeHint() const {
    return {Type::px(236), Type::px(tall)};
}

QSize MetricTile::minimumSizeHint() const {
    return {Type::px(120), Type::px(tall)};
}

QString MetricTile::accessibleSentence() const {
    return wordsOf(shown).join(QStringLiteral(", "));
}

void MetricTile::resizeEvent(QResizeEvent* event) {
    placeParts();
    QAbstractButton::resizeEvent(event);
}

QRect MetricTile::linesRect() const {
    return {1, height() - 1 - Type::px(lineTall), width() - 2, Type::px(lineTall)};
}

void MetricTile::placeParts() {
    const QSize size = badge->sizeHint();
    const QRect place(width() - Type::px(padding) - size.width(), Type::px(captionMiddle) - size.height() / 2,
                      size.width(), size.height());
    badge->setGeometry(QStyle::visualRect(layoutDirection(), rect(), place));
    const bool isCut =
        Paint::textWidth(Type::font(TypeRole::secondary), shown.detail) > width() - 2 * Type::px(padding);
    const QString wanted = isCut ? Paint::toolTip(shown.detail) : QString();
    if (toolTip() != wanted)
        setToolTip(wanted);
}

void MetricTile::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Theme& theme = Theme::current();
    const bool isHovered = isEnabled() && underMouse();
    const qreal corner = Type::px(8);
    Paint::sheet(painter, rect(), corner, isDown() ? theme.track : isHovered ? theme.hover : theme.card, theme.border);
    drawLines(painter, corner);
    const int side = Type::px(padding);
    const auto visual = [this](const QRect& part) { return QStyle::visualRect(layoutDirection(), rect(), part); };
    const int row = Type::lineHeight(TypeRole::body);
    const int rowTop = Type::px(captionMiddle) - row / 2;
    const int sign = Type::px(signSize);
    const QRect signPlace = visual({side, Type::px(captionMiddle) - sign / 2, sign, sign});
    painter.drawPixmap(signPlace.topLeft(), Icons::pixmap(icon, sign, theme.text2, devicePixelRatioF()));

    int end = width() - side;
    if (shown.condition) {
        end -= badge->width() + Type::px(6);
    } else if (!shown.corner.isEmpty()) {
        const int wide = Paint::textWidth(Type::font(TypeRole::caption), shown.corner);
        painter.setPen(theme.text2);
        Paint::line(painter, visual({end - wide, rowTop, wide, row}), Type::font(TypeRole::caption), shown.corner);
        end -= wide + Type::px(6);
    }
    painter.setPen(theme.text2);
    Paint::line(painter, visual({Type::px(captionStart), rowTop, end - Type::px(captionStart), row}),
                Type::font(TypeRole::body), shown.caption);

    const int room = width() - 2 * side;
    painter.setPen(theme.text);
    Numbers::draw(painter, visual({side, Type::px(valueTop), room, Type::lineHeight(TypeRole::tileValue)}),
                  Type::font(TypeRole::tileValue), Qt::AlignLeading | Qt::AlignVCenter, shown.value);
    int pairTop = Type::px(pairsTop);
    const int pairHeight = Type::px(19);
    for (const TileText::Pair& pair : shown.pairs) {
        const int box = Type::px(square);
        Paint::sheet(painter, visual({side, pairTop + (pairHeight - box) / 2, box, box}), Type::px(2),
                     theme.colour(pair.series));
        painter.setPen(theme.text);
        const int start = side + box + Type::px(6);
        Numbers::draw(painter, visual({start, pairTop, width() - side - start, pairHeight}),
                      Type::font(TypeRole::bodyStrong), Qt::AlignLeading | Qt::AlignVCenter, pair.text);
        pairTop += pairHeight;
    }
    painter.setPen(theme.text2);
    Paint::line(painter, visual({side, Type::px(detailTop), room, Type::lineHeight(TypeRole::secondary)}),
                Type::font(TypeRole::secondary), shown.detail);
}

void MetricTile::drawLines(QPainter& painter, qreal corner) const {
    double upper = top.value_or(0);
    if (!top)
        for (const TileLine& line : lines)
            for (const TimedValue& point : line.points)
                upper = std::max(upper, point.value);
    if (upper <= 0)
        upper = 1; // all is zero, and lies at the foot
    painter.save();
    QPainterPath inside;
    inside.addRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), corner - 1, corner - 1);
    painter.setClipPath(inside);
    for (const TileLine& line : lines) {
        SparklineLook look;
        look.series = line.series;
        look.top = upper;
        look.now = now;
        look.isDashed = line.isDashed;
        look.hasArea = !line.isDashed;
        drawSparkline(painter, linesRect(), line.points, look);
    }
    painter.restore();
}

} // namespace ostrivane
