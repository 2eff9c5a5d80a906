#include "app/widgets/FocusRing.hpp"

#include "app/widgets/Style.hpp"
#include "app/widgets/Theme.hpp"
#include "app/widgets/Type.hpp"

#include <QApplication>
#include <QFocusEvent>
#include <QPainter>
#include <QVariant>

namespace ostrivane {

namespace {

constexpr const char* radiusName = "ostrivaneFocusRadius";
constexpr int reach = 3; // how far the ring goes beyond its widget

class Frame final : public QFocusFrame {
protected:
    void paintEvent(QPaintEvent*) override {
        if (!widget())
            return;
        QPainter painter(this);
        Style::drawFocusRing(painter, rect().adjusted(reach, reach, -reach, -reach),
                             Type::px(widget()->property(radiusName).toDouble()));
    }
};

} // namespace

FocusRing& FocusRing::instance() {
    static QPointer<FocusRing> ring; // goes with its application; another one makes another
    if (!ring)
        ring = new FocusRing(QCoreApplication::instance());
    return *ring;
}

FocusRing::FocusRing(QObject* parent) : QObject(parent) {
    QCoreApplication::instance()->installEventFilter(this);
}

void FocusRing::give(QWidget& widget, double radius) {
    instance();
    widget.setProperty(radiusName, radius);
}

bool FocusRing::eventFilter(QObject* object, QEvent* event) {
    switch (event->type()) {
    case QEvent::KeyPress:
        lastInputWasKey = true;
        break;
    case QEvent::MouseButtonPress:
        lastInputWasKey = false;
        byKeyboard = false;
        surround(nullptr);
        break;
    case QEvent::FocusOut:
        surround(nullptr);
        break;
    case QEvent::FocusIn:
        switch (static_cast<QFocusEvent*>(event)->reason()) {
        case Qt::TabFocusReason:
        case Qt::BacktabFocusReason:
        case Qt::ShortcutFocusReason:
            byKeyboard = true;
            break;
        case Qt::MouseFocusReason:
            byKeyboard = false;
            break;
        case Qt::OtherFocusReason:
        case Qt::NoFocusReason:
            byKeyboard = lastInputWasKey;
            break;
        default: // a window or a menu came or went: as it was
            break;
        }
        if (auto* widget = qobject_cast<QWidget*>(object); widget && byKeyboard)
            surround(widget);
        break;
    default:
        break;
    }
    return false;
}

void FocusRing::surround(QWidget* widget) {
    const bool wanted = widget && widget->property(radiusName).isValid();
    if (!wanted && !frame)
        return;
    if (!frame)
        frame = new Frame; // it moves into the window of its widget, and goes with it
    frame->setWidget(wanted ? widget : nullptr);
}

void Style::giveFocusRing(QWidget& widget, double radius) {
    FocusRing::give(widget, radius);
}

void Style::drawFocusRing(QPainter& painter, const QRectF& rect, qreal radius) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(Theme::current().accent, 2));
    painter.drawRoundedRect(rect.adjusted(-2, -2, 2, 2), radius + 2, radius + 2);
    painter.restore();
}

bool Style::showsFocus(const QWidget& widget) {
    return widget.hasFocus() && FocusRing::instance().isByKeyboard();
}

} // namespace ostrivane
