#include "app/widgets/OrderHold.hpp"

#include <QEvent>
#include <QWidget>

#include <chrono>

namespace ostrivane {

OrderHold::OrderHold(QObject* owner) : QObject(owner) {
    sinceKey.setSingleShot(true);
    sinceKey.setInterval(std::chrono::seconds(5));
    connect(&sinceKey, &QTimer::timeout, this, [this] { settle(); });
}

void OrderHold::setPointerInside(bool inside) {
    pointerInside = inside;
    settle();
}

void OrderHold::keyPressed() {
    sinceKey.start();
    settle();
}

void OrderHold::holdWhileOpen(QWidget* opened) {
    if (open.contains(opened))
        return;
    open += opened;
    opened->installEventFilter(this);
    connect(opened, &QObject::destroyed, this, [this](QObject* closed) {
        open.removeAll(closed);
        settle();
    });
    settle();
}

void OrderHold::release() {
    pointerInside = false;
    sinceKey.stop();
    settle();
}

bool OrderHold::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Hide) {
        watched->removeEventFilter(this);
        watched->disconnect(this);
        open.removeAll(watched);
        settle();
    }
    return false;
}

void OrderHold::settle() {
    const bool wanted = pointerInside || sinceKey.isActive() || !open.isEmpty();
    if (wanted == held)
        return;
    held = wanted;
    Q_EMIT changed(held);
}

} // namespace ostrivane
