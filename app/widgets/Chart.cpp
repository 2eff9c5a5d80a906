#include "app/widgets/Chart.hpp"

#include "app/widgets/ChartShape.hpp"
#include "app/widgets/Style.hpp"
#include "app/widgets/Type.hpp"

#include <QAccessible>
#include <QEvent>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace ostrivane {

Chart::Chart(const QString& name, QWidget* parent) : QWidget(parent) {
    setAccessibleName(name);
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    Style::giveFocusRing(*this, 6);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

QString Chart::description() const {
    if (!cursorTime)
        return summary();
    return summary() + QLatin1Char(' ') + ChartReadout::sentence(reading(*cursorTime));
}

QSize Chart::sizeHint() const {
    return {Type::px(320), Type::px(160)};
}

QSize Chart::minimumSizeHint() const {
    return {Type::px(120), Type::px(showsLabels ? 60 : 32)};
}

int Chart::timesHeight() const {
    return showsTimes && showsLabels ? Type::px(4) + Type::lineHeight(TypeRole::caption) : 0;
}

GridDetail Chart::detail() const {
    if (!showsLabels)
        return GridDetail::none;
    const int room = height() - timesHeight();
    if (room >= Type::px(110))
        return GridDetail::all;
    return room >= Type::px(74) ? GridDetail::ends : GridDetail::middle;
}

ChartSpace Chart::space() const {
    const GridDetail shown = detail();
    const bool hasEnds = shown == GridDetail::ends || shown == GridDetail::all;
    const int half = Type::lineHeight(TypeRole::caption) / 2;
    int right = 0;
    if (showsLabels) {
        const QFontMetrics metrics(Type::font(TypeRole::caption));
        right = std::max(ChartPaint::axisWidth(grid), Type::px(8) + metrics.horizontalAdvance(reservedLabel));
    }
    const int below = std::max(timesHeight(), hasEnds ? half : 1);
    const QRect plot = rect().adjusted(0, hasEnds ? half : 1, -right, -below);
    return {.plot = QRectF(plot.left(), plot.top(), std::max(1, plot.width()), std::max(1, plot.height())),
            .since = bounds.since,
            .until = bounds.until,
            .lower = bounds.lower,
            .upper = bounds.upper};
}

void Chart::setView(const View& view) {
    bounds = view;
    scene = {};
    refreshGrid();
    followPointer();
    if (cursorTime && isByKeys)
        moveCursor(ChartShape::nearest(sampleTimes(), *cursorTime));
    updatePlot();
}

void Chart::refreshGrid() {
    ChartGrid made = makeGrid(detail());
    if (!showsLabels || !showsTimes) {
        for (GridTime& time : made.times)
            time.label.clear();
    }
    if (made == grid)
        return;
    grid = std::move(made);
    dropPictures();
    update();
}

/// The read-out may stand over the labels too.
void Chart::updatePlot() {
    if (cursorTime)
        update();
    else
        update(space().plot.toAlignedRect().adjusted(-2, -2, 2, 2));
}

void Chart::setShowsTimes(bool shows) {
    showsTimes = shows;
    refreshGrid();
    update();
}

void Chart::setShowsLabels(bool shows) {
    showsLabels = shows;
    refreshGrid();
    updateGeometry();
    update();
}

void Chart::setShowsReadout(bool shows) {
    showsReadout = shows;
    update();
}

void Chart::setReservedLabel(const QString& widest) {
    reservedLabel = widest;
    dropPictures();
    update();
}

QPixmap Chart::emptyPicture() const {
    const qreal ratio = devicePixelRatioF();
    QPixmap made(size() * ratio);
    made.setDevicePixelRatio(ratio);
    made.fill(Qt::transparent);
    return made;
}

void Chart::drawFigures(QPainter& painter) const {
    painter.drawPixmap(0, 0, backdrop);
    const ChartSpace shown = space();
    painter.save();
    painter.setClipRect(shown.plot.adjusted(0, -1, 0, 0), Qt::IntersectClip);
    drawLines(painter, shown);
    painter.restore();
}

void Chart::dropPictures() {
    backdrop = {};
    scene = {};
}

void Chart::paintEvent(QPaintEvent*) {
    if (size().isEmpty())
        return;
    if (backdrop.isNull() || backdrop.devicePixelRatio() != devicePixelRatioF()) {
        dropPictures();
        backdrop = emptyPicture();
        QPainter grounding(&backdrop);
        ChartPaint::drawGrid(grounding, space().plot, grid, width());
    }
    QPainter painter(this);
    if (!cursorTime) {
        scene = {};
        drawFigures(painter);
        return;
    }
    if (scene.isNull()) {
        scene = emptyPicture();
        QPainter drawing(&scene);
        drawFigures(drawing);
    }
    painter.drawPixmap(0, 0, scene);
    const ChartSpace shown = space();
    const ChartReading told = reading(*cursorTime);
    ChartReadout::drawCursor(painter, shown, told);
    if (showsReadout)
        ChartReadout::drawBox(painter, shown, told, QRectF(shown.plot.left(), 0, shown.plot.width(), height()));
}

void Chart::resizeEvent(QResizeEvent*) {
    refreshGrid();
    dropPictures();
}

void Chart::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    switch (event->type()) {
    case QEvent::PaletteChange:
    case QEvent::StyleChange:
    case QEvent::FontChange:
    case QEvent::ApplicationFontChange:
        dropPictures();
        refreshGrid();
        updateGeometry();
        update();
        break;
    default:
        break;
    }
}

void Chart::mouseMoveEvent(QMouseEvent* event) {
    const QRectF plot = space().plot;
    const qreal x = event->position().x();
    if (x < plot.left() || x > plot.right()) {
        leaveEvent(event);
        return;
    }
    pointer = x;
    isByKeys = false;
    followPointer();
}

/// Figures move on below a pointer that rests.
void Chart::followPointer() {
    if (pointer)
        moveCursor(ChartShape::nearest(sampleTimes(), space().time(*pointer)));
}

void Chart::leaveEvent(QEvent*) {
    if (!pointer)
        return;
    pointer.reset();
    moveCursor(std::nullopt);
}

void Chart::keyPressEvent(QKeyEvent* event) {
    const std::vector<double> times = sampleTimes();
    std::optional<double> wanted;
    switch (event->key()) {
    case Qt::Key_Left:
        wanted = cursorTime ? ChartShape::stepped(times, *cursorTime, -1) : ChartShape::nearest(times, bounds.until);
        break;
    case Qt::Key_Right:
        wanted = cursorTime ? ChartShape::stepped(times, *cursorTime, 1) : ChartShape::nearest(times, bounds.until);
        break;
    case Qt::Key_Home:
        wanted = ChartShape::nearest(times, bounds.since);
        break;
    case Qt::Key_End:
        wanted = ChartShape::nearest(times, bounds.until);
        break;
    case Qt::Key_Escape:
        if (!cursorTime || !isByKeys) {
            QWidget::keyPressEvent(event);
            return;
        }
        break;
    default:
        QWidget::keyPressEvent(event);
        return;
    }
    pointer.reset();
    isByKeys = true;
    moveCursor(wanted);
    if (cursorTime && QAccessible::isActive()) {
        QAccessibleEvent told(this, QAccessible::DescriptionChanged);
        QAccessible::updateAccessibility(&told);
    }
}

void Chart::focusOutEvent(QFocusEvent* event) {
    QWidget::focusOutEvent(event);
    if (isByKeys)
        moveCursor(std::nullopt);
    update();
}

void Chart::moveCursor(std::optional<double> time) {
    if (cursorTime == time)
        return;
    cursorTime = time;
    update();
    userMovedCursor();
}

void Chart::placeCursor(std::optional<double> time) {
    if (cursorTime == time)
        return;
    cursorTime = time;
    isByKeys = false;
    update();
}

} // namespace ostrivane
