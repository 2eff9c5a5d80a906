#include "app/window/WindowVisibility.hpp"

#include <QEvent>
#include <QWidget>
#include <QWindow>

namespace ostrivane {

WindowVisibility::WindowVisibility(QWidget* window) : QObject(window), widget(window) {
    covered = makeCoveredWindows(this);
    if (covered)
        connect(covered, &CoveredWindows::changed, this, [this](bool nowCovered) {
            isCovered = nowCovered;
            settle();
        });
    widget->installEventFilter(this);
    watchHandle();
    settle();
}

bool WindowVisibility::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::WinIdChange:
        watchHandle();
        break;
    case QEvent::Show:
    case QEvent::Hide:
    case QEvent::WindowStateChange:
    case QEvent::Expose:
        if (event->type() == QEvent::Show)
            watchHandle();
        // The state is known once the event has been handled.
        QMetaObject::invokeMethod(this, &WindowVisibility::settle, Qt::QueuedConnection);
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void WindowVisibility::watchHandle() {
    QWindow* now = widget->windowHandle();
    if (!now)
        return;
    if (now != handle) {
        handle = now;
        handle->installEventFilter(this);
    }
    // A window that was closed and is shown again is another one to the system.
    if (const WId id = handle->winId(); id != native) {
        native = id;
        isCovered = false;
        if (covered)
            covered->watch(*handle);
    }
}

void WindowVisibility::settle() {
    const bool now = widget->isVisible() && !widget->isMinimized() && !isCovered && (!handle || handle->isExposed());
    if (now == seen)
        return;
    seen = now;
    Q_EMIT changed(seen);
}

} // namespace ostrivane
